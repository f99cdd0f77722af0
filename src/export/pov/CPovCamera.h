// SPDX-License-Identifier: MIT
#pragma once

#include "camera/CSeenView.h"

class CPovText;

/** The camera of an exported scene: the view's own, moved round the model the other way instead of the model
 * being turned, shifted and scaled. Scene coordinates stay as the file has them; the camera carries the
 * change from the file's right-handed to POV-Ray's left-handed axes. Only where the view's scale is uneven
 * the model is placed as the view places it (Place), as no camera can stand in for that. */
class CPovCamera {
  public:
    explicit CPovCamera(const CSeenView& seen);

    /** What the scene's coordinates are multiplied with to become the written ones. */
    [[nodiscard]] const CMat4& Place() const { return m_place; }
    /** Where it stands in a picture of the view's shape, in written coordinates. */
    [[nodiscard]] CVec3 Eye() const;
    /** Of the model, in written coordinates. */
    [[nodiscard]] float ModelRadius() const { return m_radius; }
    /** A direction of the view's space, in which the turned model stands, in written coordinates; as long
     * as it is given. */
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
