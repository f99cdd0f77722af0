// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

/** Where the entries of a strip lie: a row of cells of one width that is scrolled through a window. Positions are pixels
 * of the window, from its left; in a window for a language that is written from right to left the first entry is the rightmost.
 * The offset is how far the strip is scrolled from its beginning. */
class CStripLayout {
  public:
    /** Cells from first to before end. */
    struct CRange {
        std::size_t first = 0, end = 0;
        friend bool operator==(const CRange&, const CRange&) = default;
    };

    void SetCells(std::size_t count, int width);
    void SetWindow(int width, bool fromRight);
    /** Clamped to what there is to be seen. False when nothing changed. */
    bool ScrollTo(long offset);
    /** By pixels, positive towards the end. */
    bool ScrollBy(long pixels) { return ScrollTo(m_offset + pixels); }
    /** Scrolls as little as shows the whole cell. */
    bool ScrollIntoView(std::size_t index);
    /** Scrolls so that the cell is in the middle, as far as the ends allow. */
    bool ScrollToMiddle(std::size_t index);

    [[nodiscard]] long Offset() const { return m_offset; }
    [[nodiscard]] long MaxOffset() const;
    [[nodiscard]] int CellWidth() const { return m_cellWidth; }
    /** Whole cells that the window holds, at least 1. */
    [[nodiscard]] std::size_t CellsOfPage() const;
    /** Cells that are seen, in part at least. */
    [[nodiscard]] CRange Visible() const;
    /** Left edge of a cell. */
    [[nodiscard]] int Left(std::size_t index) const;
    /** The cell at a position; nothing beyond the last. */
    [[nodiscard]] std::optional<std::size_t> At(int x) const;
    /** Pixels of the mouse as pixels towards the end of the strip. */
    [[nodiscard]] long TowardsEnd(long pixelsToTheRight) const {
        return m_fromRight ? -pixelsToTheRight : pixelsToTheRight;
    }
    [[nodiscard]] bool IsFromRight() const { return m_fromRight; }

  private:
    std::size_t m_count = 0;
    int m_cellWidth = 1, m_width = 0;
    bool m_fromRight = false;
    long m_offset = 0;
};
