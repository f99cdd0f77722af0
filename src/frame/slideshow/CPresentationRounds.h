// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

/** Counts how often a presentation, a script of several scenes, has been played, so that its show can end.
 *
 * It is played as often as the script's `Loop` says, and then rests on its last picture; without one it is played once.
 * Where several of its scenes have a `Loop`, the largest counts. The `Loop` of a script with one scene has no effect: such a
 * script is one picture of its folder's show, which goes round until somebody stops it. */
class CPresentationRounds {
  public:
    /** A scene was opened: number index, from 0, of count scenes of a script. loop: of the scene as CScriptScene has it,
     * how often it is repeated. Each other script, and what is none (empty), begins to count anew;
     * true for such a one. */
    [[nodiscard]] bool Opened(const std::wstring& script, std::size_t index, std::size_t count, int loop) {
        const bool isOther = script != m_script;
        if (isOther) *this = {};
        m_script = script;
        m_isLast = count > 1 && index + 1 == count;
        m_loop = std::max(m_loop, loop);
        return isOther;
    }
    /** To be asked before the next scene: true when the scene shown is the last one of the last round. */
    [[nodiscard]] bool EndsHere() { return m_isLast && m_played++ >= m_loop; }
    /** The show starts: the rounds before it do not count. */
    void Begin() { m_played = 0; }

  private:
    std::wstring m_script;
    bool m_isLast = false;
    int m_loop = 0;
    int m_played = 0;  ///< whole rounds
};
