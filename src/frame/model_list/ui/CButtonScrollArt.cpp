// SPDX-License-Identifier: MIT
#include "frame/model_list/ui/CButtonScrollArt.h"

#include <wx/dc.h>
#include <wx/settings.h>
#include <wx/window.h>

#include <array>

#include "frame/model_list/ui/mixed_colour.h"

void CButtonScrollArt::Draw(wxDC& dc, const wxWindow& window, const wxRect& place, const CState& state) {
    const wxColour face = wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOX);
    const wxColour ink = wxSystemSettings::GetColour(wxSYS_COLOUR_LISTBOXTEXT);
    dc.SetBackground(face);
    dc.Clear();
    if (state.isEnabled && (state.isHovered || state.isPressed)) {
        constexpr double kHovered = 0.10, kPressed = 0.22;
        dc.SetPen(*wxTRANSPARENT_PEN);
        dc.SetBrush(MixedColour(face, ink, state.isPressed ? kPressed : kHovered));
        dc.DrawRoundedRectangle(wxRect(place).Deflate(window.FromDIP(2)), window.FromDIP(4));
    }
    const int halfWidth = window.FromDIP(3), halfHeight = window.FromDIP(7);
    const wxPoint middle(place.x + place.width / 2, place.y + place.height / 2);
    const int tip = state.pointsRight ? halfWidth : -halfWidth;
    const std::array<wxPoint, 3> arrow{wxPoint(-tip, -halfHeight), wxPoint(tip, 0),
                                       wxPoint(-tip, halfHeight)};
    constexpr double kFaded = 0.3;
    dc.SetPen(wxPen(state.isEnabled ? ink : MixedColour(face, ink, kFaded), window.FromDIP(2)));
    dc.DrawLines(static_cast<int>(arrow.size()), arrow.data(), middle.x, middle.y);
}

int CButtonScrollArt::Width(const wxWindow& window) {
    constexpr int kWidth = 24;
    return window.FromDIP(kWidth);
}
