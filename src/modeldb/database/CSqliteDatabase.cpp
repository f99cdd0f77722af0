// SPDX-License-Identifier: MIT
#include "modeldb/database/CSqliteDatabase.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "base/text/lng.h"
#include "files/system_error.h"
#include "modeldb/database/sqlite_errors.h"
#include "modeldb/database/sqlite_file.h"
#include "modeldb/database/sqlite_state.h"

namespace {

constexpr int kBusyMs = 5000;
constexpr int kMostBytes = 1 << 20;  ///< of one value or row; a store has none above 300 KB

class CSqliteRow final : public CDbRow {
  public:
    explicit CSqliteRow(sqlite3_stmt* statement) : m_statement(statement) {}
    [[nodiscard]] bool IsNull(int column) const override {
        return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
    }
    [[nodiscard]] std::int64_t Int(int column) const override {
        return sqlite3_column_int64(m_statement, column);
    }
    [[nodiscard]] std::string_view Text(int column) const override {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
        return {text ? text : "", Size(column)};
    }
    [[nodiscard]] std::span<const std::byte> Bytes(int column) const override {
        const auto* bytes = static_cast<const std::byte*>(sqlite3_column_blob(m_statement, column));
        return {bytes, bytes ? Size(column) : 0};
    }

  private:
    [[nodiscard]] std::size_t Size(int column) const {
        return static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column));
    }
    sqlite3_stmt* m_statement;
};

int BindValue(sqlite3_stmt* statement, int place, const CDbValue& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value))
        return sqlite3_bind_int64(statement, place, *number);
    // SQLITE_STATIC: the caller keeps them for the time of the statement.
    if (const auto* text = std::get_if<std::string_view>(&value))
        return sqlite3_bind_text64(statement, place, text->data() ? text->data() : "", text->size(),
                                   SQLITE_STATIC, SQLITE_UTF8);
    if (const auto* bytes = std::get_if<std::span<const std::byte>>(&value))
        return bytes->empty()
                   ? sqlite3_bind_zeroblob(statement, place, 0)
                   : sqlite3_bind_blob64(statement, place, bytes->data(), bytes->size(), SQLITE_STATIC);
    return sqlite3_bind_null(statement, place);
}

int FlagsOf(CDatabase::EAccess access) {
    constexpr int kCommon = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    if (access == CDatabase::EAccess::Read) return kCommon | SQLITE_OPEN_READONLY;
    return kCommon | SQLITE_OPEN_READWRITE | (access == CDatabase::EAccess::Create ? SQLITE_OPEN_CREATE : 0);
}

}  // namespace

void CSqliteDatabase::CCloser::operator()(sqlite3* database) const {
    (void)sqlite3_close(database);  // all statements are gone, so it succeeds
}
void CSqliteDatabase::CFinalizer::operator()(sqlite3_stmt* statement) const {
    (void)sqlite3_finalize(statement);  // repeats what the last step told
}

CSqliteDatabase::CSqliteDatabase(std::string path, CHandle handle)
    : m_path(std::move(path)), m_handle(std::move(handle)) {}
CSqliteDatabase::~CSqliteDatabase() = default;

CResult<std::unique_ptr<CDatabase>> CSqliteDatabase::Open(const std::string& path, EAccess access) {
    const CResult<ESqliteFile> found = ProbeSqliteFile(path);
    if (!found) return found.Error();
    if (found.Value() != ESqliteFile::Something && access != EAccess::Create)
        return CError{EErrorCode::NotFound, lng::Mark("there is no model store"), path};
    sqlite3* raw = nullptr;
    // A name such as "file:x?vfs=..." or ":memory:" is to be a file like any other.
    const std::string plain = path.starts_with('/') ? path : "./" + path;
    const int code = sqlite3_open_v2(plain.c_str(), &raw, FlagsOf(access), nullptr);
    CHandle handle(raw);
    if (code != SQLITE_OK) return SqliteError(raw, code, path);
    if (CStatus ours = CheckSqliteFile(raw, path); !ours) return ours.Error();
    // A new one is its owner's alone, as it holds hashes of tokens. By its path: closing a descriptor of it would drop locks.
    if (found.Value() == ESqliteFile::Missing && ::chmod(path.c_str(), S_IRUSR | S_IWUSR) != 0)
        return CError{EErrorCode::WriteFailed, SystemErrorText(errno), path};
    std::unique_ptr<CSqliteDatabase> database(new CSqliteDatabase(path, std::move(handle)));
    (void)sqlite3_busy_timeout(raw, kBusyMs);
    // The file may be a stranger's: https://www.sqlite.org/security.html. TRUSTED_SCHEMA stays on: without it the triggers of a
    // store cannot fill its search index by SQLite 3.40; CheckSchema lets no others run.
    (void)sqlite3_db_config(raw, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    (void)sqlite3_limit(raw, SQLITE_LIMIT_LENGTH, kMostBytes);
    // The page size counts for a new file alone, and only before anything else is asked.
    if (CStatus set =
            database->RunScript("PRAGMA page_size=8192; PRAGMA synchronous=FULL; PRAGMA foreign_keys=ON;"
                                "PRAGMA cache_size=-8192; PRAGMA journal_size_limit=67108864;"
                                "PRAGMA cell_size_check=ON; PRAGMA mmap_size=0");
        !set)
        return set.Error();
    return std::unique_ptr<CDatabase>(std::move(database));
}

CError CSqliteDatabase::Failure(int code) const {
    return SqliteError(m_handle.get(), code, m_path);
}

CResult<CSqliteDatabase::CPrepared*> CSqliteDatabase::Prepare(std::string_view sql, std::size_t values) {
    const auto [entry, isNew] = m_prepared.try_emplace(std::string(sql));
    CPrepared& prepared = entry->second;
    if (!isNew) return &prepared;
    sqlite3_stmt* raw = nullptr;
    const int code = sqlite3_prepare_v3(m_handle.get(), sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &raw, nullptr);
    prepared.statement.reset(raw);
    if (code != SQLITE_OK) {
        m_prepared.erase(entry);
        return Failure(code);
    }
    // SQLite numbers them in the order in which they appear.
    for (std::size_t i = 1; i <= values; ++i)
        prepared.places.push_back(sqlite3_bind_parameter_index(raw, ("$" + std::to_string(i)).c_str()));
    return &prepared;
}

CStatus CSqliteDatabase::Bind(const CPrepared& prepared, std::span<const CDbValue> values) const {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const int place = prepared.places[i];
        if (place == 0) continue;
        if (const int code = BindValue(prepared.statement.get(), place, values[i]); code != SQLITE_OK)
            return Failure(code);
    }
    return CDone{};
}

CResult<std::int64_t> CSqliteDatabase::Step(sqlite3_stmt* statement, const CRowTaker& take) {
    const CSqliteRow row(statement);
    for (;;) {
        const int code = sqlite3_step(statement);
        if (code == SQLITE_DONE) return static_cast<std::int64_t>(sqlite3_changes64(m_handle.get()));
        if (code != SQLITE_ROW) return Failure(code);
        if (!take) continue;
        if (CStatus taken = take(row); !taken) return taken.Error();
    }
}

CResult<std::int64_t> CSqliteDatabase::Run(std::string_view sql, std::span<const CDbValue> values,
                                           const CRowTaker& take) {
    const CResult<CPrepared*> prepared = Prepare(sql, values.size());
    if (!prepared) return prepared.Error();
    sqlite3_stmt* statement = prepared.Value()->statement.get();
    const CStatus bound = Bind(*prepared.Value(), values);
    CResult<std::int64_t> result = bound ? Step(statement, take) : CResult<std::int64_t>(bound.Error());
    (void)sqlite3_reset(statement);  // repeats what the last step told
    (void)sqlite3_clear_bindings(statement);
    return result;
}

bool CSqliteDatabase::HasLog() {
    if (m_hasLog) return true;  // others cannot take it away while this connection is there
    const CResult<std::int64_t> asked = Run("PRAGMA journal_mode", {}, [this](const CDbRow& row) -> CStatus {
        m_hasLog = row.Text(0) == "wal";
        return CDone{};
    });
    return asked && m_hasLog;
}

std::optional<CDatabase::CStateMark> CSqliteDatabase::StateMark() {
    // A transaction goes on seeing what was there when it began.
    if (sqlite3_get_autocommit(m_handle.get()) == 0 || !HasLog()) return std::nullopt;
    return SqliteStateMark(m_handle.get());
}

CStatus CSqliteDatabase::RunScript(std::string_view sql) {
    const int code = sqlite3_exec(m_handle.get(), std::string(sql).c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) return Failure(code);
    return CDone{};
}

CStatus CSqliteDatabase::Begin(EScope scope) {
    // A writer that begins by reading could find at its first change that others were quicker.
    switch (scope) {
        case EScope::Look:
            return RunScript("BEGIN");
        case EScope::Rebuild:
            return RunScript("BEGIN EXCLUSIVE");
        default:
            return RunScript("BEGIN IMMEDIATE");
    }
}

CStatus CSqliteDatabase::Commit() {
    return RunScript("COMMIT");
}

void CSqliteDatabase::Rollback() {
    // After some errors SQLite has done it already.
    if (sqlite3_get_autocommit(m_handle.get()) == 0) (void)RunScript("ROLLBACK");
}

CStatus CSqliteDatabase::CopyTo(const std::string& path) {
    sqlite3* raw = nullptr;
    const int opened = sqlite3_open_v2(path.c_str(), &raw, FlagsOf(EAccess::Write), nullptr);
    const CHandle target(raw);
    if (opened != SQLITE_OK) return SqliteError(raw, opened, path);
    sqlite3_backup* copying = sqlite3_backup_init(raw, "main", m_handle.get(), "main");
    if (!copying) return SqliteError(raw, sqlite3_extended_errcode(raw), path);
    // All pages in one step read one snapshot: others go on writing, and nothing begins anew.
    const int copied = sqlite3_backup_step(copying, -1);
    const int finished = sqlite3_backup_finish(copying);
    if (copied != SQLITE_DONE) return SqliteError(raw, finished != SQLITE_OK ? finished : copied, path);
    // A copy carries the mark of the log; without it the file stands alone.
    if (const int code = sqlite3_exec(raw, "PRAGMA journal_mode=DELETE", nullptr, nullptr, nullptr);
        code != SQLITE_OK)
        return SqliteError(raw, code, path);
    return CDone{};
}
