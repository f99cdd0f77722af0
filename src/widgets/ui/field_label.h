// SPDX-License-Identifier: MIT
#pragma once

class wxStaticText;
class wxWindow;

/** Connects a label with its field: moves the label before the field in the tab order, and names the field,
 * for screen readers too, with the label's text without the colon. */
void SetLabelFor(wxStaticText& label, wxWindow& field);
