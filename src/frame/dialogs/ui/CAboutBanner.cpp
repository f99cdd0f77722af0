// SPDX-License-Identifier: MIT
#include "frame/dialogs/ui/CAboutBanner.h"

#include <gtk/gtk.h>
#include <wx/dcclient.h>
#include <wx/graphics.h>
#include <wx/settings.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <numbers>
#include <string>

#include "base/text/lng.h"
#include "widgets/access/ui/accessible_role.h"
#include "widgets/access/ui/focus.h"
#include "widgets/ui/accessible_name.h"

namespace {

constexpr wchar_t kName[] = L"Orbivue";
constexpr int kHeight = 104, kEmblemRadius = 30;
constexpr double kTilt = -24.0 * std::numbers::pi / 180;
const wxColour kNightTop(0x0b, 0x1d, 0x2e), kNightBottom(0x1c, 0x4f, 0x73);
const wxColour kRing(0xf0, 0xc0, 0x52), kPlanet(0xe2, 0x63, 0x2f);

/** GTK_THEME, where it is set, overrules the desktop's setting. */
bool HasHighContrast() {
    std::string theme;
    if (const char* forced = std::getenv("GTK_THEME")) {
        theme = forced;
    } else {
        gchar* name = nullptr;
        g_object_get(gtk_settings_get_default(), "gtk-theme-name", &name, nullptr);
        if (name) theme = name;
        g_free(name);
    }
    return theme.find("HighContrast") != theme.npos;
}

wxPoint2DDouble OnEllipse(double radius, double flatness, double angle) {
    const wxPoint2DDouble flat(radius * std::cos(angle), radius * flatness * std::sin(angle));
    return {flat.m_x * std::cos(kTilt) - flat.m_y * std::sin(kTilt),
            flat.m_x * std::sin(kTilt) + flat.m_y * std::cos(kTilt)};
}

/** A tilted ellipse round (0, 0) between two angles. */
wxGraphicsPath Orbit(wxGraphicsContext& canvas, double radius, double from, double to) {
    constexpr double kFlatness = 0.36;
    constexpr int kSteps = 96;
    wxGraphicsPath path = canvas.CreatePath();
    for (int i = 0; i <= kSteps; ++i) {
        const wxPoint2DDouble point = OnEllipse(radius, kFlatness, from + (to - from) * i / kSteps);
        if (i == 0)
            path.MoveToPoint(point);
        else
            path.AddLineToPoint(point);
    }
    return path;
}

void Disc(wxGraphicsContext& canvas, wxPoint2DDouble middle, double radius) {
    canvas.DrawEllipse(middle.m_x - radius, middle.m_y - radius, 2 * radius, 2 * radius);
}

/** The ball with its ring, round (0, 0). */
void DrawEmblem(wxGraphicsContext& canvas, double radius) {
    constexpr double kHalf = std::numbers::pi;
    const double ring = radius * 1.55;
    canvas.SetPen(canvas.CreatePen(wxGraphicsPenInfo(kRing).Width(radius * 0.17)));
    canvas.StrokePath(Orbit(canvas, ring, kHalf, 2 * kHalf));
    canvas.SetPen(wxNullPen);
    canvas.SetBrush(canvas.CreateRadialGradientBrush(-radius * 0.3, -radius * 0.4, 0, 0, radius * 1.3,
                                                     wxColour(0xbf, 0xe3, 0xf2), wxColour(0x17, 0x4a, 0x6e)));
    Disc(canvas, {0, 0}, radius);
    canvas.SetPen(canvas.CreatePen(wxGraphicsPenInfo(kRing).Width(radius * 0.17)));
    canvas.StrokePath(Orbit(canvas, ring, 0, kHalf));
    canvas.SetPen(wxNullPen);
    canvas.SetBrush(wxBrush(kPlanet));
    Disc(canvas, OnEllipse(ring, 0.36, 0.8), radius * 0.24);
}

}  // namespace

CAboutBanner::CAboutBanner(wxWindow* parent)
    : wxWindow(parent, wxID_ANY),
      m_nameFont(parent->GetFont().Scaled(2.6F).Bold()),
      m_isPlain(HasHighContrast()),
      m_isMirrored(parent->GetLayoutDirection() == wxLayout_RightToLeft) {
    SetLayoutDirection(wxLayout_LeftToRight);  // a mirrored canvas would mirror the letters
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    SetAccessibleName(*this, kName);
    SetAccessibleRole(*this, EAccessibleRole::Picture);
    KeepFocusOff(*this);
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) {
        wxPaintDC dc(this);
        const std::unique_ptr<wxGraphicsContext> canvas(wxGraphicsContext::Create(dc));
        if (canvas) Draw(*canvas);
    });
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        Refresh();
        event.Skip();
    });
}

wxSize CAboutBanner::DoGetBestClientSize() const {
    wxSize name;
    GetTextExtent(kName, &name.x, &name.y, nullptr, nullptr, &m_nameFont);
    return {name.x + FromDIP(6 * kEmblemRadius), std::max(FromDIP(kHeight), 2 * name.y)};
}

wxPoint2DDouble CAboutBanner::Sun() const {
    const wxSize size = GetClientSize();
    const double aside = FromDIP(2 * kEmblemRadius + 8);
    return {m_isMirrored ? size.x - aside : aside, size.y / 2.0};
}

void CAboutBanner::Draw(wxGraphicsContext& canvas) const {
    const wxPoint2DDouble sun = Sun();
    DrawGround(canvas, sun);
    canvas.PushState();
    canvas.Translate(sun.m_x, sun.m_y);
    DrawEmblem(canvas, FromDIP(kEmblemRadius));
    canvas.PopState();
    DrawName(canvas, sun);
}

void CAboutBanner::DrawGround(wxGraphicsContext& canvas, wxPoint2DDouble sun) const {
    const wxSize size = GetClientSize();
    canvas.SetPen(wxNullPen);
    if (m_isPlain)
        canvas.SetBrush(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW)));
    else
        canvas.SetBrush(canvas.CreateLinearGradientBrush(0, 0, 0, size.y, kNightTop, kNightBottom));
    canvas.DrawRectangle(0, 0, size.x, size.y);
    if (m_isPlain) return;
    canvas.PushState();
    canvas.Translate(sun.m_x, sun.m_y);
    constexpr int kOrbits = 6;
    for (int i = 1; i <= kOrbits; ++i) {
        const double radius = FromDIP(kEmblemRadius) * (1.6 + 1.35 * i);
        const double angle = 0.9 + 2.2 * i;
        canvas.SetPen(canvas.CreatePen(wxGraphicsPenInfo(wxColour(255, 255, 255, 46)).Width(FromDIP(1))));
        canvas.StrokePath(Orbit(canvas, radius, 0, 2 * std::numbers::pi));
        canvas.SetPen(wxNullPen);
        canvas.SetBrush(wxBrush(wxColour(255, 255, 255, 130)));
        Disc(canvas, OnEllipse(radius, 0.36, angle), FromDIP(2));
    }
    canvas.PopState();
}

void CAboutBanner::DrawName(wxGraphicsContext& canvas, wxPoint2DDouble sun) const {
    const wxColour colour = m_isPlain ? wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT) : *wxWHITE;
    canvas.SetFont(m_nameFont, colour);
    double width = 0, height = 0;
    canvas.GetTextExtent(kName, &width, &height);
    const double aside = FromDIP(2 * kEmblemRadius);
    canvas.DrawText(kName, m_isMirrored ? sun.m_x - aside - width : sun.m_x + aside, sun.m_y - height / 2);
}
