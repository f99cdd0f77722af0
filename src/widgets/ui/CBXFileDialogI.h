// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

class wxWindow;

/** The save dialog. The folder of each choice is remembered under a named entry: a section of the default ini
 * file (CLocalRegStore) with the key Path. Thread of the windows only. */
class CBXFileDialogI {
  public:
    CBXFileDialogI() = delete;

    /** Selects the entry for the following dialogs and returns the one before. With an empty name, as at
     * first, no folder is remembered. */
    static std::string SetRegEntry(std::string_view name);
    /** Sets the open file: its path, or only its name; empty for none. A dialog without a given or remembered
     * folder starts in the file's folder, and one without a given name proposes the file's name. */
    static void SetDocument(std::wstring path);
    /** Asks for the file to save to and returns its path, empty when cancelled. A name without an extension
     * gets that of the chosen kind of file; the dialog asks before it accepts a file that exists.
     * defaultExtension: "pov", ".pov" or "*.pov". wildcard: "3ds and zip files(*.3ds;*.zip)|*.3ds;*.zip||" or
     * a pattern alone. initialFolder: when empty or missing the remembered one, else the document's, else the
     * user's documents. defaultName: a name, or a path whose name is used. */
    [[nodiscard]] static std::wstring LaunchSaveDialog(wxWindow* parent, std::wstring_view defaultExtension,
                                                       std::wstring_view wildcard, std::wstring_view title,
                                                       std::wstring_view initialFolder,
                                                       std::wstring_view defaultName);
};

/** Selects an entry during its lifetime, then the one before. */
class CRegEntryGuard {
  public:
    explicit CRegEntryGuard(std::string_view name) : m_before(CBXFileDialogI::SetRegEntry(name)) {}
    CRegEntryGuard(const CRegEntryGuard&) = delete;
    CRegEntryGuard& operator=(const CRegEntryGuard&) = delete;
    ~CRegEntryGuard() { CBXFileDialogI::SetRegEntry(m_before); }

  private:
    std::string m_before;
};
