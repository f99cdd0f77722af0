// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

class wxWindow;

// Connecting to the library of models, with what the user sees of it. Thread of the windows only, which waits for the library's
// answer meanwhile.

/** True when the library speaks this program's version of the protocol. If not, a dialog says where there is a newer
 * program. */
[[nodiscard]] bool CheckClientVersion(wxWindow* parent);
/** Connects to the library of the settings, see OpenModelServer. False when it cannot be used; the user was told, and
 * nothing is connected. tell, which may be empty, gets the reason before a message box does without one. */
[[nodiscard]] bool ConnectToModelServer(wxWindow* parent,
                                        const std::function<void(const std::wstring& reason)>& tell = {});
