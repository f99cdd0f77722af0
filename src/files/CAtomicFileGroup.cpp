// SPDX-License-Identifier: MIT
#include "files/CAtomicFileGroup.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "files/CFileDescriptor.h"
#include "files/file_util_ex.h"

namespace {

/** A file that got its name, and the file that it replaced, which exists as long as it is open. */
struct CNamed {
    std::string path;
    CFileDescriptor before;  ///< not open where there was nothing, or nothing that may be read
    bool isNew = false;
};

bool Copy(const CFileDescriptor& from, CAtomicFile& to) {
    std::array<std::byte, 64 << 10> buffer{};
    for (off_t at = 0;;) {
        const ssize_t got = ::pread(from.Get(), buffer.data(), buffer.size(), at);
        if (got <= 0) return got == 0;
        if (!to.Write(std::span(buffer).first(static_cast<std::size_t>(got)))) return false;
        at += got;
    }
}

/** Best effort: the cause of the failure may make this fail, too. */
void TakeBack(const CNamed& named) {
    if (named.isNew) {
        std::error_code ignored;
        const std::filesystem::path made = std::filesystem::canonical(named.path, ignored);
        if (!made.empty()) file_util_ex::DeleteFileW(made.string());
        return;
    }
    if (!named.before.IsOpen()) return;
    CResult<CAtomicFile> again = CAtomicFile::Create(named.path);
    if (again && Copy(named.before, again.Value())) (void)again.Value().Commit().HasValue();
}

}  // namespace

void CAtomicFileGroup::Add(std::string path, CAtomicFile file) {
    m_members.push_back({std::move(path), std::move(file)});
}

CStatus CAtomicFileGroup::Commit() {
    std::vector<CNamed> named;
    named.reserve(m_members.size());
    for (CMember& member : m_members) {
        CFileDescriptor before(::open(member.path.c_str(), O_RDONLY | O_CLOEXEC));
        const bool isNew = !before.IsOpen() && errno == ENOENT;
        CStatus status = member.file.Commit();
        if (!status) {
            for (const CNamed& done : named) TakeBack(done);
            return status;
        }
        named.push_back({member.path, std::move(before), isNew});
    }
    return CDone{};
}
