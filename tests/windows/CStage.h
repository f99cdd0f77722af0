// SPDX-License-Identifier: MIT
#pragma once

#include <wx/timer.h>

#include <functional>
#include <string>
#include <vector>

#include "widgets/ui/CModalDialogs.h"

class CAViewerFrame;
class wxTopLevelWindow;
typedef struct _GtkWidget GtkWidget;

/** Brings windows up one after the other, looks at each when it is on the screen, and takes it away. */
class CStage {
  public:
    struct COptions {
        std::string folder;              ///< where pictures go; empty: none is taken
        std::vector<std::string> names;  ///< of the windows that are wanted; none: all
        bool holds = false;              ///< modal dialogs stay until somebody closes them
    };
    CStage(CAViewerFrame& frame, COptions options);
    CStage(const CStage&) = delete;
    CStage& operator=(const CStage&) = delete;
    ~CStage();

    [[nodiscard]] CAViewerFrame& Frame() { return m_frame; }
    [[nodiscard]] bool Wants(const std::string& name) const;
    /** The main window as it is now. */
    void Look(const std::string& name);
    /** One of its menus, open. */
    void Menu(const std::string& name, std::size_t index);
    /** A window that was made and not shown yet; it is destroyed. */
    void Show(const std::string& name, wxTopLevelWindow* window);
    /** What the work opens as a modal dialog, or as a menu; it is cancelled, as are those that follow it. */
    void Modal(const std::string& name, const std::function<void()>& work);
    /** What was wrong with the texts of the windows, "window: fault" each. */
    [[nodiscard]] const std::vector<std::string>& Faults() const { return m_faults; }
    /** Serves events for a while. */
    static void Wait(long ms);

  private:
    void Visit(const std::string& name, GtkWidget* window, wxTopLevelWindow* ours);
    void OnTick();
    void Dismiss(wxDialog& dialog);

    CAViewerFrame& m_frame;
    COptions m_options;
    std::vector<std::string> m_faults;
    CModalDialogs m_dialogs;
    wxTimer m_timer;
    std::string m_awaited;  ///< the name of the dialog that comes next
    bool m_isInTick = false;
};
