// SPDX-License-Identifier: MIT
#pragma once

#include "model/prepare/CPreparedScene.h"

/** The share of the drawn surface, as seen from far away in a direction, that shows its front: 0 to 1.
 * Two-sided materials always show their front. Large scenes are sampled. A scene without surface gives 1. */
[[nodiscard]] float FrontShare(const CPreparedScene& scene, CVec3 towardsViewer);

/** Makes all materials two-sided when hardly any front would be visible from the corner from which scenes are
 * first shown (a plane that faces down, a shell seen from inside); a note says so. */
void ShowBothSidesIfTurnedAway(CPreparedScene& scene);

/** The share of the drawn surface that is not black: that the file's lights and its ambient light reach, or
 * that shines by itself; 0 to 1. Lights shine through everything, as they do where scenes are drawn. A bounded
 * number of points is looked at. A scene without surface gives 1. */
[[nodiscard]] float LitShare(const CPreparedScene& scene);

/** Has the headlight join where the file's lights leave nearly all of the surface black, as the headlamps of a
 * car do; a note says so. */
void JoinHeadlightIfDark(CPreparedScene& scene);
