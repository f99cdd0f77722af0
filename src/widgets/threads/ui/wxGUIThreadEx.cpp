// SPDX-License-Identifier: MIT
#include "widgets/threads/ui/wxGUIThreadEx.h"

#include <atomic>
#include <memory>
#include <new>

namespace {

std::atomic<std::uint64_t> s_lastNumber = 0;

}  // namespace

wxGUIThreadEx::wxGUIThreadEx(wxEvtHandler* target, wxEventType type)
    : m_target(target), m_type(type), m_number(++s_lastNumber) {}

bool wxGUIThreadEx::Post(int id, std::int32_t value, wxClientData* payload) {
    if (!m_target) return false;
    std::unique_ptr<wxGUIThreadEvent> event;
    try {
        event = std::make_unique<wxGUIThreadEvent>(m_type, id, m_number, value);
    } catch (const std::bad_alloc&) {
        return false;
    }
    event->Give(payload);
    m_target->QueueEvent(event.release());
    return true;
}
