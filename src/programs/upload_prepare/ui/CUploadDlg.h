// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>
#include <wx/timer.h>

#include <optional>
#include <string>

#include "programs/upload_prepare/CUpload.h"
#include "programs/upload_prepare/join_upload.h"

class CConfirmPage;
class COutcomePage;
class CProgressPage;
class wxButton;
class wxSimplebook;
class wxSizer;

/** The window of an upload: shows what would leave the machine, uploads after the user has confirmed that, and gives the
 * link. Without a drive it offers to open the folder and Google Drive's page. No key confirms by itself: the button is not
 * the default one, as the window comes up while somebody may be typing. */
class CUploadDlg final : public wxDialog {
  public:
    static constexpr int kIdUpload = wxID_HIGHEST + 1, kIdOpen = wxID_HIGHEST + 2,
                         kIdAgain = wxID_HIGHEST + 3, kIdUnlock = wxID_HIGHEST + 4;

    CUploadDlg(wxWindow* parent, const CRcloneSetup& setup, const CUploadContent& content,
               const std::string& modelName);

    [[nodiscard]] CUpload& Upload() { return m_upload; }

  private:
    [[nodiscard]] wxSizer* MakeButtons();
    wxButton* AddButton(wxSizer& row, int id, const std::wstring& text, void (CUploadDlg::*action)());
    void ShowState();
    void ShowButtons();
    void OnTimer();
    void StartUpload();
    void OpenFolder();
    void ShowReady();
    void Unlock();
    /** Ends copying; where nothing is copied, closes the window. */
    void CancelOrClose();

    CUpload m_upload;
    std::string m_folder;
    std::optional<CUpload::EState> m_shown;
    wxTimer m_timer;
    wxSimplebook* m_book = nullptr;
    CConfirmPage* m_confirm = nullptr;
    CProgressPage* m_progress = nullptr;
    COutcomePage* m_outcome = nullptr;
    wxButton* m_open = nullptr;
    wxButton* m_again = nullptr;
    wxButton* m_unlock = nullptr;
    wxButton* m_start = nullptr;
    wxButton* m_close = nullptr;
};
