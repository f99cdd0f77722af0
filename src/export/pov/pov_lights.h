// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/CMatrix.h"

class CPovText;
struct CPreparedScene;

/** True where the scene has lights that are switched on and wanted. */
[[nodiscard]] bool HasPovLights(const CPreparedScene& scene, bool useFileLights);

/** Writes the lights that are switched on, for a scene whose points are multiplied with `place`; where there is
 * none, or they are not wanted, one white light at Eye, which must be declared. */
void WritePovLights(CPovText& text, const CPreparedScene& scene, bool useFileLights, const CMat4& place);
