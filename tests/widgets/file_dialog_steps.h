// SPDX-License-Identifier: MIT
#pragma once

#include <wx/filedlg.h>

#include <string>

#include "widgets/CModalDriver.h"
#include "widgets/ui/file_chooser.h"

/** Steps for dialogs that ask for a file. */
namespace file_dialog_steps {

/** Waits until a dialog proposes that name. */
inline CModalDriver::CStep Proposes(const std::string& name) {
    return [name] {
        wxFileDialog* dialog = CModalDriver::FileDialog();
        return dialog && file_chooser::Name(*dialog) == name;
    };
}

/** Waits until a dialog proposes that name, and gives it another one, in that folder. */
inline CModalDriver::CStep Rename(const std::string& proposed, const std::string& folder,
                                  const std::string& name) {
    return [proposed, folder, name] {
        if (!Proposes(proposed)()) return false;
        file_chooser::SetFolder(*CModalDriver::FileDialog(), folder);
        file_chooser::SetName(*CModalDriver::FileDialog(), name);
        return true;
    };
}

}  // namespace file_dialog_steps
