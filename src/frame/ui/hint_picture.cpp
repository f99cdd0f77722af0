// SPDX-License-Identifier: MIT
#include "frame/ui/hint_picture.h"

#include <wx/dcmemory.h>
#include <wx/window.h>

#include <algorithm>

CImage MakeHintPicture(const wxWindow& window, const std::wstring& text, float red, float green, float blue) {
    constexpr double kLarger = 1.4;
    wxFont font = window.GetFont();
    font.SetFractionalPointSize(font.GetFractionalPointSize() * kLarger * window.GetContentScaleFactor());
    wxMemoryDC probe;
    probe.SetFont(font);
    const wxSize size = probe.GetMultiLineTextExtent(text);
    wxBitmap bitmap(std::max(1, size.x), std::max(1, size.y), 24);
    {
        wxMemoryDC dc(bitmap);
        dc.SetBackground(*wxBLACK_BRUSH);
        dc.Clear();
        dc.SetFont(font);
        dc.SetTextForeground(*wxWHITE);
        dc.DrawLabel(text, wxRect(size), wxALIGN_CENTRE);
    }
    // White on black: how bright a pixel came out is how much of it the letters cover.
    const wxImage covered = bitmap.ConvertToImage();
    const bool darkBehind = 0.299f * red + 0.587f * green + 0.114f * blue < 0.5f;
    const auto ink = static_cast<std::uint8_t>(darkBehind ? 190 : 70);
    CImage hint{covered.GetWidth(), covered.GetHeight(), {}};
    const auto pixels = static_cast<std::size_t>(hint.width) * static_cast<std::size_t>(hint.height);
    hint.rgba.reserve(pixels * 4);
    for (std::size_t i = 0; i < pixels; ++i)
        hint.rgba.insert(hint.rgba.end(), {ink, ink, ink, covered.GetData()[i * 3 + 1]});
    return hint;
}
