// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class wxWindow;

/** What a window, or an item that a window draws, is for screen readers. */
enum class EAccessibleRole {
    Dialog,
    ToolBar,
    Button,
    ToggleButton,
    List,
    ListItem,
    Tree,
    TreeItem,
    StatusBar,
    Label,
    View,  ///< shows a picture that keys and mouse act on
    ComboBox,
    Picture,
};

/** Needed where the toolkit tells another one: it calls dialogs frames, and all that it draws itself panels. */
void SetAccessibleRole(wxWindow& window, EAccessibleRole role);
/** What a reader may say besides the name. */
void SetAccessibleDescription(wxWindow& window, const std::wstring& text);
