// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

#include <string>

struct CAppcastItem;
class wxSizer;

/** Tells of a new version and asks what to do about it. */
class CUpdateNewsDlg final : public wxDialog {
  public:
    // What ShowModal gives; whoever closes the dialog wants to be reminded.
    static constexpr int kLater = wxID_CANCEL;
    static constexpr int kSkip = wxID_IGNORE;
    static constexpr int kGet = wxID_OK;

    CUpdateNewsDlg(wxWindow* parent, const std::wstring& sentence, const CAppcastItem& item);

  private:
    void AddNotes(wxSizer& column, const std::wstring& notes);
    void AddPage(wxSizer& column, const std::string& page);
    void AddButtons(wxSizer& column, bool hasPage);
};

/** Opens the page of an update in the user's browser; tells why, where that is not possible. */
void OpenUpdatePage(const std::string& page);
