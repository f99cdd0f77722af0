// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/CResult.h"
#include "files/CAtomicFileGroup.h"

/** The files that an export writes beside its main file (pictures beside a scene or a page), by one rule for all exports:
 *
 * - A file gets a name that nothing has, not even a dangling link, or one that an earlier export to the same main file
 *   gave to a file that has not been changed since. Whatever else has a name keeps it, and the export takes the next.
 *   No link is followed, not even one that is put there at the last moment: then the export fails.
 * - What was written is recorded in the main file, by lines that ToRecord gives; the next export reads them there.
 *   So an export that is repeated replaces its own files and leaves others alone.
 *
 * All get their names together with the main file, see CAtomicFileGroup. */
class CFilesBeside {
  public:
    /** mainPath is UTF-8. */
    explicit CFilesBeside(std::string_view mainPath);

    /** This file must not be replaced, whoever wrote it: the model is read from it. */
    void Protect(const std::string& path);
    /** A name for a new file, "stem12.ext"; stem and extension (".png") are ASCII, without '/'. */
    [[nodiscard]] CResult<std::string> ChooseName(std::string_view stem, std::string_view extension);
    /** Takes these very names, whatever characters they have but '/', when all of them are free by the rule above;
     * else none, and false. */
    [[nodiscard]] bool TakeNames(std::span<const std::string> names);
    /** Writes the file of a chosen name; it has that name only after Commit of the group. */
    [[nodiscard]] CStatus Write(const std::string& name, std::span<const std::byte> bytes);
    /** The lines to put into the main file, as a comment near its end, when all is written. */
    [[nodiscard]] std::vector<std::string> ToRecord() const;
    /** Call it when the main file has its name: deletes what the earlier export wrote under names of which isOurs is
     * true, this one did not write, and nobody changed since. As a stranger may have written the main file that was
     * there before, isOurs must be true for names alone that no other file has. */
    void DeleteEarlier(const std::function<bool(const std::string& name)>& isOurs) const;
    /** The written files. */
    [[nodiscard]] CAtomicFileGroup TakeFiles() { return std::move(m_files); }

  private:
    struct CWritten {
        std::uint64_t bytes = 0, sum = 0;
        bool operator==(const CWritten&) const = default;
    };
    void ReadRecord(const std::string& mainPath);
    /** Whether a file of that name may be written; old: the one that it replaces. */
    [[nodiscard]] bool IsFree(const std::string& name, std::optional<CFileId>& old) const;

    std::string m_folder;
    std::set<std::pair<dev_t, ino_t>> m_protected;
    std::map<std::string, CWritten, std::less<>> m_earlier, m_written;
    std::map<std::string, std::optional<CFileId>, std::less<>> m_chosen;  ///< with the file to replace
    std::uint32_t m_next = 0;
    CAtomicFileGroup m_files;
};
