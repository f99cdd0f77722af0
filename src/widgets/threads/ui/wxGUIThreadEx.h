// SPDX-License-Identifier: MIT
#pragma once

#include <wx/event.h>

#include <cstdint>

#include "widgets/threads/ui/wxGUIThread.h"
#include "widgets/threads/ui/wxGUIThreadEvent.h"

class wxClientData;

/** A worker thread of a window. The body touches no window: it posts events (wxGUIThreadEvent) of one type, whose ids tell
 * what has happened; the window handles them on its own thread. Stopping is always StartKill, Wait, delete. */
class wxGUIThreadEx : public wxGUIThread {
  public:
    /** target must live until the thread has been waited for; null: nothing can be posted. */
    wxGUIThreadEx(wxEvtHandler* target, wxEventType type);

    /** Tells this thread from all others of the process, also from later ones at the same address. */
    [[nodiscard]] std::uint64_t Number() const { return m_number; }

  protected:
    /** Each posts an event; false when that was not possible. */
    bool PostEvent(int id) { return Post(id, 0, nullptr); }
    bool PostEvent(int id, std::int32_t value) { return Post(id, value, nullptr); }
    /** The payload belongs to the event from then on, and to the caller still when it could not be posted. */
    bool PostEvent(int id, wxClientData* payload) { return Post(id, 0, payload); }

  private:
    bool Post(int id, std::int32_t value, wxClientData* payload);

    wxEvtHandler* m_target;
    wxEventType m_type;
    std::uint64_t m_number;
};
