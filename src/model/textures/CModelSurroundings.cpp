// SPDX-License-Identifier: MIT
#include "model/textures/CModelSurroundings.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

#include "base/text/ascii_text.h"

namespace fs = std::filesystem;

namespace {

bool HasKind(const fs::path& path, mode_t kind) {
    struct stat info {};
    return ::fstatat(AT_FDCWD, path.c_str(), &info, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) == 0 &&
           (info.st_mode & S_IFMT) == kind;
}

/** Nothing when it leads nowhere. */
std::optional<fs::path> Resolved(const fs::path& path) {
    std::error_code error;
    fs::path resolved = fs::canonical(path, error);
    if (error) return std::nullopt;
    return resolved;
}

/** The part of a path below a folder; nothing when it is not below. Both are resolved. */
std::optional<fs::path> PartBelow(const fs::path& folder, const fs::path& path) {
    const auto [own, other] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    if (own != folder.end() || other == path.end()) return std::nullopt;
    fs::path part;
    for (auto step = other; step != path.end(); ++step) part /= *step;
    return part;
}

bool IsTopOfProject(const fs::path& folder) {
    std::error_code error;
    return fs::exists(folder / ".git", error) || fs::exists(folder / ".hg", error);
}

}  // namespace

CModelSurroundings::CModelSurroundings(const fs::path& modelFolder)
    : m_private(CPrivateFolders::OfThisUser()) {
    const auto resolved = Resolved(modelFolder.empty() ? "." : modelFolder);
    if (!resolved || !HasKind(*resolved, S_IFDIR)) return;
    m_folder = *resolved;
    if (!m_private->Has(m_folder)) {
        m_below = EBelow::All;
        FindAbove();
    } else if (!m_private->IsPersonal(m_folder)) {
        m_below = EBelow::TextureFolders;
    }
}

void CModelSurroundings::FindAbove() {
    fs::path folder = m_folder;
    while (m_above.size() < kMostLevelsUp && !IsTopOfProject(folder)) {
        folder = folder.parent_path();
        if (!folder.has_relative_path() || m_private->Has(folder)) return;
        m_above.push_back(folder);
    }
}

std::size_t CModelSurroundings::PictureFolderCount(const fs::path& parent) const {
    if (parent != m_folder || m_below == EBelow::All) return kPictureFolders.size();
    return m_below == EBelow::TextureFolders ? kPictureFolders.size() - kLoosePictureFolders : 0;
}

std::optional<fs::path> CModelSurroundings::File(const fs::path& path) const {
    if (m_folder.empty()) return std::nullopt;
    auto resolved = Resolved(path);
    if (!resolved || !HasKind(*resolved, S_IFREG)) return std::nullopt;
    const fs::path folder = resolved->parent_path();
    if (folder != m_folder && !Holds(folder)) return std::nullopt;
    return resolved;
}

std::optional<fs::path> CModelSurroundings::SubFolder(const fs::path& path) const {
    if (m_folder.empty()) return std::nullopt;
    auto resolved = Resolved(path);
    if (!resolved || !HasKind(*resolved, S_IFDIR) || !Holds(*resolved)) return std::nullopt;
    return resolved;
}

std::vector<fs::path> CModelSurroundings::Readable() const {
    constexpr std::size_t kMostEntries = 10'000;
    std::vector<fs::path> readable;
    if (m_below == EBelow::All) readable.push_back(m_folder);
    std::vector<fs::path> parents = m_above;
    if (m_below != EBelow::All) parents.push_back(m_folder);
    for (const fs::path& parent : parents) {
        std::error_code error;
        std::size_t left = kMostEntries;
        for (fs::directory_iterator entry(parent, error), end; !error && entry != end && left > 0; --left) {
            const auto found = parent == m_folder && entry->is_regular_file(error) ? File(entry->path())
                                                                                   : SubFolder(entry->path());
            if (found) readable.push_back(*found);
            entry.increment(error);
        }
    }
    return readable;
}

bool CModelSurroundings::IsInFolder(const fs::path& resolved) const {
    return PartBelow(m_folder, resolved).has_value();
}

bool CModelSurroundings::Holds(const fs::path& folder) const {
    const auto isNamed = [&](const fs::path& top) {
        const auto below = PartBelow(top, folder);
        if (!below) return false;
        const std::string first = ascii_text::Lowered(below->begin()->native());
        const auto end = kPictureFolders.begin() + static_cast<std::ptrdiff_t>(PictureFolderCount(top));
        return std::find(kPictureFolders.begin(), end, first) != end && IsOpenDownTo(top, folder);
    };
    if (m_below == EBelow::All && IsInFolder(folder)) return IsOpenDownTo(m_folder, folder);
    return isNamed(m_folder) || std::any_of(m_above.begin(), m_above.end(), isNamed);
}

/** True where no folder on the way from top to folder is private. */
bool CModelSurroundings::IsOpenDownTo(const fs::path& top, const fs::path& folder) const {
    fs::path at = folder;
    for (; at != top && at.has_relative_path(); at = at.parent_path()) {
        if (m_private->Has(at)) return false;
    }
    return at == top;
}
