// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** What the list tells of an entry under the mouse: the file's whole path, its size, and why it has no picture
 * (translated, or empty). */
[[nodiscard]] std::wstring ToolTipText(const std::wstring& path, const std::wstring& problem);
