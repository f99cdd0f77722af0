// SPDX-License-Identifier: MIT
#include "windows/CStage.h"

#include <gtk/gtk.h>
#include <wx/dialog.h>
#include <wx/evtloop.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/stopwatch.h>
#include <wx/utils.h>

#include <algorithm>
#include <cstdio>

#include "frame/ui/CAViewerFrame.h"
#include "windows/screen_picture.h"
#include "windows/text_faults.h"

namespace {

constexpr long kLongestMs = 10'000;
constexpr int kPeriodMs = 20;

bool IsOnScreen(GtkWidget* window) {
    return window && gtk_widget_get_mapped(window);
}

/** The window that the menu bar or a popup menu has open; null for none. */
GtkWidget* OpenMenu() {
    GtkWidget* grabbing = gtk_grab_get_current();
    return grabbing && GTK_IS_MENU(grabbing) && gtk_widget_get_mapped(grabbing) ? grabbing : nullptr;
}

std::vector<std::string> FaultsOf(GtkWidget* window, wxTopLevelWindow* ours) {
    std::vector<std::string> faults = TextFaults(window);
    if (ours)
        for (std::string& fault : DrawnTextFaults(*ours)) faults.push_back(std::move(fault));
    return faults;
}

}  // namespace

CStage::CStage(CAViewerFrame& frame, COptions options) : m_frame(frame), m_options(std::move(options)) {
    m_dialogs.Register();
    m_timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTick(); });
}

CStage::~CStage() = default;

/** Without pictures only windows with texts of their own count: menus are never cut, and what asks for a file is GTK's. */
bool CStage::Wants(const std::string& name) const {
    constexpr const char* kForPictures[] = {"menu-",   "context-menu", "colours", "model-list",
                                            "save-as", "save-z",       "save-p",  "save-h",
                                            "save-g",  "replace-file"};
    const bool isForPictures =
        std::ranges::any_of(kForPictures, [&](const char* begin) { return name.starts_with(begin); });
    if (m_options.folder.empty() && isForPictures) return false;
    return m_options.names.empty() || std::ranges::find(m_options.names, name) != m_options.names.end();
}

void CStage::Wait(long ms) {
    const wxStopWatch watch;
    do {
        wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_ALL);
        wxMilliSleep(2);
    } while (watch.Time() < ms);
}

void CStage::Visit(const std::string& name, GtkWidget* window, wxTopLevelWindow* ours) {
    constexpr long kPaintMs = 300, kLayoutMs = 60, kLateMs = 5'000;
    Wait(m_options.folder.empty() ? kLayoutMs : kPaintMs);
    std::vector<std::string> faults = FaultsOf(window, ours);
    const wxStopWatch watch;
    while (!faults.empty() && watch.Time() < kLateMs) {  // some windows find their size late
        Wait(kPaintMs);
        faults = FaultsOf(window, ours);
    }
    for (const std::string& fault : faults) m_faults.push_back(name + ": " + fault);
    if (!m_options.folder.empty() && !SavePicture(window, m_options.folder + "/" + name + ".png"))
        std::fprintf(stderr, "no picture of %s\n", name.c_str());
}

void CStage::Look(const std::string& name) {
    if (Wants(name)) Visit(name, m_frame.GetHandle(), &m_frame);
}

void CStage::Menu(const std::string& name, std::size_t index) {
    if (!Wants(name)) return;
    GtkWidget* title = m_frame.GetMenuBar()->GetMenu(index)->m_owner;
    auto* shell = GTK_MENU_SHELL(gtk_widget_get_parent(title));
    gtk_menu_shell_select_item(shell, title);
    Visit(name, m_frame.GetHandle(), nullptr);
    gtk_menu_shell_cancel(shell);
    Wait(0);
}

void CStage::Show(const std::string& name, wxTopLevelWindow* window) {
    if (Wants(name)) {
        if (!window->IsShown()) window->Show();
        const wxStopWatch watch;
        while (!IsOnScreen(window->GetHandle()) && watch.Time() < kLongestMs) Wait(0);
        Visit(name, window->GetHandle(), window);
    }
    window->Destroy();
    wxTheApp->ProcessIdle();
}

void CStage::Modal(const std::string& name, const std::function<void()>& work) {
    if (!Wants(name)) return;
    m_awaited = name;
    m_timer.Start(kPeriodMs);
    work();
    m_timer.Stop();
    if (!std::exchange(m_awaited, {}).empty()) m_faults.push_back(name + ": did not open");
    Wait(0);
}

void CStage::OnTick() {
    wxDialog* dialog = m_dialogs.Last();
    GtkWidget* menu = dialog ? nullptr : OpenMenu();
    GtkWidget* window = dialog ? dialog->GetHandle() : menu;
    if (m_isInTick || !IsOnScreen(window)) return;
    m_isInTick = true;
    if (!m_awaited.empty()) Visit(std::exchange(m_awaited, {}), menu ? m_frame.GetHandle() : window, dialog);
    while (m_options.holds && dialog && IsOnScreen(window)) Wait(kPeriodMs);
    if (dialog && dialog == m_dialogs.Last())
        Dismiss(*dialog);
    else if (menu)
        gtk_menu_shell_cancel(GTK_MENU_SHELL(menu));
    m_isInTick = false;
}

void CStage::Dismiss(wxDialog& dialog) {
    if (dynamic_cast<wxMessageDialog*>(&dialog))
        gtk_dialog_response(GTK_DIALOG(dialog.GetHandle()), GTK_RESPONSE_DELETE_EVENT);
    else
        dialog.EndModal(wxID_CANCEL);
}
