// SPDX-License-Identifier: MIT
// Work on the open scene: edits, undo and playing.
#include <utility>

#include "base/text/lng.h"
#include "session/CSceneView.h"
#include "session/CSession.h"
#include "session/CSessionFrame.h"

std::vector<CStatus> CSession::Apply(std::vector<CEdit> edits, const std::wstring& what) {
    if (IsBusy()) {
        const CError refused{EErrorCode::BadArgument, lng::Mark("the model is in use"), {}};
        return std::vector<CStatus>(edits.size(), refused);
    }
    std::vector<CStatus> answers = m_edits.Apply(std::move(edits), what);
    TellOfChange();
    return answers;
}

std::vector<CStatus> CSession::Amend(std::uint64_t step, std::vector<CEdit> edits) {
    if (IsBusy()) return {};
    return m_edits.Amend(step, std::move(edits));
}

bool CSession::MayLoseEdits() {
    if (!HasUnsavedEdits()) return true;
    const CTurns::CHold hold(m_turns);
    if (m_frame.MayLoseEdits()) return true;
    m_turns.ForgetAll();  // a step or a request to close that came meanwhile would ask again
    return false;
}

void CSession::DeleteNode(const std::string& node) {
    const std::wstring what = lng::Text("deleted %s", lng::ConvertFromUTF8(node));
    const std::vector<CStatus> answers = Apply({CDeleteEdit{node}}, what);
    if (!answers.empty() && answers.front())
        m_frame.ShowMessage(
            lng::Text("The object %s was removed. Ctrl+Z brings it back.", lng::ConvertFromUTF8(node)));
}

void CSession::Undo() {
    if (IsBusy() || !m_edits.CanUndo()) return;
    const CEditLog::CStep* step = m_edits.Undo();
    TellOfChange();
    m_frame.ShowMessage(step ? lng::Text("Undone: %s", step->what) : lng::Text("This cannot be undone."));
}

void CSession::Redo() {
    if (IsBusy() || !m_edits.CanRedo()) return;
    const CEditLog::CStep* step = m_edits.Redo();
    TellOfChange();
    m_frame.ShowMessage(step ? lng::Text("Done again: %s", step->what)
                             : lng::Text("This cannot be done again."));
}

void CSession::Play(bool play) {
    m_view.SetPlaying(play && m_view.HasAnimation());
}

bool CSession::IsPlaying() const {
    return m_view.HasAnimation() && m_view.IsPlaying();
}
