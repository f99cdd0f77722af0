// SPDX-License-Identifier: MIT
#include "modeldb/store/copy_store.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "base/text/lng.h"
#include "files/CFileDescriptor.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"
#include "modeldb/database/CDatabase.h"
#include "modeldb/store/store_query.h"

namespace {

using store_query::Done;

/** A table: how a page of its rows is read, in the order of its first `keys` columns, and how a row is added. types: i
 * number, t text, b bytes, and n a number that may be null. */
struct CTable {
    std::string_view select, insert, types;
    std::size_t keys;
    std::size_t page;  ///< rows, as many as `select` asks for
};

constexpr CTable kTables[] = {
    {"SELECT id, name FROM model_groups WHERE id > $1 ORDER BY id LIMIT 500",
     "INSERT INTO model_groups(id, name) VALUES($1, $2)", "it", 1, 500},
    {"SELECT id, sha256, size, stored, codec, touched FROM blobs WHERE id > $1 AND sha256 IS NOT NULL ORDER "
     "BY id LIMIT 500",
     "INSERT INTO blobs(id, sha256, size, stored, codec, touched) VALUES($1, $2, $3, $4, $5, $6)", "ibiiii",
     1, 500},
    {"SELECT p.blob, p.pos, p.data FROM blob_parts p JOIN blobs b ON b.id = p.blob "
     "WHERE (p.blob, p.pos) > ($1, $2) AND b.sha256 IS NOT NULL ORDER BY p.blob, p.pos LIMIT 32",
     "INSERT INTO blob_parts(blob, pos, data) VALUES($1, $2, $3)", "iib", 2, 32},
    {"SELECT key, group_id, name, code, note, blob, preview, created, folded FROM models WHERE key > $1 "
     "ORDER BY key LIMIT 500",
     "INSERT INTO models(key, group_id, name, code, note, blob, preview, created, folded) "
     "VALUES($1, $2, $3, $4, $5, $6, $7, $8, $9)",
     "iitttinit", 1, 500},
    {"SELECT model_key, pos, name, blob FROM textures WHERE (model_key, pos) > ($1, $2) ORDER BY model_key, "
     "pos LIMIT 500",
     "INSERT INTO textures(model_key, pos, name, blob) VALUES($1, $2, $3, $4)", "iiti", 2, 500},
    {"SELECT id, name, hash, rights, created FROM tokens WHERE id > $1 ORDER BY id LIMIT 500",
     "INSERT INTO tokens(id, name, hash, rights, created) VALUES($1, $2, $3, $4, $5)", "itbii", 1, 500},
};

CDbValue ValueOf(const CDbRow& row, int column, char type) {
    if (type == 't') return row.Text(column);
    if (type == 'b') return row.Bytes(column);
    if (type == 'n' && row.IsNull(column)) return std::monostate{};
    return row.Int(column);
}

CStatus CopyTable(const CTable& table, CDatabase& from, CDatabase& to) {
    std::vector<CDbValue> last(table.keys, std::int64_t{-1});
    std::vector<CDbValue> values(table.types.size());
    for (std::size_t rows = table.page; rows == table.page;) {
        rows = 0;
        std::vector<CDbValue> next = last;
        const auto read = from.Run(table.select, last, [&](const CDbRow& row) -> CStatus {
            for (std::size_t i = 0; i < values.size(); ++i)
                values[i] = ValueOf(row, static_cast<int>(i), table.types[i]);
            for (std::size_t i = 0; i < table.keys; ++i) next[i] = values[i];
            ++rows;
            return Done(to.Run(table.insert, values, {}));
        });
        if (!read) return read.Error();
        last = next;
    }
    return CDone{};
}

/** Rows that were added with their numbers do not move the counters that give new ones. */
CStatus MoveCounters(CDatabase& database) {
    if (database.Engine() == CDatabase::EEngine::Sqlite) return CDone{};
    for (const char* table : {"model_groups", "blobs", "blob_parts", "tokens"}) {
        std::string query = "SELECT setval(pg_get_serial_sequence('";
        query.append(table)
            .append("', 'id'), max(id)) FROM ")
            .append(table)
            .append(" HAVING max(id) IS NOT NULL");
        if (CStatus moved = Done(database.Run(query, {})); !moved) return moved;
    }
    return CDone{};
}

CError CannotWrite(const std::string& path, int errorNumber) {
    const EErrorCode code = errorNumber == ENOSPC ? EErrorCode::NoSpace : EErrorCode::WriteFailed;
    return {errorNumber == EEXIST ? EErrorCode::Exists : code, SystemErrorText(errorNumber), path};
}

bool Sync(const std::string& path, int flags) {
    const CFileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags));
    return file.IsOpen() && ::fsync(file.Get()) == 0;
}

}  // namespace

CStatus RaiseVersions(CDatabase& database) {
    return Done(database.Run("UPDATE model_groups SET version = version + 1000000000", {}));
}

CStatus CopyRows(CDatabase& from, CDatabase& to) {
    return from.Look([&]() -> CStatus {
        return to.Change([&]() -> CStatus {
            for (const CTable& table : kTables)
                if (CStatus copied = CopyTable(table, from, to); !copied) return copied;
            // The counting of the models gave small versions, whatever they were.
            if (CStatus raised = RaiseVersions(to); !raised) return raised;
            return MoveCounters(to);
        });
    });
}

CNewSqliteFile::CNewSqliteFile(std::string path, std::string tempPath)
    : m_path(std::move(path)), m_tempPath(std::move(tempPath)) {}
CNewSqliteFile::CNewSqliteFile(CNewSqliteFile&& other) noexcept
    : m_path(std::move(other.m_path)), m_tempPath(std::exchange(other.m_tempPath, {})) {}

CNewSqliteFile::~CNewSqliteFile() {
    if (m_tempPath.empty()) return;
    for (const char* ending : {"", "-journal", "-wal", "-shm"}) (void)::unlink((m_tempPath + ending).c_str());
}

CResult<CNewSqliteFile> CNewSqliteFile::Create(const std::string& path) {
    struct stat info = {};
    if (::lstat(path.c_str(), &info) == 0) return CannotWrite(path, EEXIST);
    std::string temp = path + ".XXXXXX";
    const CFileDescriptor file(
        ::mkostemp(temp.data(), O_CLOEXEC));  // readable for its owner alone, as it holds tokens
    if (!file.IsOpen()) return CannotWrite(path, errno);
    return CNewSqliteFile(path, std::move(temp));
}

CStatus CNewSqliteFile::Commit() {
    if (!Sync(m_tempPath, 0)) return CannotWrite(m_path, errno);
    // Unlike rename, link takes no name that something has.
    if (::link(m_tempPath.c_str(), m_path.c_str()) != 0 &&
        ((errno != EPERM && errno != EOPNOTSUPP) ||
         ::renameat2(AT_FDCWD, m_tempPath.c_str(), AT_FDCWD, m_path.c_str(), RENAME_NOREPLACE) != 0))
        return CannotWrite(m_path, errno);
    (void)::unlink(m_tempPath.c_str());  // gone already where it was renamed
    m_tempPath.clear();
    const std::string folder = file_util_ex::GetFilePath(m_path);
    // The file is complete under its name; some file systems cannot sync a folder.
    (void)Sync(folder.empty() ? "." : folder, O_DIRECTORY);
    return CDone{};
}
