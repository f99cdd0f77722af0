// SPDX-License-Identifier: MIT
#include "settings/CSettings.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <limits>
#include <variant>

#include "base/text/number_text.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "settings/CLocalRegStore.h"

namespace {

constexpr const char* kSection = "Settings";
constexpr const char* kFileName = "settings.ini";

using CField = std::variant<bool CSettings::*, std::int32_t CSettings::*, std::uint8_t CSettings::*,
                            float CSettings::*, std::wstring CSettings::*>;

// What a field becomes when its key is missing.
enum class EMissing { Keeps, BuiltIn };

struct CEntry {
    const char* key;
    CField field;
    EMissing missing = EMissing::Keeps;
};

// In the order in which they are read and written.
constexpr std::array kEntries = {
    CEntry{"Language", &CSettings::language},
    CEntry{"Rotate", &CSettings::rotate},
    CEntry{"Bounds", &CSettings::showBounds},
    CEntry{"Cameras", &CSettings::showCameras},
    CEntry{"Lights", &CSettings::showLights},
    CEntry{"Axis", &CSettings::showAxis},
    CEntry{"LastCamera", &CSettings::lastCamera, EMissing::BuiltIn},
    CEntry{"ShowToolBar", &CSettings::showToolBar},
    CEntry{"ShowModelList", &CSettings::showModelList},
    CEntry{"Wire", &CSettings::wireFrame},
    CEntry{"BkColorR", &CSettings::bkColorR, EMissing::BuiltIn},
    CEntry{"BkColorG", &CSettings::bkColorG, EMissing::BuiltIn},
    CEntry{"BkColorB", &CSettings::bkColorB, EMissing::BuiltIn},
    CEntry{"PovOutputTex", &CSettings::povOutputTex},
    CEntry{"PovPreviewBack", &CSettings::povPreviewBack},
    CEntry{"PovUseLastName", &CSettings::povUseLastName},
    CEntry{"PovRadiosity", &CSettings::povRadiosity},
    CEntry{"PovLastName", &CSettings::povLastName},
    CEntry{"PovDiffuse", &CSettings::povDiffuse, EMissing::BuiltIn},
    CEntry{"PovSelfDiff", &CSettings::povSelfDiff, EMissing::BuiltIn},
    CEntry{"AutoUpdate", &CSettings::autoUpdate},
    CEntry{"CloseOnEsc", &CSettings::closeOnEsc},
    CEntry{"ShowMaterialBar", &CSettings::showMaterialBar},
    CEntry{"SlideShowTime", &CSettings::slideShowTime},
    CEntry{"ModelServer", &CSettings::modelServer},
    CEntry{"ModelServerToken", &CSettings::modelServerToken},
    CEntry{"UpdateFeed", &CSettings::updateFeed},
    CEntry{"UpdateLastCheck", &CSettings::updateLastCheck},
    CEntry{"UpdateSkippedVersion", &CSettings::updateSkipped},
};

/** The file holds a secret: nobody else reads it. */
void KeepPrivate() {
    const std::string path = std_file_paths::GetIniFilePath(kFileName);
    struct stat state {};
    if (::stat(path.c_str(), &state) == 0 && (state.st_mode & 077U) != 0)
        (void)::chmod(path.c_str(), state.st_mode & 0700U);  // the folder is the user's own, too
}

bool ReadValue(const char* key, bool missing) {
    return CLocalRegStore::GetInt(kSection, key, missing ? 1 : 0) != 0;
}

std::int32_t ReadValue(const char* key, std::int32_t missing) {
    return CLocalRegStore::GetInt(kSection, key, missing);
}

std::uint8_t ReadValue(const char* key, std::uint8_t missing) {
    return static_cast<std::uint8_t>(static_cast<unsigned>(CLocalRegStore::GetInt(kSection, key, missing)) &
                                     0xFFU);
}

float ReadValue(const char* key, float missing) {
    const std::string defaultText = number_text::FormatShortest(missing);
    const std::wstring text =
        CLocalRegStore::GetString(kSection, key, file_util_ex::ConvertFromUTF8W(defaultText));
    const double value = number_text::ParseLeading(file_util_ex::ConvertToUTF8(text)).value_or(0.0);
    constexpr double kMax = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -kMax, kMax));
}

std::wstring ReadValue(const char* key, const std::wstring& missing) {
    return CLocalRegStore::GetString(kSection, key, missing);
}

bool WriteValue(const char* key, bool value) {
    return CLocalRegStore::WriteInt(kSection, key, value ? 1 : 0);
}
bool WriteValue(const char* key, std::int32_t value) {
    return CLocalRegStore::WriteInt(kSection, key, value);
}
bool WriteValue(const char* key, std::uint8_t value) {
    return CLocalRegStore::WriteInt(kSection, key, value);
}

bool WriteValue(const char* key, float value) {
    const std::string text = number_text::FormatFixed(static_cast<double>(value), 3);
    return CLocalRegStore::WriteString(kSection, key, file_util_ex::ConvertFromUTF8W(text));
}

bool WriteValue(const char* key, const std::wstring& value) {
    return CLocalRegStore::WriteString(kSection, key, value);
}

}  // namespace

CSettings& CSettings::Instance() {
    static CSettings instance;
    return instance;
}

bool CSettings::LoadFile() {
    const bool loaded =
        CLocalRegStore::Load(file_util_ex::PathFromBytes(std_file_paths::GetIniFilePath(kFileName)));
    if (!CLocalRegStore::GetString(kSection, "ModelServerToken", {}).empty()) KeepPrivate();
    return loaded;
}

void CSettings::ReadAll() {
    const CSettings builtIn;
    for (const CEntry& entry : kEntries) {
        const CSettings& missing = entry.missing == EMissing::BuiltIn ? builtIn : *this;
        std::visit([&](auto field) { this->*field = ReadValue(entry.key, missing.*field); }, entry.field);
    }
}

bool CSettings::WriteAll() const {
    bool written = true;
    for (const CEntry& entry : kEntries) {
        written = std::visit([&](auto field) { return WriteValue(entry.key, this->*field); }, entry.field) &&
                  written;
    }
    written = CLocalRegStore::Save() && written;
    if (!modelServerToken.empty()) KeepPrivate();
    return written;
}
