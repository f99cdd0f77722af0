// SPDX-License-Identifier: MIT
#pragma once

#include <wx/bmpbndl.h>

/** Side of a tool's picture in device-independent pixels. */
constexpr int kToolIconSize = 24;

/** Loads an icon (.ico) of the images folder in this size, with all larger ones for denser displays; empty
 * when the file is missing. */
[[nodiscard]] wxBitmapBundle LoadIcon(const char* fileName, int size = kToolIconSize);
/** The same for a tool that is disabled. */
[[nodiscard]] wxBitmapBundle LoadFadedIcon(const char* fileName, int size = kToolIconSize);
