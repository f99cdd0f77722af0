// SPDX-License-Identifier: MIT
#include <wx/choicdlg.h>
#include <wx/frame.h>
#include <wx/listbox.h>
#include <wx/sizer.h>

#include <algorithm>
#include <vector>

#include "base/text/lng.h"
#include "files/std_file_paths.h"
#include "frame/dialogs/ui/dialog_buttons.h"
#include "frame/dialogs/ui/frame_dialogs.h"
#include "settings/CSettings.h"
#include "settings/choose_language.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/accessible_name.h"

namespace {

/** The toolkit's dialog with a list of the size wanted, and buttons in the program's language. */
class CLanguageDlg final : public wxSingleChoiceDialog {
  public:
    CLanguageDlg(wxWindow* parent, const wxArrayString& names)
        : wxSingleChoiceDialog(parent, lng::Text("Select your prefered language"),
                               lng::Text("Language selection"), names) {
        TranslateButtons(*this);
        SetAccessibleName(*m_listbox, GetTitle().ToStdWstring());
        m_listbox->SetMinSize(FromDIP(wxSize(200, 150)));
        GetSizer()->SetSizeHints(this);
        Fit();
        CentreOnParent();
    }
};

/** The code that the user chose, which is English after Cancel whatever the language is now. */
std::wstring AskForLanguage(wxWindow& parent, const std::wstring& current) {
    std::vector<std::wstring> folders;
    std_file_paths::GetLngDirNames(folders);
    std::vector<CLanguageInfo> infos;
    lng::GetLanguageNames(folders, infos);
    wxArrayString names;
    for (const CLanguageInfo& info : infos) names.push_back(info.name);
    CLanguageDlg dialog(&parent, names);
    const auto at = std::ranges::find(infos, current, &CLanguageInfo::code);
    if (at != infos.end()) dialog.SetSelection(static_cast<int>(at - infos.begin()));
    const bool isChosen = dialog.ShowModal() == wxID_OK && dialog.GetSelection() != wxNOT_FOUND;
    return isChosen ? infos[static_cast<std::size_t>(dialog.GetSelection())].code : L"en";
}

}  // namespace

void SelectLanguage(wxFrame& frame) {
    std::wstring& language = CSettings::Instance().language;
    const std::wstring chosen = AskForLanguage(frame, language);
    if (chosen == language) return;
    language = chosen;
    CUserPrompt::Instance().ShowMessage(
        lng::Text("You must restart Orbivue for this change to take effect."));
}
