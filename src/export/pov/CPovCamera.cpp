// SPDX-License-Identifier: MIT
#include "export/pov/CPovCamera.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/math/rotation_of_angles.h"
#include "camera/framing.h"
#include "export/pov/text/CPovText.h"
#include "model/prepare/CPreparedScene.h"

namespace {

CMat4 TurnOf(const C3ds2Pov::COutFormat& format) {
    if (format.cameraName == NameOfPreset(ECameraPreset::Top)) {
        return RotationOfAngles(-format.angleY, format.angleX, -90 - format.angleZ);
    }
    return RotationOfAngles(-format.angleX, format.angleY, -format.angleZ);
}

/** True when a camera was chosen that is no preset. */
bool Choose(CViewCamera& camera, const CPreparedScene& scene, const std::string& name) {
    ECameraPreset preset = ECameraPreset::Iso;
    const auto named = std::find_if(scene.cameras.begin(), scene.cameras.end(),
                                    [&](const CPreparedCamera& c) { return c.name == name; });
    const bool isPreset = PresetOfName(name, preset);
    if (named == scene.cameras.end() || (isPreset && NameOfPreset(preset) == name)) {
        camera.SetPreset(preset);
        return false;
    }
    camera.SetFileCamera(*named);
    return true;
}

}  // namespace

CPovCamera::CPovCamera(const CPreparedScene& scene, const C3ds2Pov::COutFormat& format)
    : m_turn(TurnOf(format)) {
    m_camera.SetModel(FramingSphere(scene));
    m_isPreset = !Choose(m_camera, scene, format.cameraName);
    m_target = m_camera.Target();
    const CVec3 sight = m_camera.Eye() - m_target;
    m_distance = Length(sight);
    m_back = FromView(Normalized(sight));
    m_up = FromView(m_camera.Up());
}

CVec3 CPovCamera::FromView(CVec3 direction) const {
    // A turn's inverse is its transpose.
    const std::array<float, 16>& m = m_turn.m;
    const CVec3 v = direction;
    return {m[0] * v.x + m[1] * v.y + m[2] * v.z, m[4] * v.x + m[5] * v.y + m[6] * v.z,
            m[8] * v.x + m[9] * v.y + m[10] * v.z};
}

void CPovCamera::Write(CPovText& text, float scale) const {
    const double tangent = std::tan(static_cast<double>(m_camera.FovYDeg()) * std::numbers::pi / 360);
    text << "#declare Aspect=image_width/image_height;\n";
    text << "#declare Center=" << m_target * scale << ";\n";
    if (m_isPreset) {
        // From here the narrower side of any picture just holds the sphere round the model.
        text << "#declare Narrow=" << tangent << "*min(1,Aspect);\n";
        text << "#declare Distance=" << m_camera.ModelRadius() * scale << "*sqrt(1+Narrow*Narrow)/Narrow;\n";
    } else {
        text << "#declare Distance=" << m_distance * scale << ";\n";
    }
    text << "#declare Eye=Center+" << m_back << "*Distance;\n";
    // Unit vectors printed with few digits are not perpendicular enough for POV-Ray; these are.
    text << "#declare Ahead=vnormalize(Center-Eye);\n#declare Right=vnormalize(vcross(Ahead," << m_up
         << "));\n";
    text << "camera{perspective location Eye direction Ahead*" << 0.5 / tangent
         << " up vcross(Right,Ahead) right Right*Aspect}\n";
}
