// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

/** What became of a picture that was drawn. */
enum class EDrawn { Whole, Reduced, Interrupted };

/** Decides when a view moves, so that its pictures must come quickly, and when it rests, so that the full
 * picture is due. Knows no window and no clock: each call is told the time. */
class CMotion {
  public:
    using CTime = std::chrono::steady_clock::time_point;
    /** This long after the last movement the full picture is begun, also while a button is still held. Long
     * enough for the next event of a hand that moves, and with a picture of 100 ms far below 200 ms. */
    static constexpr std::chrono::milliseconds kStill{50};

    /** Something was moved: by a drag, the wheel, a key, a camera. */
    void Moved(CTime now) {
        m_stillFrom = now + kStill;
        m_isToBeShown = true;
    }
    /** The button came up: nothing more is to be waited for. */
    void Released(CTime now) {
        m_stillFrom = now;
        m_isToBeShown = false;
    }
    /** Something moves by itself: the automatic rotation, an animation. */
    void SetRunning(bool running) { m_isRunning = running; }
    /** A picture was drawn. An interrupted one is not shown, and what interrupted it counts as movement. */
    void Drawn(EDrawn how, CTime now);

    [[nodiscard]] bool IsMoving(CTime now) const { return m_isRunning || IsMovedByHand(now); }
    /** The user moves it, and waits for each picture. */
    [[nodiscard]] bool IsMovedByHand(CTime now) const { return now < m_stillFrom; }
    /** No picture shows the last movement yet: the next one must come quickly, however late it is begun. */
    [[nodiscard]] bool IsToBeShown() const { return m_isToBeShown; }
    /** The view shows less than the full picture. */
    [[nodiscard]] bool OwesPicture() const { return m_owes; }
    /** After what time the full picture is due if nothing moves until then; nothing when it is shown
     * already, or something moves by itself. */
    [[nodiscard]] std::optional<std::chrono::milliseconds> DueIn(CTime now) const;

  private:
    CTime m_stillFrom{};
    bool m_isRunning = false;
    bool m_owes = false;
    bool m_isToBeShown = false;
};
