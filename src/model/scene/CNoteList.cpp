// SPDX-License-Identifier: MIT
#include "model/scene/CNoteList.h"

#include <string_view>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "model/scene/scene_budget.h"

namespace {
bool IsSame(const CSceneNote& a, const CSceneNote& b) {
    return a.kind == b.kind && a.what == b.what && a.subject == b.subject && a.reason == b.reason;
}
}  // namespace

void CNoteList::Add(CSceneNote note) {
    const std::size_t times = std::exchange(note.times, 1);
    // A broken file says the same thing a million times.
    if (m_last < m_notes.size() && IsSame(note, m_notes[m_last])) {
        m_notes[m_last].times += times;
        return;
    }
    std::string text = note.Text();
    if (const auto found = m_indexOfText.find(text); found != m_indexOfText.end()) {
        m_last = found->second;
        m_notes[m_last].times += times;
        return;
    }
    if (m_notes.size() >= scene_budget::kNotes) {
        m_dropped += times;
        return;
    }
    note.times = times;
    m_last = m_notes.size();
    m_indexOfText.emplace(std::move(text), m_notes.size());
    m_notes.push_back(std::move(note));
}

std::vector<CSceneNote> CNoteList::Take() {
    std::vector<CSceneNote> result = std::move(m_notes);
    if (m_dropped > 0)
        result.push_back(
            {CSceneNote::EKind::Limited, lng::Mark("More notes, left out"), std::to_string(m_dropped)});
    *this = {};
    return result;
}

std::string CNoteList::Printable(std::string_view name) {
    constexpr std::size_t kMaxBytes = 80;
    const std::string_view shown = utf8_text::Cut(name, kMaxBytes);
    std::string result = utf8_text::Printable(shown, '?');
    if (shown.size() < name.size()) result += "...";
    return result;
}
