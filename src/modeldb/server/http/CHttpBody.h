// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "files/CFileDescriptor.h"

/** A request's body, whole, in a file without a name: what is dropped leaves nothing behind. Move-only; any thread, one at a
 * time. Its bytes count against CHttpServerOptions::spoolBytes until it is dropped, so drop it as soon as it is read. */
class CHttpBody {
  public:
    CHttpBody() = default;
    /** counted: given back when this object is dropped; shared only with whoever counts. */
    CHttpBody(CFileDescriptor file, std::uint64_t bytes, std::shared_ptr<void> counted = {})
        : m_file(std::move(file)), m_bytes(bytes), m_counted(std::move(counted)) {}

    /** Open for reading and writing, positioned at its first byte; not open when Bytes() is 0. */
    [[nodiscard]] const CFileDescriptor& File() const { return m_file; }
    [[nodiscard]] std::uint64_t Bytes() const { return m_bytes; }

  private:
    CFileDescriptor m_file;
    std::uint64_t m_bytes = 0;
    std::shared_ptr<void> m_counted;
};
