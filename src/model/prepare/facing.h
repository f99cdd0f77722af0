// SPDX-License-Identifier: MIT
#pragma once

#include "model/prepare/CPreparedScene.h"

/** The share of the drawn surface, as seen from far away in a direction, that shows its front: 0 to
 * 1. Two-sided materials show their front to everybody. Large scenes are sampled. A scene without
 * surface gives 1. */
[[nodiscard]] float FrontShare(const CPreparedScene& scene, CVec3 towardsViewer);

/** Shows both sides of everything when one would see next to nothing from the corner that scenes are first
 * seen from (a plane that faces down, a shell seen from inside); a note says so. */
void ShowBothSidesIfTurnedAway(CPreparedScene& scene);
