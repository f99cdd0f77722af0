// SPDX-License-Identifier: MIT
#pragma once

#include <string>

class wxWindow;

/** Names a window for screen readers, which the toolkit's own SetName does not reach, and for the toolkit. */
void SetAccessibleName(wxWindow& window, const std::wstring& name);
