// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "model/scene/CSceneNote.h"

/** Collects notes while a scene is read: equal ones are counted, not repeated, and their
 * number is bounded. */
class CNoteList {
  public:
    void Add(CSceneNote note);
    /** what: a literal, which scripts/update_languages collects from calls of these three. reason: a
     * CError's message. */
    void Repaired(const char* what, std::string subject = {}) {
        Add({CSceneNote::EKind::Repaired, what, std::move(subject)});
    }
    void Missing(const char* what, std::string subject = {}) {
        Add({CSceneNote::EKind::Missing, what, std::move(subject)});
    }
    void Limited(const char* what, std::string subject = {}, std::string reason = {}) {
        Add({CSceneNote::EKind::Limited, what, std::move(subject), std::move(reason)});
    }

    /** In the order of their first occurrence. Empties the list. */
    [[nodiscard]] std::vector<CSceneNote> Take();

    /** Names come from files: control characters and bytes that are no UTF-8 become '?',
     * long ones are cut. */
    [[nodiscard]] static std::string Printable(std::string_view name);

  private:
    std::vector<CSceneNote> m_notes;
    std::map<std::string, std::size_t> m_indexOfText;
    std::size_t m_last = 0;  ///< the note that was added last: the next one is mostly the same
    std::size_t m_dropped = 0;
};
