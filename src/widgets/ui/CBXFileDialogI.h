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

    /** Selects the entry for the dialogs from now on and returns the one before. Empty, as at first: none,
     * and no folder is remembered. */
    static std::string SetRegEntry(std::string_view name);
    /** The file that is open (its path, or only its name; empty for none): a dialog that is given no folder and
     * remembers none stands in its folder, and one that is given no name proposes its name. */
    static void SetDocument(std::wstring path);
    /** Asks for the file to save to. The path chosen, or empty when cancelled. A name without an extension
     * gets that of the chosen kind of file; a file that exists is replaced only after a question.
     * defaultExtension: "pov", ".pov" or "*.pov". wildcard: "3ds and zip files(*.3ds;*.zip)|*.3ds;*.zip||" or
     * a pattern alone. initialFolder: when empty or missing the remembered one, else the document's, else
     * the user's documents. defaultName: a name or a path, of which the name counts. */
    [[nodiscard]] static std::wstring LaunchSaveDialog(wxWindow* parent, std::wstring_view defaultExtension,
                                                       std::wstring_view wildcard, std::wstring_view title,
                                                       std::wstring_view initialFolder,
                                                       std::wstring_view defaultName);
};

/** Selects a remembered-folder entry as long as it lives. */
class CRegEntryGuard {
  public:
    explicit CRegEntryGuard(std::string_view name) : m_before(CBXFileDialogI::SetRegEntry(name)) {}
    CRegEntryGuard(const CRegEntryGuard&) = delete;
    CRegEntryGuard& operator=(const CRegEntryGuard&) = delete;
    ~CRegEntryGuard() { CBXFileDialogI::SetRegEntry(m_before); }

  private:
    std::string m_before;
};
