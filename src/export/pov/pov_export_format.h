// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

#include "export/pov/C3ds2Pov.h"

struct CSettings;

/** How the POV-Ray export's options come about from the settings and from what the view shows. */
namespace pov_export_format {

using CColor = std::array<float, 3>;   ///< red, green, blue, 0..1
using CAngles = std::array<float, 3>;  ///< about X, Y and Z, degrees

/** The camera, the textures, and one of the two backgrounds. */
[[nodiscard]] C3ds2Pov::COutFormat Make(const CSettings& settings, const std::string& cameraName,
                                        const CColor& preview, const CColor& model);
/** The angles, in degrees, of one rotation that turns as the engine's angles do and then as the trackball
 * did, whose matrix stands column by column: what the user sees. RotationOfAngles says what angles mean. As
 * long as the trackball was not used they are the engine's own. */
[[nodiscard]] CAngles WithTrackBall(const CAngles& engine, const std::array<float, 16>& trackBall);
/** The rotation as the exporter wants it. x, y, z: the view's rotation angles, degrees. */
void SetAngles(C3ds2Pov::COutFormat& format, const std::string& cameraName, float x, float y, float z);
void SetLighting(C3ds2Pov::COutFormat& format, const CSettings& settings);
/** True when the last file is to be written again, and nobody is asked for a name. */
[[nodiscard]] bool TakesLastName(const CSettings& settings);

}  // namespace pov_export_format
