// SPDX-License-Identifier: MIT
#pragma once

#include <wx/window.h>

#include <vector>

/** The windows of a kind below another one, in their order. */
template <class T>
std::vector<T*> WindowsBelow(const wxWindow& parent) {
    std::vector<T*> found;
    for (wxWindow* child : parent.GetChildren()) {
        if (auto* one = dynamic_cast<T*>(child)) found.push_back(one);
        for (T* deeper : WindowsBelow<T>(*child)) found.push_back(deeper);
    }
    return found;
}
