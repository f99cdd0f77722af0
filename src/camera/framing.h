// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "base/math/CSphere.h"

struct CPreparedScene;
class CViewCamera;

/** What preset cameras are placed round: the bounding sphere of the model.
 *
 * Where nothing in that sphere is large enough to be seen (spaceships a hundred lengths apart), it is the
 * sphere of the largest object and those round it instead; the rest lies outside the picture until one zooms
 * out. A scene without triangles is framed round its lights and cameras; an empty one has radius 0. */
[[nodiscard]] CSphere FramingSphere(const CPreparedScene& scene);

/** Looks through the camera of that name: a preset's own name ("top_cam"), or a camera of the file; for any other name
 * through the Iso preset. Its model must be set. */
void ChooseCamera(CViewCamera& camera, const CPreparedScene& scene, std::string_view name);
