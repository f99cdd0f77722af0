// SPDX-License-Identifier: MIT
#include "update/update_feed.h"

#include "base/text/ascii_text.h"
#include "base/text/utf8_text.h"
#include "settings/CSettings.h"

std::string UpdateFeed() {
    const std::string own = file_util_ex::ConvertToUTF8(CSettings::Instance().updateFeed);
    const std::string_view trimmed = ascii_text::Trimmed(std::string_view(own));
    return std::string(trimmed.empty() ? std::string_view(ORBIVUE_UPDATE_FEED) : trimmed);
}

bool IsPackaged() {
    return ORBIVUE_PACKAGED != 0;
}
