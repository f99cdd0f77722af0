// SPDX-License-Identifier: MIT
#pragma once

#include <wx/panel.h>

#include <string>

#include "programs/upload_prepare/join_upload.h"

class CUpload;
class wxCheckBox;
class wxChoice;
class wxSizer;
class wxStaticText;

/** Shows what would leave the machine, and where it would go. */
class CConfirmPage final : public wxPanel {
  public:
    CConfirmPage(wxWindow* parent, const CUploadContent& content, const std::string& modelName);

    /** Offers the upload's remotes; the one that was used last is chosen. */
    void ShowRemotes(const CUpload& upload);
    /** The chosen remote, UTF-8. */
    [[nodiscard]] std::string Remote() const;
    [[nodiscard]] bool WantsLinkForAnybody() const;

  private:
    [[nodiscard]] wxSizer* MakeHead(const CUploadContent& content, const std::string& modelName);
    void AddOutside(wxSizer& column, const CUploadContent& content);
    [[nodiscard]] wxSizer* MakeTarget();

    wxChoice* m_remote = nullptr;
    wxStaticText* m_folder = nullptr;
    wxCheckBox* m_link = nullptr;
};
