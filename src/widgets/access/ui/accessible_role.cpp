// SPDX-License-Identifier: MIT
#include "widgets/access/ui/accessible_role.h"

#include <gtk/gtk.h>
#include <wx/window.h>

#include "files/file_util_ex.h"
#include "widgets/access/ui/atk_role.h"
#include "widgets/ui/accessible_name.h"

AtkRole AtkRoleOf(EAccessibleRole role) {
    switch (role) {
        case EAccessibleRole::Dialog:
            return ATK_ROLE_DIALOG;
        case EAccessibleRole::ToolBar:
            return ATK_ROLE_TOOL_BAR;
        case EAccessibleRole::Button:
            return ATK_ROLE_PUSH_BUTTON;
        case EAccessibleRole::ToggleButton:
            return ATK_ROLE_TOGGLE_BUTTON;
        case EAccessibleRole::List:
            return ATK_ROLE_LIST;
        case EAccessibleRole::ListItem:
            return ATK_ROLE_LIST_ITEM;
        case EAccessibleRole::Tree:
            return ATK_ROLE_TREE;
        case EAccessibleRole::TreeItem:
            return ATK_ROLE_TREE_ITEM;
        case EAccessibleRole::StatusBar:
            return ATK_ROLE_STATUSBAR;
        case EAccessibleRole::Label:
            return ATK_ROLE_LABEL;
        case EAccessibleRole::View:
            return ATK_ROLE_CANVAS;
        case EAccessibleRole::ComboBox:
            return ATK_ROLE_COMBO_BOX;
        case EAccessibleRole::Picture:
            return ATK_ROLE_IMAGE;
    }
    return ATK_ROLE_UNKNOWN;
}

void SetAccessibleRole(wxWindow& window, EAccessibleRole role) {
    if (GtkWidget* widget = FocusWidgetOf(window))
        atk_object_set_role(gtk_widget_get_accessible(widget), AtkRoleOf(role));
}

void SetAccessibleDescription(wxWindow& window, const std::wstring& text) {
    if (GtkWidget* widget = FocusWidgetOf(window))
        atk_object_set_description(gtk_widget_get_accessible(widget),
                                   file_util_ex::ConvertToUTF8(text).c_str());
}
