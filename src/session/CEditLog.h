// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "base/CResult.h"
#include "model/edit/CEdit.h"

class CSceneView;

/** The edits of the scene that is shown, in steps of one or more that are undone and redone together. */
class CEditLog {
  public:
    struct CStep {
        std::vector<CEdit> edits;
        std::wstring what;  ///< for people: what it did
    };

    /** view must outlive it. */
    explicit CEditLog(CSceneView& view) : m_view(view) {}

    /** Applies edits as one step; those that fail are left out of it. One answer for each. What was undone
     * before is forgotten. */
    std::vector<CStatus> Apply(std::vector<CEdit> edits, std::wstring what);
    /** The step that was taken back or done again; null when there is none, or the view cannot. Valid until
     * the next call. */
    [[nodiscard]] const CStep* Undo();
    [[nodiscard]] const CStep* Redo();
    /** Another scene is shown. */
    void Clear();

    [[nodiscard]] bool CanUndo() const { return !m_done.empty(); }
    [[nodiscard]] bool CanRedo() const { return !m_undone.empty(); }
    /** In the order in which they were applied. */
    [[nodiscard]] const std::vector<CStep>& Done() const { return m_done; }

  private:
    std::vector<CStatus> Do(CStep step);

    CSceneView& m_view;
    std::vector<CStep> m_done, m_undone;
};
