// SPDX-License-Identifier: MIT
#include "base/text/lng.h"
#include "modeldb/database/CSqliteDatabase.h"
#include "modeldb/store/CModelStore.h"
#include "modeldb/store/blob_rows.h"
#include "modeldb/store/check_store.h"
#include "modeldb/store/copy_store.h"
#include "modeldb/store/schema.h"
#include "modeldb/store/store_query.h"

namespace {

/** Forgets what it takes. */
class CNowhere final : public CByteSink {
  public:
    CStatus Take(std::span<const std::byte>) override { return CDone{}; }
};

struct CHashPage {
    std::int64_t last = 0;
    std::vector<CBlobHash> hashes;
};

CResult<CHashPage> HashesBehind(CDatabase& database, std::int64_t id) {
    return store_query::Gather<CHashPage>(database, &CDatabase::Read, [&](CHashPage& page) {
        return store_query::Done(database.Run(
            "SELECT id, sha256 FROM blobs WHERE id > $1 AND sha256 IS NOT NULL ORDER BY id LIMIT 1000", {id},
            [&](const CDbRow& row) -> CStatus {
                page.last = row.Int(0);
                page.hashes.push_back(blob_rows::HashOf(row, 1));
                return CDone{};
            }));
    });
}

using ETokens = CModelStore::ETokens;

/** A SQLite file's copy that stands alone, brought up to date where it is older. */
CStatus CopySqlite(CSqliteDatabase& from, const std::string& path, ETokens tokens) {
    if (CStatus copied = from.CopyTo(path); !copied) return copied;
    CResult<std::unique_ptr<CDatabase>> copy = CSqliteDatabase::Open(path, CDatabase::EAccess::Write);
    if (!copy) return copy.Error();
    if (CStatus upgraded = UpgradeStore(*copy.Value()); !upgraded) return upgraded;
    return copy.Value()->Change([&]() -> CStatus {
        if (tokens == ETokens::Forget)
            if (const auto gone = copy.Value()->Run("DELETE FROM tokens", {}); !gone) return gone.Error();
        return RaiseVersions(*copy.Value());
    });
}

CStatus RestoreFile(CSqliteDatabase& backup, const std::string& path, ETokens tokens) {
    CResult<CNewSqliteFile> file = CNewSqliteFile::Create(path);
    if (!file) return file.Error();
    if (CStatus copied = CopySqlite(backup, file.Value().TempPath(), tokens); !copied) return copied;
    return file.Value().Commit();
}

/** Brings rows into a store that must hold nothing. */
CStatus FillStore(CDatabase& from, CDatabase& to) {
    CCheckReport report;
    CStatus counted = to.Look([&] {
        report = {};
        return CheckTables(to, false, report);
    });
    if (!counted) return counted;
    if (report.groups != 0 || report.blobs != 0)
        return CError{EErrorCode::Exists, lng::Mark("the model store is not empty"), to.Place()};
    return CopyRows(from, to);
}

CStatus CheckBackup(CDatabase& backup) {
    CCheckReport report;
    CStatus checked = backup.Look([&]() -> CStatus {
        report = {};
        if (CStatus known = CheckSchema(backup); !known) return known;
        return CheckTables(backup, false, report);
    });
    if (!checked || report.faultCount == 0) return checked;
    return CError{EErrorCode::BadFormat, lng::Mark("the model store is damaged"), backup.Place()};
}

}  // namespace

CResult<CCheckReport> CModelStore::Check(ECheck check) {
    const bool isFull = check == ECheck::Full;
    CResult<CCheckReport> report = store_query::Gather<CCheckReport>(
        *m_database, &CDatabase::Look,
        [&](CCheckReport& result) { return CheckTables(*m_database, isFull, result); });
    if (!report || !isFull || report.Value().faultCount > 0) return report;
    CNowhere nowhere;
    // Blob by blob: a long transaction would hold up the others' clearing up.
    for (std::int64_t last = 0;;) {
        const CResult<CHashPage> page = HashesBehind(*m_database, last);
        if (!page) return page.Error();
        if (page.Value().hashes.empty()) return report;
        last = page.Value().last;
        for (const CBlobHash& hash : page.Value().hashes) {
            const CStatus read = ReadBytes(hash, nowhere);
            if (read) continue;
            // Bytes that others removed meanwhile are no fault.
            const bool isGone = read.Error().code == EErrorCode::NotFound && !Blob(hash);
            if (read.Error().code != EErrorCode::BadFormat && read.Error().code != EErrorCode::NotFound)
                return read.Error();
            if (!isGone) NoteFault(report.Value(), "the bytes of " + hash.ToHex() + " are damaged");
        }
    }
}

CStatus CModelStore::Backup(const std::string& path) {
    CResult<CNewSqliteFile> file = CNewSqliteFile::Create(path);
    if (!file) return file.Error();
    if (m_database->Engine() == CDatabase::EEngine::Sqlite) {
        // The engine was looked at.
        if (CStatus copied = static_cast<CSqliteDatabase&>(*m_database).CopyTo(file.Value().TempPath());
            !copied)
            return copied;
        return file.Value().Commit();
    }
    CResult<std::unique_ptr<CDatabase>> copy =
        CSqliteDatabase::Open(file.Value().TempPath(), CDatabase::EAccess::Create);
    if (!copy) return copy.Error();
    if (CStatus made = UpgradeStore(*copy.Value()); !made) return made;
    if (CStatus copied = CopyRows(*m_database, *copy.Value()); !copied) return copied;
    copy.Value().reset();
    return file.Value().Commit();
}

CStatus CModelStore::Restore(const std::string& path, const CStoreAddress& address, ETokens tokens) {
    CResult<std::unique_ptr<CDatabase>> opened = CSqliteDatabase::Open(path, CDatabase::EAccess::Read);
    if (!opened) return opened.Error();
    // An SQLite path was given.
    auto& backup = static_cast<CSqliteDatabase&>(*opened.Value());
    const CResult<int> version = StoreVersionOf(backup);
    if (!version) return version.Error();
    if (version.Value() < 1)
        return CError{EErrorCode::BadFormat, lng::Mark("the file is no model store"), path};
    if (version.Value() > kStoreVersion) return UpgradeStore(backup);  // which tells what is wrong
    if (CStatus sound = CheckBackup(backup); !sound) return sound;
    if (address.kind == CStoreAddress::EKind::File) return RestoreFile(backup, address.text, tokens);

    CResult<CModelStore> target = Open(address, EStoreUse::Create);
    if (!target) return target.Error();
    if (version.Value() == kStoreVersion && tokens == ETokens::Keep)
        return FillStore(backup, *target.Value().m_database);
    CResult<CNewSqliteFile> changed = CNewSqliteFile::Create(path + ".changed");
    if (!changed) return changed.Error();
    if (CStatus copied = CopySqlite(backup, changed.Value().TempPath(), tokens); !copied) return copied;
    const CResult<std::unique_ptr<CDatabase>> again =
        CSqliteDatabase::Open(changed.Value().TempPath(), CDatabase::EAccess::Read);
    if (!again) return again.Error();
    return FillStore(*again.Value(), *target.Value().m_database);
}
