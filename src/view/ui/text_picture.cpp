// SPDX-License-Identifier: MIT
#include "view/ui/text_picture.h"

#include <wx/arrstr.h>
#include <wx/control.h>
#include <wx/dcmemory.h>
#include <wx/window.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "view/caption_text.h"

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

/** White letters on black: how bright a pixel is tells how much of it they cover. */
wxImage DrawnLetters(const wxFont& font, const wxString& text, wxSize size) {
    wxBitmap bitmap(std::max(1, size.x), std::max(1, size.y), 24);
    wxMemoryDC dc(bitmap);
    dc.SetBackground(*wxBLACK_BRUSH);
    dc.Clear();
    dc.SetFont(font);
    dc.SetTextForeground(*wxWHITE);
    dc.DrawLabel(text, wxRect(size), wxALIGN_CENTRE);
    dc.SelectObject(wxNullBitmap);
    return bitmap.ConvertToImage();
}

wxFont LargerFont(const wxWindow& window, double factor) {
    wxFont font = window.GetFont();
    font.SetFractionalPointSize(font.GetFractionalPointSize() * factor * window.GetContentScaleFactor());
    return font;
}

/** A picture of that size made of letters' coverage: pixel(x, y, covered) gives red, green, blue and alpha. */
template <class TPixel>
CImage FromLetters(const wxImage& letters, const TPixel& pixel) {
    CImage image{letters.GetWidth(), letters.GetHeight(), {}};
    image.rgba.reserve(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height) * 4);
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const std::array<std::uint8_t, 4> rgba = pixel(x, y, letters.GetGreen(x, y));
            image.rgba.insert(image.rgba.end(), rgba.begin(), rgba.end());
        }
    }
    return image;
}

/** How much of a pixel a panel with round corners covers, 0..1. */
double PanelAt(int x, int y, wxSize size, double radius) {
    const double dx = std::max({radius - x - 0.5, x + 0.5 - (size.x - radius), 0.0});
    const double dy = std::max({radius - y - 0.5, y + 0.5 - (size.y - radius), 0.0});
    return std::clamp(radius - std::hypot(dx, dy) + 0.5, 0.0, 1.0);
}

}  // namespace

CImage MakeHintPicture(const wxWindow& window, const std::wstring& text, float red, float green, float blue) {
    constexpr double kLarger = 1.4;
    constexpr double kWidest = 0.8;
    if (text.empty()) return {};
    const wxFont font = LargerFont(window, kLarger);
    wxMemoryDC probe;
    probe.SetFont(font);
    const wxString wrapped = Wrapped(
        probe, text, static_cast<int>(window.GetClientSize().x * kWidest * window.GetContentScaleFactor()));
    const bool darkBehind = 0.299f * red + 0.587f * green + 0.114f * blue < 0.5f;
    const auto ink = static_cast<std::uint8_t>(darkBehind ? 190 : 70);
    return FromLetters(DrawnLetters(font, wrapped, probe.GetMultiLineTextExtent(wrapped)),
                       [ink](int, int, std::uint8_t covered) {
                           return std::array<std::uint8_t, 4>{ink, ink, ink, covered};
                       });
}

CImage MakeCaptionPicture(const wxWindow& window, const std::wstring& text, int viewWidth, int viewHeight) {
    if (text.empty()) return {};
    const double scale = window.GetContentScaleFactor();
    // Larger where it is looked at from afar, on a whole screen.
    const wxFont font = LargerFont(window, std::clamp(viewHeight / scale / 500, 1.0, 2.0));
    wxMemoryDC probe;
    probe.SetFont(font);
    const int line = std::max(1, probe.GetCharHeight());
    const auto fits = [&probe, viewWidth](const std::wstring& part) {
        constexpr double kWidest = 0.8;
        return probe.GetTextExtent(part).x <= viewWidth * kWidest;
    };
    const auto most = static_cast<std::size_t>(std::clamp(viewHeight / 3 / line, 1, 6));
    wxString wrapped;
    for (const std::wstring& part : CaptionLines(text, most, fits))
        wrapped += (wrapped.empty() ? L"" : L"\n") + part;
    wxSize size = probe.GetMultiLineTextExtent(wrapped);
    size.IncBy(line * 6 / 5, line * 3 / 5);
    const double radius = line * 0.3;
    return FromLetters(DrawnLetters(font, wrapped, size), [&](int x, int y, std::uint8_t covered) {
        constexpr double kPanel = 0.66;
        const double letters = covered / 255.0;
        const double alpha = letters + kPanel * PanelAt(x, y, size, radius) * (1 - letters);
        const auto ink = static_cast<std::uint8_t>(alpha > 0 ? 255 * letters / alpha + 0.5 : 0);
        return std::array<std::uint8_t, 4>{ink, ink, ink, static_cast<std::uint8_t>(255 * alpha + 0.5)};
    });
}
