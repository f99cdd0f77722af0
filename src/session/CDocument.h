// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

/** Where a model came from. */
enum class EOrigin { None, File, Script, Memory, Download };

/** The model that was last to be opened, and whether it is open. Paths are wide and absolute. */
struct CDocument {
    EOrigin origin = EOrigin::None;
    std::wstring path;       ///< of the file or script, or a model's name in memory; the title shows it
    std::wstring modelPath;  ///< the model's file, for a script the one it names; empty in memory
    bool isOpen = false;     ///< false after a failed opening and after closing
    std::size_t scene = 0;   ///< of a script, the number of the scene

    /** True when path is a file: only then can it be deleted, reloaded, saved beside, or stepped on from. */
    [[nodiscard]] bool HasFile() const { return origin == EOrigin::File || origin == EOrigin::Script; }
    /** True for the same model from the same file. Models in memory are never the same. */
    [[nodiscard]] bool IsSame(const CDocument& other) const {
        return HasFile() && origin == other.origin && path == other.path && modelPath == other.modelPath &&
               scene == other.scene;
    }
};
