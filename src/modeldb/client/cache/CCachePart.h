// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"
#include "modeldb/records/store_records.h"

/** The stored bytes of one blob while they arrive: a locked file of the cache, which stays for the next time when it is
 * not finished, or memory. See CModelCache::Begin. */
class CCachePart {
  public:
    /** folder and partName: where the locked file is; without them it is memory. file: regular, and the part's own. */
    CCachePart(CStoredBlob blob, CFileDescriptor folder, CFileDescriptor file, std::string partName,
               std::uint64_t size);
    CCachePart(CCachePart&& other) noexcept;
    CCachePart& operator=(CCachePart&&) = delete;
    /** Deletes the file when it is empty. */
    ~CCachePart();

    /** So many bytes are here already; at most those of the whole. */
    [[nodiscard]] std::uint64_t Size() const { return m_size; }
    /** TooLarge: more than the blob has. Where the disk is full, all goes on in memory. */
    [[nodiscard]] CStatus Append(std::span<const std::byte> piece);
    /** Forgets what is here. */
    [[nodiscard]] CStatus Restart();
    /** Unpacks what is here into target, which has the blob's size, and keeps it for later. BadFormat: it is not what the
     * blob's hash says; then nothing is kept, and the part is empty. */
    [[nodiscard]] CStatus Finish(std::span<std::byte> target);

  private:
    [[nodiscard]] bool MoveToMemory();
    void GiveName();

    CStoredBlob m_blob;
    CFileDescriptor m_folder, m_file;
    std::string m_partName;  ///< in the folder; empty: none to delete
    std::uint64_t m_size = 0;
};
