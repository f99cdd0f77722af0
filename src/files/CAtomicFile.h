// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"

/** Tells a file that nobody changes from all others; a later one may get the inode of one that is gone. */
struct CFileId {
    dev_t device = 0;
    ino_t inode = 0;
    mode_t kind = 0;
    off_t bytes = 0;
    std::int64_t changedNs = 0;  ///< its content
    bool operator==(const CFileId&) const = default;

    /** Of what has the name, a link not followed; nothing where nothing has it. */
    [[nodiscard]] static std::optional<CFileId> Of(const std::string& path);
};

/** Writes a file in one step, so that its name never leads to a part of it. The bytes go to an unnamed file
 * in the same folder (one with a temporary name where the file system has no unnamed files); Commit() syncs
 * it to the disk and gives it the name. When the object is destroyed without Commit, or after any failure,
 * that file is gone and the old one is as it was. A killed process can leave only a file with a temporary
 * name behind. An existing file keeps its permissions, and other names of it (hard links) keep the old content.
 * Write-protected files, folders, devices and pipes are refused. Small writes are buffered.
 *
 * Symbolic links, the one rule for all that the program writes:
 * - A file that a person keeps, such as settings (Create): the link stays, and what it leads to is replaced. Links that
 *   somebody else made are refused, unless root or the folder's owner did, as the system does in shared folders.
 * - What a person chose as the output of an export (CreateOutput): the same, but the link must lead to a file of the
 *   same ending. Who unpacks a stranger's archive and exports beside it would lose another file by "scene.html" else.
 * - What a program puts beside that by itself (CreateNew, CreateOver): never through a link, and never over one. */
class CAtomicFile {
  public:
    /** path is UTF-8; its folder must exist. */
    [[nodiscard]] static CResult<CAtomicFile> Create(std::string_view path);
    /** The same for a new file. Where something has the name already, now or at Commit, even a dangling link,
     * CreateNew or Commit fails and leaves it as it is. */
    [[nodiscard]] static CResult<CAtomicFile> CreateNew(std::string_view path);
    /** For the output of an export. Where the path is a link, what it leads to has the same ending (case aside, and .jpeg as .jpg) or
     * the call fails; endings are all that tells a link for this purpose from one that was planted. */
    [[nodiscard]] static CResult<CAtomicFile> CreateOutput(std::string_view path);
    /** Where CreateOutput writes: the path itself unless that is a link. */
    [[nodiscard]] static CResult<std::string> OutputTarget(std::string_view path);
    /** Like CreateNew for a file that must still be the one that was looked at: where another has the name by then,
     * even a link to that one, CreateOver or Commit fails and leaves it as it is. */
    [[nodiscard]] static CResult<CAtomicFile> CreateOver(std::string_view path, const CFileId& old);
    CAtomicFile(CAtomicFile&& other) noexcept;
    CAtomicFile& operator=(CAtomicFile&&) = delete;
    ~CAtomicFile();

    /** A failure is remembered: later calls of Write and Commit return it again, so a writer may test
     * Commit alone. */
    CStatus Write(std::span<const std::byte> bytes);
    CStatus Write(std::string_view text);
    /** Completes the file and gives it its name. Call it once, and write nothing afterwards. */
    [[nodiscard]] CStatus Commit();

    // --- for files that get their names together, see CAtomicFileGroup -------------------------------------
    /** Writes what is buffered and closes the file, which has a temporary name from then on. */
    [[nodiscard]] CStatus Rest(bool sync);
    /** Syncs all files of the file system that it is on, at once; false when that failed. */
    [[nodiscard]] bool SyncFileSystem() const;
    /** Commit, but what had the name before is kept until this object goes, and the folder is not synced. */
    [[nodiscard]] CStatus Place(bool sync);
    /** Undoes Place, as far as nobody has changed the file since. */
    void TakeBack();
    /** Syncs the folder that the file is in. */
    void SyncFolder() const;

  private:
    CAtomicFile(std::string target, std::string tempName, CFileDescriptor file);
    [[nodiscard]] static CResult<CAtomicFile> CreateAt(std::string target, std::string_view path);
    [[nodiscard]] static CResult<CAtomicFile> Open(std::string target, std::string_view path);
    bool NameIt();
    bool TakeTarget();
    bool ExchangeWithTarget();
    bool Flush(std::span<const std::byte> bytes);
    void Fail(int errorNumber);
    void Discard();

    std::string m_target;
    std::string m_tempName;  ///< empty when there is no temporary name to delete
    bool m_mustBeNew = false;
    std::optional<CFileId> m_mustBe;  ///< what has the name
    std::optional<CFileId> m_placed;  ///< this file, once Place has given it the name
    CFileDescriptor m_file;
    std::vector<std::byte> m_gathered;
    std::optional<CError> m_error;
};
