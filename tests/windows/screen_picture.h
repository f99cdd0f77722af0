// SPDX-License-Identifier: MIT
#pragma once

#include <string>

typedef struct _GtkWidget GtkWidget;

/** Saves what the screen shows of a window, with its frame and with the menus that are open, as a PNG file. */
[[nodiscard]] bool SavePicture(GtkWidget* window, const std::string& path);
