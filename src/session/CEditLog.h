// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "base/CResult.h"
#include "model/edit/CEdit.h"

class CSceneView;

/** The edits of the scene that is shown, grouped into steps. The edits of a step are undone and
 * redone together. */
class CEditLog {
  public:
    struct CStep {
        std::vector<CEdit> edits;
        std::wstring what;  ///< translated: what the step did
    };

    /** view must outlive it. */
    explicit CEditLog(CSceneView& view) : m_view(view) {}

    /** Applies edits as one step, without those that fail, and returns one status for each. Steps that were
     * undone before can no longer be redone. */
    std::vector<CStatus> Apply(std::vector<CEdit> edits, std::wstring what);
    /** Undo takes the last step back, Redo applies the last undone step again. They return that step, valid
     * until the next call, or null when there is none or the view fails. */
    [[nodiscard]] const CStep* Undo();
    [[nodiscard]] const CStep* Redo();
    /** Forgets all steps. To be called when another scene is shown. */
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
