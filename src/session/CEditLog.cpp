// SPDX-License-Identifier: MIT
#include "session/CEditLog.h"

#include <algorithm>
#include <utility>

#include "session/CSceneView.h"

namespace {

/** The second edit sets the value that the first one has set, of the same materials. */
bool MakesVoid(const CEdit& before, const CEdit& now) {
    const auto target = [](const CEdit& edit) -> const CMaterialTarget* {
        if (const auto* color = std::get_if<CColorEdit>(&edit)) return &color->target;
        if (const auto* shininess = std::get_if<CShininessEdit>(&edit)) return &shininess->target;
        if (const auto* transparency = std::get_if<CTransparencyEdit>(&edit)) return &transparency->target;
        return nullptr;
    };
    const CMaterialTarget *first = target(before), *second = target(now);
    return before.index() == now.index() && first && second && *first == *second;
}

}  // namespace

std::vector<CStatus> CEditLog::Apply(std::vector<CEdit> edits, std::wstring what) {
    const std::size_t before = m_done.size();
    std::vector<CStatus> answers = Do({std::move(edits), std::move(what), ++m_lastId, 0});
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
    for (const CStep& step : m_done) count += step.below + step.edits.size();
    return count;
}

std::vector<CStatus> CEditLog::Amend(std::uint64_t id, std::vector<CEdit> edits) {
    if (m_done.empty() || m_done.back().id != id) return {};
    CStep before = m_done.back();
    // The step's first edit stays below; its later forms come and go. Of several edits, one might fail.
    const bool covers = edits.size() == 1 && before.edits.size() == 1 && MakesVoid(before.edits[0], edits[0]);
    const std::size_t below = covers ? 1 : 0;
    if (!m_view.TakeBackEdits(before.below + before.edits.size() - below)) return {};
    m_done.pop_back();
    before.below = below;
    std::vector<CStatus> answers = Do({std::move(edits), before.what, ++m_lastId, below});
    const bool isAmended = !m_done.empty() && m_done.back().id == m_lastId;
    if (isAmended)
        m_undone.clear();
    else
        (void)Do(std::move(before));  // its edits succeeded a moment ago
    return answers;
}

const CEditLog::CStep* CEditLog::Undo() {
    if (m_done.empty() || !m_view.TakeBackEdits(m_done.back().below + m_done.back().edits.size()))
        return nullptr;
    m_undone.push_back(std::move(m_done.back()));
    m_done.pop_back();
    return &m_undone.back();
}

const CEditLog::CStep* CEditLog::Redo() {
    if (m_undone.empty()) return nullptr;
    CStep step = std::move(m_undone.back());
    step.below = 0;
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
    if (!succeeded.empty())
        m_done.push_back({std::move(succeeded), std::move(step.what), step.id, step.below});
    return answers;
}
