// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include "widgets/threads/ui/wxThreadEx.h"

/** A thread that a window has asked for something, and may ask to stop. */
class wxGUIThread : public wxThreadEx {
  public:
    /** Asks the body to stop; it does so when it next asks DoContinue. */
    void StartKill() { m_isKilled = true; }
    /** False once a stop was asked for. Any thread. */
    [[nodiscard]] bool DoContinue() const { return !m_isKilled; }
    /** Ends the body: asks it to stop and waits, while windows repaint and all input waits. */
    void StopPainting();

  private:
    std::atomic<bool> m_isKilled = false;
};
