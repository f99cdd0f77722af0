// SPDX-License-Identifier: MIT
#pragma once

#include "view/CTrackBallMotion.h"

/** The trackball of a view: CTrackBallMotion with the matrices of the OpenGL context that is current during
 * each call. */
class CTrackBall : public CTrackBallMotion {
  public:
    using CTrackBallMotion::CTrackBallMotion;

    /** r is twice the model's radius, (ex, ey, ez) the eye as seen from the centre. Takes the matrices and
     * the viewport that are current. */
    void SetBall(float r, float ex, float ey, float ez);
    /** Multiplies the rotation onto the current matrix. */
    void ApplyMatrix() const;
    /** Draws the ball with its turned rings round the origin of the current model-view matrix, over the
     * picture. Draws nothing unless a drag is under way. Restores state and matrices. */
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
