// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

#include "export/pov/C3ds2Pov.h"

struct CSettings;

/** How the POV-Ray export's options come about from the settings and from what the view shows. */
namespace pov_export_format {

using CColor = std::array<float, 3>;  ///< red, green, blue, 0..1

/** The camera, the textures, and one of the two backgrounds. */
[[nodiscard]] C3ds2Pov::COutFormat Make(const CSettings& settings, const std::string& cameraName,
                                        const CColor& preview, const CColor& model);
/** The rotation as the record has it. x, y, z: the view's rotation angles, degrees. */
void SetAngles(C3ds2Pov::COutFormat& format, const std::string& cameraName, float x, float y, float z);
/** What is seen by somebody who knows no more than the record: its camera, not zoomed, and its angles. */
[[nodiscard]] CSeenView SeenViewOf(const CPreparedScene& scene, const C3ds2Pov::COutFormat& format);
void SetLighting(C3ds2Pov::COutFormat& format, const CSettings& settings);
/** True when the last file is to be written again, and nobody is asked for a name. */
[[nodiscard]] bool TakesLastName(const CSettings& settings);

}  // namespace pov_export_format
