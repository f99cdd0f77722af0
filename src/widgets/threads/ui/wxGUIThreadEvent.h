// SPDX-License-Identifier: MIT
#pragma once

#include <wx/clntdata.h>
#include <wx/event.h>

#include <cstdint>
#include <memory>

/** What a worker thread posts to a window: the id tells what it means. */
class wxGUIThreadEvent final : public wxEvent {
  public:
    /** thread: the number of the wxGUIThreadEx that posts it. */
    wxGUIThreadEvent(wxEventType type, int id, std::uint64_t thread, std::int32_t value)
        : wxEvent(id, type), m_thread(thread), m_value(value) {}

    [[nodiscard]] wxEvent* Clone() const override { return new wxGUIThreadEvent(*this); }
    [[nodiscard]] wxEventCategory GetEventCategory() const override { return wxEVT_CATEGORY_THREAD; }

    /** Tells whether the thread that posted it is the one that a window has now: an event may arrive when its thread was
     * stopped and another one was started. */
    [[nodiscard]] std::uint64_t Thread() const { return m_thread; }
    [[nodiscard]] std::int32_t Value() const { return m_value; }

    void Give(wxClientData* payload) noexcept { m_payload->reset(payload); }
    /** Hands the payload over, to the first who asks. One that nobody takes is deleted with the event. */
    template <class T>
    [[nodiscard]] std::unique_ptr<T> Take() {
        return std::unique_ptr<T>(static_cast<T*>(m_payload->release()));
    }

  private:
    using CPayload = std::unique_ptr<wxClientData>;

    std::uint64_t m_thread;
    std::int32_t m_value;
    std::shared_ptr<CPayload> m_payload = std::make_shared<CPayload>();  ///< shared by the toolkit's copies
};
