// SPDX-License-Identifier: MIT
#include "frame/dialogs/ui/CAboutBox.h"

#include <wx/font.h>
#include <wx/hyperlink.h>
#include <wx/iconbndl.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "base/text/lng.h"
#include "files/std_file_paths.h"
#include "frame/dialogs/ui/CAboutBanner.h"
#include "frame/dialogs/ui/dialog_buttons.h"
#include "frame/dialogs/ui/frame_dialogs.h"
#include "widgets/ui/field_label.h"
#include "widgets/ui/run_job.h"

namespace {

constexpr int kMargin = 16, kGap = 4, kLetteringPt = 11, kLineChars = 46;

wxFont Lettering() {
    return {kLetteringPt, wxFONTFAMILY_DEFAULT, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_NORMAL,
            false,        "Tahoma Bold"};
}

}  // namespace

CAboutBox::CAboutBox(wxWindow* parent) : wxDialog(parent, wxID_ANY, lng::Text("About Orbivue")) {
    SetIcons(wxIconBundle(wxString(std_file_paths::GetImgPath(L"main.ico")), wxBITMAP_TYPE_ICO));
    SetFont(Lettering());
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(new CAboutBanner(this), wxSizerFlags().Expand());
    column->Add(MakeTexts(), wxSizerFlags(1).Expand().Border(wxALL, FromDIP(kMargin)));
    column->Add(MakeDialogButtons(*this, {wxID_OK}), wxSizerFlags().Expand().Border(wxALL, FromDIP(5)));
    SetSizerAndFit(column);
    SetEscapeId(wxID_OK);
    CentreOnParent();
    FindWindow(wxID_OK)->SetFocus();  // not the links, which Enter would open
}

wxSizer* CAboutBox::MakeTexts() {
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto add = [&](const std::wstring& text) {
        auto* line = new wxStaticText(this, wxID_ANY, wxControl::EscapeMnemonics(text));
        WrapText(*line, kLineChars * GetCharWidth());
        column->Add(line, wxSizerFlags().Border(wxTOP | wxBOTTOM, FromDIP(kGap)));
    };
    add(lng::Text("Orbivue Version") + L" " ORBIVUE_VERSION);
    add(lng::Text("A viewer and exporter for 3D Studio scenes"));
    column->AddSpacer(FromDIP(2 * kGap));
    add(L"Kestrane");
    AddLink(*column, ORBIVUE_WEBSITE, ORBIVUE_WEBSITE);
    AddLink(*column, ORBIVUE_MAIL, "mailto:" ORBIVUE_MAIL);
    column->AddSpacer(FromDIP(2 * kGap));
    add(
        lng::Text("Orbivue is free software under the MIT licence. It uses wxWidgets, GTK, lib3ds and other "
                  "free libraries; the file NOTICE names all of them and their licences."));
    return column;
}

void CAboutBox::AddLink(wxSizer& column, const wxString& label, const wxString& address) {
    auto* link = new wxHyperlinkCtrl(this, wxID_ANY, label, address);
    link->Bind(wxEVT_HYPERLINK, [](wxHyperlinkEvent& event) {
        const std::wstring target = event.GetURL().ToStdWstring();
        // The user sees that no program came.
        RunJob([&](CJobProgress&) { (void)std_file_paths::LaunchBrowser(target); });
    });
    column.Add(link, wxSizerFlags().Border(wxTOP | wxBOTTOM, FromDIP(kGap / 2)));
}

void ShowAbout(wxFrame& frame) {
    CAboutBox(&frame).ShowModal();
}
