// SPDX-License-Identifier: MIT
#include "session/CFolderListing.h"

#include <sys/stat.h>

#include <utility>

#include "files/file_util_ex.h"
#include "session/folder_models.h"

namespace {

constexpr std::chrono::seconds kMostAge{5};
constexpr std::chrono::nanoseconds kRest = std::chrono::seconds(2);

}  // namespace

std::optional<CFolderListing::CStamp> CFolderListing::StampOf(const std::wstring& folder) {
    struct stat info = {};
    if (::stat(file_util_ex::ConvertToUTF8(folder).c_str(), &info) != 0) return std::nullopt;
    return CStamp{std::int64_t{info.st_mtim.tv_sec} * 1'000'000'000 + info.st_mtim.tv_nsec,
                  static_cast<std::uint64_t>(info.st_dev), static_cast<std::uint64_t>(info.st_ino)};
}

const std::vector<std::wstring>& CFolderListing::Beside(const std::wstring& path) {
    std::wstring folder = file_util_ex::GetFilePath(path);
    const std::optional<CStamp> stamp = StampOf(folder);
    const auto now = std::chrono::steady_clock::now();
    if (m_stamp && m_stamp == stamp && m_folder == folder && now - m_listedAt < kMostAge) return m_models;
    const std::chrono::nanoseconds date = std::chrono::system_clock::now().time_since_epoch();
    const bool hasRested = stamp && date - std::chrono::nanoseconds(stamp->changedNs) > kRest;
    m_models = folder_models::ListBeside(path);
    m_folder = std::move(folder);
    m_stamp = hasRested ? stamp : std::nullopt;
    m_listedAt = now;
    return m_models;
}
