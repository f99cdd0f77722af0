// SPDX-License-Identifier: MIT
#include "modeldb/server/http/limits/CHttpSpool.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "files/system_error.h"

CHttpSpool::CHttpSpool(std::string folder, std::uint64_t mostBytes)
    : m_folder(std::move(folder)),
      m_mostBytes(mostBytes),
      m_reserved(std::make_shared<std::atomic<std::uint64_t>>(0)) {
    std::error_code ignored;  // an unusable folder shows when a file is opened there
    if (m_folder.empty()) m_folder = std::filesystem::temp_directory_path(ignored).string();
}

std::shared_ptr<void> CHttpSpool::Reserve(std::uint64_t bytes) {
    std::uint64_t before = m_reserved->load();
    do {
        if (bytes > m_mostBytes || before > m_mostBytes - bytes) return nullptr;
    } while (!m_reserved->compare_exchange_weak(before, before + bytes));
    return {m_reserved.get(), [reserved = m_reserved, bytes](void*) { reserved->fetch_sub(bytes); }};
}

CResult<CFileDescriptor> CHttpSpool::OpenFile() const {
    CFileDescriptor unnamed(::open(m_folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC | O_EXCL, 0600));
    if (unnamed.IsOpen()) return unnamed;
    // Not every file system has files without a name.
    std::string path = m_folder + "/orbivue-body-XXXXXX";
    CFileDescriptor named(::mkostemp(path.data(), O_CLOEXEC));
    if (!named.IsOpen()) return CError{EErrorCode::WriteFailed, SystemErrorText(errno), m_folder};
    if (::unlink(path.c_str()) != 0) return CError{EErrorCode::WriteFailed, SystemErrorText(errno), path};
    return named;
}

std::uint64_t CHttpSpool::ReservedBytes() const {
    return m_reserved->load();
}
