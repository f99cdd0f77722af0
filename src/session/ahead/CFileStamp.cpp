// SPDX-License-Identifier: MIT
#include "session/ahead/CFileStamp.h"

#include <sys/stat.h>

#include <string>

std::optional<CFileStamp> CFileStamp::Of(std::string_view path) {
    struct stat info = {};
    if (::stat(std::string(path).c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
    return CFileStamp{static_cast<std::uint64_t>(info.st_size),
                      std::int64_t{info.st_mtim.tv_sec} * 1'000'000'000 + info.st_mtim.tv_nsec,
                      static_cast<std::uint64_t>(info.st_dev), static_cast<std::uint64_t>(info.st_ino)};
}
