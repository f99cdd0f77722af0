// SPDX-License-Identifier: MIT
#include "modeldb/client/cache/CModelCache.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <vector>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "files/system_error.h"
#include "modeldb/client/cache/cache_files.h"

namespace {

constexpr std::uint64_t kTrimsAMost = 64;  ///< how often the folder is looked at while it fills

CError NotHere() {
    return {EErrorCode::NotFound, lng::Mark("this was not downloaded yet"), {}};
}

/** The beginning of a blob, locked; nothing where it cannot be had. */
std::optional<CCachePart> BeginFile(const std::string& path, const CStoredBlob& blob) {
    constexpr int kTries = 3;
    const std::string name = cache_files::PartNameOf(blob);
    for (int i = 0; i < kTries; ++i) {
        CFileDescriptor folder = cache_files::OpenFolder(path);
        if (!folder.IsOpen()) return std::nullopt;
        CFileDescriptor file = cache_files::OpenFile(folder, name, O_RDWR | O_CREAT);
        if (!file.IsOpen() || ::flock(file.Get(), LOCK_EX | LOCK_NB) != 0) return std::nullopt;
        struct stat state {};
        // Whoever had the lock may have finished the file, or deleted it.
        if (!cache_files::IsAt(folder, name, file) || ::fstat(file.Get(), &state) != 0) continue;
        const auto size = static_cast<std::uint64_t>(state.st_size);
        CCachePart part(blob, std::move(folder), std::move(file), name, size);
        if (size > blob.stored && !part.Restart()) return std::nullopt;
        return part;
    }
    return std::nullopt;
}

}  // namespace

CModelCache::CModelCache(std::string folder, std::uint64_t mostBytes)
    : m_folder(std::move(folder)), m_mostBytes(mostBytes), m_untrimmedBytes(mostBytes) {}

std::string CModelCache::DefaultFolder() {
    return file_util_ex::MakePath(std_file_paths::GetCacheFolderPath(), "models");
}

CStatus CModelCache::Read(const CStoredBlob& blob, std::span<std::byte> target) const {
    const CFileDescriptor folder = cache_files::OpenFolder(m_folder);
    if (!folder.IsOpen()) return NotHere();
    const std::string name = cache_files::NameOf(blob);
    const CFileDescriptor file = cache_files::OpenFile(folder, name, O_RDONLY);
    if (!file.IsOpen()) return NotHere();
    if (!cache_files::Unpack(file, blob, target)) {
        cache_files::Delete(folder, name);
        return NotHere();
    }
    const timespec used[2] = {{0, UTIME_OMIT}, {0, UTIME_NOW}};
    (void)::futimens(file.Get(), used);  // without it the file only goes earlier
    return CDone{};
}

CResult<CCachePart> CModelCache::Begin(const CStoredBlob& blob) const {
    if (std::optional<CCachePart> part = BeginFile(m_folder, blob)) return std::move(*part);
    CFileDescriptor memory(::memfd_create("orbivue-download", MFD_CLOEXEC));
    if (!memory.IsOpen()) return CError{EErrorCode::WriteFailed, SystemErrorText(errno), {}};
    return CCachePart(blob, {}, std::move(memory), {}, 0);
}

void CModelCache::Grow(std::uint64_t bytes) {
    if (m_untrimmedBytes.fetch_add(bytes) + bytes < m_mostBytes / kTrimsAMost) return;
    m_untrimmedBytes = 0;
    Trim();
}

void CModelCache::Trim() const {
    const CFileDescriptor folder = cache_files::OpenFolder(m_folder);
    if (!folder.IsOpen()) return;
    std::vector<cache_files::CEntry> entries = cache_files::List(folder);
    std::uint64_t total = 0;
    for (const cache_files::CEntry& entry : entries) total += entry.bytes;
    if (total <= m_mostBytes) return;
    std::ranges::sort(entries, {}, &cache_files::CEntry::usedNs);
    for (const cache_files::CEntry& entry : entries) {
        if (total <= m_mostBytes / 10 * 9) return;
        cache_files::Delete(folder, entry.name);
        total -= entry.bytes;
    }
}

void CModelCache::Clear() const {
    const CFileDescriptor folder = cache_files::OpenFolder(m_folder);
    if (!folder.IsOpen()) return;
    for (const cache_files::CEntry& entry : cache_files::List(folder))
        cache_files::Delete(folder, entry.name);
}
