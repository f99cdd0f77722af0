// SPDX-License-Identifier: MIT
#include "session/CEditLog.h"

#include <utility>

#include "session/CSceneView.h"

std::vector<CStatus> CEditLog::Apply(std::vector<CEdit> edits, std::wstring what) {
    const std::size_t before = m_done.size();
    std::vector<CStatus> answers = Do({std::move(edits), std::move(what), ++m_lastId});
    if (m_done.size() > before) m_undone.clear();
    return answers;
}

std::vector<CStatus> CEditLog::Amend(std::uint64_t id, std::vector<CEdit> edits) {
    if (m_done.empty() || m_done.back().id != id || !m_view.TakeBackEdits(m_done.back().edits.size()))
        return {};
    CStep before = std::move(m_done.back());
    m_done.pop_back();
    std::vector<CStatus> answers = Do({std::move(edits), before.what, ++m_lastId});
    const bool isAmended = !m_done.empty() && m_done.back().id == m_lastId;
    if (isAmended)
        m_undone.clear();
    else
        (void)Do(std::move(before));  // its edits succeeded a moment ago
    return answers;
}

const CEditLog::CStep* CEditLog::Undo() {
    if (m_done.empty() || !m_view.TakeBackEdits(m_done.back().edits.size())) return nullptr;
    m_undone.push_back(std::move(m_done.back()));
    m_done.pop_back();
    return &m_undone.back();
}

const CEditLog::CStep* CEditLog::Redo() {
    if (m_undone.empty()) return nullptr;
    CStep step = std::move(m_undone.back());
    m_undone.pop_back();
    const std::size_t before = m_done.size();
    (void)Do(std::move(step));  // a step whose edits all fail is dropped
    return m_done.size() > before ? &m_done.back() : nullptr;
}

void CEditLog::Clear() {
    m_done.clear();
    m_undone.clear();
    m_savedState = 0;
}

std::vector<CStatus> CEditLog::Do(CStep step) {
    std::vector<CStatus> answers = m_view.ApplyEdits(step.edits);
    std::vector<CEdit> succeeded;
    for (std::size_t i = 0; i < step.edits.size() && i < answers.size(); ++i)
        if (answers[i]) succeeded.push_back(std::move(step.edits[i]));
    if (!succeeded.empty()) m_done.push_back({std::move(succeeded), std::move(step.what), step.id});
    return answers;
}
