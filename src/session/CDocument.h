// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** Where a model came from. */
enum class EOrigin { None, File, Script, Memory, Download };

/** What opening was asked for last, and whether it is open. Paths are wide and absolute. */
struct CDocument {
    EOrigin origin = EOrigin::None;
    std::wstring path;       ///< shown in the title: of the file or script, or the name of a model in memory
    std::wstring modelPath;  ///< the file that holds the scene; empty for a model in memory
    bool isOpen = false;     ///< it could be opened, and has not been closed since

    /** True where path is a file's: one that may be deleted, read again, stepped on from, and saved beside. */
    [[nodiscard]] bool HasFile() const { return origin == EOrigin::File || origin == EOrigin::Script; }
    /** The same model from the same place; what is held in memory is never the same twice. */
    [[nodiscard]] bool IsSame(const CDocument& other) const {
        return HasFile() && origin == other.origin && path == other.path && modelPath == other.modelPath;
    }
};
