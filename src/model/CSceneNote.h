// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** Something a user may want to know about a scene that opened nevertheless. */
struct CSceneNote {
    enum class EKind {
        Repaired,  ///< the file was broken here and was mended
        Missing,   ///< something the file refers to was not found
        Limited,   ///< over one of our limits, or a feature that is not drawn
    };
    EKind kind = EKind::Repaired;
    std::string text;  ///< UTF-8, one line, for people

    friend bool operator==(const CSceneNote&, const CSceneNote&) = default;
};
