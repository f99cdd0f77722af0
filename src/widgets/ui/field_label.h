// SPDX-License-Identifier: MIT
#pragma once

class wxStaticText;
class wxWindow;

/** Connects a label with its field: moves the label before the field in the tab order, and names the field,
 * for screen readers too, with the label's text without the colon. */
void SetLabelFor(wxStaticText& label, wxWindow& field);

/** Breaks a label's text into lines of at most this width in pixels. The toolkit's own Wrap breaks at blanks alone, of which
 * Chinese and Japanese sentences have none. */
void WrapText(wxStaticText& label, int width);
