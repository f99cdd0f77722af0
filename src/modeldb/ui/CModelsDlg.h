// SPDX-License-Identifier: MIT
#pragma once

#include <wx/panel.h>

#include <memory>
#include <string>

#include "modeldb/client/CBlobProgress.h"
#include "modeldb/ui/CSetFileNameObs.h"

class CFoundList;
class CModelSearch;
class CModelsDlgHost;
class CModelsTree;
class CPictureTips;
class CPreviewFetcher;
class CProgCtrl;
class wxButton;
class wxSimplebook;
class wxStaticText;
class wxTextCtrl;
struct CFoundData;
struct CFoundModel;

/** The browser of the library of models: a field to search, the tree of groups and models or what was found, and the progress
 * of the transfer. The library must be connected. It loads the groups at once, and closes the connection in the end. */
class CModelsDlg final : public wxPanel, public CBlobProgress, public CSetFileNameObs {
  public:
    static constexpr int kIdCancel = 6000;

    /** host must outlive it. */
    CModelsDlg(wxWindow* parent, CModelsDlgHost& host);
    ~CModelsDlg() override;

    /** The browser's command shows the new state. */
    bool Show(bool show = true) override;
    /** After an upload: shows the new model under its group. */
    void ShowModel(std::uint32_t id);
    /** Gives the tree the keyboard. */
    void TakeFocus();
    [[nodiscard]] CModelsTree& Tree() { return *m_tree; }
    [[nodiscard]] CFoundList& Found() { return *m_found; }

    // --- a transfer's progress and name, from the tree, on the thread of the windows ---------------------------
    void OnProgressStart(std::int64_t total) override;
    void OnProgressStep() override;
    bool DoContinue() override { return true; }
    void SetFileName(const std::wstring& name) override;

  private:
    static constexpr char kStateName[] = "3dsServerDialog";

    void MakeControls();
    void MakeTree();
    void MakeTips();
    void Arrange();
    void OnCancel();
    /** Hands a focus that the button has to the list, where the disabled button would lose it to the view. */
    void DisableCancel();
    void OnTransferEnded(const std::wstring& reason);
    void BindKeys();

    void OnSearchText();
    void ShowFound();
    void OnAnswer(const CFoundData& found);
    [[nodiscard]] std::string SearchText() const;
    void Choose(const CFoundModel& model);

    CModelsDlgHost& m_host;
    wxTextCtrl* m_searchText = nullptr;
    wxStaticText* m_foundText = nullptr;
    wxSimplebook* m_book = nullptr;
    CModelsTree* m_tree = nullptr;
    CFoundList* m_found = nullptr;
    wxStaticText* m_fileName = nullptr;
    CProgCtrl* m_gauge = nullptr;
    wxStaticText* m_status = nullptr;
    wxButton* m_cancel = nullptr;
    bool m_isForModel = false;  ///< what is transferred, or else a list

    std::unique_ptr<CModelSearch> m_search;
    std::unique_ptr<CFoundData> m_answer;  ///< of the library, to the text that is searched for now
    std::unique_ptr<CPreviewFetcher> m_pictures;
    std::unique_ptr<CPictureTips> m_treeTips, m_foundTips;
};
