// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/math/C2DRect.h"
#include "base/math/CMatrix.h"
#include "base/math/CSphere.h"

struct CPreparedCamera;

enum class ECameraPreset { Top, Left, Right, Front, Back, Iso };

/** Distances along the line of sight between which things are drawn; 0 < nearPlane < farPlane. */
struct CDepthRange {
    float nearPlane = 1;
    float farPlane = 2;
};

/** How a camera's field of view and distance depend on the shape of the picture, for exporters that do not
 * know that shape yet. With aspect = width / height, the tangent of half the vertical field of view is
 * max(tanY, tanX / aspect). The eye's distance from the target is `distance` where fittedRadius is 0, else
 * zoom * fittedRadius * sqrt(1 + t * t) / t with t = tanY * min(1, aspect). */
struct CCameraLens {
    double tanX = 0, tanY = 0;
    double fittedRadius = 0;
    double zoom = 1;
    double distance = 0;
};

/** The camera of a view: presets round a bounding sphere, cameras of the file, and zooming. Pure arithmetic.
 *
 * A preset looks at the sphere's centre with a vertical field of view of 45 degrees, from where the whole
 * sphere just fits the narrower side of the view: at radius / sin(half the narrower angle). It keeps fitting
 * when the view is resized; wheel zooms scale that distance, so that they survive a resize in proportion.
 *
 * Its results are finite and its eye and target differ whatever it is given (radius 0, views without area,
 * non-finite numbers). */
class CViewCamera {
  public:
    /** The Iso preset of a unit sphere. */
    CViewCamera();

    /** The sphere that presets are placed round; the camera stays where it is until the next preset. A radius
     * that is 0 or not finite counts as 1. */
    void SetModel(const CSphere& sphere);
    /** Width and height of the view in pixels. */
    void SetViewSize(double width, double height);

    /** Looks from a side of the model. Forgets all zooming. */
    void SetPreset(ECameraPreset preset);
    /** Looks through a camera of the file. Its field of view is the horizontal one of a picture of 4:3, and
     * the vertical one of that picture is used for any shape of view. Roll and the up vector of a camera that
     * looks straight up or down are those of lib3ds_matrix_camera. Forgets all zooming. */
    void SetFileCamera(const CPreparedCamera& camera);
    /** Takes over the pose of the file camera in use after an animation has moved it, and keeps the wheel
     * zoom. Does nothing when another camera is in use, or a zoom box has moved this one. */
    void Follow(const CPreparedCamera& camera);

    /** Moves the eye along the line of sight: away for positive steps, towards the target for negative ones,
     * by a factor of e^(step/200), so that a step and its opposite cancel and the eye never passes the
     * target. What is visible stays between a 2,000th and 40 times the model's radius. */
    void Zoom(int step);
    /** The same, to a distance from the target, which has the limits of Zoom. One that is not above 0 changes
     * nothing. */
    void SetDistance(double distance);
    /** The part of the view inside rect (pixels, any orientation) fills the view: the eye stays, turns to
     * look at the middle of rect and narrows its field of view until just all of rect is seen; the target
     * becomes the point under that middle, at the old target's depth. At most 20-fold at a time: a smaller
     * rect is widened. A rect without area, not finite or outside the view changes nothing: false. */
    [[nodiscard]] bool Zoom(const C2DRect& rect);

    [[nodiscard]] CVec3 Eye() const;
    [[nodiscard]] CVec3 Target() const { return m_target; }
    [[nodiscard]] CVec3 Up() const { return m_up; }
    [[nodiscard]] float FovYDeg() const;
    /** "top_cam", "lft_cam", "rgt_cam", "frt_cam", "bck_cam", "iso_cam", or the file camera's name. */
    [[nodiscard]] const std::string& Name() const { return m_name; }
    /** Radius of the sphere of SetModel, never 0. */
    [[nodiscard]] float ModelRadius() const { return m_model.radius; }
    [[nodiscard]] CVec3 ModelCenter() const { return m_model.center; }
    /** From the eye to the target. */
    [[nodiscard]] double Distance() const;
    /** The tangent of half the vertical field of view. */
    [[nodiscard]] double TanHalfFovY() const;
    [[nodiscard]] double Aspect() const { return m_width / m_height; }
    /** As SetViewSize set it, at least 1. */
    [[nodiscard]] double ViewWidth() const { return m_width; }
    [[nodiscard]] double ViewHeight() const { return m_height; }
    [[nodiscard]] CCameraLens Lens() const;

    /** Near and far planes that enclose the model's sphere closely however it is turned about the target, and
     * that also hold the other spheres. With the eye inside, the near plane lies at a 4,000th of the model's
     * far end, but not behind the front of the sphere of SetModel. */
    [[nodiscard]] CDepthRange DepthRange(const CSphere& model, std::span<const CSphere> others = {}) const;
    /** As gluLookAt and gluPerspective make them. */
    [[nodiscard]] CMat4 ViewMatrix() const;
    /** The same from another eye, towards the same target. */
    [[nodiscard]] CMat4 ViewMatrixFrom(CVec3 eye) const;
    [[nodiscard]] CMat4 ProjectionMatrix(CDepthRange range) const;

  private:
    enum class EKind { Preset, File, Boxed };

    [[nodiscard]] double FittingDistance() const;
    void TakeFilePose(const CPreparedCamera& camera);

    CSphere m_model{{}, 1};
    double m_width = 640, m_height = 480;
    EKind m_kind = EKind::Preset;
    std::string m_name;
    CVec3 m_target;
    CVec3 m_back;  ///< unit vector from the target to the eye
    CVec3 m_up;
    float m_radius = 1;               ///< presets: what fits the view at zoom 1
    double m_distance = 1;            ///< others: from the target to the eye at zoom 1
    double m_zoom = 1;                ///< scales the distance
    double m_tanX = 0, m_tanY = 0.4;  ///< half extents to be seen at distance 1; x is 0 where only y counts
};

/** The preset of a camera name such as "frt_cam", or of a word as people write it: "front", "Front camera", "FRONT-VIEW";
 * false for others. */
[[nodiscard]] bool PresetOfName(std::string_view name, ECameraPreset& preset);
/** "top_cam" and so on. */
[[nodiscard]] std::string_view NameOfPreset(ECameraPreset preset);
