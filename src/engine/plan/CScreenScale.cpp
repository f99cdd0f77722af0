// SPDX-License-Identifier: MIT
#include "engine/plan/CScreenScale.h"

#include <algorithm>
#include <cmath>

#include "engine/pipeline/CFrameView.h"
#include "model/prepare/CPreparedScene.h"

namespace {

double RowLength(const CMatrix4d& matrix, std::size_t row) {
    const std::array<double, 4> r = matrix.Row(row);
    return std::hypot(r[0], r[1], r[2]);
}

/** How much the matrix stretches at most, about. */
float Stretch(const CMat4& matrix) {
    return std::max({Length(CVec3{matrix.m[0], matrix.m[1], matrix.m[2]}),
                     Length(CVec3{matrix.m[4], matrix.m[5], matrix.m[6]}),
                     Length(CVec3{matrix.m[8], matrix.m[9], matrix.m[10]})});
}

}  // namespace

CScreenScale::CScreenScale(const CFrameView& view, int width, int height)
    : m_clip(view.projection * view.modelView),
      m_width(width),
      m_height(height),
      m_pixelsPerUnit(std::max(RowLength(m_clip, 0) * m_width, RowLength(m_clip, 1) * m_height) / 2) {}

CNodeOnScreen CScreenScale::Of(const CPreparedNode& node) const {
    if (node.worldBounds.IsEmpty()) return {};
    double left = 1, right = -1, bottom = 1, top = -1, near = 1e300, far = 0;
    for (unsigned i = 0; i < 8; ++i) {
        const CVec3 corner = node.worldBounds.Corner(i);
        const std::array<double, 4> p = m_clip.Transform({corner.x, corner.y, corner.z, 1});
        near = std::min(near, p[3]);
        far = std::max(far, p[3]);
        if (p[3] <= 0) continue;
        left = std::min(left, p[0] / p[3]);
        right = std::max(right, p[0] / p[3]);
        bottom = std::min(bottom, p[1] / p[3]);
        top = std::max(top, p[1] / p[3]);
    }
    CNodeOnScreen result;
    constexpr double kBesideTheEye = 1e-3;
    const bool round = near <= far * kBesideTheEye;  // the eye is within, or the node reaches behind it
    const double distance = std::max({near, far * kBesideTheEye, 1e-30});
    result.pixelsPerUnit = static_cast<float>(m_pixelsPerUnit / distance) * Stretch(node.meshToWorld);
    const double wide = round ? 2 : std::clamp(right, -1.0, 1.0) - std::clamp(left, -1.0, 1.0);
    const double high = round ? 2 : std::clamp(top, -1.0, 1.0) - std::clamp(bottom, -1.0, 1.0);
    result.pixels = static_cast<float>(std::max(wide, 0.0) * std::max(high, 0.0) / 4 * m_width * m_height);
    return result;
}
