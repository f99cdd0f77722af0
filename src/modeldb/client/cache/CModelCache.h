// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <string>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"
#include "modeldb/client/cache/CCachePart.h"
#include "modeldb/records/store_records.h"

/** What was downloaded from servers of models, and the beginnings of what was not downloaded to its end, in a folder of
 * files that are named by the SHA-256 of what they hold, so that it does not matter which server sent them. Bytes lie there
 * as they were sent, packed or not, and are checked whenever they are read. Several threads and processes may use a folder
 * at once. No link in it is followed, and nothing but files with such names is touched. Without a folder that can be used
 * (it is a link, or somebody else's) nothing is kept, and all works. */
class CModelCache {
  public:
    static constexpr std::uint64_t kMostBytes = 1ULL << 30;

    /** The folder need not exist. */
    explicit CModelCache(std::string folder = DefaultFolder(), std::uint64_t mostBytes = kMostBytes);
    /** "models" in the program's cache folder. */
    [[nodiscard]] static std::string DefaultFolder();

    /** Fills target, which has the blob's size, with its bytes. NotFound: they are not here, or not sound any more. */
    [[nodiscard]] CStatus Read(const CStoredBlob& blob, std::span<std::byte> target) const;
    /** Where the blob's bytes are gathered: behind those that came earlier. Kept in memory where the folder cannot be used, or
     * somebody else is fetching the same. */
    [[nodiscard]] CResult<CCachePart> Begin(const CStoredBlob& blob) const;
    /** Tells that so many bytes were added. Now and then this deletes what was not used for the longest time, until
     * nine tenths of the most are left. */
    void Grow(std::uint64_t bytes);
    /** Deletes all files. */
    void Clear() const;

  private:
    void Trim() const;

    std::string m_folder;
    std::uint64_t m_mostBytes;
    std::atomic<std::uint64_t> m_untrimmedBytes;
};
