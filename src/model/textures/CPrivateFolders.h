// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

/** The folders of a computer that hold what people keep for themselves, or what anybody puts there: home folders, the
 * desktop's own folders in them (Downloads, Pictures ..., by user-dirs.dirs and by their English names), temporary
 * folders, and the roots of mounts. A search on behalf of a stranger's file never goes into one or above it.
 *
 * Folders are compared by device and inode, so links and bind mounts lead nowhere new. Constant; any thread may ask. */
class CPrivateFolders {
  public:
    /** Those of this user by $HOME, the user's entry in the system's list, $XDG_CONFIG_HOME and $TMPDIR, which may be
     * missing or relative. Made anew when one of these variables has changed. */
    [[nodiscard]] static std::shared_ptr<const CPrivateFolders> OfThisUser();

    /** True for a private folder; folder must be resolved (no links in it). */
    [[nodiscard]] bool Has(const std::filesystem::path& folder) const {
        return IsPersonal(folder) || IsMountRoot(folder);
    }
    /** The same but for the roots of mounts: a disc or a stick may hold nothing but models. */
    [[nodiscard]] bool IsPersonal(const std::filesystem::path& folder) const;
    /** True for the root of a mount, a bind mount too. Does not follow a link, nor mount anything. */
    [[nodiscard]] static bool IsMountRoot(const std::filesystem::path& folder);

  private:
    using CId = std::pair<dev_t, ino_t>;

    explicit CPrivateFolders(const std::vector<std::string>& variables);
    void Add(const std::filesystem::path& folder);
    void AddHome(const std::filesystem::path& home, const std::string& configFolder);
    [[nodiscard]] bool IsHome(const std::filesystem::path& folder) const;

    std::set<CId> m_homes, m_others;
};
