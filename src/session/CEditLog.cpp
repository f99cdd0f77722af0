// SPDX-License-Identifier: MIT
#include "session/CEditLog.h"

#include <algorithm>
#include <utility>

#include "session/CSceneView.h"

std::vector<CStatus> CEditLog::Apply(std::vector<CEdit> edits, std::wstring what) {
    const std::size_t before = m_done.size();
    std::vector<CStatus> answers = Do({std::move(edits), std::move(what), ++m_lastId});
    if (m_done.size() > before) m_undone.clear();
    return answers;
}

std::vector<CStatus> CEditLog::ApplyBase(std::vector<CEdit> edits) {
    m_base = std::move(edits);
    std::vector<CStatus> answers = m_view.ApplyEdits(m_base);
    m_baseApplied = static_cast<std::size_t>(std::ranges::count_if(answers, &CStatus::HasValue));
    return answers;
}

std::size_t CEditLog::AppliedCount() const {
    std::size_t count = m_baseApplied;
    for (const CStep& step : m_done) count += step.edits.size();
    return count;
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
    m_base.clear();
    m_baseApplied = 0;
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
