// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"

/** One file in an archive. */
struct CZipEntry {
    std::string name;         ///< UTF-8, parts divided by '/', relative, without "." and ".." parts
    std::uint64_t size = 0;   ///< as the archive claims it; Read() does not rely on it
    std::uint64_t index = 0;  ///< the place in the archive
};

/** Reads a zip archive that it holds in memory. Nothing in the archive is trusted. One thread at a
 * time per object. */
class CZipReader {
  public:
    static constexpr std::uint64_t kMaxArchiveBytes = 1ULL << 30;
    static constexpr std::uint64_t kMaxEntries = 10'000;
    static constexpr std::uint64_t kMaxUnpackedBytes = 1ULL << 30;  ///< all that one object ever unpacks
    /** An entry of more than kRatioFreeBytes may unpack to at most kMaxRatio times its packed size. */
    static constexpr std::uint64_t kMaxRatio = 250;
    static constexpr std::uint64_t kRatioFreeBytes = 32ULL << 20;
    /** The same for all entries together and the archive's size: real models pack to a tenth at best. */
    static constexpr std::uint64_t kMaxRatioOfAll = 32;
    static constexpr std::uint64_t kFreeBytes = 128ULL << 20;

    /** BadFormat: not an archive. TooLarge: over the limits above. */
    [[nodiscard]] static CResult<CZipReader> Open(std::vector<std::byte> bytes);
    /** path is UTF-8; errors name it. */
    [[nodiscard]] static CResult<CZipReader> OpenFile(std::string_view path);
    CZipReader(CZipReader&&) noexcept;
    CZipReader& operator=(CZipReader&&) noexcept;
    ~CZipReader();

    /** True when the bytes begin as an archive does. */
    [[nodiscard]] static bool LooksLikeZip(std::string_view firstBytes);

    /** The files, in the archive's order. Backslashes in names are taken for '/'. Folders are left out, and
     * so are entries whose name is absolute, has a drive, leads out of the archive's folder or is no text. */
    [[nodiscard]] const std::vector<CZipEntry>& Entries() const;
    /** The unpacked bytes, with their check sum verified. TooLarge: more than maxBytes or over the limits
     * above. Unsupported: encrypted, or packed in a way that is not read. BadFormat: damaged, or its
     * packed bytes are those of another entry, too. where is the entry's name. */
    [[nodiscard]] CResult<std::vector<std::byte>> Read(const CZipEntry& entry,
                                                       std::uint64_t maxBytes = kMaxUnpackedBytes);

  private:
    struct CArchive;
    explicit CZipReader(std::unique_ptr<CArchive> archive);
    std::unique_ptr<CArchive> m_archive;
};
