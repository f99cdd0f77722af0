// SPDX-License-Identifier: MIT
#include "widgets/tools/ui/tool_bar_art.h"

#include <wx/menu.h>
#include <wx/settings.h>

#include "widgets/tools/ui/CToolBarKeys.h"
#include "widgets/tools/ui/layout_direction.h"

namespace {

/** The standard art, except that it marks the tool that keys act on, and for the menu of the tools that do not fit: it
 * disables items and shows ticked toggles as the toolbar does. */
class CToolBarArt final : public wxAuiDefaultToolBarArt {
  public:
    wxAuiToolBarArt* Clone() override { return new CToolBarArt(*this); }

    int ShowDropDown(wxWindow* bar, const wxAuiToolBarItemArray& items) override {
        wxMenu menu;
        for (std::size_t i = 0; i < items.GetCount(); ++i) Append(menu, items[i]);
        const int chosen = bar->GetPopupMenuSelectionFromUser(menu, Below(*bar));
        return chosen == wxID_NONE ? -1 : chosen;
    }

    void DrawButton(wxDC& dc, wxWindow* bar, const wxAuiToolBarItem& tool, const wxRect& place) override {
        const wxBitmap icon = tool.GetCurrentBitmapFor(bar);
        if (IsMisplaced(dc, icon))
            DrawMirrored(dc, bar, tool, place, icon);
        else
            wxAuiDefaultToolBarArt::DrawButton(dc, bar, tool, place);
        const CToolBarKeys* keys = CToolBarKeys::Of(*bar);
        if (keys && keys->IsCurrent(tool.GetId())) DrawFocusFrame(dc, *bar, place);
    }

    void DrawOverflowButton(wxDC& dc, wxWindow* bar, const wxRect& place, int state) override {
        wxAuiDefaultToolBarArt::DrawOverflowButton(dc, bar, place, state);
        const CToolBarKeys* keys = CToolBarKeys::Of(*bar);
        if (keys && keys->IsArrowCurrent()) DrawFocusFrame(dc, *bar, place);
    }

  private:
    static bool IsMisplaced(const wxDC& dc, const wxBitmap& icon) {
        return icon.IsOk() && PlaceOfBitmap(dc, icon, 0) != 0;
    }
    /** The button without its icon, and the icon in its middle. */
    void DrawMirrored(wxDC& dc, wxWindow* bar, const wxAuiToolBarItem& tool, const wxRect& place,
                      const wxBitmap& icon) {
        wxAuiToolBarItem bare(tool);
        bare.SetBitmap({});
        bare.SetDisabledBitmap({});
        wxAuiDefaultToolBarArt::DrawButton(dc, bar, bare, place);
        const wxSize size(static_cast<int>(icon.GetLogicalWidth()),
                          static_cast<int>(icon.GetLogicalHeight()));
        const wxRect middle = wxRect(size).CenterIn(place);
        dc.DrawBitmap(icon, PlaceOfBitmap(dc, icon, middle.x), middle.y, true);
    }
    static void Append(wxMenu& menu, const wxAuiToolBarItem& tool) {
        if (tool.GetKind() == wxITEM_SEPARATOR) {
            if (menu.GetMenuItemCount() > 0) menu.AppendSeparator();
            return;
        }
        const bool isToggle = tool.GetKind() == wxITEM_CHECK;
        if (!isToggle && tool.GetKind() != wxITEM_NORMAL) return;
        const wxString text = wxControl::EscapeMnemonics(tool.GetShortHelp());
        auto* item =
            new wxMenuItem(&menu, tool.GetId(), text, wxEmptyString, isToggle ? wxITEM_CHECK : wxITEM_NORMAL);
        if (!isToggle) item->SetBitmap(tool.GetBitmapBundle());
        menu.Append(item);
        item->Enable((tool.GetState() & wxAUI_BUTTON_STATE_DISABLED) == 0);
        if (isToggle) item->Check((tool.GetState() & wxAUI_BUTTON_STATE_CHECKED) != 0);
    }
    static wxPoint Below(const wxWindow& bar) {
        const wxSize size = bar.GetClientSize();
        return {size.x, size.y};
    }
};

}  // namespace

/** In a colour that stands out in every theme. */
void DrawFocusFrame(wxDC& dc, const wxWindow& window, const wxRect& place) {
    const int width = window.FromDIP(2);
    dc.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT), width));
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.DrawRoundedRectangle(wxRect(place).Deflate(width / 2), window.FromDIP(3));
}

wxAuiToolBarArt* MakeToolBarArt() {
    return new CToolBarArt;
}

void ShowArrowWhereNeeded(wxAuiToolBar& bar) {
    bar.Bind(wxEVT_SIZE, [&bar](wxSizeEvent& event) {
        if (bar.GetOverflowVisible() == bar.GetToolBarFits()) bar.SetOverflowVisible(!bar.GetToolBarFits());
        event.Skip();
    });
}
