// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** A text with its "%.2f" replaced by a percentage, and "%" behind it. */
[[nodiscard]] std::wstring PercentText(std::wstring text, double percent);
