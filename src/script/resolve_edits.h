// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "model/edit/CEdit.h"
#include "script/CScriptFiles.h"

class CNoteList;

/** Where an edit list stands. Paths are UTF-8. */
struct CEditsOrigin {
    const std::string& namingFile;  ///< the script or template
    std::string modelPath;          ///< may be empty
};

/** Puts the path of a found file in place of what a list says. False where the edit names a file that is not found or must
 * not be used; a note then tells. */
[[nodiscard]] bool ResolveEdit(CEdit& edit, const CEditsOrigin& origin, CScriptFiles& files,
                               CNoteList& notes);
/** Notes what a person should know of a look-up. */
void NotePicture(const CScriptFiles::CPicture& picture, std::string_view written, CNoteList& notes);
