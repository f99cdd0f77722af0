// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class CViewer3DSWindowHandler;
class wxWindow;

/** Exports what the view shows as a POV-Ray file: asks for its path, unless the settings name one, and shows
 * the progress until the user closes that window. Does nothing without a model. The view's model must not
 * change during the call. */
void RunPovExport(const std::wstring& modelPath, CViewer3DSWindowHandler& view, wxWindow& parent);
