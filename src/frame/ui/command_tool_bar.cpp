// SPDX-License-Identifier: MIT
#include "frame/ui/command_tool_bar.h"

#include <wx/aui/auibar.h>
#include <wx/bmpbndl.h>
#include <wx/icon.h>
#include <wx/image.h>
#include <wx/log.h>

#include <functional>
#include <string>

#include "base/text/lng.h"
#include "files/std_file_paths.h"
#include "widgets/ui/accessible_name.h"

namespace {

/** A picture of the images folder in all sizes from one on, each passed through change. */
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

/** Grey and mostly see-through, so that it looks switched off on light and dark ground; the toolkit's own
 * way, to brighten, makes it the liveliest on a dark one. */
void Fade(wxImage& image) {
    constexpr int kOpacityPercent = 45;
    image = image.ConvertToGreyscale();
    if (!image.HasAlpha()) image.InitAlpha();
    const int pixels = image.GetWidth() * image.GetHeight();
    unsigned char* alpha = image.GetAlpha();
    for (int i = 0; i < pixels; ++i) alpha[i] = static_cast<unsigned char>(alpha[i] * kOpacityPercent / 100);
}

}  // namespace

wxBitmapBundle LoadIcon(const char* fileName, int size) {
    return LoadSizes(fileName, size, [](wxImage&) {});
}

wxAuiToolBar* MakeToolBar(wxWindow* parent) {
    auto* bar = new wxAuiToolBar(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                 wxAUI_TB_DEFAULT_STYLE | wxAUI_TB_OVERFLOW | wxAUI_TB_HORIZONTAL);
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
    // The arrow to what does not fit shows only when something does not.
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
