// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"

class CDatabase;

/** Copies all rows of a store into another one that is empty and of the same form, in one transaction of each; what is still
 * being written is left out. */
[[nodiscard]] CStatus CopyRows(CDatabase& from, CDatabase& to);

/** Raises the versions of all groups far above what they were, so that no version that somebody has seen comes
 * again for something else. */
[[nodiscard]] CStatus RaiseVersions(CDatabase& database);

/** A new SQLite file, under a name of its own beside its later one until Commit. Deleted without Commit. */
class CNewSqliteFile {
  public:
    /** Exists: something has the name already. path is UTF-8. */
    [[nodiscard]] static CResult<CNewSqliteFile> Create(const std::string& path);
    CNewSqliteFile(CNewSqliteFile&& other) noexcept;
    ~CNewSqliteFile();

    /** An empty file. */
    [[nodiscard]] const std::string& TempPath() const { return m_tempPath; }
    /** Syncs it and gives it its name; no connection may have it open. Exists: something got the name meanwhile. */
    [[nodiscard]] CStatus Commit();

  private:
    CNewSqliteFile(std::string path, std::string tempPath);
    std::string m_path, m_tempPath;
};
