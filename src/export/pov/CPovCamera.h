// SPDX-License-Identifier: MIT
#pragma once

#include "camera/CViewCamera.h"
#include "export/pov/C3ds2Pov.h"

class CPovText;
struct CPreparedScene;

/** The camera of an exported scene: the view's own, moved round the model the other way instead of the model
 * being turned. Scene coordinates stay as the file has them; the camera carries the change from the file's
 * right-handed to POV-Ray's left-handed axes. */
class CPovCamera {
  public:
    CPovCamera(const CPreparedScene& scene, const C3ds2Pov::COutFormat& format);

    /** Where it stands in a picture of 4:3, in the scene's coordinates. */
    [[nodiscard]] CVec3 Eye() const { return m_target + m_back * m_distance; }
    [[nodiscard]] float ModelRadius() const { return m_camera.ModelRadius(); }
    /** A direction of the view's space, in which the turned model stands, in the scene's coordinates. */
    [[nodiscard]] CVec3 FromView(CVec3 direction) const;

    /** Declares Eye and the camera, for a scene that is written `scale` times as large. A preset goes on to
     * show the whole model whatever shape the picture has. */
    void Write(CPovText& text, float scale) const;

  private:
    CViewCamera m_camera;
    CMat4 m_turn;
    bool m_isPreset = true;
    CVec3 m_target, m_back, m_up;
    float m_distance = 1;
};
