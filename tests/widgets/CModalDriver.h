// SPDX-License-Identifier: MIT
#pragma once

#include <wx/stopwatch.h>
#include <wx/timer.h>

#include <deque>
#include <functional>

#include "widgets/ui/CModalDialogs.h"

class wxDialog;
class wxFileDialog;
class wxTopLevelWindow;

/** Works a modal dialog while it is open: each step is tried again until it says that it is done, then comes
 * the next. When one is not done within 20 seconds, all that is modal is cancelled. */
class CModalDriver {
  public:
    using CStep = std::function<bool()>;

    explicit CModalDriver(std::deque<CStep> steps);
    CModalDriver(const CModalDriver&) = delete;
    CModalDriver& operator=(const CModalDriver&) = delete;
    ~CModalDriver();
    [[nodiscard]] bool IsDone() const { return m_steps.empty(); }

    /** Serves events until the condition holds; false when it does not within 20 seconds. For windows
     * that are not modal. */
    [[nodiscard]] static bool WaitFor(const std::function<bool()>& condition);
    /** Shows a frame and waits until it is active, or it would come up over a dialog that follows. */
    static void ShowFirst(wxTopLevelWindow& frame);
    /** The modal dialog that is open and active; null when there is none. */
    [[nodiscard]] static wxDialog* Dialog();
    [[nodiscard]] static wxFileDialog* FileDialog();
    /** A step: works on the dialog as soon as it is active. */
    [[nodiscard]] static CStep With(const std::function<void(wxDialog&)>& work);
    /** A step: presses a button of the active dialog. */
    [[nodiscard]] static CStep Click(int id);
    /** A step: presses a key, for whatever has the focus. */
    [[nodiscard]] static CStep Press(int key);
    /** A step: the same until it has an effect, as a press can be lost while a dialog fills itself. */
    [[nodiscard]] static CStep PressUntil(int key, const std::function<bool()>& condition);

  private:
    void OnTick();

    std::deque<CStep> m_steps;
    CModalDialogs m_dialogs;
    bool m_isInStep = false;
    wxStopWatch m_watch;
    wxTimer m_timer;
};
