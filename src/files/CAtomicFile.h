// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"

/** Writes a file so that its name never shows a part of it: the bytes go to a file without a name in the
 * same folder (with a temporary one where the file system has no such files), and Commit() puts them on the
 * disk and gives the name. Destroyed without Commit, or after any failure, or when the process is killed,
 * that file is gone and the old one is as it was. A link is followed: what it leads to is replaced. A file
 * that exists keeps its permissions; one that is write-protected, a folder and a device are refused. Small
 * writes are gathered. */
class CAtomicFile {
  public:
    /** path is UTF-8; its folder must exist. */
    [[nodiscard]] static CResult<CAtomicFile> Create(std::string_view path);
    /** The same for a name that nothing has, now or at Commit, be it a link that leads nowhere: such a thing
     * stays as it is, and Create or Commit fails. */
    [[nodiscard]] static CResult<CAtomicFile> CreateNew(std::string_view path);
    CAtomicFile(CAtomicFile&& other) noexcept;
    CAtomicFile& operator=(CAtomicFile&&) = delete;
    ~CAtomicFile();

    /** A failure stays: later calls of Write and Commit return it again, so a writer may
     * test Commit alone. */
    CStatus Write(std::span<const std::byte> bytes);
    CStatus Write(std::string_view text);
    /** Ends the writing; call it once. */
    [[nodiscard]] CStatus Commit();

  private:
    CAtomicFile(std::string target, std::string tempName, CFileDescriptor file);
    [[nodiscard]] static CResult<CAtomicFile> Open(std::string target, std::string_view path);
    bool NameIt();
    bool TakeTarget();
    bool Flush(std::span<const std::byte> bytes);
    void Fail(int errorNumber);
    void Discard();

    std::string m_target;
    std::string m_tempName;  ///< empty when there is no temporary name to delete
    bool m_mustBeNew = false;
    CFileDescriptor m_file;
    std::vector<std::byte> m_gathered;
    std::optional<CError> m_error;
};
