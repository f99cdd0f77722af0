// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "base/CPagesAhead.h"
#include "base/text/lng.h"
#include "files/CAtomicFile.h"
#include "files/CFileDescriptor.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"

namespace file_util_ex {
namespace {

// Small enough to stay in the processor's cache between the vector's zeros and the file's bytes, so that a
// big file costs its memory one pass, not two.
constexpr std::size_t kChunkBytes = 256 << 10;
constexpr std::size_t kSmallBytes = 4 << 10;
constexpr std::uint64_t kMaxDeviceBytes = 64ULL << 20;  // a device may have no end
constexpr int kSilenceMs = 2000;

CError ReadError(std::string_view path, int errorNumber) {
    const bool missing = errorNumber == ENOENT || errorNumber == ENOTDIR;
    return {missing ? EErrorCode::NotFound : EErrorCode::Unreadable, SystemErrorText(errorNumber),
            std::string(path)};
}

// Like read(2), but waits only a while for a pipe or device, so that none can block the program.
ssize_t ReadSome(int fd, std::byte* to, std::size_t count) {
    while (true) {
        const ssize_t got = ::read(fd, to, count);
        if (got >= 0 || (errno != EINTR && errno != EAGAIN)) return got;
        pollfd waiting = {fd, POLLIN, 0};
        if (errno == EAGAIN && ::poll(&waiting, 1, kSilenceMs) == 0) {
            errno = ETIMEDOUT;
            return -1;
        }
    }
}

CFileDescriptor OpenToRead(std::string_view path, int moreFlags) {
    return CFileDescriptor(
        ::open(std::string(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | moreFlags));
}

CResult<std::vector<std::byte>> ReadAll(const CFileDescriptor& file, std::string_view path,
                                        std::uint64_t maxBytes, const CFirstBytesJudge& wantsRest,
                                        const std::atomic<bool>* cancelled) {
    struct stat info = {};
    if (!file.IsOpen() || ::fstat(file.Get(), &info) != 0) return ReadError(path, errno);
    if (S_ISDIR(info.st_mode)) return ReadError(path, EISDIR);
    const CError tooLarge{EErrorCode::TooLarge, lng::Mark("the file is too large"), std::string(path)};
    const auto told = static_cast<std::uint64_t>(std::max<off_t>(info.st_size, 0));
    if (S_ISREG(info.st_mode) && told > maxBytes) return tooLarge;
    if (S_ISCHR(info.st_mode)) maxBytes = std::min(maxBytes, kMaxDeviceBytes);

    std::vector<std::byte> bytes;
    CPagesAhead pages;
    // One more than its size, so that the read that finds the end needs no larger block.
    const auto whole = static_cast<std::size_t>(std::min(told, maxBytes) + 1);
    // A device tells 0, and so do empty files, of which a folder may hold very many.
    bytes.reserve(told == 0 ? kSmallBytes : std::min(whole, kChunkBytes));
    while (true) {
        if (cancelled && *cancelled)
            return CError{EErrorCode::Cancelled, lng::Mark("cancelled"), std::string(path)};
        const std::size_t used = bytes.size();
        const std::size_t room = bytes.capacity() > used ? bytes.capacity() - used : kChunkBytes;
        bytes.resize(used + std::min(room, kChunkBytes));
        const ssize_t got = ReadSome(file.Get(), bytes.data() + used, bytes.size() - used);
        if (got < 0) return ReadError(path, errno);
        bytes.resize(used + static_cast<std::size_t>(got));
        if (bytes.size() > maxBytes) return tooLarge;
        if (got == 0 || (used == 0 && wantsRest && !wantsRest(bytes))) return bytes;
        if (used == 0) {
            bytes.reserve(whole);
            pages.Begin(bytes.data() + bytes.size(), bytes.capacity() - bytes.size());
        }
    }
}

CStatus WriteAll(CResult<CAtomicFile> file, std::span<const std::byte> bytes) {
    if (!file) return file.Error();
    (void)file.Value().Write(bytes);  // Commit tells
    return file.Value().Commit();
}

}  // namespace

CResult<std::vector<std::byte>> ReadWholeFile(std::string_view path, std::uint64_t maxBytes,
                                              const CFirstBytesJudge& wantsRest,
                                              const std::atomic<bool>* cancelled) {
    return ReadAll(OpenToRead(path, 0), path, maxBytes, wantsRest, cancelled);
}

CResult<std::vector<std::byte>> ReadPlainFile(std::string_view path, std::uint64_t maxBytes) {
    struct stat info = {};
    // Opening may already do something, where it is no file: a tape rewinds.
    if (::lstat(std::string(path).c_str(), &info) != 0) return ReadError(path, errno);
    if (!S_ISREG(info.st_mode)) return ReadError(path, S_ISLNK(info.st_mode) ? ELOOP : ENXIO);
    const CFileDescriptor file = OpenToRead(path, O_NOFOLLOW);
    if (file.IsOpen() && (::fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode)))
        return ReadError(path, ENXIO);
    return ReadAll(file, path, maxBytes, {}, nullptr);
}

CResult<std::vector<std::byte>> GetFileData(std::wstring_view path, std::uint64_t maxBytes) {
    return ReadPlainFile(ConvertToUTF8(path), maxBytes);
}

CStatus WriteFileAtomically(std::string_view path, std::span<const std::byte> bytes) {
    return WriteAll(CAtomicFile::Create(path), bytes);
}

CStatus WriteOutput(std::string_view path, std::span<const std::byte> bytes) {
    return WriteAll(CAtomicFile::CreateOutput(path), bytes);
}

CStatus WriteFileAtomically(std::string_view path, std::string_view text) {
    return WriteFileAtomically(path, std::as_bytes(std::span(text)));
}

}  // namespace file_util_ex
