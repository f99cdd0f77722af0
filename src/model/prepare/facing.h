// SPDX-License-Identifier: MIT
#pragma once

#include "model/prepare/CPreparedScene.h"

/** The share of the drawn surface, as seen from far away in a direction, that shows its front: 0 to 1.
 * Two-sided materials always show their front. Large scenes are sampled. A scene without surface gives 1. */
[[nodiscard]] float FrontShare(const CPreparedScene& scene, CVec3 towardsViewer);

/** Makes all materials two-sided when hardly any front would be visible from the corner from which scenes are
 * first shown (a plane that faces down, a shell seen from inside); a note says so. */
void ShowBothSidesIfTurnedAway(CPreparedScene& scene);
