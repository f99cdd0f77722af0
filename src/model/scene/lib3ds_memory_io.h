// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include <lib3ds/types.h>

struct CLib3dsIoDeleter {
    void operator()(Lib3dsIo* io) const;
};
using CLib3dsIoPtr = std::unique_ptr<Lib3dsIo, CLib3dsIoDeleter>;

/** lib3ds' input and output callbacks over memory. Neither object may be moved while its Io() is in use. */
class CLib3dsMemoryReader {
  public:
    /** The bytes are not copied and must outlive the reader. */
    explicit CLib3dsMemoryReader(std::span<const std::byte> bytes);
    CLib3dsMemoryReader(const CLib3dsMemoryReader&) = delete;
    CLib3dsMemoryReader& operator=(const CLib3dsMemoryReader&) = delete;
    [[nodiscard]] Lib3dsIo* Io() { return m_io.get(); }

    struct CCursor {
        std::span<const std::byte> bytes;
        long position = 0;
        bool failed = false;
    };

  private:
    CCursor m_cursor;
    CLib3dsIoPtr m_io;
};

class CLib3dsMemoryWriter {
  public:
    CLib3dsMemoryWriter();
    CLib3dsMemoryWriter(const CLib3dsMemoryWriter&) = delete;
    CLib3dsMemoryWriter& operator=(const CLib3dsMemoryWriter&) = delete;
    [[nodiscard]] Lib3dsIo* Io() { return m_io.get(); }
    /** What was written so far. */
    [[nodiscard]] const std::vector<std::byte>& Bytes() const { return m_cursor.bytes; }

    struct CCursor {
        std::vector<std::byte> bytes;
        std::size_t position = 0;
    };

  private:
    CCursor m_cursor;
    CLib3dsIoPtr m_io;
};
