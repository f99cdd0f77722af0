// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

/** Something a user may want to know about a scene that opened nevertheless. */
struct CSceneNote {
    enum class EKind {
        Repaired,  ///< the file was broken here and was mended
        Missing,   ///< something the file refers to was not found
        Limited,   ///< over one of our limits, or a feature that is not drawn
    };
    EKind kind = EKind::Repaired;
    const char* what = "";     ///< one of our literals, English, for lng::Text
    std::string subject = {};  ///< UTF-8: the name or the number that it is about; may be empty
    std::string reason = {};   ///< why, a CError's message; may be empty
    std::size_t times = 1;     ///< how often it happened

    /** One line of English: "what: subject (reason) (3 times)". */
    [[nodiscard]] std::string Text() const {
        return what + (subject.empty() ? "" : ": " + subject) + (reason.empty() ? "" : " (" + reason + ")") +
               (times > 1 ? " (" + std::to_string(times) + " times)" : "");
    }
    friend bool operator==(const CSceneNote& a, const CSceneNote& b) {
        return a.kind == b.kind && a.Text() == b.Text();
    }
};
