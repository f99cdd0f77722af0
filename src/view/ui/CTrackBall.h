// SPDX-License-Identifier: MIT
#pragma once

#include "view/CTrackBallMotion.h"

/** The trackball as a view uses it: its mathematics, tied to the OpenGL context that is current
 * when it is called. */
class CTrackBall : public CTrackBallMotion {
  public:
    using CTrackBallMotion::CTrackBallMotion;

    /** r is twice the model's radius, (ex, ey, ez) the eye as seen from the centre. Takes the matrices and
     * the viewport that are current. */
    void SetBall(float r, float ex, float ey, float ez);
    /** Multiplies the rotation onto the current matrix. */
    void ApplyMatrix() const;
    /** Draws the ball with its turned frame round the origin of the current model-view matrix, over what is
     * there. Nothing unless a drag is under way. Leaves state and matrices as they were. */
    void DrawOverlay() const;

  private:
    void DrawBall() const;
    void DrawOutlines() const;
    void DrawFrame() const;
    void DrawDrag() const;
    void DrawTurnedRings() const;
    void DrawGrid() const;
    void DrawOutline() const;
};
