// SPDX-License-Identifier: MIT
#include "export/pov/pov_settings.h"

#include "base/text/lng.h"
#include "settings/CSettings.h"

namespace pov_settings {

CNumberFormat DiffuseFormat() {
    return CNumberFormat::General(3, 0.0, 1.0);
}

CPovSettings ToFields(const CSettings& settings) {
    const CNumberFormat format = DiffuseFormat();
    return {.outputTextures = settings.povOutputTex,
            .useLastName = settings.povUseLastName,
            .radiosity = settings.povRadiosity,
            .previewBackground = settings.povPreviewBack,
            .diffuse = format.Format(static_cast<double>(settings.povDiffuse)),
            .selfDiffuse = format.Format(static_cast<double>(settings.povSelfDiff))};
}

CStatus FromFields(const CPovSettings& fields, CSettings& settings) {
    const std::optional<double> diffuse = DiffuseFormat().Parse(fields.diffuse);
    if (!diffuse) return CError{EErrorCode::BadArgument, lng::Mark("no number in range"), fields.diffuse};
    const std::optional<double> selfDiffuse = DiffuseFormat().Parse(fields.selfDiffuse);
    if (!selfDiffuse)
        return CError{EErrorCode::BadArgument, lng::Mark("no number in range"), fields.selfDiffuse};
    settings.povOutputTex = fields.outputTextures;
    settings.povPreviewBack = fields.previewBackground;
    settings.povUseLastName = fields.useLastName;
    settings.povRadiosity = fields.radiosity;
    settings.povDiffuse = static_cast<float>(*diffuse);
    settings.povSelfDiff = static_cast<float>(*selfDiffuse);
    return CDone();
}

}  // namespace pov_settings
