// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "model/CSceneNote.h"

/** Collects notes while a scene is read: equal ones are counted, not repeated, and their number is bounded.
 */
class CNoteList {
  public:
    void Add(CSceneNote::EKind kind, std::string text);
    void Repaired(std::string text) { Add(CSceneNote::EKind::Repaired, std::move(text)); }
    void Limited(std::string text) { Add(CSceneNote::EKind::Limited, std::move(text)); }

    /** In the order of their first occurrence, "(n times)" appended where there were several. Empties the
     * list. */
    [[nodiscard]] std::vector<CSceneNote> Take();

    /** Names come from files: control characters and bytes that are no UTF-8 become '?', long ones are cut.
     */
    [[nodiscard]] static std::string Printable(std::string_view name);

  private:
    static constexpr std::size_t kMaxNotes = 200;
    std::vector<std::pair<CSceneNote, std::size_t>> m_notes;
    std::map<std::string, std::size_t> m_indexOfText;
    std::size_t m_dropped = 0;
};
