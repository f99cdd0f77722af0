// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

#include "export/pov/C3ds2Pov.h"

struct CSettings;

/** Makes the options of the POV-Ray export from the settings and the view. */
namespace pov_export_format {

using CColor = std::array<float, 3>;  ///< red, green, blue, 0..1

/** The options for a camera, with the settings' texture options and the background that they select: preview
 * is the view's, model the file's. */
[[nodiscard]] C3ds2Pov::COutFormat Make(const CSettings& settings, const std::string& cameraName,
                                        const CColor& preview, const CColor& model);
/** Sets format's angles from the view's rotation angles x, y, z in degrees. */
void SetAngles(C3ds2Pov::COutFormat& format, const std::string& cameraName, float x, float y, float z);
/** The seen view that format alone describes: its camera, not zoomed, and its angles. */
[[nodiscard]] CSeenView SeenViewOf(const CPreparedScene& scene, const C3ds2Pov::COutFormat& format);
void SetLighting(C3ds2Pov::COutFormat& format, const CSettings& settings);
/** True when the export overwrites the last file without asking for a name. */
[[nodiscard]] bool TakesLastName(const CSettings& settings);

}  // namespace pov_export_format
