// SPDX-License-Identifier: MIT
#include "camera/CViewCamera.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>

#include "base/text/ascii_text.h"
#include "model/prepare/CPreparedScene.h"

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr double kPresetTanY = 0.41421356237309503;  // of half of 45 degrees
constexpr double kMinTanY = 0.0005;
constexpr double kSmallestSeen = 0.0005;  // half the visible height, in radii
constexpr double kLargestSeen = 40;
constexpr double kNearestEye = 0.001;  // in radii
constexpr double kMaxBoxZoom = 20;
constexpr float kNearOfFar = 1.0f / 4000.0f;
constexpr float kNearestOfFramed = 0.001f;  // in radii

struct CPresetEntry {
    ECameraPreset preset;
    std::string_view name;
    std::string_view word;
    CVec3 back;  // from the model to the eye
    CVec3 up;
};

constexpr float kThird = 0.57735026918962576f;
constexpr std::array<CPresetEntry, 6> kPresets{{
    {ECameraPreset::Top, "top_cam", "top", {0, 0, 1}, {0, 1, 0}},
    {ECameraPreset::Left, "lft_cam", "left", {-1, 0, 0}, {0, 0, 1}},
    {ECameraPreset::Right, "rgt_cam", "right", {1, 0, 0}, {0, 0, 1}},
    {ECameraPreset::Front, "frt_cam", "front", {0, -1, 0}, {0, 0, 1}},
    {ECameraPreset::Back, "bck_cam", "back", {0, 1, 0}, {0, 0, 1}},
    {ECameraPreset::Iso, "iso_cam", "iso", {kThird, -kThird, kThird}, {0, 0, 1}},
}};

const CPresetEntry& EntryOf(ECameraPreset preset) {
    return *std::find_if(kPresets.begin(), kPresets.end(),
                         [preset](const CPresetEntry& e) { return e.preset == preset; });
}

/** The camera's own axes: right, true up, backwards. */
struct CFrame {
    CVec3 right, up, back;
};

CFrame FrameOf(CVec3 back, CVec3 up) {
    CVec3 right = Normalized(Cross(up, back));
    if (Length(right) < 0.5f) {
        const CVec3 other = std::abs(back.z) < 0.9f ? CVec3{0, 0, 1} : CVec3{0, 1, 0};
        right = Normalized(Cross(other, back));
    }
    return {right, Cross(back, right), back};
}

CMat4 MatrixOf(const CFrame& f, CVec3 eye) {
    // In double, as the parts of a dot product far from the scene's origin are much larger than their sum.
    const auto along = [eye](CVec3 axis) {
        return -static_cast<float>(static_cast<double>(axis.x) * static_cast<double>(eye.x) +
                                   static_cast<double>(axis.y) * static_cast<double>(eye.y) +
                                   static_cast<double>(axis.z) * static_cast<double>(eye.z));
    };
    CMat4 v;
    v.m = {f.right.x, f.up.x, f.back.x, 0, f.right.y,      f.up.y,      f.back.y,      0,
           f.right.z, f.up.z, f.back.z, 0, along(f.right), along(f.up), along(f.back), 1};
    return v;
}

bool IsFiniteRect(const C2DRect& r) {
    return std::isfinite(r.left) && std::isfinite(r.top) && std::isfinite(r.right) && std::isfinite(r.bottom);
}

/** A distance that a float at this place can surely distinguish from 0. */
float FinestAt(CVec3 p) {
    return std::max({std::abs(p.x), std::abs(p.y), std::abs(p.z)}) * 1e-6f;
}

/** Widens an extent about its middle by the factor. */
void Widen(double& low, double& high, double factor) {
    const double middle = (low + high) / 2;
    const double half = (high - low) / 2 * factor;
    low = middle - half;
    high = middle + half;
}

}  // namespace

bool PresetOfName(std::string_view name, ECameraPreset& preset) {
    std::string plain = ascii_text::Lowered(name);
    std::erase_if(plain, [](char c) { return c == ' ' || c == '_' || c == '-' || c == '\t'; });
    for (const std::string_view end : {"camera", "cam", "view"}) {
        if (plain.ends_with(end)) plain.resize(plain.size() - end.size());
    }
    for (const CPresetEntry& entry : kPresets) {
        // "top_cam" begins with the preset's short name.
        if (plain != entry.word && plain != entry.name.substr(0, entry.name.find('_'))) continue;
        preset = entry.preset;
        return true;
    }
    return false;
}

std::string_view NameOfPreset(ECameraPreset preset) {
    return EntryOf(preset).name;
}

CViewCamera::CViewCamera() {
    SetPreset(ECameraPreset::Iso);
}

void CViewCamera::SetModel(const CSphere& sphere) {
    m_model.center = IsFinite(sphere.center) ? sphere.center : CVec3{};
    const bool usable = std::isfinite(sphere.radius) && sphere.radius > 0;
    // Smaller than what a float resolves at the centre, it could not be looked at: eye and
    // target would be one.
    m_model.radius = std::max(usable ? sphere.radius : 1.0f, FinestAt(m_model.center));
}

void CViewCamera::SetViewSize(double width, double height) {
    m_width = std::isfinite(width) ? std::max(1.0, width) : 1.0;
    m_height = std::isfinite(height) ? std::max(1.0, height) : 1.0;
}

void CViewCamera::SetPreset(ECameraPreset preset) {
    const CPresetEntry& entry = EntryOf(preset);
    m_kind = EKind::Preset;
    m_name = entry.name;
    m_target = m_model.center;
    m_radius = m_model.radius;
    m_back = entry.back;
    m_up = entry.up;
    m_zoom = 1;
    m_tanX = 0;
    m_tanY = kPresetTanY;
}

void CViewCamera::SetFileCamera(const CPreparedCamera& camera) {
    m_kind = EKind::File;
    m_name = camera.name;
    m_zoom = 1;
    TakeFilePose(camera);
}

void CViewCamera::Follow(const CPreparedCamera& camera) {
    if (m_kind == EKind::File && m_name == camera.name) TakeFilePose(camera);
}

void CViewCamera::TakeFilePose(const CPreparedCamera& camera) {
    const CVec3 eye = IsFinite(camera.position) ? camera.position : m_model.center;
    const CVec3 sight = camera.target - eye;
    const float distance = Length(sight);
    const bool usable = std::isfinite(distance) && distance > 1e-12f;
    const CVec3 forward = usable ? Normalized(sight) : CVec3{0, 1, 0};
    m_back = -forward;
    m_distance = usable ? static_cast<double>(distance) : static_cast<double>(m_model.radius);
    m_target = eye + forward * static_cast<float>(m_distance);

    // lib3ds_matrix_camera: x is right, z up; straight up or down z points to -x. Roll turns the picture
    // about y.
    const CVec3 pole = forward.x != 0 || forward.y != 0 ? CVec3{0, 0, 1} : CVec3{-1, 0, 0};
    const CVec3 right = Normalized(Cross(forward, pole));
    const CVec3 up = Normalized(Cross(right, forward));
    const double roll = std::isfinite(camera.rollDeg) ? static_cast<double>(camera.rollDeg) * kDegree : 0.0;
    m_up = Normalized(up * static_cast<float>(std::cos(roll)) - right * static_cast<float>(std::sin(roll)));

    const double fov =
        std::isfinite(camera.fovDeg) ? std::clamp(static_cast<double>(camera.fovDeg), 0.1, 175.0) : 45.0;
    m_tanX = 0;
    m_tanY = std::tan(fov * kDegree / 2) * 3 / 4;
}

void CViewCamera::Zoom(int step) {
    SetDistance(Distance() * std::exp(std::clamp(step, -4000, 4000) / 200.0));
}

void CViewCamera::SetDistance(double distance) {
    if (!(distance > 0)) return;
    const double now = Distance();
    const double radius = static_cast<double>(m_model.radius);
    const double tanY = TanHalfFovY();
    // A camera of the file may stand beyond the limits: it is not pulled back, only kept from going further.
    const double finest = static_cast<double>(FinestAt(m_target));
    const double nearest =
        std::min(now, std::max(finest, radius * std::max(kSmallestSeen / tanY, kNearestEye)));
    const double farthest = std::max(now, radius * kLargestSeen / tanY);
    m_zoom *= std::clamp(distance, nearest, farthest) / now;
}

bool CViewCamera::Zoom(const C2DRect& rect) {
    if (!IsFiniteRect(rect)) return false;
    C2DRect r = rect.Normalized();
    r = {std::max(r.left, 0.0), std::max(r.top, 0.0), std::min(r.right, m_width),
         std::min(r.bottom, m_height)};
    if (!(r.right - r.left > 0 && r.bottom - r.top > 0)) return false;
    const double magnification = std::min(m_width / (r.right - r.left), m_height / (r.bottom - r.top));
    if (magnification > kMaxBoxZoom) {
        Widen(r.left, r.right, magnification / kMaxBoxZoom);
        Widen(r.top, r.bottom, magnification / kMaxBoxZoom);
    }

    const CFrame axes = FrameOf(m_back, m_up);
    const double tanY = TanHalfFovY();
    const double tanX = tanY * Aspect();
    const auto ray = [&](double x, double y) {  // of length 1 along the old line of sight
        const float a = static_cast<float>((2 * x / m_width - 1) * tanX);
        const float b = static_cast<float>((1 - 2 * y / m_height) * tanY);
        return axes.right * a + axes.up * b - axes.back;
    };
    const CVec3 eye = Eye();
    const CVec3 middle = ray((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    const double distance = Distance() * static_cast<double>(Length(middle));
    // The picture's own up vector: with the scene's, looking aside from steep above would also
    // roll the picture.
    const CFrame turned = FrameOf(-Normalized(middle), axes.up);
    double seenX = 0, seenY = 0;
    for (const CVec3 corner :
         {ray(r.left, r.top), ray(r.right, r.top), ray(r.left, r.bottom), ray(r.right, r.bottom)}) {
        const double depth = -static_cast<double>(Dot(corner, turned.back));
        seenX = std::max(seenX, std::abs(static_cast<double>(Dot(corner, turned.right))) / depth);
        seenY = std::max(seenY, std::abs(static_cast<double>(Dot(corner, turned.up))) / depth);
    }
    m_kind = EKind::Boxed;
    m_back = turned.back;
    m_up = turned.up;
    m_distance = distance;
    m_zoom = 1;
    m_target = eye - turned.back * static_cast<float>(distance);
    m_tanX = seenX;
    m_tanY = std::max(seenY, kMinTanY);
    return true;
}

double CViewCamera::TanHalfFovY() const {
    return std::max(m_tanY, m_tanX / Aspect());
}

float CViewCamera::FovYDeg() const {
    return static_cast<float>(2 * std::atan(TanHalfFovY()) / kDegree);
}

double CViewCamera::FittingDistance() const {
    const double tangent = kPresetTanY * std::min(1.0, Aspect());
    return static_cast<double>(m_radius) * std::sqrt(1 + tangent * tangent) / tangent;
}

CCameraLens CViewCamera::Lens() const {
    const bool fits = m_kind == EKind::Preset;
    return {m_tanX, m_tanY, fits ? static_cast<double>(m_radius) : 0.0, m_zoom, fits ? 0.0 : Distance()};
}

double CViewCamera::Distance() const {
    return m_zoom * (m_kind == EKind::Preset ? FittingDistance() : m_distance);
}

CVec3 CViewCamera::Eye() const {
    return m_target + m_back * static_cast<float>(Distance());
}

CDepthRange CViewCamera::DepthRange(const CSphere& model, std::span<const CSphere> others) const {
    const CVec3 eye = Eye();
    const auto depthOf = [&](CVec3 p) { return Dot(eye - p, m_back); };
    CSphere turning = model;
    if (!(std::isfinite(turning.radius) && ::IsFinite(turning.center))) turning = m_model;
    turning.radius =
        std::max({turning.radius * 1.01f, m_model.radius * 1e-3f}) + Length(turning.center - m_target);
    const float middle = depthOf(m_target);
    CDepthRange range{middle - turning.radius, middle + turning.radius};
    const float modelFar = range.farPlane;
    for (const CSphere& sphere : others) {
        const float depth = depthOf(sphere.center);
        if (!std::isfinite(depth) || !std::isfinite(sphere.radius)) continue;
        range.nearPlane = std::min(range.nearPlane, depth - sphere.radius);
        range.farPlane = std::max(range.farPlane, depth + sphere.radius);
    }
    if (range.farPlane <= 0) return {m_model.radius * 0.01f, m_model.radius};  // all of it lies behind
    const float reference = modelFar > 0 ? modelFar : range.farPlane;
    // Something far off may not cut away the objects that the camera was placed for.
    const float framed =
        std::max(depthOf(m_model.center) - m_model.radius, m_model.radius * kNearestOfFramed);
    range.nearPlane = std::max(range.nearPlane, std::min(reference * kNearOfFar, framed));
    range.farPlane = std::max(range.farPlane, range.nearPlane * 1.001f);
    return range;
}

CMat4 CViewCamera::ViewMatrix() const {
    return MatrixOf(FrameOf(m_back, m_up), Eye());
}

CMat4 CViewCamera::ViewMatrixFrom(CVec3 eye) const {
    return MatrixOf(FrameOf(Normalized(eye - m_target), m_up), eye);
}

CMat4 CViewCamera::ProjectionMatrix(CDepthRange range) const {
    const double tanY = TanHalfFovY();
    const double n = static_cast<double>(range.nearPlane), f = static_cast<double>(range.farPlane);
    CMat4 p;
    p.m = {};
    p.m[0] = static_cast<float>(1 / (tanY * Aspect()));
    p.m[5] = static_cast<float>(1 / tanY);
    p.m[10] = static_cast<float>(-(f + n) / (f - n));
    p.m[11] = -1;
    p.m[14] = static_cast<float>(-2 * f * n / (f - n));
    return p;
}
