// SPDX-License-Identifier: MIT
#pragma once

#include <wx/window.h>

class wxGraphicsContext;

/** The picture at the head of the about box: the program's name and emblem among orbits. It has its own colours, on
 * light and dark desktops alike; on one with high contrast it has the colours of the theme and no decoration. */
class CAboutBanner final : public wxWindow {
  public:
    explicit CAboutBanner(wxWindow* parent);
    [[nodiscard]] bool AcceptsFocus() const override { return false; }

  private:
    [[nodiscard]] wxSize DoGetBestClientSize() const override;
    void Draw(wxGraphicsContext& canvas) const;
    void DrawGround(wxGraphicsContext& canvas, wxPoint2DDouble sun) const;
    void DrawName(wxGraphicsContext& canvas, wxPoint2DDouble sun) const;
    /** The middle of the emblem. */
    [[nodiscard]] wxPoint2DDouble Sun() const;

    wxFont m_nameFont;
    bool m_isPlain;
    bool m_isMirrored;
};
