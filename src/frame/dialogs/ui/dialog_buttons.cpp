// SPDX-License-Identifier: MIT
#include "frame/dialogs/ui/dialog_buttons.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/sizer.h>

#include "base/text/lng.h"
#include "widgets/ui/button_label.h"

namespace {

struct CLabel {
    int id;
    const char* text;
};

constexpr CLabel kLabels[] = {
    {wxID_OK, lng::Mark("OK")}, {wxID_CANCEL, lng::Mark("Cancel")}, {wxID_CLOSE, lng::Mark("Close")}};

}  // namespace

wxSizer* MakeDialogButtons(wxDialog& dialog, std::initializer_list<int> ids) {
    auto* row = new wxStdDialogButtonSizer;
    for (const int id : ids) row->AddButton(new wxButton(&dialog, id));
    row->Realize();
    TranslateButtons(dialog);
    if (auto* first = wxDynamicCast(dialog.FindWindow(*ids.begin()), wxButton)) first->SetDefault();
    return row;
}

void TranslateButtons(wxDialog& dialog) {
    for (const CLabel& label : kLabels)
        if (auto* button = wxDynamicCast(dialog.FindWindow(label.id), wxButton))
            SetButtonLabel(*button, lng::Text(label.text));
}
