// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

typedef struct _GtkWidget GtkWidget;
class wxWindow;

/** The texts of a window that is on the screen, and of all in it, of which a reader does not see the whole: cut, or with
 * letters that no font has. One sentence each. */
[[nodiscard]] std::vector<std::string> TextFaults(GtkWidget* window);
/** The same for what the toolkit draws itself: status bars and the headings of lists. */
[[nodiscard]] std::vector<std::string> DrawnTextFaults(wxWindow& window);
