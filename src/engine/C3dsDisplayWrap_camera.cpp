// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "base/math/rotation_of_angles.h"
#include "camera/CViewPose.h"
#include "camera/framing.h"
#include "engine/C3dsDisplayState.h"

void C3dsDisplayWrap::SetPreviewSize(const C2DRect& rect) {
    m_state->preview = rect;
    m_state->camera.SetViewSize(std::abs(rect.right - rect.left), std::abs(rect.bottom - rect.top));
}

const C2DRect& C3dsDisplayWrap::GetPreviewSize() const {
    return m_state->preview;
}

void C3dsDisplayWrap::UpdateRotAngles(float dx, float dy) {
    m_state->rotZ = WithoutWholeTurns(m_state->rotZ + WithoutWholeTurns(dx));
    m_state->rotX = WithoutWholeTurns(m_state->rotX + WithoutWholeTurns(dy));
}

void C3dsDisplayWrap::ZoomModel(int step) {
    m_state->camera.Zoom(step);
    UpdateModelOnZoom();
}

void C3dsDisplayWrap::ZoomModel(const C2DRect& rect) {
    if (m_state->camera.Zoom(rect)) UpdateModelOnZoom();
}

void C3dsDisplayWrap::SetTopCameraModel() {
    m_state->SetPreset(ECameraPreset::Top);
}
void C3dsDisplayWrap::SetLeftCameraModel() {
    m_state->SetPreset(ECameraPreset::Left);
}
void C3dsDisplayWrap::SetRightCameraModel() {
    m_state->SetPreset(ECameraPreset::Right);
}
void C3dsDisplayWrap::SetFrontCameraModel() {
    m_state->SetPreset(ECameraPreset::Front);
}
void C3dsDisplayWrap::SetBackCameraModel() {
    m_state->SetPreset(ECameraPreset::Back);
}
void C3dsDisplayWrap::SetIsoCameraModel() {
    m_state->SetPreset(ECameraPreset::Iso);
}

bool C3dsDisplayWrap::SetFileCameraModel(const std::string& name) {
    if (!m_state->scene) return false;
    for (const CPreparedCamera& camera : m_state->Fresh().cameras) {
        if (camera.name != name) continue;
        m_state->SetPreset(ECameraPreset::Iso);  // for the sphere and the angles
        m_state->camera.SetFileCamera(camera);
        return true;
    }
    return false;
}

std::vector<std::string> C3dsDisplayWrap::GetFileCameraNames() const {
    std::vector<std::string> names;
    if (!m_state->scene) return names;
    for (const CPreparedCamera& camera : m_state->Fresh().cameras) names.push_back(camera.name);
    return names;
}

CViewPose C3dsDisplayWrap::GetPose() const {
    return {m_state->camera, m_state->rotX, m_state->rotY, m_state->rotZ, m_state->frame};
}

void C3dsDisplayWrap::SetPose(const CViewPose& pose) {
    m_state->camera = pose.camera;
    if (m_state->scene) m_state->camera.SetModel(FramingSphere(m_state->Fresh()));
    SetPreviewSize(m_state->preview);  // it may have changed since
    m_state->rotX = pose.rotX;
    m_state->rotY = pose.rotY;
    m_state->rotZ = pose.rotZ;
    SetFrame(pose.frame);
}

float C3dsDisplayWrap::GetXOrg() const {
    return m_state->camera.Target().x;
}
float C3dsDisplayWrap::GetYOrg() const {
    return m_state->camera.Target().y;
}
float C3dsDisplayWrap::GetZOrg() const {
    return m_state->camera.Target().z;
}
float C3dsDisplayWrap::GetEyeX() const {
    return m_state->camera.Eye().x;
}
float C3dsDisplayWrap::GetEyeY() const {
    return m_state->camera.Eye().y;
}
float C3dsDisplayWrap::GetEyeZ() const {
    return m_state->camera.Eye().z;
}
float C3dsDisplayWrap::GetUpX() const {
    return m_state->camera.Up().x;
}
float C3dsDisplayWrap::GetUpY() const {
    return m_state->camera.Up().y;
}
float C3dsDisplayWrap::GetUpZ() const {
    return m_state->camera.Up().z;
}
float C3dsDisplayWrap::GetFovY() const {
    return m_state->camera.FovYDeg();
}
float C3dsDisplayWrap::GetRadius() const {
    return m_state->camera.ModelRadius();
}
std::string C3dsDisplayWrap::GetCameraName() const {
    return m_state->camera.Name();
}
float C3dsDisplayWrap::GetRotAngleX() const {
    return m_state->rotX;
}
float C3dsDisplayWrap::GetRotAngleY() const {
    return m_state->rotY;
}
float C3dsDisplayWrap::GetRotAngleZ() const {
    return m_state->rotZ;
}
float C3dsDisplayWrap::GetBKRValue() const {
    return m_state->background.x;
}
float C3dsDisplayWrap::GetBKGValue() const {
    return m_state->background.y;
}
float C3dsDisplayWrap::GetBKBValue() const {
    return m_state->background.z;
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
