// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

class wxWindow;

/** The open dialog: the desktop's own, with a preview of the selected file beside the list. Only the thread
 * of the windows may call it. */
class C3DSFileDlgI {
  public:
    C3DSFileDlgI() = delete;

    /** Sets the background of the following previews, 0..1. Black at first. */
    static void SetBackgroundColor(float r, float g, float b);
    /** Asks for a file to open and returns its path, empty when cancelled. Stores the folder of a chosen file
     * in the default ini file (CLocalRegStore), section "3dsFileDialog", key Path. startFolder: if empty or
     * missing, the program's samples. */
    [[nodiscard]] static std::wstring LaunchDialog(wxWindow* parent, std::wstring_view startFolder);
};
