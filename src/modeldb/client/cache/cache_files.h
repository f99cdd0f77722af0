// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"
#include "modeldb/records/store_records.h"

/** The files of a cache's folder. */
namespace cache_files {

/** The name of a blob's file, and of its beginning. */
[[nodiscard]] std::string NameOf(const CStoredBlob& blob);
[[nodiscard]] std::string PartNameOf(const CStoredBlob& blob);
/** A name that one of these two could have given. */
[[nodiscard]] bool IsOurs(std::string_view name);

/** The folder, made (0700) when it is missing. None when it is a link, somebody else's, or others may write there. */
[[nodiscard]] CFileDescriptor OpenFolder(const std::string& path);
/** Opens a file of the folder, or makes it (O_CREAT in flags). None unless it is a regular file of ours with this one
 * name. */
[[nodiscard]] CFileDescriptor OpenFile(const CFileDescriptor& folder, const std::string& name, int flags);
/** The name leads to this very file. */
[[nodiscard]] bool IsAt(const CFileDescriptor& folder, const std::string& name, const CFileDescriptor& file);

struct CEntry {
    std::string name;
    std::uint64_t bytes = 0;  ///< on the disk
    std::int64_t usedNs = 0;  ///< since 1970
};
/** All files with a name of ours; what else is there is left out. */
[[nodiscard]] std::vector<CEntry> List(const CFileDescriptor& folder);
void Delete(const CFileDescriptor& folder, const std::string& name);

/** Unpacks a file into target, which has the blob's size. BadFormat: it does not hold what the blob's hash says. */
[[nodiscard]] CStatus Unpack(const CFileDescriptor& file, const CStoredBlob& blob,
                             std::span<std::byte> target);

}  // namespace cache_files
