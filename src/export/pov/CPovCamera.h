// SPDX-License-Identifier: MIT
#pragma once

#include "camera/CSeenView.h"

class CPovText;

/** The camera of an exported scene. Where the view turns, shifts and scales the model, the export moves the
 * camera the opposite way, so the scene keeps the file's coordinates. The camera also converts the file's
 * right-handed axes to POV-Ray's left-handed ones. Only if the view's scale differs between the axes is the
 * model itself transformed (Place), because no camera can show that. */
class CPovCamera {
  public:
    explicit CPovCamera(const CSeenView& seen);

    /** The transform from the scene's coordinates to the written ones. */
    [[nodiscard]] const CMat4& Place() const { return m_place; }
    /** The camera's position for a picture of the view's shape, in written coordinates. */
    [[nodiscard]] CVec3 Eye() const;
    /** Radius of the scene's bounding sphere, in written coordinates. */
    [[nodiscard]] float ModelRadius() const { return m_radius; }
    /** Converts a direction of the view's space, in which the model is turned, to written coordinates; keeps
     * its length. */
    [[nodiscard]] CVec3 FromView(CVec3 direction) const;

    /** Declares Eye and the camera, for a scene that is written `scale` times as large. The picture may have
     * any shape: it shows what the view would show in that shape. */
    void Write(CPovText& text, float scale) const;

  private:
    void Place(const CSeenView& seen);
    [[nodiscard]] double DistanceFor(double aspect) const;

    CCameraLens m_lens;
    double m_aspect = 1;
    CMat4 m_place;
    CMat4 m_turn;  ///< of the view, where the camera walks; else none
    float m_radius = 1;
    float m_shrink = 1;  ///< what the view's distances are multiplied with
    CVec3 m_target, m_back, m_up;
};
