// SPDX-License-Identifier: MIT
#pragma once

#include <wx/scrolwin.h>

#include <string>
#include <string_view>
#include <vector>

class wxSizer;
class wxStaticText;
struct CShortcut;

/** All keys and movements of the mouse in their groups, in rows that can be scrolled and filtered. */
class CShortcutList final : public wxScrolledWindow {
  public:
    explicit CShortcutList(wxWindow* parent);

    /** Shows the rows that contain all words of the text, in letters of any case, and the headings of their groups; all
     * rows for an empty text. False when none is left. */
    [[nodiscard]] bool Filter(std::wstring_view text);
    /** What it would take to show all rows. */
    [[nodiscard]] wxSize FullSize() const;

  private:
    struct CRow {
        wxWindow* keys;
        wxStaticText* does;
        wxString text;        ///< of does, without line ends
        std::wstring sought;  ///< what a search looks at, in small letters
    };
    struct CGroup {
        wxStaticText* heading;
        std::vector<CRow> rows;
    };
    [[nodiscard]] wxWindow* MakeKeys(const std::string& accelerators);
    [[nodiscard]] CRow MakeRow(const CShortcut& shortcut);
    [[nodiscard]] wxSizer* Arrange(const CGroup& group, int keysWidth) const;
    /** Breaks what does not fit beside the keys. */
    void Wrap();

    std::vector<CGroup> m_groups;
    int m_wrappedTo = 0;  ///< width of the list that texts are broken for
};
