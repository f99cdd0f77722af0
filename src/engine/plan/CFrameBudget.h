// SPDX-License-Identifier: MIT
#pragma once

/** Learns how long a moving frame takes, and so how much one may draw. Costs are counted in triangles: what a drawing call
 * or the sorting of a transparent triangle takes counts as that many triangles. */
class CFrameBudget {
  public:
    static constexpr double kTargetMs = 28;   ///< what a moving frame is planned to take
    static constexpr double kPatientMs = 37;  ///< the same where the picture would be too coarse
    static constexpr double kLatestMs = 45;   ///< when a moving frame is ended, whatever is left out
    static constexpr double kCallCost = 30;   ///< of one drawing call
    /** This much is drawn on the slowest machine: where pixels take the time, fewer triangles save none. */
    static constexpr double kLeastCost = 200'000;

    /** The cost that fits into a frame. */
    [[nodiscard]] double MostCost(double targetMs = kTargetMs) const {
        return (targetMs - kFixedMs) / m_msPerCost;
    }
    /** How long a frame takes that costs so much. */
    [[nodiscard]] double MsOf(double cost) const { return kFixedMs + cost * m_msPerCost; }
    /** To be called after each moving frame with what it has drawn and how long that took. Slower is believed sooner than
     * faster: a frame too long shows, one too short does not. */
    void Learn(double cost, double ms);

  private:
    static constexpr double kFixedMs = 4;
    static constexpr double kSlowest = (kTargetMs - kFixedMs) / kLeastCost;
    static constexpr double kQuickest = 1e-6;
    double m_msPerCost = 6e-5;
};
