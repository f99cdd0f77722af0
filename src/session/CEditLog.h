// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
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
        std::wstring what;     ///< translated: what the step did
        std::uint64_t id = 0;  ///< no other step, and no earlier form of an amended one, has the same
        std::size_t below =
            0;  ///< how many edits the view has applied before these that these have made void
    };

    /** view must outlive it. */
    explicit CEditLog(CSceneView& view) : m_view(view) {}

    /** Applies edits as one step, without those that fail, and returns one status for each. Steps that were
     * undone before can no longer be redone. */
    std::vector<CStatus> Apply(std::vector<CEdit> edits, std::wstring what);
    /** Applies the edits of a script to a scene without edits and returns one status for each. Nobody undoes them; they
     * count as saved. */
    std::vector<CStatus> ApplyBase(std::vector<CEdit> edits);
    /** The edits of the script, also those that failed: they come before all steps, in what is saved, too. */
    [[nodiscard]] const std::vector<CEdit>& Base() const { return m_base; }
    /** How many edits the view has to take back for the scene as it was opened. */
    [[nodiscard]] std::size_t AppliedCount() const;
    /** Puts other edits in the place of the last step's, as if these had been applied instead; the step keeps its
     * text. Other values for the same materials cost next to nothing: a material that the step has split stays
     * split meanwhile. Returns one status for each; if all of them fail, the step stays as it was. Does nothing,
     * and returns nothing, unless `id` is that of the last step. */
    std::vector<CStatus> Amend(std::uint64_t id, std::vector<CEdit> edits);
    /** Undo takes the last step back, Redo applies the last undone step again. They return that step, valid
     * until the next call, or null when there is none or the view fails. */
    [[nodiscard]] const CStep* Undo();
    [[nodiscard]] const CStep* Redo();
    /** Forgets all steps. To be called when another scene is shown. */
    void Clear();
    /** What is done now has been saved. */
    void MarkSaved() { m_savedState = State(); }
    /** Something else is done than was saved last; at first nothing is. */
    [[nodiscard]] bool HasUnsaved() const { return State() != m_savedState; }

    [[nodiscard]] bool CanUndo() const { return !m_done.empty(); }
    [[nodiscard]] bool CanRedo() const { return !m_undone.empty(); }
    /** In the order in which they were applied. */
    [[nodiscard]] const std::vector<CStep>& Done() const { return m_done; }
    /** The step that Undo takes back and the one that Redo applies; null when there is none. */
    [[nodiscard]] const CStep* NextUndo() const { return m_done.empty() ? nullptr : &m_done.back(); }
    [[nodiscard]] const CStep* NextRedo() const { return m_undone.empty() ? nullptr : &m_undone.back(); }
    /** Identifies what has been done so far: equal states have the same steps. 0 when nothing has. */
    [[nodiscard]] std::uint64_t State() const { return m_done.empty() ? 0 : m_done.back().id; }

  private:
    std::vector<CStatus> Do(CStep step);

    CSceneView& m_view;
    std::vector<CEdit> m_base;
    std::size_t m_baseApplied = 0;
    std::vector<CStep> m_done, m_undone;
    std::uint64_t m_lastId = 0;
    std::uint64_t m_savedState = 0;
};
