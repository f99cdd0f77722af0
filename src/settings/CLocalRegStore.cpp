// SPDX-License-Identifier: MIT
#include "settings/CLocalRegStore.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "base/text/number_text.h"
#include "files/CFileDescriptor.h"
#include "files/file_util_ex.h"

using file_util_ex::ConvertToUTF8;
using file_util_ex::PathFromBytes;

namespace {

struct CChange {
    std::string section, key, value;
};

struct CDefaultFile {
    std::unique_ptr<CIniFile> file = std::make_unique<CIniFile>();
    std::unique_ptr<CIniFile> base = std::make_unique<CIniFile>();  ///< as this process loaded or saved it
    std::string path;
    std::vector<CChange>
        changes;  ///< in the order in which the keys were first set: new ones get it in the file
};

CDefaultFile& Default() {
    static CDefaultFile instance;
    return instance;
}

CIniFile* DefaultIni() {
    return Default().file.get();
}

/** Null for a key that this process has not changed. */
CChange* ChangeOf(std::string_view section, std::string_view key) {
    const auto found = std::ranges::find_if(Default().changes, [&](const CChange& change) {
        return change.section == section && change.key == key;
    });
    return found == Default().changes.end() ? nullptr : &*found;
}

/** Sets a value and records it as changed by this process. */
bool Change(std::string_view section, std::string_view key, const std::string& value) {
    if (!DefaultIni()->Set(section, key, value)) return false;
    if (CChange* change = ChangeOf(section, key))
        change->value = value;
    else
        Default().changes.push_back({std::string(section), std::string(key), value});
    return true;
}

/** The same, unless the file had that value already. */
bool SetDefault(std::string_view section, std::string_view key, const std::string& value) {
    const bool isKnown = !ChangeOf(section, key) && Default().base->Get(section, key) == value;
    return isKnown || Change(section, key, value);
}

/** Lets one process at a time read, change and replace files of a folder, as long as it lives. */
class CFolderLock {
  public:
    explicit CFolderLock(const std::string& folder)
        : m_folder(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (m_folder.IsOpen()) (void)flock(m_folder.Get(), LOCK_EX);  // without it only a rare race is left
    }

  private:
    CFileDescriptor m_folder;
};

std::optional<std::string> ValueOf(const CIniFile* ini, std::string_view section, std::string_view key) {
    return ini != nullptr ? ini->Get(section, key) : std::nullopt;
}

}  // namespace

bool CLocalRegStore::Load(std::wstring_view path) {
    Default().path = ConvertToUTF8(path);
    Default().changes.clear();
    (void)Default().base->Load(Default().path);  // fails as the next line does
    return DefaultIni()->Load(Default().path).HasValue();
}

void CLocalRegStore::TakeOverOthers() {
    auto newest = std::make_unique<CIniFile>();
    if (!newest->Load(Default().path)) return;
    for (const CChange& change : Default().changes)
        (void)newest->Set(change.section, change.key, change.value);
    Default().file = std::move(newest);
}

bool CLocalRegStore::Save() {
    const std::string& path = Default().path;
    if (path.empty()) return false;
    const std::string folder = file_util_ex::GetFilePath(path);
    (void)file_util_ex::MkdirPrivate(folder);  // a failure shows when the file is written
    const CFolderLock lock(folder);
    TakeOverOthers();
    if (!DefaultIni()->Save(path)) return false;
    Default().changes.clear();
    (void)Default().base->Load(path);  // it was written just now
    return true;
}

int CLocalRegStore::GetInt(std::string_view section, std::string_view key, int defaultValue) {
    return GetInt(DefaultIni(), section, key, defaultValue);
}

int CLocalRegStore::GetInt(std::wstring_view section, std::wstring_view key, int defaultValue) {
    return GetInt(DefaultIni(), section, key, defaultValue);
}

std::wstring CLocalRegStore::GetString(std::string_view section, std::string_view key,
                                       std::wstring_view defaultValue) {
    const std::optional<std::string> value = ValueOf(DefaultIni(), section, key);
    return value ? PathFromBytes(*value) : std::wstring(defaultValue);
}

std::wstring CLocalRegStore::GetString(std::wstring_view section, std::wstring_view key,
                                       std::wstring_view defaultValue) {
    return GetString(DefaultIni(), section, key, defaultValue);
}

bool CLocalRegStore::WriteInt(std::string_view section, std::string_view key, int value) {
    return SetDefault(section, key, std::to_string(value));
}

bool CLocalRegStore::WriteInt(std::wstring_view section, std::wstring_view key, int value) {
    return WriteInt(ConvertToUTF8(section), ConvertToUTF8(key), value);
}

bool CLocalRegStore::WriteString(std::string_view section, std::string_view key, std::wstring_view value) {
    return SetDefault(section, key, ConvertToUTF8(value));
}

bool CLocalRegStore::OverwriteString(std::string_view section, std::string_view key,
                                     std::wstring_view value) {
    return Change(section, key, ConvertToUTF8(value));
}

bool CLocalRegStore::WriteString(std::wstring_view section, std::wstring_view key, std::wstring_view value) {
    return WriteString(ConvertToUTF8(section), ConvertToUTF8(key), value);
}

CIniFile* CLocalRegStore::CreateInitFile(bool /*isUtf8*/) {
    return std::make_unique<CIniFile>().release();
}

CIniFile* CLocalRegStore::LoadIniFile(std::string_view path) {
    auto ini = std::make_unique<CIniFile>();
    return ini->Load(path) ? ini.release() : nullptr;
}

void CLocalRegStore::DestroyIniFile(CIniFile* ini) {
    const std::unique_ptr<CIniFile> owned(ini);
}

bool CLocalRegStore::Load(CIniFile* ini, std::wstring_view path) {
    return ini != nullptr && ini->Load(ConvertToUTF8(path)).HasValue();
}

bool CLocalRegStore::Save(const CIniFile* ini, std::wstring_view path) {
    return Save(ini, ConvertToUTF8(path));
}

bool CLocalRegStore::Save(const CIniFile* ini, std::string_view path) {
    return ini != nullptr && ini->Save(path).HasValue();
}

int CLocalRegStore::GetInt(const CIniFile* ini, std::wstring_view section, std::wstring_view key,
                           int defaultValue) {
    return GetInt(ini, ConvertToUTF8(section), ConvertToUTF8(key), defaultValue);
}

int CLocalRegStore::GetInt(const CIniFile* ini, std::string_view section, std::string_view key,
                           int defaultValue) {
    const std::optional<std::string> value = ValueOf(ini, section, key);
    return value ? number_text::ParseLeadingInt(*value).value_or(defaultValue) : defaultValue;
}

std::wstring CLocalRegStore::GetString(const CIniFile* ini, std::wstring_view section, std::wstring_view key,
                                       std::wstring_view defaultValue) {
    const std::optional<std::string> value = ValueOf(ini, ConvertToUTF8(section), ConvertToUTF8(key));
    return value ? PathFromBytes(*value) : std::wstring(defaultValue);
}

std::string CLocalRegStore::GetString(const CIniFile* ini, std::string_view section, std::string_view key,
                                      std::string_view defaultValue) {
    return ValueOf(ini, section, key).value_or(std::string(defaultValue));
}

bool CLocalRegStore::GetBool(const CIniFile* ini, std::string_view section, std::string_view key,
                             bool defaultValue) {
    return GetInt(ini, section, key, defaultValue ? 1 : 0) != 0;
}

bool CLocalRegStore::WriteString(CIniFile* ini, std::wstring_view section, std::wstring_view key,
                                 std::wstring_view value) {
    return WriteString(ini, ConvertToUTF8(section), ConvertToUTF8(key), ConvertToUTF8(value));
}

bool CLocalRegStore::WriteString(CIniFile* ini, std::string_view section, std::string_view key,
                                 std::string_view value) {
    return ini != nullptr && ini->Set(section, key, value);
}

bool CLocalRegStore::WriteBool(CIniFile* ini, std::string_view section, std::string_view key, bool value) {
    return WriteString(ini, section, key, value ? "1" : "0");
}

void CLocalRegStore::GetAllSections(const CIniFile* ini, std::vector<std::string>& sections) {
    sections = ini != nullptr ? ini->Sections() : std::vector<std::string>();
}

CLocalRegStore::CDefaultFileGuard::CDefaultFileGuard()
    : m_file(std::exchange(Default().file, std::make_unique<CIniFile>())),
      m_path(std::exchange(Default().path, {})) {
    Default().base = std::make_unique<CIniFile>();
    Default().changes.clear();
}

CLocalRegStore::CDefaultFileGuard::~CDefaultFileGuard() {
    Default().file = std::move(m_file);
    Default().path = std::move(m_path);
    Default().base = std::make_unique<CIniFile>();
    Default().changes.clear();
}
