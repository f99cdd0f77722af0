// SPDX-License-Identifier: MIT
#include "thumbnails/CThumbnailSource.h"

#include <openssl/evp.h>
#include <sys/stat.h>

#include <array>
#include <span>

#include "base/text/file_uri.h"
#include "files/file_util_ex.h"

std::string ThumbnailNameOf(std::string_view uri) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    // Missing where the library is held to safe algorithms. It secures nothing here, it names files.
    if (EVP_Digest(uri.data(), uri.size(), digest.data(), &length, EVP_md5(), nullptr) != 1) return {};
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string name;
    for (const unsigned char byte : std::span(digest).first(length))
        name += {kDigits[byte >> 4], kDigits[byte & 15]};
    return name + ".png";
}

std::optional<CThumbnailSource> CThumbnailSource::Of(std::string_view path) {
    if (!path.starts_with('/')) return std::nullopt;
    CThumbnailSource source;
    source.path = file_util_ex::MakeAbsolute("/", path);
    struct stat info = {};
    if (::stat(source.path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
    source.uri = file_uri::Of(source.path);
    source.name = ThumbnailNameOf(source.uri);
    if (source.name.empty()) return std::nullopt;
    source.changedSec = info.st_mtim.tv_sec;
    source.bytes = static_cast<std::uint64_t>(info.st_size);
    return source;
}
