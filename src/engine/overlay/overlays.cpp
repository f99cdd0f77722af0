// SPDX-License-Identifier: MIT
#include "engine/overlay/overlays.h"

#include <GL/gl.h>

#include <array>
#include <cmath>

#include "engine/gl/CGlCurrent.h"
#include "engine/overlay/overlay_shapes.h"
#include "model/prepare/CPreparedScene.h"

namespace {

constexpr CVec3 kBoundsColor{0.55f, 0.55f, 0.60f};
constexpr CVec3 kCameraColor{0.25f, 0.55f, 0.95f};
constexpr CVec3 kLightColor{0.95f, 0.80f, 0.20f};
constexpr CVec3 kLightOffColor{0.45f, 0.40f, 0.20f};
constexpr float kSymbolSize = 0.06f;  // of the radius
constexpr float kAxisLength = 0.85f;  // with its letter it stays inside the sphere, which every preset shows
constexpr float kLetterSize = 0.09f;

/** Sets the state for lines in plain colours during its lifetime. */
class CLineState {
  public:
    CLineState() {
        glPushAttrib(GL_ENABLE_BIT | GL_LINE_BIT | GL_CURRENT_BIT | GL_DEPTH_BUFFER_BIT |
                     GL_COLOR_BUFFER_BIT);
        glDisable(GL_LIGHTING);
        glDisable(GL_TEXTURE_2D);
        glDisable(GL_BLEND);
        glDisable(GL_FOG);
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LEQUAL);
        glDepthMask(GL_TRUE);
        glLineWidth(1.5f);
    }
    CLineState(const CLineState&) = delete;
    CLineState& operator=(const CLineState&) = delete;
    ~CLineState() { glPopAttrib(); }
};

void Draw(const overlay_shapes::CLines& lines, CVec3 color) {
    glColor3f(color.x, color.y, color.z);
    glBegin(GL_LINES);
    for (const CVec3& point : lines) glVertex3f(point.x, point.y, point.z);
    glEnd();
}

CSphere SizeOf(const CPreparedScene& scene) {
    CSphere sphere = scene.boundingSphere;
    if (!(sphere.radius > 0) || !std::isfinite(sphere.radius)) sphere.radius = 1;
    if (!IsFinite(sphere.center)) sphere.center = {};
    return sphere;
}

/** The viewer's right and up directions in the coordinates that are being drawn in. */
struct CScreenAxes {
    CVec3 right, up;
};

CScreenAxes ScreenAxes() {
    CMat4 projection, model;
    glGetFloatv(GL_PROJECTION_MATRIX, projection.m.data());
    glGetFloatv(GL_MODELVIEW_MATRIX, model.m.data());
    const CMat4 both = projection * model;
    return {Normalized({both.m[0], both.m[4], both.m[8]}), Normalized({both.m[1], both.m[5], both.m[9]})};
}

void DrawAxes(const CSphere& sphere) {
    const CScreenAxes screen = ScreenAxes();
    const std::array<CVec3, 3> directions{CVec3{1, 0, 0}, CVec3{0, 1, 0}, CVec3{0, 0, 1}};
    const std::array<CVec3, 3> colors{CVec3{0.9f, 0.15f, 0.15f}, CVec3{0.1f, 0.7f, 0.1f},
                                      CVec3{0.2f, 0.35f, 1.0f}};
    for (std::size_t i = 0; i < 3; ++i) {
        const CVec3 end = sphere.center + directions[i] * (sphere.radius * kAxisLength);
        const CVec3 label = end + directions[i] * (sphere.radius * kLetterSize * 0.9f);
        Draw({sphere.center, end}, colors[i]);
        const char letter = static_cast<char>('X' + static_cast<int>(i));
        Draw(overlay_shapes::Letter(letter, label, screen.right, screen.up, sphere.radius * kLetterSize),
             colors[i]);
    }
}

void DrawLights(const CPreparedScene& scene, float size) {
    for (const CPreparedLight& light : scene.lights) {
        if (!IsFinite(light.position)) continue;
        const auto lines = light.spot ? overlay_shapes::Spot(light, size) : overlay_shapes::Omni(light, size);
        Draw(lines, light.off ? kLightOffColor : kLightColor);
    }
}

}  // namespace

void DrawOverlays(const CGlCurrent& /*gl*/, const CPreparedScene& scene, const COverlays& overlays) {
    if (!overlays.Any()) return;
    const CLineState state;
    const CSphere sphere = SizeOf(scene);
    const float size = sphere.radius * kSymbolSize;
    if (overlays.bounds) Draw(overlay_shapes::BoxEdges(scene.bounds), kBoundsColor);
    if (overlays.cameras) {
        for (const CPreparedCamera& camera : scene.cameras)
            Draw(overlay_shapes::Camera(camera, size), kCameraColor);
    }
    if (overlays.lights) DrawLights(scene, size);
    if (overlays.axes) DrawAxes(sphere);
}

std::vector<CSphere> OverlayExtents(const CPreparedScene& scene, const COverlays& overlays) {
    const CSphere sphere = SizeOf(scene);
    const float size = sphere.radius * kSymbolSize;
    std::vector<CSphere> extents;
    const auto addLines = [&](const overlay_shapes::CLines& lines) {
        CBox box;
        for (const CVec3& point : lines) box.Add(point);
        if (!box.IsEmpty()) extents.push_back({box.Center(), Length(box.max - box.min) * 0.5f});
    };
    if (overlays.bounds) addLines(overlay_shapes::BoxEdges(scene.bounds));
    if (overlays.cameras) {
        for (const CPreparedCamera& camera : scene.cameras) addLines(overlay_shapes::Camera(camera, size));
    }
    if (overlays.lights) {
        for (const CPreparedLight& light : scene.lights) {
            addLines(light.spot ? overlay_shapes::Spot(light, size) : overlay_shapes::Omni(light, size));
        }
    }
    if (overlays.axes) extents.push_back({sphere.center, sphere.radius * (kAxisLength + 2 * kLetterSize)});
    return extents;
}
