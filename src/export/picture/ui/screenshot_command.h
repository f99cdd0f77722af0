// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"

class CViewer3DSWindowHandler;
class wxWindow;

/** Asks for a file and writes the picture on the screen into it, as its name ends; the picture goes to the clipboard, too,
 * also when it cannot be written. A cancelled dialog does nothing. modelPath: gives the proposed name. The path that was
 * written, empty when the user cancelled, or why nothing was written. */
[[nodiscard]] CResult<std::wstring> RunScreenshot(const std::wstring& modelPath,
                                                  CViewer3DSWindowHandler& view, wxWindow& parent);
