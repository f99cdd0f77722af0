// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "picture/CImage.h"

/** The pictures of the sample scenes, computed. Maps of spheres join at their left and right edges. */
namespace pictures {

[[nodiscard]] CImage Sun();
[[nodiscard]] CImage RockyPlanet(std::uint32_t seed, float red, float green, float blue, float contrast);
[[nodiscard]] CImage BluePlanet();
[[nodiscard]] CImage BandedPlanet(std::uint32_t seed, bool pale);
/** Across the ring from its inner to its outer edge: colour, and how opaque it is. */
[[nodiscard]] CImage RingColor();
[[nodiscard]] CImage RingOpacity();
/** A clock face with a scale and Roman numerals, gold on dark blue enamel. */
[[nodiscard]] CImage Dial();
[[nodiscard]] CImage TurnedWood();
/** A round table seen from above, darker in the middle where something stands on it. */
[[nodiscard]] CImage TableTop();
/** What a shiny thing reflects: a bright window, a warm room. Mapped by direction, the
 * middle facing the eye. */
[[nodiscard]] CImage Room();

[[nodiscard]] CImage Checker(int squares);
[[nodiscard]] CImage Bricks();
/** The height of those bricks, for a bump map. */
[[nodiscard]] CImage BrickHeights();
/** White leaves on black, for an opacity map. */
[[nodiscard]] CImage Lattice();
/** Letters-free test card whose corners differ in colour, so that a turned or mirrored map is seen. */
[[nodiscard]] CImage Corners();
[[nodiscard]] CImage Marble(bool dark);

}  // namespace pictures
