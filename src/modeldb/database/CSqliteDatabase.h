// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "modeldb/database/CDatabase.h"

struct sqlite3;
struct sqlite3_stmt;

/** A store in one SQLite file, with its log ("-wal") and the log's index ("-shm") beside it while it is open. */
class CSqliteDatabase final : public CDatabase {
  public:
    /** NotFound: no such file, unless it may be created; BadFormat: another file; Unreadable: see ProbeSqliteFile. */
    [[nodiscard]] static CResult<std::unique_ptr<CDatabase>> Open(const std::string& path, EAccess access);
    ~CSqliteDatabase() override;

    [[nodiscard]] EEngine Engine() const override { return EEngine::Sqlite; }
    [[nodiscard]] std::string Place() const override { return m_path; }
    using CDatabase::Run;
    [[nodiscard]] CResult<std::int64_t> Run(std::string_view sql, std::span<const CDbValue> values,
                                            const CRowTaker& take) override;
    [[nodiscard]] std::optional<CStateMark> StateMark() override;
    [[nodiscard]] CStatus RunScript(std::string_view sql) override;

    /** Copies all of it, in one snapshot, to a file that is there and empty. */
    [[nodiscard]] CStatus CopyTo(const std::string& path);

  private:
    struct CCloser {
        void operator()(sqlite3* database) const;
    };
    struct CFinalizer {
        void operator()(sqlite3_stmt* statement) const;
    };
    struct CPrepared {
        std::unique_ptr<sqlite3_stmt, CFinalizer> statement;
        std::vector<int> places;  ///< of $1, $2 ..., as SQLite numbers them; 0: not used
    };
    using CHandle = std::unique_ptr<sqlite3, CCloser>;

    CSqliteDatabase(std::string path, CHandle handle);
    [[nodiscard]] CError Failure(int code) const;
    [[nodiscard]] CResult<CPrepared*> Prepare(std::string_view sql, std::size_t values);
    [[nodiscard]] CStatus Bind(const CPrepared& prepared, std::span<const CDbValue> values) const;
    [[nodiscard]] CResult<std::int64_t> Step(sqlite3_stmt* statement, const CRowTaker& take);

    [[nodiscard]] bool HasLog();
    [[nodiscard]] CStatus Begin(EScope scope) override;
    [[nodiscard]] CStatus Commit() override;
    void Rollback() override;
    /** Whoever wants to write waits for others at the beginning, so nothing is to be won. */
    [[nodiscard]] bool CanTryAgain() override { return false; }

    std::string m_path;
    CHandle m_handle;
    bool m_hasLog = false;
    std::unordered_map<std::string, CPrepared> m_prepared;  // after m_handle: it goes first
};
