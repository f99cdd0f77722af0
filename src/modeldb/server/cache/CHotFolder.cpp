// SPDX-License-Identifier: MIT
#include "modeldb/server/cache/CHotFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>

#include "files/file_util_ex.h"
#include "files/system_error.h"

namespace {

constexpr std::chrono::seconds kFresh{60};
constexpr int kFolders = 64;  ///< of processes that share a folder
constexpr std::string_view kNoKind = "application/octet-stream";

CError Failure(const std::string& where) {
    const int error = errno;
    const bool isFull = error == ENOSPC || error == EDQUOT;
    return {isFull ? EErrorCode::NoSpace : EErrorCode::WriteFailed, SystemErrorText(error), where};
}

std::string PathOf(std::string_view name) {
    return std::string(name.substr(0, 2)) + "/" + std::string(name);
}

/** Deletes what is in a folder, and in its folders to that depth. What cannot be deleted stays. */
void Empty(int folder, int depth) {
    const int own = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (own < 0) return;
    const std::unique_ptr<DIR, int (*)(DIR*)> list(::fdopendir(own), ::closedir);
    if (!list) {
        (void)::close(own);  // nothing was written through it
        return;
    }
    while (const dirent* entry = ::readdir(list.get())) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == ".." || ::unlinkat(folder, entry->d_name, 0) == 0 || depth == 0) continue;
        const CFileDescriptor below(
            ::openat(folder, entry->d_name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!below.IsOpen()) continue;
        Empty(below.Get(), depth - 1);
        (void)::unlinkat(folder, entry->d_name, AT_REMOVEDIR);  // a later start tries again
    }
}

/** The folder hot-N below another, open and locked; not open where another process has it. */
CFileDescriptor Take(int above, int number) {
    const std::string name = "hot-" + std::to_string(number);
    if (::mkdirat(above, name.c_str(), 0700) != 0 && errno != EEXIST) return {};
    CFileDescriptor folder(::openat(above, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat facts {};
    if (!folder.IsOpen() || ::fstat(folder.Get(), &facts) != 0) return {};
    errno = EACCES;
    if (facts.st_uid != ::geteuid() || ::fchmod(folder.Get(), 0700) != 0) return {};
    return ::flock(folder.Get(), LOCK_EX | LOCK_NB) == 0 ? std::move(folder) : CFileDescriptor();
}

std::string_view MimeOf(int file) {
    std::array<unsigned char, 4> first{};
    if (::pread(file, first.data(), first.size(), 0) != static_cast<ssize_t>(first.size())) return kNoKind;
    if (first == std::array<unsigned char, 4>{0x89, 'P', 'N', 'G'}) return "image/png";
    return first[0] == 0xFF && first[1] == 0xD8 && first[2] == 0xFF ? "image/jpeg" : kNoKind;
}

/** A file that is being written, under a name that nobody asks for; deleted unless it gets its own. */
class CNewFile {
  public:
    CNewFile(int folder, std::string name)
        : m_folder(folder),
          m_name(std::move(name)),
          m_file(::openat(folder, m_name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600)) {
    }
    CNewFile(const CNewFile&) = delete;
    CNewFile& operator=(const CNewFile&) = delete;
    ~CNewFile() {
        if (!m_name.empty() && m_file.IsOpen())
            (void)::unlinkat(m_folder, m_name.c_str(), 0);  // the next start deletes it
    }

    [[nodiscard]] bool IsOpen() const { return m_file.IsOpen(); }
    [[nodiscard]] std::uint64_t Bytes() const { return m_bytes; }
    [[nodiscard]] CStatus Write(std::span<const std::byte> piece) {
        while (!piece.empty()) {
            const ssize_t written = ::write(m_file.Get(), piece.data(), piece.size());
            if (written < 0 && errno == EINTR) continue;
            if (written <= 0) return Failure({});
            piece = piece.subspan(static_cast<std::size_t>(written));
            m_bytes += static_cast<std::uint64_t>(written);
        }
        return CDone{};
    }
    /** Not open where the system refuses. */
    [[nodiscard]] CFileDescriptor Publish(const std::string& path) {
        (void)::mkdirat(m_folder, path.substr(0, 2).c_str(), 0700);  // it may be there; renameat tells
        if (::renameat(m_folder, m_name.c_str(), m_folder, path.c_str()) != 0) return {};
        m_name.clear();
        return CFileDescriptor(::openat(m_folder, path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    }

  private:
    int m_folder;
    std::string m_name;
    CFileDescriptor m_file;
    std::uint64_t m_bytes = 0;
};

}  // namespace

CResult<std::unique_ptr<CHotFolder>> CHotFolder::Open(COptions options) {
    if (!file_util_ex::Mkdir(options.folder)) return Failure(options.folder);
    const CFileDescriptor above(::open(options.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!above.IsOpen()) return Failure(options.folder);
    for (int i = 0; i < kFolders; ++i) {
        CFileDescriptor folder = Take(above.Get(), i);
        if (!folder.IsOpen()) continue;
        Empty(folder.Get(), 2);
        return std::unique_ptr<CHotFolder>(new CHotFolder(std::move(options), std::move(folder)));
    }
    return Failure(options.folder);
}

CHotFolder::~CHotFolder() {
    Empty(m_folder.Get(), 2);
}

std::optional<CHotFile> CHotFolder::Find(std::string_view name) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_byName.find(name);
    if (found == m_byName.end()) return std::nullopt;
    CEntry& entry = *found->second;
    std::shared_ptr<const CFileDescriptor> file = OpenAgain(entry);
    if (!file) {
        Drop(found->second);
        return std::nullopt;
    }
    m_entries.splice(m_entries.begin(), m_entries, found->second);
    ++m_counts.hits;
    const bool isFresh = std::chrono::steady_clock::now() - entry.confirmed < kFresh;
    return CHotFile{std::move(file), entry.bytes, entry.mime, isFresh};
}

std::shared_ptr<const CFileDescriptor> CHotFolder::OpenAgain(CEntry& entry) {
    if (std::shared_ptr<const CFileDescriptor> file = entry.file.lock()) return file;
    CFileDescriptor opened(
        ::openat(m_folder.Get(), PathOf(entry.name).c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    struct stat facts {};
    if (!opened.IsOpen() || ::fstat(opened.Get(), &facts) != 0 || !S_ISREG(facts.st_mode) ||
        static_cast<std::uint64_t>(facts.st_size) != entry.bytes)
        return nullptr;
    auto file = std::make_shared<const CFileDescriptor>(std::move(opened));
    entry.file = file;
    m_open[m_nextOpen++ % m_open.size()] = file;
    return file;
}

void CHotFolder::Confirm(std::string_view name) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_byName.find(name);
    if (found != m_byName.end()) found->second->confirmed = std::chrono::steady_clock::now();
}

void CHotFolder::Remove(std::string_view name) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_byName.find(name);
    if (found != m_byName.end()) Drop(found->second);
}

CResult<CHotFile> CHotFolder::Put(std::string_view name, const CFill& fill) {
    CResult<CHotFile> made = PutOnce(name, fill);
    if (made || made.Error().code != EErrorCode::NoSpace) return made;
    {
        const std::lock_guard lock(m_mutex);
        Trim(0, 0);
    }
    return PutOnce(name, fill);
}

CResult<CHotFile> CHotFolder::PutOnce(std::string_view name, const CFill& fill) {
    assert(name.size() > 2);
    std::uint64_t number = 0;
    {
        const std::lock_guard lock(m_mutex);
        number = m_nextTemporary++;
    }
    CNewFile file(m_folder.Get(), "new-" + std::to_string(number));
    if (!file.IsOpen()) return Failure({});
    if (CStatus filled = fill([&](std::span<const std::byte> piece) { return file.Write(piece); }); !filled)
        return filled.Error();
    CFileDescriptor opened = file.Publish(PathOf(name));
    if (!opened.IsOpen()) return Failure({});
    return Keep(name, std::make_shared<const CFileDescriptor>(std::move(opened)), file.Bytes());
}

CHotFile CHotFolder::Keep(std::string_view name, std::shared_ptr<const CFileDescriptor> file,
                          std::uint64_t bytes) {
    const std::string_view mime = MimeOf(file->Get());
    const std::lock_guard lock(m_mutex);
    if (const auto found = m_byName.find(name); found != m_byName.end()) {
        // The file itself has just been replaced.
        m_counts.bytes -= found->second->bytes;
        const CEntries::iterator old = found->second;
        m_byName.erase(found);
        m_entries.erase(old);
    }
    Trim(bytes < m_options.bytes ? m_options.bytes - bytes : 0, m_options.files - 1);
    m_entries.push_front({std::string(name), bytes, mime, std::chrono::steady_clock::now(), file});
    m_byName.emplace(m_entries.front().name, m_entries.begin());
    m_open[m_nextOpen++ % m_open.size()] = file;
    m_counts.bytes += bytes;
    ++m_counts.fills;
    return {std::move(file), bytes, mime, true};
}

void CHotFolder::Trim(std::uint64_t bytes, std::size_t files) {
    while (!m_entries.empty() && (m_counts.bytes > bytes || m_entries.size() > files))
        Drop(std::prev(m_entries.end()));
}

void CHotFolder::Drop(CEntries::iterator entry) {
    (void)::unlinkat(m_folder.Get(), PathOf(entry->name).c_str(), 0);  // emptied at the end anyway
    m_counts.bytes -= entry->bytes;
    ++m_counts.dropped;
    m_byName.erase(entry->name);
    m_entries.erase(entry);
}

CHotCounts CHotFolder::Counts() const {
    const std::lock_guard lock(m_mutex);
    CHotCounts counts = m_counts;
    counts.files = m_entries.size();
    return counts;
}
