// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "base/math/rotation_of_angles.h"
#include "camera/point_under.h"
#include "engine/C3dsDisplayState.h"
#include "model/textures/texture_name.h"

void C3dsDisplayWrap::CState::SetPreview(const C2DRect& rect) {
    preview = rect;
    seen.camera.SetViewSize(std::abs(rect.right - rect.left), std::abs(rect.bottom - rect.top));
}

void C3dsDisplayWrap::SetPreviewSize(const C2DRect& rect) {
    m_state->SetPreview(rect);
}

const C2DRect& C3dsDisplayWrap::GetPreviewSize() const {
    return m_state->preview;
}

void C3dsDisplayWrap::UpdateRotAngles(float dx, float dy) {
    CSeenView& seen = m_state->seen;
    seen.rotZ = WithoutWholeTurns(seen.rotZ + WithoutWholeTurns(dx));
    seen.rotX = WithoutWholeTurns(seen.rotX + WithoutWholeTurns(dy));
}

void C3dsDisplayWrap::ZoomModel(int step) {
    m_state->seen.camera.Zoom(step);
    UpdateModelOnZoom();
}

void C3dsDisplayWrap::ZoomModel(const C2DRect& rect) {
    if (m_state->seen.ZoomTo(rect)) UpdateModelOnZoom();
}

void C3dsDisplayWrap::ZoomModelAt(int step, double x, double y) {
    m_state->seen.ZoomAt(step, x, y);
    UpdateModelOnZoom();
}

void C3dsDisplayWrap::PanModel(double dx, double dy) {
    m_state->seen.Pan(dx, dy);
}

bool C3dsDisplayWrap::CenterModelAt(double x, double y) {
    if (!m_state->scene) return false;
    const auto point = PointUnder(m_state->prepared, m_state->seen, x, y);
    if (point) m_state->seen.CenterOn(*point);
    return point.has_value();
}

void C3dsDisplayWrap::SetPreset(ECameraPreset preset) {
    m_state->SetPreset(preset);
}

bool C3dsDisplayWrap::SetFileCameraModel(const std::string& name) {
    if (!m_state->scene) return false;
    for (const CPreparedCamera& camera : m_state->prepared.cameras) {
        if (camera.name != name) continue;
        m_state->SetPreset(ECameraPreset::Iso);  // for the sphere and the angles
        m_state->seen.camera.SetFileCamera(camera);
        return true;
    }
    return false;
}

bool C3dsDisplayWrap::SetCameraOfName(const std::string& name) {
    if (SetFileCameraModel(name)) return true;
    ECameraPreset preset{};
    if (PresetOfName(name, preset)) {
        SetPreset(preset);
        return true;
    }
    const std::vector<std::string> wanted = texture_name::ReferenceKeys(name);
    for (const std::string& camera : GetFileCameraNames()) {
        for (const std::string& key : texture_name::ReferenceKeys(camera))
            if (std::ranges::find(wanted, key) != wanted.end()) return SetFileCameraModel(camera);
    }
    return false;
}

std::vector<std::string> C3dsDisplayWrap::GetFileCameraNames() const {
    std::vector<std::string> names;
    if (!m_state->scene) return names;
    for (const CPreparedCamera& camera : m_state->prepared.cameras) names.push_back(camera.name);
    return names;
}

const CSeenView& C3dsDisplayWrap::SeenView() const {
    return m_state->seen;
}

void C3dsDisplayWrap::SetSeenView(const CSeenView& seen) {
    m_state->seen = seen;
    m_state->DecideFraming();
    if (m_state->scene) m_state->seen.camera.SetModel(m_state->framing);
    m_state->SetPreview(m_state->preview);  // it may have changed since
    m_state->SetFrame(seen.frame);
}

void C3dsDisplayWrap::SetPivotOffset(CVec3d offset) {
    if (IsFinite(offset)) m_state->seen.pivot = offset;
}
void C3dsDisplayWrap::SetScale(CVec3d scale) {
    if (IsFinite(scale)) m_state->seen.scale = scale;
}
void C3dsDisplayWrap::SetTurn(const CRotation& turn, double orbit) {
    m_state->seen.turn = turn;
    m_state->seen.orbit = orbit;
}
void C3dsDisplayWrap::SetWireframe(bool wire) {
    m_state->seen.wire = wire;
}

void C3dsDisplayWrap::SetBackgroundImage(std::shared_ptr<const CImage> image) {
    m_state->seen.backgroundImage = std::move(image);
}

float C3dsDisplayWrap::GetXOrg() const {
    return m_state->seen.camera.Target().x;
}
float C3dsDisplayWrap::GetYOrg() const {
    return m_state->seen.camera.Target().y;
}
float C3dsDisplayWrap::GetZOrg() const {
    return m_state->seen.camera.Target().z;
}
float C3dsDisplayWrap::GetEyeX() const {
    return m_state->seen.camera.Eye().x;
}
float C3dsDisplayWrap::GetEyeY() const {
    return m_state->seen.camera.Eye().y;
}
float C3dsDisplayWrap::GetEyeZ() const {
    return m_state->seen.camera.Eye().z;
}
float C3dsDisplayWrap::GetUpX() const {
    return m_state->seen.camera.Up().x;
}
float C3dsDisplayWrap::GetUpY() const {
    return m_state->seen.camera.Up().y;
}
float C3dsDisplayWrap::GetUpZ() const {
    return m_state->seen.camera.Up().z;
}
float C3dsDisplayWrap::GetFovY() const {
    return m_state->seen.camera.FovYDeg();
}
float C3dsDisplayWrap::GetRadius() const {
    return m_state->seen.camera.ModelRadius();
}
std::string C3dsDisplayWrap::GetCameraName() const {
    return m_state->seen.camera.Name();
}
float C3dsDisplayWrap::GetRotAngleX() const {
    return m_state->seen.rotX;
}
float C3dsDisplayWrap::GetRotAngleY() const {
    return m_state->seen.rotY;
}
float C3dsDisplayWrap::GetRotAngleZ() const {
    return m_state->seen.rotZ;
}
float C3dsDisplayWrap::GetBKRValue() const {
    return m_state->seen.background.x;
}
float C3dsDisplayWrap::GetBKGValue() const {
    return m_state->seen.background.y;
}
float C3dsDisplayWrap::GetBKBValue() const {
    return m_state->seen.background.z;
}
float C3dsDisplayWrap::GetFileBKRValue() const {
    return m_state->prepared.backgroundColor.x;
}
float C3dsDisplayWrap::GetFileBKGValue() const {
    return m_state->prepared.backgroundColor.y;
}
float C3dsDisplayWrap::GetFileBKBValue() const {
    return m_state->prepared.backgroundColor.z;
}
