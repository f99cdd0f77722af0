// SPDX-License-Identifier: MIT
#include "model/scene/lib3ds_memory_io.h"

#include <lib3ds/io.h>

#include <algorithm>
#include <cstring>

namespace {
using CReadCursor = CLib3dsMemoryReader::CCursor;
using CWriteCursor = CLib3dsMemoryWriter::CCursor;

long SeekBase(long position, long size, Lib3dsIoSeek origin) {
    return origin == LIB3DS_SEEK_SET ? 0 : origin == LIB3DS_SEEK_CUR ? position : size;
}

Lib3dsBool ReadFailed(void* self) {
    return static_cast<CReadCursor*>(self)->failed;
}

long ReadSeek(void* self, long offset, Lib3dsIoSeek origin) {
    auto& cursor = *static_cast<CReadCursor*>(self);
    const long size = static_cast<long>(cursor.bytes.size());
    cursor.position = std::clamp(SeekBase(cursor.position, size, origin) + offset, 0L, size);
    return cursor.position;
}

long ReadTell(void* self) {
    return static_cast<CReadCursor*>(self)->position;
}

size_t ReadBytes(void* self, void* buffer, size_t size) {
    auto& cursor = *static_cast<CReadCursor*>(self);
    const std::size_t left = cursor.bytes.size() - static_cast<std::size_t>(cursor.position);
    const std::size_t count = std::min(size, left);
    if (count > 0) std::memcpy(buffer, cursor.bytes.data() + cursor.position, count);
    // lib3ds does not examine what it gets; zeros are better than what was on the stack.
    if (count < size) {
        std::memset(static_cast<std::byte*>(buffer) + count, 0, size - count);
        cursor.failed = true;
    }
    cursor.position += static_cast<long>(count);
    return count;
}

Lib3dsBool WriteFailed(void*) {
    return LIB3DS_FALSE;
}

long WriteSeek(void* self, long offset, Lib3dsIoSeek origin) {
    auto& cursor = *static_cast<CWriteCursor*>(self);
    const long base =
        SeekBase(static_cast<long>(cursor.position), static_cast<long>(cursor.bytes.size()), origin);
    cursor.position = static_cast<std::size_t>(std::max(base + offset, 0L));
    return static_cast<long>(cursor.position);
}

long WriteTell(void* self) {
    return static_cast<long>(static_cast<CWriteCursor*>(self)->position);
}

size_t WriteBytes(void* self, const void* buffer, size_t size) {
    auto& cursor = *static_cast<CWriteCursor*>(self);
    if (cursor.position + size > cursor.bytes.size()) cursor.bytes.resize(cursor.position + size);
    std::memcpy(cursor.bytes.data() + cursor.position, buffer, size);
    cursor.position += size;
    return size;
}
}  // namespace

void CLib3dsIoDeleter::operator()(Lib3dsIo* io) const {
    lib3ds_io_free(io);
}

CLib3dsMemoryReader::CLib3dsMemoryReader(std::span<const std::byte> bytes)
    : m_cursor{bytes}, m_io(lib3ds_io_new(&m_cursor, ReadFailed, ReadSeek, ReadTell, ReadBytes, nullptr)) {}

CLib3dsMemoryWriter::CLib3dsMemoryWriter()
    : m_io(lib3ds_io_new(&m_cursor, WriteFailed, WriteSeek, WriteTell, nullptr, WriteBytes)) {}
