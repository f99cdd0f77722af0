// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"

class CModelStore;
struct CModelRecord;

/** A stretch of a file. */
struct CFileStretch {
    std::uint64_t offset = 0, bytes = 0;
};
struct CTextureInput {
    std::string name;  ///< a stranger's text: never a path
    CFileStretch stretch;
};

/** A stranger's model for a child process: one open file that holds model and textures, for instance the spooled body of an
 * upload. */
struct CModelInput {
    std::shared_ptr<const CFileDescriptor>
        file;  ///< shared with whoever spooled it; the child gets it for reading alone
    CFileStretch model;
    std::vector<CTextureInput> textures;
    std::string name;  ///< UTF-8; the title of a page

    /** A file without a name that holds these bytes; it is gone with the last descriptor, whatever happens. folder: see
     * CWorkshop::COptions. NoSpace, WriteFailed. */
    [[nodiscard]] static CResult<CModelInput> OfBytes(std::span<const std::byte> model,
                                                      const std::string& folder = {});
    /** The same, of what a store has. Errors are the store's, too. */
    [[nodiscard]] static CResult<CModelInput> OfStore(CModelStore& store, const CModelRecord& record,
                                                      const std::string& folder = {});
};
