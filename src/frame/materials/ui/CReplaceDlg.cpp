// SPDX-License-Identifier: MIT
#include "frame/materials/ui/CReplaceDlg.h"

#include <wx/button.h>
#include <wx/filedlg.h>
#include <wx/sizer.h>
#include <wx/srchctrl.h>
#include <wx/stattext.h>

#include <utility>

#include "base/jobs/CJobProgress.h"
#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"
#include "frame/materials/ui/CNodeList.h"
#include "model/open/load_scene.h"
#include "session/CSceneView.h"
#include "settings/CLocalRegStore.h"
#include "widgets/CUserPrompt.h"
#include "widgets/file_dialog_text.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/button_label.h"
#include "widgets/ui/file_chooser.h"

namespace {

constexpr char kEntry[] = "replace_node", kPathKey[] = "Path";

std::wstring AskForFile(wxWindow& parent, const std::wstring& startFolder) {
    std::wstring folder = CLocalRegStore::GetString(kEntry, kPathKey, L"");
    if (!file_util_ex::DoesFolderExist(folder)) folder = startFolder;
    wxFileDialog dialog(&parent, lng::Text("Replace by a part of this file"), wxString(), wxString(),
                        wxString("*"), wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    file_chooser::SetFilters(dialog,
                             {{lng::Text("3D scenes (*.3ds;*.zip;*.obj)"), {L"*.3ds", L"*.zip", L"*.obj"}}});
    file_chooser::SetFolder(dialog, file_util_ex::ConvertToUTF8(folder));
    if (dialog.ShowModal() != wxID_OK) return {};
    std::wstring path = file_util_ex::PathFromBytes(file_chooser::ChosenPath(dialog));
    CLocalRegStore::WriteString(kEntry, kPathKey, std::wstring_view(file_util_ex::GetFilePath(path)));
    return path;
}

/** Its pictures only give surfaces a mean colour. */
CLoadLimits Limits() {
    constexpr std::uint64_t kMiB = 1024 * 1024;
    return {.threads = 0, .bytes = 4096 * kMiB, .pictureBytes = 32 * kMiB};
}

void Refuse(const std::wstring& path, const std::wstring& why) {
    CUserPrompt::Instance().ShowMessage(
        lng::Text("No part can be taken from %s:", file_util_ex::ShownName(file_util_ex::GetFileName(path))) +
        L"\n" + why);
}

}  // namespace

CReplaceDlg::CReplaceDlg(wxWindow* parent, const std::wstring& fileName, const CPreparedScene& scene,
                         const std::string& proposed)
    : wxDialog(parent, wxID_ANY, lng::Text("Replace parts"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    const std::vector<CChoice> choices = ChoicesIn(scene);
    const int proposedAt = ChoiceFor(choices, proposed);
    m_list = new CNodeList(this, scene, choices);
    if (proposedAt >= 0) m_list->Select(choices[static_cast<std::size_t>(proposedAt)].name);
    auto* search = new wxSearchCtrl(this, wxID_ANY);
    SetAccessibleName(*search, lng::Text("Search for a name"));
    search->SetDescriptiveText(lng::Text("Search for a name"));
    const wxSizerFlags border = wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxTOP, FromDIP(10));
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(new wxStaticText(this, wxID_ANY,
                                 wxControl::EscapeMnemonics(lng::Text(
                                     "Which part of %s takes the place of the parts that you click?",
                                     file_util_ex::ShownName(fileName)))),
                border);
    column->Add(search, border);
    column->Add(m_list, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(10)));
    column->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL),
                wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(10)));
    SetButtonLabel(*wxDynamicCast(FindWindow(wxID_OK), wxButton), lng::Text("OK"));
    SetButtonLabel(*wxDynamicCast(FindWindow(wxID_CANCEL), wxButton), lng::Text("Cancel"));
    SetSizerAndFit(column);
    CentreOnParent();
    m_list->SetFocus();
    UpdateButton();
    search->Bind(wxEVT_TEXT, [this](wxCommandEvent& event) {
        m_list->Search(event.GetString().ToStdWstring());
        UpdateButton();
    });
    m_list->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) { UpdateButton(); });
    m_list->Bind(wxEVT_LISTBOX_DCLICK, [this](wxCommandEvent&) { EndModal(wxID_OK); });
}

void CReplaceDlg::UpdateButton() {
    FindWindow(wxID_OK)->Enable(m_list->Selected() != nullptr);
}

std::string CReplaceDlg::Node() const {
    const CChoice* choice = m_list->Selected();
    return choice ? choice->name : std::string();
}

std::optional<CReplacement> AskForReplacement(wxWindow& parent, CSceneView& view,
                                              const std::wstring& startFolder, const std::string& proposed) {
    const std::wstring path = AskForFile(parent, startFolder);
    if (path.empty()) return std::nullopt;
    const std::string utf8 = file_util_ex::ConvertToUTF8(path);
    std::optional<CResult<CLoadedScene>> loaded;
    {
        const CBusyCursor cursor;
        view.LoadBeside(
            [&](CJobProgress& progress) { loaded.emplace(LoadScene(utf8, &progress, Limits())); });
    }
    if (!*loaded) {
        Refuse(path, lng::Text(CError{loaded->Error().code, loaded->Error().message, {}}));
        return std::nullopt;
    }
    const CPreparedScene& scene = loaded->Value().prepared;
    if (ChoicesIn(scene).empty()) {
        Refuse(path, lng::Text("it has no parts"));
        return std::nullopt;
    }
    CReplaceDlg dialog(&parent, file_util_ex::GetFileName(path), scene, proposed);
    if (dialog.ShowModal() != wxID_OK || dialog.Node().empty()) return std::nullopt;
    return CReplacement{utf8, dialog.Node()};
}
