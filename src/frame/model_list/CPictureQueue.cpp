// SPDX-License-Identifier: MIT
#include "frame/model_list/CPictureQueue.h"

#include <algorithm>
#include <unordered_set>

#include "frame/model_list/CPictureWork.h"

CPictureQueue::CPictureQueue(CPictureWork& work, std::size_t mostReady)
    : m_work(work), m_mostReady(mostReady) {}

CPictureQueue::EState CPictureQueue::StateOf(const std::wstring& path) const {
    const auto found = m_states.find(path);
    return found == m_states.end() ? EState::Unknown : found->second;
}

void CPictureQueue::SetFiles(const std::vector<std::wstring>& paths) {
    if (paths == m_paths) return;
    m_paths = paths;
    const std::unordered_set<std::wstring> stay(paths.begin(), paths.end());
    bool isDrawn = false, staysDrawn = false;
    for (auto at = m_states.begin(); at != m_states.end();) {
        const bool isKept = stay.contains(at->first);
        isDrawn = isDrawn || at->second == EState::Drawing;
        staysDrawn = staysDrawn || (isKept && at->second == EState::Drawing);
        if (!isKept && at->second == EState::Ready) m_work.Drop(at->first);
        // What is being looked for, or drawn, is counted until it has ended.
        const bool isUnderWay = at->second == EState::Looking || at->second == EState::Drawing;
        at = isKept || isUnderWay ? std::next(at) : m_states.erase(at);
    }
    if (isDrawn && !staysDrawn) {
        m_work.StopDrawing();
        std::erase_if(m_states, [](const auto& state) { return state.second == EState::Drawing; });
        m_drawings = 0;
    }
    m_visible = {};
    Proceed();
}

void CPictureQueue::SetVisible(CStripLayout::CRange visible) {
    if (visible == m_visible) return;
    m_visible = visible;
    Proceed();
}

void CPictureQueue::SetPaused(bool paused) {
    m_isPaused = paused;
    Proceed();
}

void CPictureQueue::Forget(const std::wstring& path) {
    const EState state = StateOf(path);
    if (state == EState::Looking || state == EState::Drawing) return;
    if (state == EState::Ready) m_work.Drop(path);
    m_states.erase(path);
    Proceed();
}

void CPictureQueue::ForgetAll() {
    m_work.StopDrawing();
    m_drawings = 0;
    std::erase_if(m_states, [this](const auto& state) {
        if (state.second == EState::Ready) m_work.Drop(state.first);
        return state.second != EState::Looking;
    });
    Proceed();
}

void CPictureQueue::OnEnded(const std::wstring& path, EPictureEnd end, EState from) {
    if (StateOf(path) != from) {
        // It was stopped, or forgotten.
        if (end == EPictureEnd::Ready && StateOf(path) != EState::Ready) m_work.Drop(path);
        return;
    }
    --(from == EState::Looking ? m_looks : m_drawings);
    if (std::ranges::find(m_paths, path) == m_paths.end()) {
        m_states.erase(path);
        if (end == EPictureEnd::Ready) m_work.Drop(path);
        return Proceed();
    }
    m_states[path] = end == EPictureEnd::Ready    ? EState::Ready
                     : end == EPictureEnd::Failed ? EState::Failed
                                                  : EState::Missing;
    DropFarthest();
    Proceed();
}

/** The seen ones, then alternately one behind and one before them. */
std::vector<std::size_t> CPictureQueue::Near() const {
    const std::size_t count = m_paths.size();
    const std::size_t end = std::min(m_visible.end, count), first = std::min(m_visible.first, end);
    std::vector<std::size_t> near;
    for (std::size_t i = first; i < end; ++i) near.push_back(i);
    const std::size_t page = end - first;
    for (std::size_t i = 0; i < page; ++i) {
        if (end + i < count) near.push_back(end + i);
        if (first > i) near.push_back(first - 1 - i);
    }
    return near;
}

bool CPictureQueue::IsDone() const {
    return std::ranges::all_of(Near(), [this](std::size_t i) {
        const EState state = StateOf(m_paths[i]);
        return state == EState::Ready || state == EState::Failed;
    });
}

void CPictureQueue::Proceed() {
    for (const std::size_t i : Near()) {
        const std::wstring path = m_paths[i];
        const EState state = StateOf(path);
        if (state == EState::Unknown && m_looks < kMostLooks) {
            ++m_looks;
            m_states[path] = EState::Looking;
            m_work.Look(path);
        } else if (state == EState::Missing && m_drawings < kMostDrawings && !m_isPaused) {
            ++m_drawings;
            m_states[path] = EState::Drawing;
            m_work.Draw(path);
        }
    }
}

void CPictureQueue::DropFarthest() {
    std::size_t ready = 0;
    for (const auto& [path, state] : m_states) ready += state == EState::Ready ? 1 : 0;
    if (ready <= m_mostReady) return;
    const auto middle = static_cast<std::ptrdiff_t>((m_visible.first + m_visible.end) / 2);
    const std::wstring* farthest = nullptr;
    std::ptrdiff_t distance = -1;
    for (std::size_t i = 0; i < m_paths.size(); ++i) {
        const std::ptrdiff_t away = std::abs(static_cast<std::ptrdiff_t>(i) - middle);
        if (away <= distance || StateOf(m_paths[i]) != EState::Ready) continue;
        distance = away;
        farthest = &m_paths[i];
    }
    if (farthest == nullptr) return;
    m_work.Drop(*farthest);
    m_states.erase(*farthest);
}
