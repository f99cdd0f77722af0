// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "base/math/CRotation.h"
#include "base/math/CVec.h"
#include "camera/CSavedView.h"

/** The mathematics of the trackball: turns mouse drags into a rotation of the model about its centre.
 *
 * A drag that begins on the ball (as large as the model's bounding sphere) keeps the grabbed point under the
 * mouse. A drag that begins beside it spins the model about the line of sight, and counts the spin as orbit
 * angle. When the mouse crosses the ball's outline the drag ends there (Drag returns false) and the caller
 * begins a new one.
 *
 * Coordinates are those of the model-view matrix that SetBall was given, which is centred on the ball. Angles
 * are in radians. Whatever the matrices, the rotation stays a rotation of finite numbers. */
class CTrackBallMotion {
  public:
    explicit CTrackBallMotion(bool overlayEnabled);

    /** Returns to the state after construction: no rotation, no orbit, no drag. */
    void Reset();
    /** size: twice the model's radius. view: the vector from the ball's centre to the eye, for drawing the
     * overlay. Rays through window points start at the eye of the matrices, which differs from view when a
     * pivot offset, a scale or an orbit moved it. For a parallel projection, whose matrices have no eye, they
     * start at view. */
    void SetBall(float size, CVec3 view, const CViewMatrices& matrices);
    /** Starts a drag at a window point whose y counts upwards. */
    void Begin(int x, int y);
    /** Follows the mouse. False when the mouse crossed the outline, which ends the drag. */
    [[nodiscard]] bool Drag(int x, int y);
    /** Follows the mouse once more, ends the drag and adds its orbit angle to those before. */
    void Release(int x, int y);

    /** Turns the model about a unit axis (of the coordinates of SetBall) by radians. Does nothing during
     * a drag. */
    void Turn(CVec3d axis, double angle);

    /** Turns a vector from the look-at point to the eye by the sum of all orbit angles; see OrbitedEye. */
    void OrbitEye(std::string_view cameraName, float (&eye)[3]) const;

    [[nodiscard]] const CRotation& Rotation() const { return m_rotation; }
    /** The same column by column, as glMultMatrixf takes it. */
    [[nodiscard]] const std::array<float, 16>& Matrix() const { return m_matrix.m; }
    [[nodiscard]] bool IsDragging() const { return m_dragging; }
    /** The mouse is beside the ball. */
    [[nodiscard]] bool IsMissed() const { return m_missed; }
    [[nodiscard]] double OrbitAngle() const { return m_orbitAngle; }
    [[nodiscard]] double AccumulatedOrbitAngle() const { return m_accumulatedOrbitAngle; }
    [[nodiscard]] double OrbitSum() const { return m_accumulatedOrbitAngle + m_orbitAngle; }
    [[nodiscard]] bool IsOverlayEnabled() const { return m_overlayEnabled; }

  protected:
    /** Radius of the ball, half of the size that it was given. */
    [[nodiscard]] double Radius() const { return m_radius; }
    /** The vector that SetBall was given, in radii of the ball. */
    [[nodiscard]] CVec3d View() const { return m_view; }
    /** Unit vectors from the centre to the grabbed point and to the point under the mouse. */
    [[nodiscard]] CVec3d BeginVector() const { return m_begin; }
    [[nodiscard]] CVec3d CurrentVector() const { return m_current; }

  private:
    /** Where the ray through a window point meets the ball, or passes it. */
    struct CGrab {
        CVec3d vector;       ///< unit, from the centre to the point on the ball or on its outline
        double azimuth = 0;  ///< about the line of sight, counter-clockwise as the eye sees it
        bool missed = false;
        bool hasAzimuth = false;  ///< false where the ray runs along the line of sight
    };
    [[nodiscard]] std::optional<CGrab> GrabAt(int x, int y) const;
    [[nodiscard]] CVec3d OutlinePoint(CVec3d sideways) const;
    void StartAt(int x, int y);
    void Spin(const CGrab& grab);
    void SetRotation(const CRotation& rotation);

    bool m_overlayEnabled;
    CRotation m_rotation;
    CRotation m_dragStartRotation;
    CMat4 m_matrix;

    double m_radius = 0;
    CVec3d m_view;         ///< as given, in radii
    CVec3d m_eye;          ///< where the rays start, in radii
    CVec3d m_sight;        ///< unit vector towards the eye
    CVec3d m_right, m_up;  ///< with m_sight right-handed axes, from which azimuths are measured
    CSavedView m_saved;

    CVec3d m_begin, m_current;
    double m_azimuth = 0;
    double m_spin = 0;  ///< of the drag under way, any number of turns
    bool m_beganMissed = false;
    bool m_missed = false;
    bool m_dragging = false;
    double m_orbitAngle = 0;
    double m_accumulatedOrbitAngle = 0;
};
