// SPDX-License-Identifier: MIT
#include "programs/orbivue/convert.h"

#include "export/pov/C3ds2Pov.h"
#include "settings/CSettings.h"

bool ConvertToPov(const std::wstring& input, const std::wstring& output) {
    if (input.empty() || output.empty()) return false;
    const CSettings& settings = CSettings::Instance();
    C3ds2Pov::COutFormat format;
    format.radiosity = settings.povRadiosity;
    format.diffuse = settings.povDiffuse;
    format.selfDiffuse = settings.povSelfDiff;
    return C3ds2Pov::Export(input, output, format, nullptr);
}
