// SPDX-License-Identifier: MIT
#include "widgets/access/ui/CAccessibleRows.h"

#include <utility>

CAccessibleRows::CAccessibleRows(wxWindow& window, EAccessibleRole role, CSource source)
    : m_source(std::move(source)), m_access(window, role, *this) {}

CDrawnItems::CKey CAccessibleRows::Current() const {
    const std::optional<std::size_t> current = m_source.current ? m_source.current() : std::nullopt;
    return current && *current < m_source.count() ? *current + 1 : kNone;
}
