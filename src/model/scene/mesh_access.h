// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstring>

#include "base/math/CMatrix.h"
#include "model/scene/CScene.h"

/** Single entries of a CMeshView. Indices are not checked; entries need not be aligned. */
struct CFaceIndices {
    std::uint16_t a, b, c, flags;
};

[[nodiscard]] inline CVec3 PointOf(const CMeshView& view, std::size_t i) {
    CVec3 p;
    std::memcpy(&p, view.points + i * view.pointStride, sizeof(p));
    return p;
}
[[nodiscard]] inline CVec2 TexelOf(const CMeshView& view, std::size_t i) {
    CVec2 uv;
    std::memcpy(&uv, view.texels + i * view.texelStride, sizeof(uv));
    return uv;
}
[[nodiscard]] inline CFaceIndices FaceOf(const CMeshView& view, std::size_t i) {
    CFaceIndices face;
    std::memcpy(&face, view.faces + i * view.faceStride, sizeof(face));
    return face;
}
/** The groups of a face, one bit each; 0 where it belongs to none. */
[[nodiscard]] inline std::uint32_t SmoothingOf(const CMeshView& view, std::size_t i) {
    std::uint32_t mask = 0;
    if (view.smoothing) std::memcpy(&mask, view.smoothing + i * view.smoothingStride, sizeof(mask));
    return mask;
}

/** The transform that lib3ds applies to the points of a mesh whose matrix mirrors: matrix * scale(-1, 1, 1) *
 * inverse(matrix). It is its own inverse. The identity for all other matrices. */
[[nodiscard]] CMat4 FlipOf(const CMat4& matrix);
