// SPDX-License-Identifier: MIT
// Work on the open scene: edits, undo and playing.
#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "script/CSceneScript.h"
#include "script/save_edits.h"
#include "session/CSceneView.h"
#include "session/CSession.h"
#include "session/CSessionFrame.h"

using file_util_ex::ConvertToUTF8;

namespace {

/** A script of one model has this section. */
constexpr char kNewSection[] = "Model";

}  // namespace

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

// --- saving edits ----------------------------------------------------------------------------------------

CStatus CSession::SaveEdits(const std::wstring& script) {
    const CTurns::CHold hold(m_turns);
    const CResult<std::string> section = SectionFor(script);
    if (!section) return section.Error();
    const std::string path = ConvertToUTF8(script);
    CStatus saved = ::SaveEdits(path, section.Value(), AllEdits(), ConvertToUTF8(m_shown->modelPath));
    if (!saved) return saved;
    m_editsScript = {script, section.Value(), CFileStamp::Of(path)};
    m_edits.MarkSaved();
    TellOfChange();
    return CDone{};
}

void CSession::FindEditsScript() {
    m_editsScript = {};
    if (const CScriptScene* scene = ScriptScene())
        m_editsScript = {m_document.path, scene->section, CFileStamp::Of(ConvertToUTF8(m_document.path))};
}

/** The section of a script that edits of the shown scene belong to. */
CResult<std::string> CSession::SectionFor(const std::wstring& script) const {
    const std::string path = ConvertToUTF8(script);
    if (!m_shown || m_shown->modelPath.empty())
        return CError{
            EErrorCode::BadArgument, lng::Mark("the model comes from no file that a script could name"), {}};
    if (script == m_editsScript.path) {
        const auto now = CFileStamp::Of(path);
        if (!now) return CError{EErrorCode::NotFound, lng::Mark("the script was deleted meanwhile"), path};
        if (now != m_editsScript.stamp)
            return CError{EErrorCode::BadFormat,
                          lng::Mark("another program has changed the script meanwhile"), path};
        return m_editsScript.section;
    }
    if (!CFileStamp::Of(path)) return std::string(kNewSection);
    const CResult<CSceneScript> read = ReadScript(path);
    if (!read) return read.Error();
    const auto model = CFileStamp::Of(ConvertToUTF8(m_shown->modelPath));
    for (const CScriptScene& scene : read.Value().scenes)
        if (model && CFileStamp::Of(ConvertToUTF8(scene.path)) == model) return scene.section;
    return CError{EErrorCode::BadArgument, lng::Mark("the script shows other models"), path};
}

std::vector<CEdit> CSession::AllEdits() const {
    std::vector<CEdit> all = m_edits.Base();
    for (const CEditLog::CStep& step : m_edits.Done())
        all.insert(all.end(), step.edits.begin(), step.edits.end());
    return all;
}

// --- deleting, undo and redo -----------------------------------------------------------------------------

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
