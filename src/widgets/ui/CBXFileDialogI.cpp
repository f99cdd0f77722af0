// SPDX-License-Identifier: MIT
#include "widgets/ui/CBXFileDialogI.h"

#include <wx/filedlg.h>
#include <wx/stdpaths.h>

#include <utility>
#include <vector>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "settings/CLocalRegStore.h"
#include "widgets/CUserPrompt.h"
#include "widgets/file_dialog_text.h"
#include "widgets/ui/file_chooser.h"

using file_util_ex::ConvertToUTF8;
using file_util_ex::PathFromBytes;
using file_util_ex::ShownText;

namespace {

constexpr char kPathKey[] = "Path";

std::string& RegEntry() {
    static std::string entry;
    return entry;
}

std::wstring& Document() {
    static std::wstring path;
    return path;
}

/** A folder that exists: without one the dialog would start in the program's current folder. */
std::string StartFolder(std::wstring_view initialFolder) {
    const std::wstring remembered =
        RegEntry().empty() ? std::wstring() : CLocalRegStore::GetString(RegEntry(), kPathKey, L"");
    for (const std::wstring& folder :
         {std::wstring(initialFolder), remembered, file_util_ex::GetFilePath(Document()),
          wxStandardPaths::Get().GetDocumentsDir().ToStdWstring()})
        if (file_util_ex::DoesFolderExist(folder)) return ConvertToUTF8(folder);
    return "/";
}

std::wstring StartName(std::wstring_view defaultName, std::wstring_view defaultExtension) {
    if (!defaultName.empty()) return file_util_ex::GetFileName(defaultName);
    const std::wstring name = file_util_ex::GetFileName(Document());
    return name.empty() ? name
                        : file_util_ex::SetFileExt(name, file_dialog_text::ExtensionOf(defaultExtension));
}

void RememberFolder(std::wstring_view path) {
    if (!RegEntry().empty())
        CLocalRegStore::WriteString(RegEntry(), kPathKey, std::wstring_view(file_util_ex::GetFilePath(path)));
}

bool MayWrite(const std::wstring& path) {
    if (!file_util_ex::DoesFileExist(path)) return true;
    return CUserPrompt::Instance().AskYesNo(
        lng::Text("The file %s exists already. Do you want to replace it?", file_util_ex::GetFileName(path)));
}

}  // namespace

std::string CBXFileDialogI::SetRegEntry(std::string_view name) {
    return std::exchange(RegEntry(), std::string(name));
}

void CBXFileDialogI::SetDocument(std::wstring path) {
    Document() = std::move(path);
}

std::wstring CBXFileDialogI::LaunchSaveDialog(wxWindow* parent, std::wstring_view defaultExtension,
                                              std::wstring_view wildcard, std::wstring_view title,
                                              std::wstring_view initialFolder,
                                              std::wstring_view defaultName) {
    const std::vector<file_dialog_text::CFilter> filters = file_dialog_text::ParseWildcard(wildcard);
    wxFileDialog dialog(parent, std::wstring(title), wxString(), wxString(), wxString("*"), wxFD_SAVE);
    file_chooser::SetFilters(dialog, filters);
    file_chooser::FollowFilter(dialog, filters);
    file_chooser::SetFolder(dialog, StartFolder(initialFolder));
    file_chooser::SetName(dialog, ConvertToUTF8(ShownText(StartName(defaultName, defaultExtension))));

    // Asked while the dialog is open, so that No leads back to it. The desktop's own question would name the
    // file before the extension is added.
    std::wstring path;
    dialog.Bind(
        wxEVT_BUTTON,
        [&](wxCommandEvent& event) {
            path = file_dialog_text::AddExtension(
                PathFromBytes(file_chooser::ChosenPath(dialog)),
                file_dialog_text::ExtensionFor(filters, dialog.GetFilterIndex(), defaultExtension));
            event.Skip(MayWrite(path));
        },
        wxID_OK);
    if (dialog.ShowModal() != wxID_OK || path.empty()) return {};
    RememberFolder(path);
    return path;
}
