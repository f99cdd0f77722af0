// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "picture/CImage.h"

class wxWindow;

/** A caption at the bottom of the view. Its picture is made anew when the text or the view's size changes. */
class CViewCaption {
  public:
    /** Any text, of any length; see CaptionText. Empty: none. */
    void Set(std::wstring text);
    [[nodiscard]] const std::wstring& Text() const { return m_text; }
    /** Draws it over the viewport with the current context. window: whose font and scale it takes. */
    void Draw(const wxWindow& window);

  private:
    std::wstring m_text;
    CImage m_picture;
    int m_width = 0, m_height = 0;  ///< of the view that it was made for, 0: for none
    double m_scale = 0;
};
