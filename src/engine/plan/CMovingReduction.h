// SPDX-License-Identifier: MIT
#pragma once

/** By how much the sides of moving pictures are divided: on a software renderer the pixels of a large window take longer than a
 * moving frame has, however few the triangles are. Learns from the frames that were drawn. */
class CMovingReduction {
  public:
    /** A power of two up to kMost; 1 draws every pixel. */
    [[nodiscard]] int Divisor() const { return m_divisor; }
    /** To be called after each moving frame. ended: the clock has ended it before all was drawn. ms: how long it took. */
    void Learn(bool ended, double ms);

    static constexpr int kMost = 4;

  private:
    int m_divisor = 1;
    int m_early = 0;  ///< frames one after another that took little time
};
