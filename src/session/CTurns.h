// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/** Lets only one piece of work at a time use the document. While an opening, a question, a dialog or an
 * export holds the turn, other work waits: only the newest request is kept, and a request to close, which is
 * done first. All calls come from one thread. */
class CTurns {
  public:
    /** wake is called when the turn becomes free while something waits. It must arrange a later call
     * of RunWaiting. */
    explicit CTurns(std::function<void()> wake) : m_wake(std::move(wake)) {}

    /** Holds the turn during its lifetime. Holds may be nested. */
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
    /** Keeps work for later and drops the work kept before. Only while the turn is held. */
    void Keep(std::function<void()> work);
    /** Drops the work that was kept. */
    void ForgetKept() { m_waiting = nullptr; }
    /** Drops the work that was kept, and a request to close. */
    void ForgetAll() { m_waiting = m_close = nullptr; }
    /** True when the window may close now. If not, close is kept, and RunWaiting calls it. */
    [[nodiscard]] bool MayClose(std::function<void()> close);
    /** Runs what waits. Does nothing while the turn is held. */
    void RunWaiting();

  private:
    void Release();

    std::function<void()> m_wake;
    std::function<void()> m_waiting;
    std::function<void()> m_close;
    int m_holds = 0;
};
