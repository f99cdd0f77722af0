// SPDX-License-Identifier: MIT
#include "modeldb/client/cache/CCachePart.h"

#include <sys/mman.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "base/text/lng.h"
#include "files/system_error.h"
#include "modeldb/client/cache/cache_files.h"

CCachePart::CCachePart(CStoredBlob blob, CFileDescriptor folder, CFileDescriptor file, std::string partName,
                       std::uint64_t size)
    : m_blob(blob),
      m_folder(std::move(folder)),
      m_file(std::move(file)),
      m_partName(std::move(partName)),
      m_size(size) {}

CCachePart::CCachePart(CCachePart&& other) noexcept
    : m_blob(other.m_blob),
      m_folder(std::move(other.m_folder)),
      m_file(std::move(other.m_file)),
      m_partName(std::exchange(other.m_partName, {})),
      m_size(other.m_size) {}

CCachePart::~CCachePart() {
    if (m_size == 0 && !m_partName.empty() && cache_files::IsAt(m_folder, m_partName, m_file))
        cache_files::Delete(m_folder, m_partName);
}

CStatus CCachePart::Append(std::span<const std::byte> piece) {
    if (piece.size() > m_blob.stored - m_size)
        return CError{EErrorCode::TooLarge, lng::Mark("the server sends more than was expected"), {}};
    while (!piece.empty()) {
        const ssize_t count = ::pwrite(m_file.Get(), piece.data(), piece.size(), static_cast<off_t>(m_size));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) {
            if (MoveToMemory()) continue;
            return CError{EErrorCode::WriteFailed, SystemErrorText(errno), {}};
        }
        m_size += static_cast<std::uint64_t>(count);
        piece = piece.subspan(static_cast<std::size_t>(count));
    }
    return CDone{};
}

bool CCachePart::MoveToMemory() {
    if (m_partName.empty()) return false;
    CFileDescriptor memory(::memfd_create("orbivue-download", MFD_CLOEXEC));
    off_t at = 0;
    while (memory.IsOpen() && at < static_cast<off_t>(m_size))
        if (::sendfile(memory.Get(), m_file.Get(), &at, m_size - static_cast<std::uint64_t>(at)) <= 0)
            return false;
    if (!memory.IsOpen()) return false;
    if (cache_files::IsAt(m_folder, m_partName, m_file)) cache_files::Delete(m_folder, m_partName);
    m_partName.clear();
    m_file = std::move(memory);
    return true;
}

CStatus CCachePart::Restart() {
    if (::ftruncate(m_file.Get(), 0) != 0) return CError{EErrorCode::WriteFailed, SystemErrorText(errno), {}};
    m_size = 0;
    return CDone{};
}

CStatus CCachePart::Finish(std::span<std::byte> target) {
    CStatus unpacked = cache_files::Unpack(m_file, m_blob, target);
    if (unpacked)
        GiveName();
    else if (unpacked.Error().code == EErrorCode::BadFormat)
        (void)Restart();  // what cannot be emptied now is so by the next use
    return unpacked;
}

void CCachePart::GiveName() {
    if (m_partName.empty() || !cache_files::IsAt(m_folder, m_partName, m_file)) return;
    const std::string name = cache_files::NameOf(m_blob);
    if (::renameat(m_folder.Get(), m_partName.c_str(), m_folder.Get(), name.c_str()) == 0) m_partName.clear();
}
