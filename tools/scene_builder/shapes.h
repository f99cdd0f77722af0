// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "scene_builder/CShape.h"

/** Ready-made shapes, closed and with their outside outwards, round the z axis or the origin. */
namespace shapes {

/** What a shape of revolution has besides its profile. */
struct CLatheOptions {
    int segments = 48;
    bool textured = false;  ///< u once round, v along the profile
    float creaseDeg = 35;   ///< profile corners sharper than this stay sharp
};

/** Turns a profile of (radius, height) points, from bottom to top along the outside, round the z axis. */
[[nodiscard]] CShape Lathe(std::span<const CVec2> profile, const CLatheOptions& options = {});
[[nodiscard]] CShape Sphere(float radius, int segments = 48, bool textured = false);
/** An upright solid cylinder whose bottom is at z = 0; bevel rounds its edges off. */
[[nodiscard]] CShape Cylinder(float radius, float height, float bevel = 0, int segments = 48);
[[nodiscard]] CShape Torus(float radius, float tubeRadius, int segments = 64, int sides = 24,
                           bool textured = false);
/** A flat ring facing up, u outwards from the inner edge, v once round. */
[[nodiscard]] CShape FlatRing(float innerRadius, float outerRadius, int segments = 96);
/** A box of the given size round the origin; each side has the whole texture. */
[[nodiscard]] CShape Box(CVec3 size);
/** A round tube along a path; closed joins the ends, else they get flat caps. */
[[nodiscard]] CShape Tube(std::span<const CVec3> path, float radius, int sides = 16, bool closed = false);

/** A spoked gear wheel in the xy plane from z = 0 up; a tooth points along +x. */
struct CGear {
    int teeth = 24;
    float radius = 3;  ///< of the pitch circle
    float thickness = 0.5f;
    float toothDepth = 0.4f;
    float rim = 0.5f;  ///< width of the ring below the teeth
    float hubRadius = 0.7f;
    int spokes = 5;
};
[[nodiscard]] CShape Gear(const CGear& gear);

}  // namespace shapes
