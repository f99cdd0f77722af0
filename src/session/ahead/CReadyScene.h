// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/CResult.h"
#include "model/open/load_scene.h"
#include "session/ahead/CFileStamp.h"

/** A scene that was loaded before it is to be shown. */
struct CReadyScene {
    CLoadedScene scene;
    /** The files that it was made of, the model's first, then pictures and material files: UTF-8 paths with their
     * stamps as they were read. */
    std::vector<std::pair<std::string, CFileStamp>> files;

    /** False once one of the files was changed, replaced or deleted. */
    [[nodiscard]] bool IsCurrent() const;
};

/** Loads a scene as LoadScene does. NotFound for anything but a regular file, which is not opened. The error is
 * Unreadable for a file that was written while it was read. Any thread may call it. */
[[nodiscard]] CResult<CReadyScene> LoadReadyScene(const std::wstring& path, CJobProgress& progress,
                                                  const CLoadLimits& limits = {});
