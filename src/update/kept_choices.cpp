// SPDX-License-Identifier: MIT
#include "update/kept_choices.h"

#include <string>

#include "base/text/utf8_text.h"
#include "settings/CLocalRegStore.h"
#include "settings/CSettings.h"
#include "update/find_update.h"

namespace {

constexpr const char* kSection = "Settings";
constexpr const char* kLastCheck = "UpdateLastCheck";
constexpr const char* kSkipped = "UpdateSkippedVersion";

/** What another copy of the program may have written meanwhile. */
std::string Kept(const char* key) {
    CLocalRegStore::TakeOverOthers();
    return file_util_ex::ConvertToUTF8(CLocalRegStore::GetString(kSection, key, {}));
}

bool Keep(const char* key, std::wstring& field, const std::string& value) {
    field = file_util_ex::ConvertFromUTF8W(value);
    return CLocalRegStore::OverwriteString(kSection, key, field) && CLocalRegStore::Save();
}

}  // namespace

bool kept_choices::TakeTurn(std::int64_t now) {
    return IsCheckDue(Kept(kLastCheck), now) &&
           Keep(kLastCheck, CSettings::Instance().updateLastCheck, std::to_string(now));
}

bool kept_choices::IsSkipped(const CAppcastItem& item) {
    return ::IsSkipped(item, Kept(kSkipped));
}

void kept_choices::Skip(const CAppcastItem& item) {
    (void)Keep(kSkipped, CSettings::Instance().updateSkipped,
               item.version);  // else it is told again, no more
}
