// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "base/math/CMatrix.h"
#include "base/math/CRotation.h"
#include "base/math/CSphere.h"
#include "camera/CViewCamera.h"

struct CImage;

/** Everything that decides what is seen of a prepared scene. The main window, saved pictures and exporters
 * take it as one value and get their matrices from it, so that they all show the same. A reload keeps it.
 *
 * A point of the scene goes through ModelMatrix, ViewMatrix and ProjectionMatrix in that order. First the
 * rotation angles turn the scene about the turning point, which is the look-at point unless the mouse has
 * chosen another one; then the trackball turns it and the scale stretches the result, both about the turning
 * point shifted by the pivot offset; at last the result is shifted as a whole. */
struct CSeenView {
    CViewCamera camera;                  ///< with the zooms and the size of the picture
    float rotX = 0, rotY = 0, rotZ = 0;  ///< degrees, see RotationOfAngles
    CRotation turn;                      ///< the trackball's
    double orbit = 0;                    ///< radians; see OrbitedEye
    CVec3d pivot;
    CVec3d scale{1, 1, 1};
    CVec3d aside;      ///< from the look-at point to the turning point
    CVec3d shift;      ///< of the turned scene
    CVec3 background;  ///< 0..1
    /** Behind the scene: covers the view, its middle in the view's middle, its alpha over the background. Null for none.
     * Shared by all who hold a seen view, as a picture may be large. */
    std::shared_ptr<const CImage> backgroundImage;
    bool wire = false;  ///< polygons as lines
    float frame = 0;    ///< of the animation

    /** The camera's eye, turned by the orbit. */
    [[nodiscard]] CVec3 Eye() const;
    /** As gluLookAt from Eye; straight along the up vector, too. */
    [[nodiscard]] CMat4 ViewMatrix() const;
    /** What the scene turns about, in the scene's coordinates, without the pivot offset. */
    [[nodiscard]] CVec3d TurningPoint() const;
    /** Where the middle of the trackball is seen: the turning point, shifted. */
    [[nodiscard]] CVec3 BallCenter() const;
    /** The coordinates that the trackball turns in: the scale, about the ball's center moved by the pivot. */
    [[nodiscard]] CMat4 BallMatrix() const;
    /** Pivot, scale, trackball and shift. */
    [[nodiscard]] CMat4 PlacingMatrix() const;
    /** The rotation angles. */
    [[nodiscard]] CMat4 AnglesMatrix() const;
    [[nodiscard]] CMat4 ModelMatrix() const { return PlacingMatrix() * AnglesMatrix(); }
    /** CViewCamera::DepthRange, widened so that it holds the spheres as ModelMatrix places them. */
    [[nodiscard]] CDepthRange DepthRange(const CSphere& model, std::span<const CSphere> others = {}) const;
    [[nodiscard]] CMat4 ProjectionMatrix(CDepthRange range) const { return camera.ProjectionMatrix(range); }

    // --- what the mouse does with it; pixels of the view, origin top left -----------------------------------
    /** Moves the scene so that the middle of the model follows the pointer: dx to the right, dy down. */
    void Pan(double dx, double dy);
    /** CViewCamera::Zoom, with what is seen at (x, y) staying there. */
    void ZoomAt(int step, double x, double y);
    /** CViewCamera::Zoom to a box. The scene stays where it is seen, and then turns about the new look-at
     * point. */
    [[nodiscard]] bool ZoomTo(const C2DRect& box);
    /** Brings a point of the scene to the look-at point, the middle of the view, and this to the point's depth,
     * so that nothing is seen larger or smaller. Without a pivot offset the scene then turns about it. */
    void CenterOn(CVec3d point);
    /** Takes back what these did with aside and shift. */
    void ForgetPlaces() { aside = shift = {}; }

  private:
    void TurnAbout(CVec3d point);
    void ShiftAcross(double right, double down);
    [[nodiscard]] double MiddleDepth() const;
};

/** The vector from the look-at point to the eye, turned by an angle (radians) about the axis that belongs to
 * the camera's name. Only an angle above 0 turns it. */
[[nodiscard]] CVec3d OrbitedEye(std::string_view cameraName, double angle, CVec3d eye);

/** range, widened so that it holds the spheres, which modelView places. viewProjection is the projection
 * times the view matrix; a parallel one leaves range as it is. */
[[nodiscard]] CDepthRange WidenedFor(CDepthRange range, const CMat4& viewProjection, const CMat4& modelView,
                                     std::span<const CSphere> spheres);
