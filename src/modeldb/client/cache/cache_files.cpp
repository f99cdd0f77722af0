// SPDX-License-Identifier: MIT
#include "modeldb/client/cache/cache_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"

namespace {

constexpr std::string_view kPacked = ".zst", kPart = ".part";
constexpr std::uint64_t kLeastBytes = 4096;  ///< what any file takes
constexpr std::size_t kPieceBytes = 256 << 10;

CError Damaged() {
    return {EErrorCode::BadFormat, lng::Mark("the bytes that arrived are damaged"), {}};
}

/** Fills a span and hashes what it takes. */
class CTargetSink final : public CByteSink {
  public:
    explicit CTargetSink(std::span<std::byte> target) : m_room(target) {}
    CStatus Take(std::span<const std::byte> piece) override {
        if (piece.size() > m_room.size()) return Damaged();
        std::ranges::copy(piece, m_room.begin());
        m_room = m_room.subspan(piece.size());
        m_hasher.Add(piece);
        return CDone{};
    }
    [[nodiscard]] bool IsFull() const { return m_room.empty(); }
    [[nodiscard]] CBlobHash Hash() { return m_hasher.Finish(); }

  private:
    std::span<std::byte> m_room;
    CBlobHasher m_hasher;
};

CStatus ReadInto(CByteSink& sink, const CFileDescriptor& file) {
    std::vector<std::byte> piece(kPieceBytes);
    for (off_t at = 0;;) {
        const ssize_t count = ::pread(file.Get(), piece.data(), piece.size(), at);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return CError{EErrorCode::Unreadable, SystemErrorText(errno), {}};
        if (count == 0) return CDone{};
        if (CStatus taken = sink.Take(std::span(piece).first(static_cast<std::size_t>(count))); !taken)
            return taken;
        at += count;
    }
}

struct CFolderCloser {
    void operator()(DIR* folder) const { (void)::closedir(folder); }
};

}  // namespace

std::string cache_files::NameOf(const CStoredBlob& blob) {
    return blob.hash.ToHex() + (blob.codec == EBlobCodec::Zstd ? std::string(kPacked) : std::string());
}

std::string cache_files::PartNameOf(const CStoredBlob& blob) {
    return NameOf(blob) + std::string(kPart);
}

bool cache_files::IsOurs(std::string_view name) {
    if (name.ends_with(kPart)) name.remove_suffix(kPart.size());
    if (name.ends_with(kPacked)) name.remove_suffix(kPacked.size());
    const std::optional<CBlobHash> hash = CBlobHash::FromHex(name);
    return hash && hash->ToHex() == name;
}

CFileDescriptor cache_files::OpenFolder(const std::string& path) {
    (void)file_util_ex::Mkdir(file_util_ex::GetFilePath(path));
    (void)::mkdir(path.c_str(), 0700);  // what is wrong shows in the next line
    CFileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat state {};
    const bool isOurs = folder.IsOpen() && ::fstat(folder.Get(), &state) == 0 &&
                        state.st_uid == ::geteuid() && (state.st_mode & 022U) == 0;
    return isOurs ? std::move(folder) : CFileDescriptor();
}

CFileDescriptor cache_files::OpenFile(const CFileDescriptor& folder, const std::string& name, int flags) {
    CFileDescriptor file(
        ::openat(folder.Get(), name.c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
    struct stat state {};
    const bool isOurs = file.IsOpen() && ::fstat(file.Get(), &state) == 0 && S_ISREG(state.st_mode) &&
                        state.st_uid == ::geteuid() && state.st_nlink == 1;
    return isOurs ? std::move(file) : CFileDescriptor();
}

bool cache_files::IsAt(const CFileDescriptor& folder, const std::string& name, const CFileDescriptor& file) {
    struct stat named {
    }, own{};
    return ::fstatat(folder.Get(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           ::fstat(file.Get(), &own) == 0 && named.st_dev == own.st_dev && named.st_ino == own.st_ino;
}

std::vector<cache_files::CEntry> cache_files::List(const CFileDescriptor& folder) {
    std::vector<CEntry> entries;
    const int again = ::openat(folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (again < 0) return entries;
    const std::unique_ptr<DIR, CFolderCloser> listing(::fdopendir(again));  // closes it, too
    if (!listing) {
        (void)::close(again);
        return entries;
    }
    while (const dirent* entry = ::readdir(listing.get())) {
        struct stat state {};
        if (!IsOurs(entry->d_name) ||
            ::fstatat(folder.Get(), entry->d_name, &state, AT_SYMLINK_NOFOLLOW) != 0 ||
            S_ISDIR(state.st_mode))
            continue;
        entries.push_back({entry->d_name, std::max(static_cast<std::uint64_t>(state.st_size), kLeastBytes),
                           state.st_mtim.tv_sec * 1'000'000'000 + state.st_mtim.tv_nsec});
    }
    return entries;
}

void cache_files::Delete(const CFileDescriptor& folder, const std::string& name) {
    (void)::unlinkat(folder.Get(), name.c_str(), 0);  // somebody else may have been quicker
}

CStatus cache_files::Unpack(const CFileDescriptor& file, const CStoredBlob& blob,
                            std::span<std::byte> target) {
    struct stat state {};
    if (::fstat(file.Get(), &state) != 0 || static_cast<std::uint64_t>(state.st_size) != blob.stored ||
        target.size() != blob.size)
        return Damaged();
    CTargetSink sink(target);
    CByteUnpacker unpacker(blob.codec, blob.size, sink);
    if (CStatus read = ReadInto(unpacker, file); !read) return read;
    if (CStatus finished = unpacker.Finish(); !finished) return finished;
    return sink.IsFull() && sink.Hash() == blob.hash ? CStatus(CDone{}) : CStatus(Damaged());
}
