// SPDX-License-Identifier: MIT
// The look of the list, in the colours of the desktop's theme.
#include <wx/control.h>
#include <wx/dcbuffer.h>
#include <wx/settings.h>

#include <algorithm>

#include "frame/model_list/CListToolBarMgr.h"
#include "frame/model_list/ui/CModelPictures.h"
#include "frame/model_list/ui/CModelStrip.h"
#include "frame/model_list/ui/mixed_colour.h"

namespace {

constexpr int kMargin = 6;  ///< of a cell, around picture and name
constexpr int kGap = 2;     ///< between cells, and between picture and name
constexpr int kRounding = 5;

wxColour SystemColour(wxSystemColour which) {
    return wxSystemSettings::GetColour(which);
}

/** A frame, crossed where no picture can be had. */
void DrawSymbol(wxDC& dc, const wxWindow& window, const wxRect& place, const wxColour& ink, bool crossed) {
    const wxRect frame = wxRect(place).Deflate(place.width / 4);
    dc.SetPen(wxPen(ink, window.FromDIP(crossed ? 2 : 1)));
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.DrawRoundedRectangle(frame, window.FromDIP(kRounding));
    if (!crossed) return;
    const wxRect cross = wxRect(frame).Deflate(frame.width / 3);
    dc.DrawLine(cross.GetTopLeft(), cross.GetBottomRight());
    dc.DrawLine(cross.GetBottomLeft(), cross.GetTopRight());
}

}  // namespace

wxSize CModelStrip::DoGetBestSize() const {
    const int around = 2 * FromDIP(kMargin) + 2 * FromDIP(kGap);
    return {3 * CellWidth(), FromDIP(kPictureSide) + FromDIP(kGap) + GetCharHeight() + around};
}

int CModelStrip::CellWidth() const {
    constexpr int kLetters = 12;  // of a name: a large text needs more room than the picture
    return std::max(FromDIP(kPictureSide), kLetters * GetCharWidth()) + 2 * FromDIP(kMargin) + FromDIP(kGap);
}

void CModelStrip::OnPaint() {
    wxAutoBufferedPaintDC dc(this);
    dc.SetBackground(SystemColour(wxSYS_COLOUR_LISTBOX));
    dc.Clear();
    dc.SetFont(GetFont());
    const CStripLayout::CRange seen = m_layout.Visible();
    for (std::size_t i = seen.first; i < std::min(seen.end, m_manager.List().Size()); ++i) DrawCell(dc, i);
}

wxRect CModelStrip::CellOf(std::size_t index) const {
    return wxRect(m_layout.Left(index), 0, m_layout.CellWidth(), GetClientSize().y)
        .Deflate(FromDIP(kGap) / 2, FromDIP(kGap));
}

void CModelStrip::DrawCell(wxDC& dc, std::size_t index) {
    const CModelList& list = m_manager.List();
    const bool isOpen = list.Current() == index;
    const wxColour back = SystemColour(wxSYS_COLOUR_LISTBOX);
    const wxColour light = SystemColour(wxSYS_COLOUR_HIGHLIGHT);
    const wxColour ink = SystemColour(isOpen ? wxSYS_COLOUR_HIGHLIGHTTEXT : wxSYS_COLOUR_LISTBOXTEXT);
    const wxRect cell = CellOf(index);
    constexpr double kHovered = 0.25;
    if (isOpen || m_hovered == index) {
        dc.SetPen(*wxTRANSPARENT_PEN);
        dc.SetBrush(isOpen ? light : MixedColour(back, light, kHovered));
        dc.DrawRoundedRectangle(cell, FromDIP(kRounding));
    }
    const int side = FromDIP(kPictureSide);
    const wxRect picture(cell.x + (cell.width - side) / 2, cell.y + FromDIP(kMargin), side, side);
    DrawPicture(dc, index, picture, ink);
    const int width = cell.width - FromDIP(kMargin);
    const wxString name = wxControl::Ellipsize(list.Name(index), dc, wxELLIPSIZE_MIDDLE, width);
    dc.SetTextForeground(ink);
    dc.DrawText(name, cell.x + (cell.width - dc.GetTextExtent(name).x) / 2,
                picture.GetBottom() + FromDIP(kGap));
    if (list.Cursor() != index || !HasFocus()) return;
    dc.SetPen(wxPen(ink, FromDIP(2)));
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.DrawRoundedRectangle(wxRect(cell).Deflate(FromDIP(isOpen ? 2 : 1)), FromDIP(kRounding));
}

void CModelStrip::DrawPicture(wxDC& dc, std::size_t index, const wxRect& place, const wxColour& ink) {
    const std::wstring& path = m_manager.List().Path(index);
    const wxBitmap* bitmap = m_pictures ? m_pictures->BitmapOf(path) : nullptr;
    if (!bitmap) {
        const bool hasFailed = m_pictures && !m_pictures->ProblemOf(path).empty();
        constexpr double kFaint = 0.35, kClear = 0.6;
        const wxColour back = SystemColour(wxSYS_COLOUR_LISTBOX);
        return DrawSymbol(dc, *this, place, MixedColour(back, ink, hasFailed ? kClear : kFaint), hasFailed);
    }
    const wxSize size(static_cast<int>(bitmap->GetLogicalWidth()),
                      static_cast<int>(bitmap->GetLogicalHeight()));
    dc.DrawBitmap(*bitmap, place.x + (place.width - size.x) / 2, place.y + (place.height - size.y) / 2, true);
}
