// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"

class CViewer3DSWindowHandler;
class wxWindow;

/** Asks for a file and writes the view's scene into it as glTF (.glb); windows repaint meanwhile, and the view tells its
 * progress (see CViewer3DSWindowHandler::LoadBeside). modelPath: gives the proposed name. The path that was written, empty
 * when the user cancelled or no model is shown, or why nothing was written. The view's model must not change during
 * the call. */
[[nodiscard]] CResult<std::wstring> RunGltfExport(const std::wstring& modelPath,
                                                  CViewer3DSWindowHandler& view, wxWindow& parent);
