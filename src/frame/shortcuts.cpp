// SPDX-License-Identifier: MIT
#include "frame/shortcuts.h"

#include <initializer_list>
#include <string_view>

#include "base/text/lng.h"
#include "frame/command_table.h"

using lng::Mark;

namespace {

/** One row of a part of the window: its keys, or a gesture. */
struct CRow {
    std::initializer_list<const char*> keys;
    const char* gesture;
    const char* does;
};

const char* const kTurn = Mark("Turn the model");
const char* const kMove = Mark("Move the model");
const char* const kZoom = Mark("Zoom");
const char* const kToPointer = Mark("Zoom to the pointer");
const char* const kMenu = Mark("Show the commands of the view");

// clang-format off
const CRow kViewRows[] = {
    {{"Left", "Right", "Up", "Down"}, nullptr, kTurn},
    {{"plus", "minus"}, nullptr, kZoom},
    {{"Ctrl+Left", "Ctrl+Right", "Ctrl+Up", "Ctrl+Down"}, nullptr, kMove},
    {{}, Mark("Shift with the keys above"), Mark("Turn and zoom in small steps")},
    {{}, Mark("Drag"), kTurn},
    {{}, Mark("Drag with the middle button"), kMove},
    {{}, Mark("Drag with Shift and the right button"), kMove},
    {{}, Mark("Turn the wheel"), kZoom},
    {{}, Mark("Turn the wheel with Alt"), kToPointer},
    {{}, Mark("Spread two fingers on the touchpad"), kToPointer},
    {{}, Mark("Drag with Ctrl"), Mark("Zoom to a box")},
    {{}, Mark("Double-click"), Mark("Bring a point to the middle of the view")},
    {{}, Mark("Long press on a part"), Mark("Remove the part from the picture")},
    {{"Return"}, nullptr, Mark("Use the material tool on the part that was clicked last")},
    {{"Escape"}, nullptr, Mark("Put the material tool down; leave a full-screen slideshow")},
    {{"space"}, nullptr, Mark("Open the next model of the folder")},
    {{"BackSpace"}, nullptr, Mark("Open the previous model of the folder")},
    {{"Menu", "Shift+F10"}, nullptr, kMenu},
    {{}, Mark("Right click"), kMenu},
    {{"F6"}, nullptr, Mark("Go to the next part of the window")},
};

const CRow kListRows[] = {
    {{"Left", "Right"}, nullptr, Mark("Go to another model")},
    {{"Page_Up", "Page_Down"}, nullptr, Mark("Go to another page of models")},
    {{"Home", "End"}, nullptr, Mark("Go to the first or the last model")},
    {{}, Mark("Type a name"), Mark("Go to the next model with that name")},
    {{"Return"}, nullptr, Mark("Open the model")},
    {{"Escape", "Tab"}, nullptr, Mark("Go back to the view")},
};

const CRow kBrowserRows[] = {
    {{"Return"}, nullptr, Mark("Open the group, or download the model")},
    {{"F2"}, nullptr, Mark("Rename the group or the model")},
    {{"Shift+F10"}, nullptr, Mark("Show the commands of the group or the model")},
    {{"Ctrl+f"}, nullptr, Mark("Search for models")},
    {{"Escape"}, nullptr, Mark("End the search; go back to the view")},
};
// clang-format on

template <std::size_t count>
CShortcutGroup PartOfWindow(const char* title, const CRow (&rows)[count]) {
    CShortcutGroup group{lng::Text(title), {}};
    for (const CRow& row : rows)
        group.shortcuts.push_back({{row.keys.begin(), row.keys.end()},
                                   row.gesture ? lng::Text(row.gesture) : std::wstring(),
                                   lng::Text(row.does)});
    return group;
}

/** A menu's text without its key and without the mark of its letter, which may stand in brackets behind it. */
std::wstring PlainText(const char* menuText) {
    std::wstring text = lng::Text(menuText);
    text = text.substr(0, text.find(L'\t'));
    if (const std::size_t at = text.find(L"(&"); at != text.npos && text.find(L')', at) == at + 3)
        text.erase(at, 4);
    if (const std::size_t at = text.find(L'&'); at != text.npos) text.erase(at, 1);
    return text;
}

CShortcutGroup CommandsOf(EMenu menu) {
    CShortcutGroup group{PlainText(MenuTitle(menu)), {}};
    for (const CCommand& command : Commands()) {
        const std::string_view text = command.text;
        const std::size_t tab = text.find('\t');
        if (command.menu == menu && tab != text.npos)
            group.shortcuts.push_back({{std::string(text.substr(tab + 1))}, {}, PlainText(command.text)});
    }
    return group;
}

}  // namespace

std::vector<CShortcutGroup> ShortcutGroups() {
    std::vector<CShortcutGroup> groups{PartOfWindow(Mark("3D view"), kViewRows)};
    for (const EMenu menu : {EMenu::File, EMenu::View, EMenu::Export, EMenu::Tools, EMenu::Help})
        if (CShortcutGroup group = CommandsOf(menu); !group.shortcuts.empty())
            groups.push_back(std::move(group));
    groups.push_back(PartOfWindow(Mark("Model list"), kListRows));
    groups.push_back(PartOfWindow(Mark("Library of models"), kBrowserRows));
    return groups;
}
