// SPDX-License-Identifier: MIT
#include "frame/ui/command_menus.h"

#include <gtk/gtk.h>
#include <wx/accel.h>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"

namespace {

constexpr int kSceneCamerasMenu = WidgetIdOf(kCmdFirstSceneCamera) - 1;

wxString Escaped(const std::string& name) {
    return wxControl::EscapeMnemonics(wxString(lng::ConvertFromUTF8(name)));
}

void Tick(wxMenu& menu, const CSceneCameras& cameras) {
    bool isTicked = false;  // of several cameras with one name the first is used
    for (std::size_t i = 0; i < menu.GetMenuItemCount() && i < cameras.names.size(); ++i) {
        const bool tick = !isTicked && cameras.names[i] == cameras.current;
        isTicked = isTicked || tick;
        wxMenuItem* item = menu.FindItemByPosition(i);
        if (item->IsChecked() != tick) item->Check(tick);
    }
}

void FillWithCameras(wxMenu& menu, const CSceneCameras& cameras) {
    while (menu.GetMenuItemCount() > 0) menu.Destroy(menu.FindItemByPosition(0));
    for (std::size_t i = 0; i < cameras.names.size() && i < kMaxSceneCameras; ++i)
        menu.AppendCheckItem(WidgetIdOf(kCmdFirstSceneCamera) + static_cast<int>(i),
                             Escaped(cameras.names[i]));
    Tick(menu, cameras);
}

bool HasTick(const CCommand& command) {
    return command.isToggle || command.marksRun;
}

wxMenuItem* Append(wxMenu& menu, const CCommand& command, bool hasTick) {
    return menu.Append(WidgetIdOf(command.id), lng::Text(command.text), wxEmptyString,
                       hasTick ? wxITEM_CHECK : wxITEM_NORMAL);
}

/** A command that is ticked only while it runs is no switch, and an empty box beside it would make it look like one. */
void HideEmptyBox(const wxMenuItem& item) {
    GtkCssProvider* style = gtk_css_provider_new();
    gtk_css_provider_load_from_data(style,
                                    "check:not(:checked) { -gtk-icon-source: none; border-color: "
                                    "transparent; background: none; box-shadow: none; }",
                                    -1, nullptr);
    gtk_style_context_add_provider(gtk_widget_get_style_context(item.GetMenuItem()),
                                   GTK_STYLE_PROVIDER(style), GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(style);
}

void AppendCamerasMenu(wxMenu& menu, const CSceneCameras& cameras) {
    auto* subMenu = new wxMenu;
    FillWithCameras(*subMenu, cameras);
    menu.Append(kSceneCamerasMenu, lng::Text("Cameras of the scene"), subMenu)
        ->Enable(!cameras.names.empty());
}

}  // namespace

std::unique_ptr<wxMenuBar> MakeMenuBar() {
    auto bar = std::make_unique<wxMenuBar>();
    for (const EMenu which : {EMenu::File, EMenu::View, EMenu::Export, EMenu::Tools, EMenu::Help}) {
        auto* menu = new wxMenu;
        for (const CCommand& command : Commands()) {
            if (command.menu != which) continue;
            const wxMenuItem* item = Append(*menu, command, HasTick(command));
            if (command.marksRun) HideEmptyBox(*item);
            if (command.id == kCmdIsoCamera) AppendCamerasMenu(*menu, {});
            if (command.endsGroup) menu->AppendSeparator();
        }
        bar->Append(menu, lng::Text(MenuTitle(which)));
    }
    return bar;
}

std::unique_ptr<wxMenu> MakeContextMenu(const CSceneCameras& sceneCameras, const CStateOfCommand& stateOf) {
    auto menu = std::make_unique<wxMenu>();
    for (const int id : ContextMenuOrder()) {
        const CCommand* command = FindCommand(id);
        if (!command) {
            menu->AppendSeparator();
            continue;
        }
        const CCommandState state = stateOf(*command);
        wxMenuItem* item = Append(*menu, *command, command->isToggle);
        item->Enable(state.enabled);
        if (command->isToggle) item->Check(state.checked);
        if (id == kCmdIsoCamera && !sceneCameras.names.empty()) AppendCamerasMenu(*menu, sceneCameras);
    }
    return menu;
}

void ShowSceneCameras(wxMenuBar& bar, const CSceneCameras& cameras) {
    wxMenuItem* item = bar.FindItem(kSceneCamerasMenu);
    FillWithCameras(*item->GetSubMenu(), cameras);
    item->Enable(!cameras.names.empty());
}

void TickSceneCamera(wxMenuBar& bar, const CSceneCameras& cameras) {
    Tick(*bar.FindItem(kSceneCamerasMenu)->GetSubMenu(), cameras);
}

void ShowStates(wxMenuBar& bar, const CStateOfCommand& stateOf) {
    for (const CCommand& command : Commands()) {
        if (command.id == kCmdFirstRecentFile) continue;  // CRecentFileListMgr updates its list
        wxMenuItem* item = bar.FindItem(WidgetIdOf(command.id));
        const CCommandState state = stateOf(command);
        if (item->IsEnabled() != state.enabled) item->Enable(state.enabled);
        if (HasTick(command) && item->IsChecked() != state.checked) item->Check(state.checked);
    }
}

void ShowStepNames(wxMenuBar& bar, const std::wstring& undo, const std::wstring& redo) {
    const auto show = [&bar](int id, std::wstring name) {
        constexpr std::size_t kLongest = 50;
        if (name.size() > kLongest) name = name.substr(0, kLongest - 1) + L'\u2026';
        const wxString text = lng::Text(FindCommand(id)->text);
        wxString shown = text.BeforeFirst('\t');
        if (!name.empty())
            shown = lng::Labelled(shown.ToStdWstring(),
                                  wxControl::EscapeMnemonics(file_util_ex::ShownName(name)).ToStdWstring());
        shown += "\t" + text.AfterFirst('\t');
        wxMenuItem* item = bar.FindItem(WidgetIdOf(id));
        if (item->GetItemLabel() != shown) item->SetItemLabel(shown);
    };
    show(kCmdUndo, undo);
    show(kCmdRedo, redo);
}

void AlignHelpRight(wxMenuBar& bar) {
    GtkWidget* title = bar.GetMenu(bar.GetMenuCount() - 1)->m_owner;
    if (title) g_object_set(title, "right-justified", TRUE, nullptr);
}

wxAcceleratorTable MakeAcceleratorTable() {
    std::vector<wxAcceleratorEntry> entries;
    for (const CCommand& command : Commands()) {
        wxAcceleratorEntry entry;
        const std::wstring text = lng::Text(command.text);
        if (text.find(L'\t') == std::wstring::npos || !entry.FromString(text)) continue;
        entry.Set(entry.GetFlags(), entry.GetKeyCode(), WidgetIdOf(command.id));
        entries.push_back(entry);
    }
    return {static_cast<int>(entries.size()), entries.data()};
}
