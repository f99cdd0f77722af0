// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class wxSizer;
class wxStaticText;
class wxTextCtrl;
class wxWindow;

/** What the pages of the window are made of. */
namespace page_parts {

/** The width of texts, in pixels of the window. */
[[nodiscard]] int TextWidth(const wxWindow& window);
/** A larger text in its own line. */
wxStaticText* AddHeading(wxWindow* page, wxSizer& column, const std::wstring& text);
wxStaticText* AddText(wxWindow* page, wxSizer& column, const std::wstring& text);
/** Puts a text in, wrapped; an empty one is hidden. */
void ShowText(wxStaticText& text, const std::wstring& value);
/** A field that holds a text to be read and copied, and that cannot be changed. */
[[nodiscard]] wxTextCtrl* MakeReadOnly(wxWindow* page, const std::wstring& name, long style = 0);
/** A text of strangers, UTF-8, in a form that one line can show. */
[[nodiscard]] std::wstring Shown(const std::string& text);

}  // namespace page_parts
