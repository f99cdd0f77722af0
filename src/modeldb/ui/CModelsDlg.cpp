// SPDX-License-Identifier: MIT
#include "modeldb/ui/CModelsDlg.h"

#include <wx/button.h>
#include <wx/simplebook.h>
#include <wx/sizer.h>
#include <wx/statline.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/hover/ui/CPictureTips.h"
#include "modeldb/hover/ui/CPreviewFetcher.h"
#include "modeldb/transfer/ui/CProgCtrl.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/transfer/ui/progress_text.h"
#include "modeldb/ui/C3dsTreeItemData.h"
#include "modeldb/ui/CFoundList.h"
#include "modeldb/ui/CModelSearch.h"
#include "modeldb/ui/CModelsDlgHost.h"
#include "modeldb/ui/CModelsTree.h"
#include "modeldb/ui/search_field.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/button_label.h"
#include "widgets/ui/wx_window_state.h"

namespace {

constexpr int kPictureSide = 192;

/** A line that is cut where the pane is too narrow. */
wxStaticText* Line(wxWindow* parent, const std::wstring& text) {
    return new wxStaticText(parent, wxID_ANY, text, wxDefaultPosition, wxDefaultSize,
                            wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_END);
}

}  // namespace

CModelsDlg::CModelsDlg(wxWindow* parent, CModelsDlgHost& host)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL | wxBORDER_NONE),
      m_host(host) {
    SetAccessibleName(*this, lng::Text("3ds Files Download"));
    MakeControls();
    Arrange();
    MakeTips();
    BindKeys();
    m_cancel->Disable();
    wx_window_state::LoadState(this, kStateName);
    m_tree->LoadGroups();
}

CModelsDlg::~CModelsDlg() {
    wx_window_state::SaveState(this, kStateName);
    m_treeTips.reset();
    m_foundTips.reset();
    m_book->RemovePage(0);
    delete m_tree;
    m_search.reset();
    C3DModelsLoadApi::Close();  // which also ends the call that a picture may wait for
    m_pictures.reset();
}

void CModelsDlg::MakeControls() {
    m_searchText = MakeSearchField(this);
    m_book = new wxSimplebook(this);
    MakeTree();
    m_found = new CFoundList(m_book, [this](const CFoundModel& model) { Choose(model); });
    m_book->AddPage(m_tree, wxEmptyString);
    m_book->AddPage(m_found, wxEmptyString);
    m_foundText = Line(this, {});
    m_foundText->Hide();
    m_fileName = Line(this, lng::Text("File name:"));
    m_gauge = new CProgCtrl(this);
    SetAccessibleName(*m_gauge, lng::Text("Progress of the transfer"));
    m_status = Line(this, lng::Text("Status:"));
    m_cancel = new wxButton(this, kIdCancel, lng::Text("Cancel download"));
    m_search = std::make_unique<CModelSearch>([this](const CFoundData& found) { OnAnswer(found); });
    m_searchText->Bind(wxEVT_TEXT, [this](wxCommandEvent& event) {
        OnSearchText();
        event.Skip();
    });
    Bind(wxEVT_BUTTON, [this](wxCommandEvent& event) {
        if (event.GetId() == kIdCancel)
            OnCancel();
        else
            event.Skip();
    });
}

void CModelsDlg::MakeTree() {
    CModelsTree::CActions actions;
    actions.open = [this](CModelData& model) { m_host.OpenDownloaded(model); };
    actions.ended = [this](const std::wstring& reason) { OnTransferEnded(reason); };
    actions.changed = [this] {
        if (!SearchText().empty()) ShowFound();
    };
    m_tree = new CModelsTree(m_book, std::move(actions), *this, *this);
}

void CModelsDlg::MakeTips() {
    m_pictures = std::make_unique<CPreviewFetcher>(FromDIP(kPictureSide), [this](std::uint32_t) {
        m_treeTips->Renew();
        m_foundTips->Renew();
    });
    using CTip = std::optional<CPictureTips::CModel>;
    m_treeTips =
        std::make_unique<CPictureTips>(*m_tree, *m_pictures, [this](std::optional<wxPoint> place) -> CTip {
            int flags = 0;
            const wxTreeItemId item = place ? m_tree->HitTest(*place, flags) : m_tree->GetSelection();
            const C3dsTreeItemData* data = m_tree->DataOf(item);
            wxRect area;
            if (!data || !data->isModel || !m_tree->GetBoundingRect(item, area)) return {};
            return CPictureTips::CModel{data->id, m_tree->GetItemText(item).ToStdWstring(), area};
        });
    m_foundTips = std::make_unique<CPictureTips>(
        m_found->MainWindow(), *m_pictures, [this](std::optional<wxPoint> place) -> CTip {
            const long number = place ? m_found->ModelAt(*place) : m_found->GetFirstSelected();
            wxRect area;
            if (number < 0 || !m_found->GetItemRect(number, area)) return {};
            area.Offset(-m_found->MainWindow().GetPosition());
            return CPictureTips::CModel{m_found->Models()[static_cast<std::size_t>(number)].key,
                                        m_found->GetItemText(number).ToStdWstring(), area};
        });
}

void CModelsDlg::Arrange() {
    const int border = FromDIP(5);
    const wxSizerFlags line = wxSizerFlags().Expand().Border(wxALL, border);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(m_searchText, line);
    column->Add(m_foundText, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, border));
    column->Add(m_book, wxSizerFlags(1).Expand());
    column->Add(m_fileName, line);
    column->Add(m_gauge, line);
    column->Add(m_status, line);
    column->Add(new wxStaticLine(this), line);
    column->Add(m_cancel, wxSizerFlags().Center().Border(wxALL, border));
    SetSizer(column);
    Layout();
}

bool CModelsDlg::Show(bool show) {
    m_host.CheckBrowserCommand(show);
    return wxPanel::Show(show);
}

void CModelsDlg::ShowModel(std::uint32_t id) {
    m_pictures->Forget();
    m_tree->AddGroupOf(id);  // the first upload makes it
    m_tree->ShowModel(id);
}

void CModelsDlg::TakeFocus() {
    if (m_book->GetSelection() == 0)
        m_tree->SetFocus();
    else
        m_found->TakeFocus();
}

/** Escape leaves what was searched for, then the browser; arrow down goes from the field into the list. */
void CModelsDlg::BindKeys() {
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        const int key = event.GetKeyCode();
        const bool isInField = m_searchText->HasFocus();
        if (key == WXK_ESCAPE && !m_tree->GetEditControl()) {
            if (m_searchText->IsEmpty()) return m_host.LeaveBrowser();
            m_searchText->Clear();
            if (!isInField) m_tree->SetFocus();
        } else if (isInField && (key == WXK_DOWN || key == WXK_RETURN || key == WXK_NUMPAD_ENTER)) {
            TakeFocus();
        } else if (key == 'F' && event.GetModifiers() == wxMOD_CONTROL) {
            m_searchText->SetFocus();
            m_searchText->SelectAll();
        } else {
            event.Skip();
        }
    });
}

// --- transfers --------------------------------------------------------------------------------------------

void CModelsDlg::OnCancel() {
    m_tree->StopTransfers();
    DisableCancel();
}

void CModelsDlg::DisableCancel() {
    const bool hasFocus = m_cancel->HasFocus();
    m_cancel->Disable();
    if (hasFocus) TakeFocus();
}

void CModelsDlg::OnTransferEnded(const std::wstring& reason) {
    const bool isComplete = static_cast<int>(m_gauge->Percent()) == 100;
    const bool hasModel = std::exchange(m_isForModel, false) && isComplete && reason.empty();
    // What has come of a list is in the tree; that a model has come is told beside its name.
    if (!hasModel) {
        m_status->SetLabel(lng::Text("Status:"));
        m_gauge->SetValue(0);
    }
    DisableCancel();
    if (!reason.empty()) m_host.TellOfTransfer(lng::Text("The download failed:") + L" " + reason);
}

void CModelsDlg::OnProgressStart(std::int64_t total) {
    m_cancel->Enable();
    m_gauge->OnProgressStart(total);
    m_status->SetLabel(lng::Text("Status: Downloading..."));
}

void CModelsDlg::OnProgressStep() {
    m_gauge->OnProgressStep();
    const double percent = m_gauge->Percent();
    m_status->SetLabel(PercentText(lng::Text("Status: Downloading  %.2f"), percent));
    if (static_cast<int>(percent) == 100) DisableCancel();
}

void CModelsDlg::SetFileName(const std::wstring& name) {
    m_isForModel = true;
    const std::wstring shown = file_util_ex::ShownName(name);
    m_fileName->SetLabelText(lng::Text("File name: %s", shown));
}
