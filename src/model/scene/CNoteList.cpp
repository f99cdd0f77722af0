// SPDX-License-Identifier: MIT
#include "model/scene/CNoteList.h"

#include <string_view>
#include <utility>

#include "base/text/lng.h"

void CNoteList::Add(CSceneNote note) {
    const std::size_t times = std::exchange(note.times, 1);
    std::string text = note.Text();
    if (const auto found = m_indexOfText.find(text); found != m_indexOfText.end()) {
        m_notes[found->second].times += times;
        return;
    }
    if (m_notes.size() >= kMaxNotes) {
        ++m_dropped;
        return;
    }
    note.times = times;
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

namespace {
/** Length of the UTF-8 sequence that starts here, 0 when there is none. */
std::size_t SequenceLength(std::string_view text) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byteAt(0);
    const std::size_t length = lead < 0x80                     ? 1
                               : (lead >= 0xC2 && lead < 0xE0) ? 2
                               : (lead >= 0xE0 && lead < 0xF0) ? 3
                               : (lead >= 0xF0 && lead < 0xF5) ? 4
                                                               : 0;
    if (length == 0 || length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0u) != 0x80u) return 0;
    }
    return length;
}
}  // namespace

std::string CNoteList::Printable(std::string_view name) {
    constexpr std::size_t kMaxBytes = 80;
    std::string result;
    while (!name.empty() && result.size() < kMaxBytes) {
        const std::size_t length = SequenceLength(name);
        const bool control = static_cast<unsigned char>(name[0]) < 0x20 || name[0] == 0x7F;
        if (length == 0 || control) {
            result += '?';
            name.remove_prefix(1);
        } else {
            result += name.substr(0, length);
            name.remove_prefix(length);
        }
    }
    if (!name.empty()) result += "...";
    return result;
}
