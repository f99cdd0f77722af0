// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"

/** Where bodies lie while they are read: files without a name, so that nothing is left behind, however the process ends, and
 * a bound for the bytes of all of them. Any thread. */
class CHttpSpool {
  public:
    /** folder empty: the folder for temporary files. */
    CHttpSpool(std::string folder, std::uint64_t mostBytes);

    /** Keeps room for so many bytes until the value is dropped, which may be after this object; null when there is not as
     * much. */
    [[nodiscard]] std::shared_ptr<void> Reserve(std::uint64_t bytes);
    /** An empty file without a name, for reading and writing. */
    [[nodiscard]] CResult<CFileDescriptor> OpenFile() const;
    [[nodiscard]] std::uint64_t ReservedBytes() const;

  private:
    std::string m_folder;
    std::uint64_t m_mostBytes;
    std::shared_ptr<std::atomic<std::uint64_t>>
        m_reserved;  // shared with what was reserved, which may live longer
};
