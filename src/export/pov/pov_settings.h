// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"
#include "base/text/CNumberFormat.h"

struct CSettings;

/** The fields of the window with the options of the POV-Ray export. */
struct CPovSettings {
    bool outputTextures = true;
    bool useLastName = false;
    bool radiosity = false;
    bool previewBackground = false;  ///< else the model's own
    std::string diffuse;             ///< as typed, UTF-8
    std::string selfDiffuse;

    bool operator==(const CPovSettings&) const = default;
};

namespace pov_settings {

/** The format of the two diffuse fields: 0..1 with three decimals. */
[[nodiscard]] CNumberFormat DiffuseFormat();
[[nodiscard]] CPovSettings ToFields(const CSettings& settings);
/** Puts the fields into the settings. Fails and changes nothing if a number is wrong. */
[[nodiscard]] CStatus FromFields(const CPovSettings& fields, CSettings& settings);

}  // namespace pov_settings
