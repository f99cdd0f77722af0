// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

class wxWindow;

/** The open dialog: the desktop's own, with a preview of the selected file at its side. Thread of
 * the windows only. */
class C3DSFileDlgI {
  public:
    C3DSFileDlgI() = delete;

    /** The ground of the previews from now on: each part 0 to 1. Black at first. */
    static void SetBackgroundColor(float r, float g, float b);
    /** Asks for a file to open. Its path, or empty when cancelled. After a choice the folder is stored in the
     * default ini file (CLocalRegStore), section "3dsFileDialog", key Path; a cancelled dialog leaves that as
     * it was. startFolder: when empty or missing, the program's samples. */
    [[nodiscard]] static std::wstring LaunchDialog(wxWindow* parent, std::wstring_view startFolder);
};
