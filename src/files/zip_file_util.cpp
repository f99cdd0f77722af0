// SPDX-License-Identifier: MIT
#include "files/zip_file_util.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <vector>

#include "base/text/ascii_text.h"
#include "base/text/code_pages.h"
#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/CAtomicFile.h"
#include "files/file_util_ex.h"

namespace zip_file_util {
namespace {

constexpr std::size_t kChunkBytes = 256 << 10;

struct CZipDeleter {
    void operator()(zip_t* zip) const { zip_discard(zip); }
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using CZipPtr = std::unique_ptr<zip_t, CZipDeleter>;
using CSourcePtr = std::unique_ptr<zip_source_t, CZipDeleter>;

// Packing these again takes time and gains nothing.
bool IsPackedAlready(const std::string& name) {
    const std::string ext = ascii_text::Lowered(file_util_ex::GetFileExt(name));
    constexpr std::array<std::string_view, 5> kPacked = {"jpg", "jpeg", "png", "gif", "zip"};
    return std::ranges::find(kPacked, ext) != kPacked.end();
}

CStatus AddFile(zip_t* zip, const std::string& name, const std::string& path) {
    if (!file_util_ex::DoesFileExist(path))
        return CError{EErrorCode::NotFound, lng::Mark("there is no such file"), path};
    zip_source_t* source = zip_source_file(zip, path.c_str(), 0, -1);
    const zip_int64_t index =
        source != nullptr ? zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8) : -1;
    if (index < 0) {
        if (source != nullptr) zip_source_free(source);
        return CError{EErrorCode::Unreadable, lng::Mark("cannot be packed"), path};
    }
    const zip_int32_t method = IsPackedAlready(name) ? ZIP_CM_STORE : ZIP_CM_DEFLATE;
    if (zip_set_file_compression(zip, static_cast<zip_uint64_t>(index), method, 0) != 0) {
        return CError{EErrorCode::Unreadable, lng::Mark("cannot be packed"), path};
    }
    return CDone{};
}

/** Archives name their files in UTF-8; a name on disk may be any bytes. */
std::string EntryName(const std::string& name) {
    constexpr std::size_t kWestern = 2;  // of code_pages
    if (utf8_text::Decode(name)) return name;
    std::string text;
    for (const char32_t c : code_pages::Decode(name, kWestern)) utf8_text::Append(text, c);
    return text;
}

CResult<std::map<std::string, std::string>> NamesToPaths(std::span<const std::string> files) {
    std::map<std::string, std::string> paths;
    for (const std::string& path : files) {
        const auto [place, isNew] = paths.emplace(EntryName(file_util_ex::GetFileName(path)), path);
        if (!isNew && place->second != path) {
            return CError{EErrorCode::BadArgument, lng::Mark("two files have the same name"), path};
        }
    }
    if (paths.empty()) return CError{EErrorCode::BadArgument, lng::Mark("no files to pack"), {}};
    return paths;
}

const CError kFailed{EErrorCode::WriteFailed, lng::Mark("the archive could not be packed"), {}};

CStatus CopyToFile(zip_source_t* archive, CAtomicFile file) {
    if (zip_source_open(archive) != 0) return kFailed;
    std::vector<std::byte> chunk(kChunkBytes);
    zip_int64_t got = 0;
    while ((got = zip_source_read(archive, chunk.data(), chunk.size())) > 0) {
        if (CStatus written = file.Write(std::span(chunk).first(static_cast<std::size_t>(got))); !written)
            break;
    }
    (void)zip_source_close(archive);  // only read
    return got < 0 ? CStatus(kFailed) : file.Commit();
}

/** Packs into memory: the library's own way of writing would neither wait for the disk nor follow a link. */
CStatus Pack(zip_source_t* archive, std::span<const std::string> files, std::string_view comment) {
    const CResult<std::map<std::string, std::string>> paths = NamesToPaths(files);
    if (!paths) return paths.Error();
    zip_source_keep(archive);  // the zip takes one of the two references
    CZipPtr zip(zip_open_from_source(archive, ZIP_CREATE | ZIP_TRUNCATE, nullptr));
    if (!zip) {
        zip_source_free(archive);
        return kFailed;
    }
    if (!comment.empty() &&
        zip_set_archive_comment(zip.get(), comment.data(), static_cast<zip_uint16_t>(comment.size())) != 0)
        return kFailed;
    for (const auto& [name, path] : paths.Value()) {
        if (CStatus added = AddFile(zip.get(), name, path); !added) return added;
    }
    if (zip_close(zip.get()) != 0) return CError{EErrorCode::Unreadable, zip_strerror(zip.get()), {}};
    (void)zip.release();  // closing has deleted it
    return CDone{};
}

CStatus At(std::string_view archivePath, CStatus status) {
    if (status || !status.Error().where.empty()) return status;
    return CError{status.Error().code, status.Error().message, std::string(archivePath)};
}

}  // namespace

CStatus WriteZip(CAtomicFile archive, std::span<const std::string> files, std::string_view comment) {
    const CSourcePtr packed(zip_source_buffer_create(nullptr, 0, 0, nullptr));
    if (!packed) return kFailed;
    if (CStatus status = Pack(packed.get(), files, comment); !status) return status;
    return CopyToFile(packed.get(), std::move(archive));
}

CStatus WriteZip(std::string_view archivePath, std::span<const std::string> files) {
    const CSourcePtr packed(zip_source_buffer_create(nullptr, 0, 0, nullptr));
    if (!packed) return At(archivePath, kFailed);
    if (CStatus status = Pack(packed.get(), files, {}); !status) return At(archivePath, status);
    CResult<CAtomicFile> file = CAtomicFile::CreateOutput(archivePath);
    return file ? At(archivePath, CopyToFile(packed.get(), std::move(file).Value())) : file.Error();
}

bool CreateZip(std::string_view archivePath, std::span<const std::string> files) {
    return WriteZip(archivePath, files).HasValue();
}

bool CreateZip(std::wstring_view archivePath, std::span<const std::wstring> files) {
    std::vector<std::string> narrow;
    for (const std::wstring& path : files) narrow.push_back(file_util_ex::ConvertToUTF8(path));
    return CreateZip(file_util_ex::ConvertToUTF8(archivePath), narrow);
}

}  // namespace zip_file_util
