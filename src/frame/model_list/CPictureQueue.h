// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "frame/model_list/CStripLayout.h"

class CPictureWork;

/** How a picture was looked for, or drawn. */
enum class EPictureEnd { Ready, Missing, Failed };

/** Decides which picture of a list is looked for or drawn next: those that are seen, then those within a page of them, and
 * no others. When all these are there, nothing runs. Few pieces of work are under way at once, so that scrolling
 * soon changes what comes next. Keeps a bounded number of pictures in memory, the nearest ones. Knows no clock, no
 * files and no windows. All calls come from one thread. */
class CPictureQueue {
  public:
    static constexpr std::size_t kMostLooks = 4, kMostDrawings = 2;

    /** work must outlive it. mostReady: pictures in memory, more than three pages of them. */
    CPictureQueue(CPictureWork& work, std::size_t mostReady);

    /** The list has other files. What is known of those that stay, stays. */
    void SetFiles(const std::vector<std::wstring>& paths);
    void SetVisible(CStripLayout::CRange visible);
    /** While true no drawing is begun. */
    void SetPaused(bool paused);
    /** The file was changed: its picture is looked for again. */
    void Forget(const std::wstring& path);
    /** All that failed is tried again, and all pictures are looked for again; as for a display with other
     * pixels. */
    void ForgetAll();

    /** Look and Draw have ended so. A drawing never ends with Missing. */
    void OnLooked(const std::wstring& path, EPictureEnd end) { OnEnded(path, end, EState::Looking); }
    void OnDrawn(const std::wstring& path, EPictureEnd end) { OnEnded(path, end, EState::Drawing); }

    /** True when all that is near has its picture, or the reason why there is none. */
    [[nodiscard]] bool IsDone() const;

  private:
    enum class EState { Unknown, Looking, Missing, Drawing, Ready, Failed };

    [[nodiscard]] EState StateOf(const std::wstring& path) const;
    void OnEnded(const std::wstring& path, EPictureEnd end, EState from);
    [[nodiscard]] std::vector<std::size_t> Near() const;
    void Proceed();
    void DropFarthest();

    CPictureWork& m_work;
    std::size_t m_mostReady;
    std::vector<std::wstring> m_paths;
    std::unordered_map<std::wstring, EState> m_states;  ///< of all but the unknown
    CStripLayout::CRange m_visible;
    std::size_t m_looks = 0, m_drawings = 0;
    bool m_isPaused = false;
};
