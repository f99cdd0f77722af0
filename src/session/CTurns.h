// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/** Sees to it that one thing at a time is done with the document. While somebody holds the turn (an opening, a
 * question, a dialog, an export), what else is asked for waits: one piece of work, the newest; and closing,
 * before which nothing else comes. One thread. */
class CTurns {
  public:
    /** wake is called when the turn is free and something waits; it has RunWaiting called, later. */
    explicit CTurns(std::function<void()> wake) : m_wake(std::move(wake)) {}

    /** Holds the turn as long as it lives. */
    class CHold {
      public:
        explicit CHold(CTurns& turns) : m_turns(turns) { ++turns.m_holds; }
        CHold(const CHold&) = delete;
        CHold& operator=(const CHold&) = delete;
        ~CHold() { m_turns.Release(); }

      private:
        CTurns& m_turns;
    };

    [[nodiscard]] bool IsHeld() const { return m_holds > 0; }
    /** Keeps work for later, in place of what waited before. Only while the turn is held. */
    void Keep(std::function<void()> work);
    /** Forgets what was kept, because something newer is done. */
    void ForgetKept() { m_waiting = nullptr; }
    /** True when closing may be done now; else it is remembered, and close is called in its turn. */
    [[nodiscard]] bool MayClose(std::function<void()> close);
    /** Does what waits; nothing while the turn is held. */
    void RunWaiting();

  private:
    void Release();

    std::function<void()> m_wake;
    std::function<void()> m_waiting;
    std::function<void()> m_close;
    int m_holds = 0;
};
