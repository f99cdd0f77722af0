// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class wxWindow;

/** Sets a window's name for the toolkit and for screen readers, which the toolkit's SetName does
 * not reach. */
void SetAccessibleName(wxWindow& window, const std::wstring& name);
