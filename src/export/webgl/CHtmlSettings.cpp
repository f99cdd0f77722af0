// SPDX-License-Identifier: MIT
#include "export/webgl/CHtmlSettings.h"

#include <array>
#include <utility>

#include "files/file_util_ex.h"
#include "files/std_file_paths.h"

namespace {

constexpr const char* kSection = "html";
constexpr const char* kJavaScript = "javascript";

}  // namespace

CHtmlSettings& CHtmlSettings::Instance() {
    static CHtmlSettings instance;
    return instance;
}

CHtmlSettings::CHtmlSettings() : CHtmlSettings(std_file_paths::GetIniFilePath("html_settings.ini")) {}

CHtmlSettings::CHtmlSettings(std::string path)
    : m_ini(CLocalRegStore::CreateInitFile(true)), m_path(std::move(path)) {
    if (CLocalRegStore::Load(m_ini.get(), file_util_ex::PathFromBytes(m_path))) Read();
}

void CHtmlSettings::Read() {
    const auto read = [this](const char* key, bool& flag) {
        flag = CLocalRegStore::GetBool(m_ini.get(), kSection, key, flag);
    };
    read("minify", m_minify);
    read("combine", m_combine);
    read("browser", m_launchBrowser);
    read("gzip", m_gzip);
    read("download", m_downloadLink);
    read("cameras_bar", m_camerasBar);
    read("mat_double_sided", m_doubleSided);
    m_javaScript = CLocalRegStore::GetString(m_ini.get(), kSection, kJavaScript, m_javaScript);
}

bool CHtmlSettings::Save() {
    constexpr std::size_t kMostScript = 8 << 20;
    if (m_javaScript.size() > kMostScript) return false;
    const std::array<std::pair<const char*, bool>, 7> flags{{{"minify", m_minify},
                                                             {"combine", m_combine},
                                                             {"browser", m_launchBrowser},
                                                             {"gzip", m_gzip},
                                                             {"download", m_downloadLink},
                                                             {"cameras_bar", m_camerasBar},
                                                             {"mat_double_sided", m_doubleSided}}};
    bool written = true;
    for (const auto& [key, flag] : flags)
        written = CLocalRegStore::WriteBool(m_ini.get(), kSection, key, flag) && written;
    written = CLocalRegStore::WriteString(m_ini.get(), kSection, kJavaScript, m_javaScript) && written;
    return CLocalRegStore::Save(m_ini.get(), m_path) && written;
}
