// SPDX-License-Identifier: MIT
#pragma once

#include "base/math/CMatrix.h"

class CPovText;
struct CPreparedScene;

/** True when useFileLights is set and the scene has a light that is switched on. */
[[nodiscard]] bool HasPovLights(const CPreparedScene& scene, bool useFileLights);

/** Writes the lights that are switched on, transformed by `place`. If HasPovLights is false, or they leave the
 * scene in the dark, it writes a white light at Eye, which the text must have declared. */
void WritePovLights(CPovText& text, const CPreparedScene& scene, bool useFileLights, const CMat4& place);
