// SPDX-License-Identifier: MIT
#include "view/CTrackBallMotion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "camera/CSeenView.h"

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

/** In radii: a shorter vector has no reliable direction, because pixels are too coarse. */
constexpr double kNoDirection = 0.0001;

/** The same direction in (-pi, pi]: the short way round. */
double Wrapped(double angle) {
    return std::remainder(angle, kTwoPi);
}

/** Any unit vector at right angles to a unit vector. */
CVec3d Perpendicular(CVec3d v) {
    const bool alongZ = std::abs(v.z) > 0.9;
    return Normalized(Cross(alongZ ? CVec3d{0, 1, 0} : CVec3d{0, 0, 1}, v), kNoDirection);
}

}  // namespace

CTrackBallMotion::CTrackBallMotion(bool overlayEnabled) : m_overlayEnabled(overlayEnabled) {}

void CTrackBallMotion::Reset() {
    *this = CTrackBallMotion(m_overlayEnabled);
}

void CTrackBallMotion::SetBall(float size, CVec3 view, const CViewMatrices& matrices) {
    m_saved = CSavedView(matrices);
    const double radius = 0.5 * static_cast<double>(size);
    m_radius = std::isfinite(radius) && radius > 0 ? radius : 0;
    // With a pivot offset, a scale or an orbit the rays start elsewhere than at the camera's own eye; the
    // matrices know where. A parallel projection has no such point.
    const CVec3d given{view.x, view.y, view.z};
    // In radii of the ball, so that a model of any size turns alike.
    const auto inRadii = [this](CVec3d v) {
        return m_radius > 0 && IsFinite(v) ? v * (1.0 / m_radius) : CVec3d{};
    };
    m_view = inRadii(given);
    m_eye = inRadii(m_saved.Eye().value_or(given));
    m_sight = Normalized(m_eye, kNoDirection);
    m_right = Perpendicular(m_sight);
    m_up = Cross(m_sight, m_right);
}

std::optional<CTrackBallMotion::CGrab> CTrackBallMotion::GrabAt(int x, int y) const {
    const auto point = m_saved.Unproject(x, y, 0);
    if (!point || m_radius <= 0) return std::nullopt;
    const CVec3d toPoint = *point * (1.0 / m_radius) - m_eye;
    const CVec3d ray = toPoint * (1.0 / Length(toPoint));
    if (!IsFinite(ray)) return std::nullopt;

    CGrab grab;
    const double along = Dot(ray, m_eye);
    const double discriminant = along * along - (Dot(m_eye, m_eye) - 1);
    const CVec3d sideways = ray - m_sight * Dot(ray, m_sight);
    const double root = std::sqrt(std::max(0.0, discriminant));
    // From inside the ball the nearer point is behind the eye, so the farther one is taken.
    const double distance = -along - root >= 0 ? -along - root : -along + root;
    grab.missed = !(discriminant > 0) || distance < 0;
    grab.vector = grab.missed ? OutlinePoint(sideways) : Normalized(m_eye + ray * distance, kNoDirection);
    const CVec3d flat = grab.vector - m_sight * Dot(grab.vector, m_sight);
    grab.hasAzimuth = Length(flat) > 1e-6;
    grab.azimuth = std::atan2(Dot(flat, m_up), Dot(flat, m_right));
    return grab;
}

/** The outline of the ball (radius 1 here) is a circle in the plane 1 / |E| before the centre. */
CVec3d CTrackBallMotion::OutlinePoint(CVec3d sideways) const {
    const double plane = 1.0 / Length(m_eye);
    const double radius = std::sqrt(std::max(0.0, 1.0 - plane * plane));
    return Normalized(m_sight * plane + Normalized(sideways, kNoDirection) * radius, kNoDirection);
}

void CTrackBallMotion::StartAt(int x, int y) {
    m_dragStartRotation = m_rotation;
    m_spin = 0;
    const auto grab = GrabAt(x, y);
    m_begin = m_current = grab ? grab->vector : CVec3d{};
    m_missed = m_beganMissed = grab && grab->missed;
    m_azimuth = grab ? grab->azimuth : 0;
}

void CTrackBallMotion::Begin(int x, int y) {
    StartAt(x, y);
    m_orbitAngle = 0;
    m_dragging = true;
}

bool CTrackBallMotion::Drag(int x, int y) {
    const auto grab = m_dragging ? GrabAt(x, y) : std::nullopt;
    if (!grab || m_begin == CVec3d{}) return true;
    m_current = grab->vector;
    m_missed = grab->missed;
    if (m_beganMissed)
        Spin(*grab);
    else
        SetRotation(CRotation::Between(m_begin, m_current) * m_dragStartRotation);
    return m_missed == m_beganMissed;
}

void CTrackBallMotion::Spin(const CGrab& grab) {
    if (!grab.hasAzimuth) return;
    m_spin += Wrapped(grab.azimuth - m_azimuth);
    m_azimuth = grab.azimuth;
    double angle = std::fmod(m_spin, kTwoPi);
    if (angle < 0) angle += kTwoPi;
    SetRotation(CRotation::About(m_sight, angle) * m_dragStartRotation);
    // To see the model spin one way, an eye goes round it the other way.
    m_orbitAngle = -m_spin;
}

void CTrackBallMotion::Release(int x, int y) {
    (void)Drag(x, y);  // whether it could follow no longer matters
    if (!m_dragging) return;
    m_accumulatedOrbitAngle += m_orbitAngle;
    m_orbitAngle = 0;
    m_dragging = false;
    StartAt(x, y);
}

void CTrackBallMotion::Turn(CVec3d axis, double angle) {
    if (!m_dragging) SetRotation(CRotation::About(axis, angle) * m_rotation);
}

void CTrackBallMotion::SetRotation(const CRotation& rotation) {
    m_rotation = rotation;
    m_matrix = rotation.Matrix();
}

void CTrackBallMotion::OrbitEye(std::string_view cameraName, float (&eye)[3]) const {
    if (!(OrbitSum() > 0)) return;
    const CVec3d turned = OrbitedEye(cameraName, OrbitSum(), {eye[0], eye[1], eye[2]});
    eye[0] = static_cast<float>(turned.x);
    eye[1] = static_cast<float>(turned.y);
    eye[2] = static_cast<float>(turned.z);
}
