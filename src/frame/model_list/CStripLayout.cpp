// SPDX-License-Identifier: MIT
#include "frame/model_list/CStripLayout.h"

#include <algorithm>

void CStripLayout::SetCells(std::size_t count, int width) {
    m_count = count;
    m_cellWidth = std::max(width, 1);
    (void)ScrollTo(m_offset);
}

void CStripLayout::SetWindow(int width, bool fromRight) {
    m_width = std::max(width, 0);
    m_fromRight = fromRight;
    (void)ScrollTo(m_offset);
}

bool CStripLayout::ScrollTo(long offset) {
    const long before = m_offset;
    m_offset = std::clamp(offset, 0L, MaxOffset());
    return m_offset != before;
}

bool CStripLayout::ScrollIntoView(std::size_t index) {
    const long begin = static_cast<long>(index) * m_cellWidth, end = begin + m_cellWidth;
    if (begin < m_offset) return ScrollTo(begin);
    return end > m_offset + m_width && ScrollTo(end - m_width);
}

bool CStripLayout::ScrollToMiddle(std::size_t index) {
    return ScrollTo(static_cast<long>(index) * m_cellWidth + (m_cellWidth - m_width) / 2);
}

long CStripLayout::MaxOffset() const {
    return std::max(static_cast<long>(m_count) * m_cellWidth - m_width, 0L);
}

std::size_t CStripLayout::CellsOfPage() const {
    return static_cast<std::size_t>(std::max(m_width / m_cellWidth, 1));
}

CStripLayout::CRange CStripLayout::Visible() const {
    const auto cellAt = [&](long at) { return static_cast<std::size_t>(at / m_cellWidth); };
    return {std::min(cellAt(m_offset), m_count),
            std::min(cellAt(m_offset + m_width + m_cellWidth - 1), m_count)};
}

int CStripLayout::Left(std::size_t index) const {
    const long begin = static_cast<long>(index) * m_cellWidth - m_offset;
    return static_cast<int>(m_fromRight ? m_width - begin - m_cellWidth : begin);
}

std::optional<std::size_t> CStripLayout::At(int x) const {
    const long fromBegin = (m_fromRight ? m_width - 1 - x : x) + m_offset;
    const long index = fromBegin / m_cellWidth;
    if (x < 0 || x >= m_width || fromBegin < 0 || static_cast<std::size_t>(index) >= m_count)
        return std::nullopt;
    return static_cast<std::size_t>(index);
}
