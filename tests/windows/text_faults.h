// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

typedef struct _GtkWidget GtkWidget;
class wxWindow;

/** What of a window that is on the screen a reader does not see whole: texts that are cut or have letters that no font has, and
 * the window where it is larger than the screen. One sentence each. */
[[nodiscard]] std::vector<std::string> TextFaults(GtkWidget* window);
/** The same for what the toolkit draws itself: status bars and the headings of lists. */
[[nodiscard]] std::vector<std::string> DrawnTextFaults(wxWindow& window);
