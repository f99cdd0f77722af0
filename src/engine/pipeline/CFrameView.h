// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "base/math/CBox.h"

class CGlCurrent;

/** The view of one drawing, taken from the two current matrices: the projection, which includes the camera,
 * and the model-view matrix, which turns the scene. Drawing happens in eye-relative space: the axes of
 * model-view space with the eye at the origin. */
struct CFrameView {
    CMatrix4d projection;         ///< as the caller set it
    CMatrix4d modelView;          ///< as the caller set it
    CMatrix4d eyeProjection;      ///< eye-relative space to clip space
    std::array<double, 3> eye{};  ///< in model-view space; the origin for a parallel projection
    /** Vector to the viewer from a point p of eye-relative space: xyz - w * p. */
    std::array<float, 4> viewer{0, 0, 0, 1};
    std::array<std::array<double, 4>, 6>
        planes{};           ///< the view volume in the scene's coordinates, see ViewPlanes
    bool mirrored = false;  ///< modelView turns faces over
    bool perspective = true;

    [[nodiscard]] static CFrameView FromCurrent(CGlCurrent& gl);
    [[nodiscard]] static CFrameView FromMatrices(const CMatrix4d& projection, const CMatrix4d& modelView);

    /** The matrix that takes the vertices of a mesh to eye-relative space. */
    [[nodiscard]] CMatrix4d EyeModelView(const CMat4& meshToWorld) const;
    /** A scene's point in eye-relative space. */
    [[nodiscard]] CVec3 ToEye(CVec3 worldPoint) const;
    /** A matrix, 3x3 column by column, that takes (x, y, 1) of a pixel, in gl_FragCoord's coordinates, to a
     * vector towards the viewer, of any length. viewport: x, y, width, height as OpenGL has them, width and
     * height > 0. */
    [[nodiscard]] std::array<float, 9> PixelToViewer(const std::array<int, 4>& viewport) const;
    /** False when a box in the scene's coordinates lies wholly outside the view volume. */
    [[nodiscard]] bool MayShow(const CBox& worldBounds) const;
    /** The row that gives the depth of a mesh's point p as row . (p, 1); larger is farther. */
    [[nodiscard]] std::array<double, 4> DepthRow(const CMatrix4d& eyeModelView) const;
};

/** The six planes of a view volume in the space that clip maps from: a point is inside where all are >= 0. */
[[nodiscard]] std::array<std::array<double, 4>, 6> ViewPlanes(const CMatrix4d& clip);
