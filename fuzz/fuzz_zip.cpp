// SPDX-License-Identifier: MIT
// Archives: whatever the bytes are, names stay relative and no entry is longer than was allowed.
#include <cstdint>
#include <cstdlib>
#include <span>

#include "files/CZipReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::uint64_t kMaxBytes = 1 << 20;
    const auto bytes = std::as_bytes(std::span(data, size));
    CResult<CZipReader> reader = CZipReader::Open({bytes.begin(), bytes.end()});
    if (!reader) return 0;
    for (const CZipEntry& entry : reader.Value().Entries()) {
        if (entry.name.empty() || entry.name.front() == '/' || entry.name.starts_with("../") ||
            entry.name.find("/../") != std::string::npos || entry.name.find('\\') != std::string::npos) {
            std::abort();
        }
        const CResult<std::vector<std::byte>> unpacked = reader.Value().Read(entry, kMaxBytes);
        if (unpacked && unpacked.Value().size() > kMaxBytes) std::abort();
    }
    return 0;
}
