// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "base/CResult.h"

class CTextureLocator;
struct Lib3dsFile;

/** What the helper program tells the user about an export before anything leaves the machine. It travels as the file
 * kUploadNotesFile in the model folder, which itself is never uploaded. Texts are UTF-8. */
struct CUploadNotes {
    std::vector<std::string> outside;  ///< paths of the pictures that lie outside the model's own folder
    bool operator==(const CUploadNotes&) const = default;
};

inline constexpr char kUploadNotesFile[] = "orbivue-upload.json";

/** Of a scene, whose pictures the locator finds: of those that go with it, see CLib3dsMatUtil::PicturesOf. */
[[nodiscard]] CUploadNotes UploadNotesOf(const Lib3dsFile& file, const CTextureLocator& locator);

[[nodiscard]] CStatus WriteUploadNotes(const std::string& folder, const CUploadNotes& notes);
/** BadFormat for anything that WriteUploadNotes does not write. */
[[nodiscard]] CResult<CUploadNotes> ReadUploadNotes(const std::string& folder);
