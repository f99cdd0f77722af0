// SPDX-License-Identifier: MIT
#pragma once

class wxStaticText;
class wxWindow;

/** Makes a label a field's: it stands in front of the field in the tab order, and gives it its name (without
 * the colon), for screen readers too. */
void SetLabelFor(wxStaticText& label, wxWindow& field);
