// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "settings/CIniFile.h"

/** The ini files of the program. One form of each operation works on the default file, the one last loaded by
 * Load(path); the other on a CIniFile that the caller owns. Narrow text is UTF-8.
 *
 * Readers never fail: without file, section or key they return the default given, also when the CIniFile is
 * null. A whole number is the one that the value's text begins with ("12.9" is 12), the nearest that fits
 * when it is out of range; a text that does not begin with one gives the default. A bool is true when its
 * whole number is not 0. For the syntax, and what may stand in names and values, see CIniFile. One thread at
 * a time. */
class CLocalRegStore {
  public:
    CLocalRegStore() = delete;

    // --- the default file -------------------------------------------------------------------------------
    /** False when it could not be read: then the store is empty, and Save() still writes to this path. */
    static bool Load(std::wstring_view path);
    [[nodiscard]] static int GetInt(std::string_view section, std::string_view key, int defaultValue);
    [[nodiscard]] static int GetInt(std::wstring_view section, std::wstring_view key, int defaultValue);
    [[nodiscard]] static std::wstring GetString(std::string_view section, std::string_view key,
                                                std::wstring_view defaultValue);
    [[nodiscard]] static std::wstring GetString(std::wstring_view section, std::wstring_view key,
                                                std::wstring_view defaultValue);
    static bool WriteInt(std::string_view section, std::string_view key, int value);
    static bool WriteInt(std::wstring_view section, std::wstring_view key, int value);
    static bool WriteString(std::string_view section, std::string_view key, std::wstring_view value);
    static bool WriteString(std::wstring_view section, std::wstring_view key, std::wstring_view value);
    /** WriteString for a value that must reach the file. Where another copy of the program has saved another
     * value meanwhile, WriteString replaces it only if this process changed the value too; this function
     * always does. */
    static bool OverwriteString(std::string_view section, std::string_view key, std::wstring_view value);
    /** Reads the file again, to take over what another copy of the program has saved since. Values that this
     * process wrote stay. */
    static void TakeOverOthers();
    /** Replaces the file, keeping what other copies of the program saved meanwhile. False when it could not
     * be replaced (it is then as before) or none was ever loaded. */
    [[nodiscard]] static bool Save();

    // --- a file of the caller's -------------------------------------------------------------------------
    /** A new, empty file, which the caller frees with DestroyIniFile. Text is UTF-8 whatever the
     * argument says. */
    [[nodiscard]] static CIniFile* CreateInitFile(bool isUtf8);
    /** The file's content, or null when it cannot be read; the caller frees it with DestroyIniFile. */
    [[nodiscard]] static CIniFile* LoadIniFile(std::string_view path);
    /** Null is allowed. */
    static void DestroyIniFile(CIniFile* ini);
    /** Replaces the content; empty after a failure. */
    static bool Load(CIniFile* ini, std::wstring_view path);
    [[nodiscard]] static bool Save(const CIniFile* ini, std::wstring_view path);
    [[nodiscard]] static bool Save(const CIniFile* ini, std::string_view path);
    [[nodiscard]] static int GetInt(const CIniFile* ini, std::wstring_view section, std::wstring_view key,
                                    int defaultValue);
    [[nodiscard]] static int GetInt(const CIniFile* ini, std::string_view section, std::string_view key,
                                    int defaultValue);
    [[nodiscard]] static std::wstring GetString(const CIniFile* ini, std::wstring_view section,
                                                std::wstring_view key, std::wstring_view defaultValue);
    [[nodiscard]] static std::string GetString(const CIniFile* ini, std::string_view section,
                                               std::string_view key, std::string_view defaultValue);
    [[nodiscard]] static bool GetBool(const CIniFile* ini, std::string_view section, std::string_view key,
                                      bool defaultValue);
    static bool WriteString(CIniFile* ini, std::wstring_view section, std::wstring_view key,
                            std::wstring_view value);
    static bool WriteString(CIniFile* ini, std::string_view section, std::string_view key,
                            std::string_view value);
    static bool WriteBool(CIniFile* ini, std::string_view section, std::string_view key, bool value);
    /** Fills the list with the names, in the order of the file. */
    static void GetAllSections(const CIniFile* ini, std::vector<std::string>& sections);

    /** For tests: sets the default file aside, leaves none loaded, and puts it back at the end. */
    class CDefaultFileGuard {
      public:
        CDefaultFileGuard();
        CDefaultFileGuard(const CDefaultFileGuard&) = delete;
        CDefaultFileGuard& operator=(const CDefaultFileGuard&) = delete;
        ~CDefaultFileGuard();

      private:
        std::unique_ptr<CIniFile> m_file;
        std::string m_path;
    };
};

/** Owns what CreateInitFile and LoadIniFile give. */
struct CIniFileDeleter {
    void operator()(CIniFile* ini) const { CLocalRegStore::DestroyIniFile(ini); }
};
using CIniFilePtr = std::unique_ptr<CIniFile, CIniFileDeleter>;
