// SPDX-License-Identifier: MIT
#include "export/pov/ui/CPovExportDialog.h"

#include <wx/button.h>
#include <wx/log.h>
#include <wx/sizer.h>
#include <wx/statline.h>

#include "base/text/lng.h"
#include "export/pov/pov_hand_over.h"
#include "export/pov/ui/CPovExportProgCtrl.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "settings/CSettings.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/run_job.h"

namespace {

constexpr int kIdExport = 1001;
constexpr int kStartDelayMs = 200;
constexpr std::chrono::milliseconds kAppearLimit(2000);
constexpr std::chrono::milliseconds kServeLimit(50);

}  // namespace

CPovExportDialog::CPovExportDialog(wxWindow* parent, const C3ds2Pov::COutFormat& format,
                                   const CPovSource& source)
    : wxDialog(parent, wxID_ANY, lng::Text("3ds File Export Status"), wxDefaultPosition,
               parent->FromDIP(wxSize(450, 100))),
      m_format(format),
      m_source(source),
      m_timer(this),
      m_bar(new CPovExportProgCtrl(this)),
      m_open(new wxButton(this, kIdOpen, lng::Text("Open with POV-RAY"))),
      m_close(new wxButton(this, kIdClose, lng::Text("Close"))) {
    SetAccessibleName(*m_bar, GetTitle().ToStdWstring());
    SetTitle(lng::Text("3ds File Export Status -") +
             file_util_ex::ShownText(CSettings::Instance().povLastName));
    m_open->Disable();
    m_close->Disable();
    SetEscapeId(kIdClose);

    const int border = FromDIP(5);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(m_open, wxSizerFlags().Border(wxALL, border));
    row->Add(m_close, wxSizerFlags().Border(wxALL, border));
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(m_bar, wxSizerFlags().Expand().Border(wxALL, border));
    column->Add(new wxStaticLine(this), wxSizerFlags().Expand());
    column->Add(row, wxSizerFlags().Right());
    SetSizerAndFit(column);
    CentreOnParent();

    Bind(wxEVT_TIMER, [this](wxTimerEvent&) { QueueEvent(new wxCommandEvent(wxEVT_MENU, kIdExport)); });
    Bind(
        wxEVT_MENU, [this](wxCommandEvent&) { Export(); }, kIdExport);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { OpenWithPovRay(); }, kIdOpen);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { EndModal(kIdClose); }, kIdClose);
}

void CPovExportDialog::StartSoon() {
    m_timer.StartOnce(kStartDelayMs);
}

void CPovExportDialog::EndModal(int code) {
    // A second click may be waiting when the first has ended it.
    if (m_finished && IsModal()) wxDialog::EndModal(code);
}

void CPovExportDialog::Export() {
    const CBusyCursor cursor;
    m_bar->ShowNow(kAppearLimit);  // on a busy machine the delay may be too short
    // The result is ignored: the window tells only that the export has ended.
    const std::string output = file_util_ex::ConvertToUTF8(CSettings::Instance().povLastName);
    (void)C3ds2Pov::TryExport(m_source, output, m_format, this).HasValue();
}

void CPovExportDialog::OpenWithPovRay() {
    if (!m_open->IsEnabled()) return;  // the second click of a double one
    m_open->Disable();
    const wxLogNull quiet;
    const std::wstring& output = CSettings::Instance().povLastName;
    if (!file_util_ex::DoesFileExist(output)) {  // the export failed
        CUserPrompt::Instance().ShowMessage(
            lng::Text(CError{EErrorCode::NotFound, lng::Mark("there is no such file or folder"),
                             file_util_ex::ConvertToUTF8(output)}));
    } else {
        bool opened = false;
        RunJob([&](CJobProgress&) { opened = std_file_paths::LaunchBrowser(output).HasValue(); });
        if (!opened) CUserPrompt::Instance().ShowMessage(pov_hand_over::WhyNot(pov_hand_over::WhatIsThere()));
    }
    QueueEvent(new wxCommandEvent(wxEVT_BUTTON, kIdClose));
}

void CPovExportDialog::Begin(int steps) {
    m_bar->Begin(static_cast<unsigned>(steps));
}

void CPovExportDialog::Step() {
    m_bar->Step();
}

void CPovExportDialog::Work(const std::function<void()>& work) {
    RunJob([&](CJobProgress&) { work(); }, [this](CJobProgress&) { m_bar->ShowNow(kServeLimit); });
}

void CPovExportDialog::Finished() {
    m_bar->Complete();  // drops clicks that came too early
    m_finished = true;
    m_open->Enable();
    m_close->Enable();
    m_open->SetFocus();
}
