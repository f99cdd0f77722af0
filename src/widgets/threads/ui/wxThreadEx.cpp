// SPDX-License-Identifier: MIT
#include "widgets/threads/ui/wxThreadEx.h"

#include <cassert>
#include <exception>
#include <system_error>

wxThreadEx::~wxThreadEx() {
    assert(!m_thread.joinable());
    Wait();
}

bool wxThreadEx::RunThread() {
    try {
        m_thread = std::thread([this] {
            try {
                Entry();
            } catch (const std::exception&) {  // of memory, at most: what bodies call reports by results
            }
        });
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void wxThreadEx::Wait() {
    if (m_thread.joinable()) m_thread.join();
}
