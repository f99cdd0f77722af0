// SPDX-License-Identifier: MIT
#include "files/CZipReader.h"

#include <zip.h>

#include <algorithm>
#include <new>
#include <optional>
#include <span>

#include "base/text/lng.h"
#include "files/file_util_ex.h"

namespace {

constexpr std::size_t kChunkBytes = 256 << 10;

struct CZipDeleter {
    void operator()(zip_t* zip) const { zip_discard(zip); }
    void operator()(zip_file_t* file) const {
        (void)zip_fclose(file);
    }  // reading has told all there is to tell
};

std::uint64_t LittleEndian(std::span<const std::byte> bytes, std::size_t at, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t i = count; i-- > 0;) {
        value = value << 8 | (at + i < bytes.size() ? static_cast<std::uint64_t>(bytes[at + i]) : 0);
    }
    return value;
}

bool HasSignature(std::span<const std::byte> bytes, std::size_t at, std::string_view signature) {
    return at + signature.size() <= bytes.size() &&
           std::ranges::equal(bytes.subspan(at, signature.size()), std::as_bytes(std::span(signature)));
}

// The number of entries that an end record claims, or the one of the 64-bit record that it refers to.
std::uint64_t ClaimedEntries(std::span<const std::byte> bytes, std::size_t endRecord) {
    const std::uint64_t count = LittleEndian(bytes, endRecord + 10, 2);
    if (endRecord < 20 || !HasSignature(bytes, endRecord - 20, "PK\x06\x07")) return count;
    const std::uint64_t record = LittleEndian(bytes, endRecord - 12, 8);
    const bool inside = record < bytes.size() && HasSignature(bytes, record, "PK\x06\x06");
    const std::uint64_t longCount = inside ? LittleEndian(bytes, record + 32, 8) : 0;
    return count == 0xFFFF ? longCount : std::max(count, longCount);
}

// The library takes memory for every entry claimed, so the count is looked at first: in each record that
// could be the one it chooses.
bool ClaimsTooMany(std::span<const std::byte> bytes) {
    constexpr std::size_t kTailBytes = 22 + 0xFFFF;
    for (std::size_t at = bytes.size() - std::min(bytes.size(), kTailBytes); at + 22 <= bytes.size(); ++at) {
        if (HasSignature(bytes, at, "PK\x05\x06") && ClaimedEntries(bytes, at) > CZipReader::kMaxEntries)
            return true;
    }
    return false;
}

// The name as a relative path; none for a folder and for what could lead out of one.
std::optional<std::string> SafeName(const char* raw) {
    if (raw == nullptr) return std::nullopt;
    std::string name(raw);
    std::ranges::replace(name, '\\', '/');
    if (name.empty() || name.front() == '/' || name.back() == '/' || name.find(':') != name.npos)
        return std::nullopt;
    std::string safe;
    for (std::size_t at = 0; at <= name.size();) {
        const std::size_t end = std::min(name.find('/', at), name.size());
        const std::string part = name.substr(at, end - at);
        if (part == "..") return std::nullopt;
        if (!part.empty() && part != ".") safe += (safe.empty() ? "" : "/") + part;
        at = end + 1;
    }
    if (safe.empty()) return std::nullopt;
    return safe;
}

}  // namespace

struct CZipReader::CArchive {
    std::vector<std::byte> bytes;  // the library reads from these, so they go last
    std::unique_ptr<zip_t, CZipDeleter> zip;
    std::vector<CZipEntry> entries;
    std::uint64_t unpacked = 0;
    std::uint64_t packedLeft = 0;  // of the archive's own bytes, for entries that were not read yet
    std::vector<bool> isRead;      // by index

    CStatus Open();
    [[nodiscard]] CStatus CheckEntry(const CZipEntry& entry, std::uint64_t& limit);
    [[nodiscard]] bool TakePacked(const CZipEntry& entry, std::uint64_t packed);
    CResult<std::vector<std::byte>> Unpack(const CZipEntry& entry, std::uint64_t limit);
};

CStatus CZipReader::CArchive::Open() {
    const CError notZip{EErrorCode::BadFormat, lng::Mark("not a zip archive"), {}};
    if (bytes.size() > kMaxArchiveBytes || ClaimsTooMany(bytes)) {
        return CError{EErrorCode::TooLarge, lng::Mark("the archive is too large"), {}};
    }
    if (bytes.empty()) return notZip;  // the library would take it for an archive without files
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, nullptr);
    if (source == nullptr) return notZip;
    zip.reset(zip_open_from_source(source, ZIP_RDONLY, nullptr));
    if (!zip) {
        zip_source_free(source);
        return notZip;
    }
    const auto count = static_cast<zip_uint64_t>(std::max<zip_int64_t>(zip_get_num_entries(zip.get(), 0), 0));
    packedLeft = bytes.size();
    isRead.assign(count, false);
    for (zip_uint64_t i = 0; i < count; ++i) {
        std::optional<std::string> name = SafeName(zip_get_name(zip.get(), i, ZIP_FL_ENC_GUESS));
        zip_stat_t info = {};
        if (!name || zip_stat_index(zip.get(), i, 0, &info) != 0) continue;
        entries.push_back({std::move(*name), (info.valid & ZIP_STAT_SIZE) != 0 ? info.size : 0, i});
    }
    return CDone{};
}

/** Entries that share their packed bytes would together hold more of them than the archive has. */
bool CZipReader::CArchive::TakePacked(const CZipEntry& entry, std::uint64_t packed) {
    if (isRead[entry.index]) return true;
    if (packed > packedLeft) return false;
    packedLeft -= packed;
    isRead[entry.index] = true;
    return true;
}

CStatus CZipReader::CArchive::CheckEntry(const CZipEntry& entry, std::uint64_t& limit) {
    zip_stat_t info = {};
    if (zip_stat_index(zip.get(), entry.index, 0, &info) != 0) {
        return CError{EErrorCode::NotFound, lng::Mark("not in the archive"), entry.name};
    }
    if (info.encryption_method != ZIP_EM_NONE) {
        return CError{EErrorCode::Unsupported, lng::Mark("encrypted files are not read"), entry.name};
    }
    if (zip_compression_method_supported(info.comp_method, 0) == 0) {
        return CError{EErrorCode::Unsupported, lng::Mark("the way it is packed is not known"), entry.name};
    }
    const std::uint64_t packed = std::min<std::uint64_t>(info.comp_size, bytes.size());
    if (!TakePacked(entry, packed))
        return CError{EErrorCode::BadFormat, lng::Mark("damaged in the archive"), entry.name};
    const std::uint64_t most =
        std::min(kMaxUnpackedBytes, std::max(kFreeBytes, bytes.size() * kMaxRatioOfAll));
    const std::uint64_t left = most - std::min(unpacked, most);
    limit = std::min({limit, std::max(kRatioFreeBytes, packed * kMaxRatio), left});
    return CDone{};
}

CResult<std::vector<std::byte>> CZipReader::CArchive::Unpack(const CZipEntry& entry, std::uint64_t limit) {
    const CError damaged{EErrorCode::BadFormat, lng::Mark("damaged in the archive"), entry.name};
    const std::unique_ptr<zip_file_t, CZipDeleter> file(zip_fopen_index(zip.get(), entry.index, 0));
    if (!file) return damaged;
    std::vector<std::byte> out;
    // A claimed size costs memory only as far as the packed bytes could unpack to it.
    out.reserve(static_cast<std::size_t>(std::min({entry.size, limit, bytes.size() * std::uint64_t{1100}})) +
                1);
    while (true) {
        const std::size_t used = out.size();
        const std::size_t room = out.capacity() > used ? out.capacity() - used : kChunkBytes;
        out.resize(used + std::min(room, kChunkBytes));
        const zip_int64_t got = zip_fread(file.get(), out.data() + used, out.size() - used);
        if (got < 0) return damaged;
        out.resize(used + static_cast<std::size_t>(got));
        unpacked += static_cast<std::uint64_t>(got);
        if (out.size() > limit)
            return CError{EErrorCode::TooLarge, lng::Mark("too large in the archive"), entry.name};
        if (got == 0) return out;
    }
}

CZipReader::CZipReader(std::unique_ptr<CArchive> archive) : m_archive(std::move(archive)) {}
CZipReader::CZipReader(CZipReader&&) noexcept = default;
CZipReader& CZipReader::operator=(CZipReader&&) noexcept = default;
CZipReader::~CZipReader() = default;

CResult<CZipReader> CZipReader::Open(std::vector<std::byte> bytes) {
    auto archive = std::make_unique<CArchive>();
    archive->bytes = std::move(bytes);
    if (CStatus opened = archive->Open(); !opened) return opened.Error();
    return CZipReader(std::move(archive));
}

CResult<CZipReader> CZipReader::OpenFile(std::string_view path) {
    CResult<std::vector<std::byte>> bytes = file_util_ex::ReadWholeFile(path, kMaxArchiveBytes);
    if (!bytes) return bytes.Error();
    CResult<CZipReader> reader = Open(std::move(bytes).Value());
    if (reader) return reader;
    return CError{reader.Error().code, reader.Error().message, std::string(path)};
}

bool CZipReader::LooksLikeZip(std::string_view firstBytes) {
    return firstBytes.starts_with("PK\x03\x04") || firstBytes.starts_with("PK\x05\x06");
}

const std::vector<CZipEntry>& CZipReader::Entries() const {
    return m_archive->entries;
}

CResult<std::vector<std::byte>> CZipReader::Read(const CZipEntry& entry, std::uint64_t maxBytes) {
    std::uint64_t limit = maxBytes;
    if (CStatus readable = m_archive->CheckEntry(entry, limit); !readable) return readable.Error();
    if (entry.size > limit)
        return CError{EErrorCode::TooLarge, lng::Mark("too large in the archive"), entry.name};
    try {
        return m_archive->Unpack(entry, limit);
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory to unpack it"), entry.name};
    }
}
