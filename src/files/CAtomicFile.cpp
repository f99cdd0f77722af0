// SPDX-License-Identifier: MIT
#include "files/CAtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"

namespace {

constexpr std::size_t kGatherBytes = 64 << 10;
constexpr int kMaxLinks = 40;
constexpr int kMaxNames = 100;
constexpr std::size_t kMaxNameBytes = 200;  // leaves room for the temporary name's own part

CError WriteError(std::string_view path, int errorNumber) {
    return {EErrorCode::WriteFailed, SystemErrorText(errorNumber), std::string(path)};
}

CError NoFile(std::string_view path) {
    return {EErrorCode::WriteFailed, lng::Mark("this is no file that can be replaced"), std::string(path)};
}

// Whoever else makes a link in a folder for all could choose what we write over.
bool IsTrusted(const std::string& link, const struct stat& info) {
    struct stat folder = {};
    if (info.st_uid == ::geteuid() || info.st_uid == 0) return true;
    const std::string path = file_util_ex::GetFilePath(link);
    return ::stat(path.empty() ? "." : path.c_str(), &folder) == 0 && folder.st_uid == info.st_uid;
}

// Where a chain of links ends, be there a file or not.
CResult<std::string> FollowLinks(std::string_view path) {
    std::string at(path);
    struct stat info = {}, end = {}, named = {};
    for (int i = 0; ::lstat(at.c_str(), &info) == 0 && S_ISLNK(info.st_mode); ++i) {
        if (i == kMaxLinks) return WriteError(path, ELOOP);
        if (!IsTrusted(at, info)) return WriteError(path, EACCES);
        std::error_code error;
        const std::filesystem::path next = std::filesystem::read_symlink(at, error);
        if (error) return WriteError(path, error.value());
        at = file_util_ex::MakeAbsolute(file_util_ex::GetFilePath(at), next.string());
    }
    // Those of a process's open files have only a text for where they lead.
    const bool isThere = ::stat(std::string(path).c_str(), &named) == 0;
    if (isThere &&
        (::stat(at.c_str(), &end) != 0 || end.st_ino != named.st_ino || end.st_dev != named.st_dev))
        return NoFile(path);
    return at;
}

std::string KindOf(std::string_view path) {
    std::string ending = ascii_text::Lowered(file_util_ex::GetFileExt(path));
    return ending == "jpeg" ? "jpg" : ending == "htm" ? "html" : ending;
}

std::string TempNameFor(const std::string& target) {
    static constexpr char kDigits[] = "0123456789abcdefghijklmnopqrstuv";
    std::random_device random;
    std::string tail = "/.";
    tail += file_util_ex::GetFileName(target).substr(0, kMaxNameBytes);
    tail += '.';
    for (unsigned bits = random(), i = 0; i < 6; ++i, bits >>= 5) tail += kDigits[bits & 31U];
    const std::string folder = file_util_ex::GetFilePath(target);
    return (folder.empty() ? "." : folder == "/" ? "" : folder) + tail + ".tmp";
}

// The system deletes such a file however the process ends. Not open where the file system has no
// unnamed files.
CFileDescriptor OpenWithoutName(const std::string& target) {
    if (::access("/proc/self/fd", X_OK) != 0) return {};  // the way to give it a name
    const std::string folder = file_util_ex::GetFilePath(target);
    return CFileDescriptor(
        ::open(folder.empty() ? "." : folder.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0666));
}

bool GiveName(int fd, const std::string& name) {
    const std::string own = "/proc/self/fd/" + std::to_string(fd);
    return ::linkat(AT_FDCWD, own.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

// A file that exists lends its successor mode and, where that is allowed, owner and group.
bool KeepPermissions(int fd, const struct stat& old) {
    if (::fchown(fd, old.st_uid, old.st_gid) != 0) {
        // Somebody else's file in a folder of ours: it becomes ours, as with every editor.
        errno = 0;
    }
    return ::fchmod(fd, old.st_mode & 0777U) == 0;
}

CStatus MayReplace(std::string_view path, const std::string& target, const struct stat& old) {
    if (S_ISDIR(old.st_mode)) return WriteError(path, EISDIR);
    if (!S_ISREG(old.st_mode)) return NoFile(path);
    if (::access(target.c_str(), W_OK) != 0) return WriteError(path, errno);
    return CDone{};
}

void SyncFolderOf(const std::string& path) {
    const std::string folder = file_util_ex::GetFilePath(path);
    const CFileDescriptor handle(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // The file is complete under its name already; some file systems cannot sync a folder.
    if (handle.IsOpen()) (void)::fsync(handle.Get());
}

}  // namespace

std::optional<CFileId> CFileId::Of(const std::string& path) {
    struct stat info = {};
    if (::lstat(path.c_str(), &info) != 0) return std::nullopt;
    return CFileId{info.st_dev, info.st_ino, info.st_mode & S_IFMT, info.st_size,
                   std::int64_t{info.st_mtim.tv_sec} * 1'000'000'000 + info.st_mtim.tv_nsec};
}

CResult<CAtomicFile> CAtomicFile::Create(std::string_view path) {
    CResult<std::string> target = FollowLinks(path);
    return target ? CreateAt(std::move(target).Value(), path) : target.Error();
}

CResult<CAtomicFile> CAtomicFile::CreateAt(std::string target, std::string_view path) {
    if (file_util_ex::GetFileName(target).empty()) {
        return CError{EErrorCode::BadArgument, lng::Mark("no file name"), std::string(path)};
    }
    struct stat old = {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (exists) {
        if (CStatus may = MayReplace(path, target, old); !may) return may.Error();
    }
    CResult<CAtomicFile> made = Open(std::move(target), path);
    if (made && exists && !KeepPermissions(made.Value().m_file.Get(), old)) return WriteError(path, errno);
    return made;
}

CResult<CAtomicFile> CAtomicFile::CreateOutput(std::string_view path) {
    CResult<std::string> target = OutputTarget(path);
    return target ? CreateAt(std::move(target).Value(), path) : target.Error();
}

CResult<std::string> CAtomicFile::OutputTarget(std::string_view path) {
    CResult<std::string> target = FollowLinks(path);
    if (target && KindOf(target.Value()) != KindOf(path))
        return CError{EErrorCode::WriteFailed, lng::Mark("this is a link to a file of another kind"),
                      std::string(path)};
    return target;
}

CResult<CAtomicFile> CAtomicFile::CreateNew(std::string_view path) {
    struct stat old = {};
    if (::lstat(std::string(path).c_str(), &old) == 0) return WriteError(path, EEXIST);
    CResult<CAtomicFile> made = Open(std::string(path), path);
    if (made) made.Value().m_mustBeNew = true;
    return made;
}

CResult<CAtomicFile> CAtomicFile::CreateOver(std::string_view path, const CFileId& old) {
    if (CFileId::Of(std::string(path)) != old) return WriteError(path, EEXIST);
    CResult<CAtomicFile> made = Open(std::string(path), path);
    if (made) made.Value().m_mustBe = old;
    return made;
}

CResult<CAtomicFile> CAtomicFile::Open(std::string target, std::string_view path) {
    CFileDescriptor file = OpenWithoutName(target);
    std::string name;
    for (int i = 0; i < kMaxNames && !file.IsOpen(); ++i) {
        name = TempNameFor(target);
        file =
            CFileDescriptor(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
        if (!file.IsOpen() && errno != EEXIST) return WriteError(path, errno);
    }
    if (!file.IsOpen()) return WriteError(path, EEXIST);
    return CAtomicFile(std::move(target), std::move(name), std::move(file));
}

CAtomicFile::CAtomicFile(std::string target, std::string tempName, CFileDescriptor file)
    : m_target(std::move(target)), m_tempName(std::move(tempName)), m_file(std::move(file)) {}

CAtomicFile::CAtomicFile(CAtomicFile&& other) noexcept
    : m_target(std::move(other.m_target)),
      m_tempName(std::exchange(other.m_tempName, {})),
      m_mustBeNew(other.m_mustBeNew),
      m_mustBe(other.m_mustBe),
      m_placed(other.m_placed),
      m_file(std::move(other.m_file)),
      m_gathered(std::move(other.m_gathered)),
      m_error(std::move(other.m_error)) {}

CAtomicFile::~CAtomicFile() {
    Discard();
}

CStatus CAtomicFile::Write(std::span<const std::byte> bytes) {
    if (!m_error && m_gathered.size() + bytes.size() > kGatherBytes) {
        if (Flush(m_gathered)) m_gathered.clear();
        if (!m_error && bytes.size() > kGatherBytes) {
            (void)Flush(bytes);  // m_error tells
            bytes = {};
        }
    }
    if (m_error) return *m_error;
    m_gathered.insert(m_gathered.end(), bytes.begin(), bytes.end());
    return CDone{};
}

CStatus CAtomicFile::Write(std::string_view text) {
    return Write(std::as_bytes(std::span(text)));
}

CStatus CAtomicFile::Commit() {
    if (CStatus rested = Rest(true); !rested) return rested;
    if (TakeTarget()) {
        m_tempName.clear();
        SyncFolderOf(m_target);
        return CDone{};
    }
    Fail(errno);
    return *m_error;
}

CStatus CAtomicFile::Rest(bool sync) {
    const bool rests = !m_file.IsOpen() && !m_tempName.empty();
    if (!m_error && !rests && !m_file.IsOpen()) Fail(EBADF);
    if (!m_error && !rests) (void)Flush(m_gathered);  // m_error tells
    m_gathered = {};
    if (!m_error && !rests && sync && ::fsync(m_file.Get()) != 0) Fail(errno);
    if (!m_error && m_tempName.empty() && !NameIt()) Fail(errno);
    if (!m_error && !m_file.Close()) Fail(errno);
    if (m_error) return *m_error;
    return CDone{};
}

CStatus CAtomicFile::Place(bool sync) {
    if (CStatus rested = Rest(sync); !rested) return rested;
    const std::optional<CFileId> own = CFileId::Of(m_tempName);
    if (m_mustBeNew ||
        (::faccessat(AT_FDCWD, m_target.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT)) {
        m_mustBeNew = true;
        if (TakeTarget()) {
            m_tempName.clear();
            m_placed = own;
            return CDone{};
        }
    } else if (ExchangeWithTarget()) {
        m_placed = own;
        return CDone{};
    }
    Fail(errno);
    return *m_error;
}

bool CAtomicFile::SyncFileSystem() const {
    const std::string folder = file_util_ex::GetFilePath(m_target);
    const CFileDescriptor handle(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return handle.IsOpen() && ::syncfs(handle.Get()) == 0;
}

void CAtomicFile::SyncFolder() const {
    SyncFolderOf(m_target);
}

void CAtomicFile::TakeBack() {
    if (!m_placed || CFileId::Of(m_target) != m_placed) return;
    m_placed.reset();
    if (m_tempName.empty()) {
        (void)::unlink(m_target.c_str());
    } else if (::rename(m_tempName.c_str(), m_target.c_str()) == 0) {
        m_tempName.clear();
    }
}

bool CAtomicFile::TakeTarget() {
    if (m_mustBe && CFileId::Of(m_target) != m_mustBe) {
        errno = EEXIST;
        return false;
    }
    if (!m_mustBeNew) return ::rename(m_tempName.c_str(), m_target.c_str()) == 0;
    if (::renameat2(AT_FDCWD, m_tempName.c_str(), AT_FDCWD, m_target.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // Unlike rename, link takes no name that something has.
    return ::link(m_tempName.c_str(), m_target.c_str()) == 0 && ::unlink(m_tempName.c_str()) == 0;
}

// Afterwards what had the name has the temporary one. What was put there in the very moment before shows
// only then, and gets its name back.
bool CAtomicFile::ExchangeWithTarget() {
    const auto exchange = [this] {
        return ::renameat2(AT_FDCWD, m_tempName.c_str(), AT_FDCWD, m_target.c_str(), RENAME_EXCHANGE) == 0;
    };
    if (exchange()) {
        const std::optional<CFileId> old = CFileId::Of(m_tempName);
        const bool isFolder = !old || S_ISDIR(old->kind);
        if (!isFolder && (!m_mustBe || old == m_mustBe)) return true;
        if (exchange()) errno = isFolder ? EISDIR : EEXIST;
        return false;
    }
    if (errno != EINVAL && errno != ENOSYS) return false;
    const std::string kept = TempNameFor(m_target);
    if (::link(m_target.c_str(), kept.c_str()) != 0 || !TakeTarget()) return false;
    m_tempName = kept;
    return true;
}

bool CAtomicFile::NameIt() {
    for (int i = 0; i < kMaxNames; ++i) {
        std::string name = TempNameFor(m_target);
        if (GiveName(m_file.Get(), name)) {
            m_tempName = std::move(name);
            return true;
        }
        if (errno != EEXIST) return false;
    }
    return false;
}

bool CAtomicFile::Flush(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(m_file.Get(), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) {
            Fail(written < 0 ? errno : ENOSPC);
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

void CAtomicFile::Fail(int errorNumber) {
    m_error = WriteError(m_target, errorNumber);
    Discard();
}

void CAtomicFile::Discard() {
    (void)m_file.Close();  // the file goes away
    if (!m_tempName.empty()) (void)::unlink(std::exchange(m_tempName, {}).c_str());
}
