// SPDX-License-Identifier: MIT
#include "frame/ui/command_tool_bar.h"

#include <wx/aui/auibar.h>

#include "base/text/lng.h"
#include "widgets/tools/ui/CToolBarKeys.h"
#include "widgets/tools/ui/tool_bar_art.h"
#include "widgets/tools/ui/tool_icon.h"
#include "widgets/ui/accessible_name.h"

wxAuiToolBar* MakeToolBar(wxWindow* parent) {
    auto* bar = new wxAuiToolBar(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                 wxAUI_TB_DEFAULT_STYLE | wxAUI_TB_OVERFLOW | wxAUI_TB_HORIZONTAL);
    bar->SetArtProvider(MakeToolBarArt());
    CToolBarKeys::Give(*bar);
    SetAccessibleName(*bar, lng::Text("Toolbar"));
    bar->SetToolBitmapSize(parent->FromDIP(wxSize(kToolIconSize, kToolIconSize)));
    for (const int id : ToolBarOrder()) {
        const CCommand* command = FindCommand(id);
        if (!command) {
            bar->AddSeparator();
            continue;
        }
        const wxString tip = lng::Text(command->toolTip);
        bar->AddTool(WidgetIdOf(id), tip, LoadIcon(command->icon), LoadFadedIcon(command->icon),
                     command->isToggle ? wxITEM_CHECK : wxITEM_NORMAL, tip, tip, nullptr);
    }
    bar->Realize();
    ShowArrowWhereNeeded(*bar);
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
    if (CToolBarKeys* keys = CToolBarKeys::Of(bar)) keys->ToolsChanged();
}
