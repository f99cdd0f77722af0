// SPDX-License-Identifier: MIT
#include "export/pov/CPovCamera.h"

#include <algorithm>
#include <cmath>

#include "export/pov/text/CPovText.h"

namespace {

/** True when the scale is the same for all axes. */
bool IsEven(CVec3d scale) {
    constexpr double kSmallest = 1e-6, kLargest = 1e6;  // beyond it eye and model are no longer told apart
    return scale.x >= kSmallest && scale.x <= kLargest && scale.y == scale.x && scale.z == scale.x;
}

}  // namespace

CPovCamera::CPovCamera(const CSeenView& seen)
    : m_lens(seen.camera.Lens()), m_aspect(seen.camera.Aspect()), m_radius(seen.camera.ModelRadius()) {
    Place(seen);
    const CVec3 back = Normalized(seen.Eye() - seen.camera.Target());
    const CMat4 view = seen.ViewMatrix();
    // The up vector comes from the view's matrix: the view uses another one when it looks along it.
    const bool hasUp = Length(Cross(seen.camera.Up(), back)) > 1e-3f;
    m_back = FromView(back);
    m_up = FromView(hasUp ? seen.camera.Up() : CVec3{view.m[1], view.m[5], view.m[9]});
}

void CPovCamera::Place(const CSeenView& seen) {
    m_target = seen.camera.Target();
    if (!IsEven(seen.scale)) {
        m_place = seen.ModelMatrix();
        m_radius *= static_cast<float>(
            std::max({std::abs(seen.scale.x), std::abs(seen.scale.y), std::abs(seen.scale.z), 1e-6}));
        return;
    }
    m_shrink = static_cast<float>(1 / seen.scale.x);
    // The look-at point as the model sees it: the view's turns, scale and shift taken back one by one.
    const auto inFloat = [](CVec3d v) {
        return CVec3{static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
    };
    m_turn = seen.turn.Matrix();
    const CVec3 fromTurningPoint =
        inFloat(seen.pivot) - FromView(inFloat(seen.pivot + seen.aside + seen.shift)) * m_shrink;
    m_turn = seen.AnglesMatrix();
    m_target = inFloat(seen.TurningPoint()) + FromView(fromTurningPoint);
    m_turn = seen.turn.Matrix() * m_turn;
}

CVec3 CPovCamera::FromView(CVec3 direction) const {
    // A turn's inverse is its transpose.
    const std::array<float, 16>& m = m_turn.m;
    const CVec3 v = direction;
    return {m[0] * v.x + m[1] * v.y + m[2] * v.z, m[4] * v.x + m[5] * v.y + m[6] * v.z,
            m[8] * v.x + m[9] * v.y + m[10] * v.z};
}

double CPovCamera::DistanceFor(double aspect) const {
    if (!(m_lens.fittedRadius > 0)) return m_lens.distance;
    const double t = m_lens.tanY * std::min(1.0, aspect);
    return m_lens.zoom * m_lens.fittedRadius * std::sqrt(1 + t * t) / t;
}

CVec3 CPovCamera::Eye() const {
    return m_target + m_back * (static_cast<float>(DistanceFor(m_aspect)) * m_shrink);
}

void CPovCamera::Write(CPovText& text, float scale) const {
    const double size = static_cast<double>(m_shrink * scale);
    text << "#declare Aspect=image_width/image_height;\n";
    text << "#declare Center=" << m_target * scale << ";\n";
    if (m_lens.fittedRadius > 0) {
        // At this distance, without zoom, the sphere round the model just fits the narrower side of
        // the picture.
        text << "#declare Narrow=" << m_lens.tanY << "*min(1,Aspect);\n";
        text << "#declare Distance=" << m_lens.zoom * m_lens.fittedRadius * size
             << "*sqrt(1+Narrow*Narrow)/Narrow;\n";
    } else {
        text << "#declare Distance=" << m_lens.distance * size << ";\n";
    }
    text << "#declare Eye=Center+" << m_back << "*Distance;\n";
    // Unit vectors printed with few digits are not perpendicular enough for POV-Ray; these are.
    text << "#declare Ahead=vnormalize(Center-Eye);\n#declare Right=vnormalize(vcross(Ahead," << m_up
         << "));\n";
    text << "camera{perspective location Eye direction Ahead*";
    if (m_lens.tanX > 0)  // the content of a zoom box is visible in a picture of any shape
        text << "(.5/max(" << m_lens.tanY << "," << m_lens.tanX << "/Aspect))";
    else
        text << 0.5 / m_lens.tanY;
    text << " up vcross(Right,Ahead) right Right*Aspect}\n";
}
