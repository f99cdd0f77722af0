// SPDX-License-Identifier: MIT
#include "frame/materials/ui/wxColourPopup.h"

#include <wx/dcbuffer.h>
#include <wx/image.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "base/text/lng.h"
#include "frame/materials/ui/wxColorPopupListener.h"
#include "widgets/tools/ui/tool_bar_art.h"
#include "widgets/ui/accessible_name.h"

namespace {

constexpr int kColumns = 10, kRows = 5;
// In device-independent pixels.
constexpr int kCell = 22, kGap = 6, kFieldHeight = 130, kStripWidth = 22;

/** Greys in the first row; then the hues: pale, full, middle and dark. */
wxColour PaletteColor(int index) {
    const int row = index / kColumns, column = index % kColumns;
    if (row == 0) {
        const auto grey = static_cast<unsigned char>(std::lround(255.0 * column / (kColumns - 1)));
        return {grey, grey, grey};
    }
    constexpr std::array<double, kColumns> kHues{0.0, 0.04, 0.09, 0.14, 0.25, 0.38, 0.5, 0.58, 0.72, 0.86};
    constexpr std::array<double, kRows> kSaturations{0, 0.4, 0.9, 0.8, 0.8};
    constexpr std::array<double, kRows> kValues{0, 1.0, 1.0, 0.75, 0.45};
    const wxImage::RGBValue rgb = wxImage::HSVtoRGB({kHues[static_cast<std::size_t>(column)],
                                                     kSaturations[static_cast<std::size_t>(row)],
                                                     kValues[static_cast<std::size_t>(row)]});
    return {rgb.red, rgb.green, rgb.blue};
}

wxColour ColorOf(double hue, double saturation, double value) {
    const wxImage::RGBValue rgb = wxImage::HSVtoRGB({hue, saturation, value});
    return {rgb.red, rgb.green, rgb.blue};
}

/** The place of a common colour; their number for another one. */
int PlaceOf(const wxColour& color) {
    int index = 0;
    while (index < kColumns * kRows && PaletteColor(index) != color) ++index;
    return index;
}

/** Where a coordinate lies between two ends, 0..1. */
double Share(int at, int begin, int length) {
    return std::clamp(static_cast<double>(at - begin) / std::max(1, length - 1), 0.0, 1.0);
}

wxImage FieldOf(double hue, wxSize size) {
    wxImage image(size);
    for (int y = 0; y < size.y; ++y)
        for (int x = 0; x < size.x; ++x) {
            const wxImage::RGBValue rgb =
                wxImage::HSVtoRGB({hue, Share(x, 0, size.x), 1 - Share(y, 0, size.y)});
            image.SetRGB(x, y, rgb.red, rgb.green, rgb.blue);
        }
    return image;
}

/** A ring that stands out from any colour. */
void DrawRing(wxDC& dc, wxPoint middle, int radius) {
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.SetPen(wxPen(*wxBLACK, 3));
    dc.DrawCircle(middle, radius);
    dc.SetPen(wxPen(*wxWHITE, 1));
    dc.DrawCircle(middle, radius);
}

}  // namespace

bool wxColourPopup::Create(wxWindow* parent) {
    if (!wxWindow::Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_SIMPLE)) return false;
    SetAccessibleName(*this, lng::Text("Colours"));
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    SetLayoutDirection(wxLayout_LeftToRight);  // of its fields, where positions are colours
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) { Paint(); });
    Bind(wxEVT_KEY_DOWN, &wxColourPopup::Key, this);
    Bind(wxEVT_LEFT_DOWN, &wxColourPopup::Press, this);
    Bind(wxEVT_LEFT_DCLICK, &wxColourPopup::Press, this);
    Bind(wxEVT_MOTION, [this](wxMouseEvent& event) { Drag(event.GetPosition()); });
    Bind(wxEVT_LEFT_UP, [this](wxMouseEvent&) { Release(); });
    Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) { m_dragged = EArea::None; });
    return true;
}

void wxColourPopup::SetColour(const wxColour& color) {
    m_color = color;
    const wxImage::HSVValue hsv = wxImage::RGBtoHSV({color.Red(), color.Green(), color.Blue()});
    if (hsv.saturation > 0 && hsv.value > 0) m_hue = hsv.hue;
    if (hsv.value > 0) m_saturation = hsv.saturation;
    m_value = hsv.value;
    if (IsCreated()) Refresh();
    if (wxComboCtrl* combo = GetComboCtrl()) combo->Refresh();
    NameCombo();
}

wxString wxColourPopup::GetStringValue() const {
    return m_color.GetAsString(wxC2S_HTML_SYNTAX);
}

wxSize wxColourPopup::GetAdjustedSize(int, int, int) {
    return FromDIP(wxSize(kColumns * kCell + 2 * kGap, kRows * kCell + kFieldHeight + 3 * kGap));
}

wxRect wxColourPopup::AreaOf(EArea area) const {
    const int gap = FromDIP(kGap), cell = FromDIP(kCell);
    const int below = gap + kRows * cell + gap, width = kColumns * cell, strip = FromDIP(kStripWidth);
    switch (area) {
        case EArea::Palette:
            return {gap, gap, width, kRows * cell};
        case EArea::Field:
            return {gap, below, width - strip - gap, FromDIP(kFieldHeight)};
        case EArea::Strip:
            return {gap + width - strip, below, strip, FromDIP(kFieldHeight)};
        case EArea::None:
            break;
    }
    return {};
}

wxRect wxColourPopup::CellOf(int index) const {
    const wxRect all = AreaOf(EArea::Palette);
    const int cell = FromDIP(kCell);
    return {all.x + index % kColumns * cell, all.y + index / kColumns * cell, cell, cell};
}

int wxColourPopup::CellAt(wxPoint where) const {
    const wxRect all = AreaOf(EArea::Palette);
    const int cell = FromDIP(kCell);
    const int column = std::clamp((where.x - all.x) / cell, 0, kColumns - 1);
    const int row = std::clamp((where.y - all.y) / cell, 0, kRows - 1);
    return row * kColumns + column;
}

// --- drawing ---------------------------------------------------------------------------------------------

void wxColourPopup::PaintComboControl(wxDC& dc, const wxRect& rect) {
    wxRect inner = rect;
    inner.Deflate(GetComboCtrl()->FromDIP(3));
    dc.SetBrush(m_color);
    dc.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT)));
    dc.DrawRectangle(inner);
    if (GetComboCtrl()->HasFocus()) DrawFocusFrame(dc, *GetComboCtrl(), rect);
}

void wxColourPopup::Paint() {
    wxAutoBufferedPaintDC dc(this);
    dc.SetBackground(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    dc.Clear();
    PaintPalette(dc);
    PaintField(dc);
}

void wxColourPopup::PaintPalette(wxDC& dc) const {
    for (int i = 0; i < kColumns * kRows; ++i) {
        wxRect cell = CellOf(i);
        cell.Deflate(FromDIP(1));
        const wxColour color = PaletteColor(i);
        dc.SetBrush(color);
        dc.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT)));
        dc.DrawRectangle(cell);
        if (color == m_color) DrawRing(dc, cell.GetPosition() + cell.GetSize() / 2, FromDIP(5));
    }
}

void wxColourPopup::PaintField(wxDC& dc) {
    const wxRect field = AreaOf(EArea::Field), strip = AreaOf(EArea::Strip);
    if (m_fieldHue != m_hue || m_field.GetSize() != field.GetSize()) {
        m_field = wxBitmap(FieldOf(m_hue, field.GetSize()));
        m_fieldHue = m_hue;
    }
    dc.DrawBitmap(m_field, field.GetPosition());
    for (int y = 0; y < strip.height; ++y) {
        dc.SetPen(wxPen(ColorOf(Share(y, 0, strip.height), 1, 1)));
        dc.DrawLine(strip.x, strip.y + y, strip.x + strip.width, strip.y + y);
    }
    const auto along = [](int begin, int length, double share) {
        return begin + static_cast<int>(std::lround(share * (length - 1)));
    };
    DrawRing(dc, {along(field.x, field.width, m_saturation), along(field.y, field.height, 1 - m_value)},
             FromDIP(5));
    DrawRing(dc, {strip.x + strip.width / 2, along(strip.y, strip.height, m_hue)}, FromDIP(5));
}

// --- choosing --------------------------------------------------------------------------------------------

void wxColourPopup::Press(wxMouseEvent& event) {
    for (const EArea area : {EArea::Palette, EArea::Field, EArea::Strip})
        if (AreaOf(area).Contains(event.GetPosition())) m_dragged = area;
    if (m_dragged == EArea::None) return;
    if (!HasCapture()) CaptureMouse();
    Drag(event.GetPosition());
}

void wxColourPopup::Drag(wxPoint where) {
    if (m_dragged == EArea::None) return;
    if (m_dragged == EArea::Palette) return Choose(PaletteColor(CellAt(where)));
    const wxRect area = AreaOf(m_dragged);
    if (m_dragged == EArea::Strip) {
        m_hue = Share(where.y, area.y, area.height);
        if (m_saturation == 0) m_saturation = 1;  // no hue shows in a grey
        if (m_value == 0) m_value = 1;
    } else {
        m_saturation = Share(where.x, area.x, area.width);
        m_value = 1 - Share(where.y, area.y, area.height);
    }
    ChooseByParts(m_hue, m_saturation, m_value);
}

void wxColourPopup::ChooseByParts(double hue, double saturation, double value) {
    Choose(ColorOf(hue, saturation, value));
    // A byte for each channel knows them less well, and the rings would tremble.
    m_hue = hue;
    m_saturation = saturation;
    m_value = value;
}

void wxColourPopup::Release() {
    if (HasCapture()) ReleaseMouse();
    if (std::exchange(m_dragged, EArea::None) == EArea::Palette) Dismiss();
}

void wxColourPopup::Choose(const wxColour& color) {
    const bool isOther = color != m_color;
    SetColour(color);
    if (isOther && m_listener) m_listener->OnColorChosen(color);
}

/** A popup gets no keys itself; the field passes them on. */
void wxColourPopup::OnPopup() {
    m_colorAtOpening = m_color;
    GetComboCtrl()->SetFocus();
}

void wxColourPopup::OnComboKeyEvent(wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    if (key == WXK_SPACE || key == WXK_RETURN || key == WXK_NUMPAD_ENTER || key == WXK_DOWN)
        GetComboCtrl()->Popup();
    else
        event.Skip();
}

void wxColourPopup::Key(wxKeyEvent& event) {
    if (FineKey(event)) return;
    const int index = PlaceOf(m_color);
    const bool isCommon = index < kColumns * kRows;
    const auto go = [&](int step) {
        const int next = isCommon ? std::clamp(index + step, 0, kColumns * kRows - 1) : kColumns;
        Choose(PaletteColor(next));
    };
    switch (event.GetKeyCode()) {
        case WXK_LEFT:
            return go(-1);
        case WXK_RIGHT:
            return go(1);
        case WXK_UP:
            return go(-kColumns);
        case WXK_DOWN:
            return go(kColumns);
        case WXK_ESCAPE:
            Choose(m_colorAtOpening);
            return Dismiss();
        case WXK_RETURN:
        case WXK_NUMPAD_ENTER:
        case WXK_SPACE:
            return Dismiss();
        default:
            event.Skip();
    }
}

/** Finds any colour. */
bool wxColourPopup::FineKey(const wxKeyEvent& event) {
    constexpr double kStep = 0.02;
    const auto step = [](double from, double by) { return std::clamp(from + by, 0.0, 1.0); };
    const int key = event.GetKeyCode();
    if (key == WXK_PAGEUP || key == WXK_PAGEDOWN) {
        const double hue = m_hue + (key == WXK_PAGEUP ? kStep : 1 - kStep);
        ChooseByParts(hue - std::floor(hue), m_saturation, m_value);
        return true;
    }
    if (!event.ShiftDown()) return false;
    if (key == WXK_LEFT || key == WXK_RIGHT)
        ChooseByParts(m_hue, step(m_saturation, key == WXK_RIGHT ? kStep : -kStep), m_value);
    else if (key == WXK_UP || key == WXK_DOWN)
        ChooseByParts(m_hue, m_saturation, step(m_value, key == WXK_UP ? kStep : -kStep));
    else
        return false;
    return true;
}

// --- for screen readers -------------------------------------------------------------------------------------

void wxColourPopup::TellReaders() {
    m_access = std::make_unique<CAccessibleRows>(
        *GetComboCtrl(), EAccessibleRole::ComboBox,
        CAccessibleRows::CSource{
            [] { return static_cast<std::size_t>(kColumns) * kRows; },
            [this](std::size_t index) { return Described(index); }, nullptr,
            [this](std::size_t index) { Choose(PaletteColor(static_cast<int>(index))); }});
    NameCombo();
}

void wxColourPopup::NameCombo() {
    if (!m_access) return;
    SetAccessibleName(*GetComboCtrl(), lng::Labelled(lng::Text("Colour"), GetStringValue().ToStdWstring()));
    m_access->Changed();
}

CDrawnItem wxColourPopup::Described(std::size_t index) const {
    const wxColour color = PaletteColor(static_cast<int>(index));
    return {.role = EAccessibleRole::ListItem,
            .name = color.GetAsString(wxC2S_HTML_SYNTAX).ToStdWstring(),
            .isSelected = color == m_color};
}

void wxColourPopup::OnDismiss() {
    m_dragged = EArea::None;
    if (m_listener) m_listener->OnColorPopupClosed();
}
