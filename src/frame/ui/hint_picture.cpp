// SPDX-License-Identifier: MIT
#include "frame/ui/hint_picture.h"

#include <wx/arrstr.h>
#include <wx/control.h>
#include <wx/dcmemory.h>
#include <wx/window.h>

#include <algorithm>

namespace {

/** Lines that are too long are broken at blanks; a word that is too long alone is cut in its middle. */
wxString Wrapped(wxDC& dc, const wxString& text, int widthPx) {
    wxString all;
    for (const wxString& line : wxSplit(text, '\n', '\0')) {
        wxString broken;
        for (const wxString& part : wxSplit(line, ' ', '\0')) {
            const wxString word =
                wxControl::Ellipsize(part, dc, wxELLIPSIZE_MIDDLE, widthPx, wxELLIPSIZE_FLAGS_NONE);
            const wxString longer = broken.empty() ? word : broken + " " + word;
            if (dc.GetTextExtent(longer).x <= widthPx) {
                broken = longer;
                continue;
            }
            all += broken + "\n";
            broken = word;
        }
        all += broken + "\n";
    }
    all.RemoveLast();
    return all;
}

}  // namespace

CImage MakeHintPicture(const wxWindow& window, const std::wstring& text, float red, float green, float blue) {
    constexpr double kLarger = 1.4;
    constexpr double kWidest = 0.8;
    wxFont font = window.GetFont();
    font.SetFractionalPointSize(font.GetFractionalPointSize() * kLarger * window.GetContentScaleFactor());
    wxMemoryDC probe;
    probe.SetFont(font);
    const wxString wrapped = Wrapped(
        probe, text, static_cast<int>(window.GetClientSize().x * kWidest * window.GetContentScaleFactor()));
    const wxSize size = probe.GetMultiLineTextExtent(wrapped);
    wxBitmap bitmap(std::max(1, size.x), std::max(1, size.y), 24);
    {
        wxMemoryDC dc(bitmap);
        dc.SetBackground(*wxBLACK_BRUSH);
        dc.Clear();
        dc.SetFont(font);
        dc.SetTextForeground(*wxWHITE);
        dc.DrawLabel(wrapped, wxRect(size), wxALIGN_CENTRE);
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
