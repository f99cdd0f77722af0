// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "frame/model_list/CModelList.h"
#include "session/folder_models.h"

/** The model list's share in stepping through a folder. While the list is shown it holds the folder's models, and steps
 * go by it; hidden it is empty. */
class CListToolBarMgr {
  public:
    using CClock = std::function<std::chrono::steady_clock::time_point()>;
    /** A slideshow waits this long after the last thing that a person did in the list. */
    static constexpr std::chrono::milliseconds kInUse{2000};

    enum class EReason { Chosen, Step };
    /** Opens a model by its path. */
    using COpen = std::function<void(const std::wstring& path, EReason why)>;

    explicit CListToolBarMgr(COpen open, CClock now = std::chrono::steady_clock::now);
    /** Called after every change of the list, the open entry or the place of the keyboard. */
    void SetListener(std::function<void()> changed) { m_changed = std::move(changed); }

    /** Moves from the current entry to its neighbour, from the last to the first and the other way round, selects it
     * and opens it. With no current entry the first counts as current. False when the list is empty. */
    bool Step(folder_models::EStep step);
    /** True while a slideshow should not step: somebody holds the mouse's button in the list, or did something in it a
     * moment ago. The entry that he is about to choose would move away. */
    [[nodiscard]] bool HoldsStep() const;

    [[nodiscard]] const CModelList& List() const { return m_list; }
    void SetEntries(std::vector<std::wstring> paths);
    /** The model that is open, which may be none of the entries. */
    void SetCurrent(const std::wstring& path);
    void SetCursor(std::size_t index);
    void MoveCursor(std::ptrdiff_t by);
    void Choose(std::size_t index);

    /** Somebody scrolls the list, or goes through it by keys. */
    void NoteUse() { m_lastUse = m_now(); }
    /** A button of the mouse is down in the list. */
    void SetPressed(bool pressed);

  private:
    void Tell() const;

    COpen m_open;
    CClock m_now;
    std::function<void()> m_changed;
    CModelList m_list;
    bool m_isPressed = false;
    std::chrono::steady_clock::time_point m_lastUse{};
};
