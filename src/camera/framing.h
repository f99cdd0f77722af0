// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/CSphere.h"

struct CPreparedScene;

/** What preset cameras are placed round: the bounding sphere of the model.
 *
 * Where nothing in that sphere is large enough to be seen (spaceships a hundred lengths apart), it is the
 * sphere of the largest object and those round it instead; the rest lies outside the picture until one zooms
 * out. A scene without triangles is framed round its lights and cameras; an empty one has radius 0. */
[[nodiscard]] CSphere FramingSphere(const CPreparedScene& scene);
