// SPDX-License-Identifier: MIT
#include "frame/ui/command_tool_bar.h"

#include <wx/aui/auibar.h>
#include <wx/bmpbndl.h>
#include <wx/icon.h>
#include <wx/image.h>
#include <wx/log.h>
#include <wx/menu.h>

#include <functional>
#include <string>

#include "base/text/lng.h"
#include "files/std_file_paths.h"
#include "widgets/ui/accessible_name.h"

namespace {

/** Loads an icon of the images folder in all sizes from a given one up, each passed through change. */
wxBitmapBundle LoadSizes(const char* fileName, int size, const std::function<void(wxImage&)>& change) {
    const wxLogNull quiet;  // a program without its pictures still works
    const wxString path = std_file_paths::GetImgPath(lng::ConvertFromUTF8(fileName));
    wxVector<wxBitmap> sizes;
    const int count = wxImage::GetImageCount(path, wxBITMAP_TYPE_ICO);
    for (int i = 0; i < count; ++i) {
        wxImage image;
        if (!image.LoadFile(path, wxBITMAP_TYPE_ICO, i) || image.GetWidth() < size) continue;
        change(image);
        sizes.push_back(wxBitmap(image));
    }
    return wxBitmapBundle::FromBitmaps(sizes);
}

/** Grey and mostly transparent, so that it looks disabled on light and dark backgrounds. The toolkit's own
 * way brightens it, which makes it conspicuous on a dark one. */
void Fade(wxImage& image) {
    constexpr int kOpacityPercent = 45;
    image = image.ConvertToGreyscale();
    if (!image.HasAlpha()) image.InitAlpha();
    const int pixels = image.GetWidth() * image.GetHeight();
    unsigned char* alpha = image.GetAlpha();
    for (int i = 0; i < pixels; ++i) alpha[i] = static_cast<unsigned char>(alpha[i] * kOpacityPercent / 100);
}

/** The standard art, except for the menu of the tools that do not fit: it disables items and shows ticked
 * toggles as the toolbar does. */
class CToolBarArt final : public wxAuiDefaultToolBarArt {
  public:
    wxAuiToolBarArt* Clone() override { return new CToolBarArt(*this); }

    int ShowDropDown(wxWindow* bar, const wxAuiToolBarItemArray& items) override {
        wxMenu menu;
        for (std::size_t i = 0; i < items.GetCount(); ++i) Append(menu, items[i]);
        const int chosen = bar->GetPopupMenuSelectionFromUser(menu, Below(*bar));
        return chosen == wxID_NONE ? -1 : chosen;
    }

  private:
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

wxBitmapBundle LoadIcon(const char* fileName, int size) {
    return LoadSizes(fileName, size, [](wxImage&) {});
}

wxAuiToolBar* MakeToolBar(wxWindow* parent) {
    auto* bar = new wxAuiToolBar(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                 wxAUI_TB_DEFAULT_STYLE | wxAUI_TB_OVERFLOW | wxAUI_TB_HORIZONTAL);
    bar->SetArtProvider(new CToolBarArt);
    SetAccessibleName(*bar, lng::Text("Toolbar"));
    bar->SetToolBitmapSize(parent->FromDIP(wxSize(kToolIconSize, kToolIconSize)));
    for (const int id : ToolBarOrder()) {
        const CCommand* command = FindCommand(id);
        if (!command) {
            bar->AddSeparator();
            continue;
        }
        const wxString tip = lng::Text(command->toolTip);
        bar->AddTool(WidgetIdOf(id), tip, LoadIcon(command->icon),
                     LoadSizes(command->icon, kToolIconSize, Fade),
                     command->isToggle ? wxITEM_CHECK : wxITEM_NORMAL, tip, tip, nullptr);
    }
    bar->Realize();
    // The overflow arrow appears only when a tool does not fit.
    bar->Bind(wxEVT_SIZE, [bar](wxSizeEvent& event) {
        if (bar->GetOverflowVisible() == bar->GetToolBarFits())
            bar->SetOverflowVisible(!bar->GetToolBarFits());
        event.Skip();
    });
    return bar;
}

void ShowStates(wxAuiToolBar& bar, const CStateOfCommand& stateOf) {
    for (const int id : ToolBarOrder()) {
        const CCommand* command = FindCommand(id);
        if (!command) continue;
        const CCommandState state = stateOf(*command);
        bar.EnableTool(WidgetIdOf(id), state.enabled);
        wxAuiToolBarItem* tool = bar.FindTool(WidgetIdOf(id));
        const int pressed = command->isToggle ? wxAUI_BUTTON_STATE_CHECKED : wxAUI_BUTTON_STATE_PRESSED;
        tool->SetState(state.checked ? tool->GetState() | pressed : tool->GetState() & ~pressed);
    }
    bar.Refresh(false);
}
