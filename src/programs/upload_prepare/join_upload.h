// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "programs/upload_prepare/upload_arguments.h"

/** What an upload folder holds once page and template are joined: all that would leave the machine. */
struct CUploadContent {
    struct CFile {
        std::string name;  ///< path in the folder
        std::uint64_t bytes = 0;
    };
    std::string folder;
    std::vector<CFile> files;  ///< in the order of their names
    std::uint64_t bytes = 0;   ///< of all
    std::string picture;       ///< path of the preview picture; empty: none
    /** Paths of the pictures from outside the model's own folder; nothing where the application has not told. */
    std::optional<std::vector<std::string>> outside;
};

/** Fills the upload folder, which must be empty: index.html, the template filled for this model, with what else the template folder holds
 * beside it, and the page's files in the folder "model". Copies regular files alone, follows no link, and leaves out what
 * the application notes for this program (kUploadNotesFile). */
[[nodiscard]] CResult<CUploadContent> JoinUpload(const CUploadArguments& arguments);
