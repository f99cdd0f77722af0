// SPDX-License-Identifier: MIT
#include "modeldb/store/CModelStore.h"

#include <chrono>
#include <thread>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "modeldb/database/CDatabase.h"
#include "modeldb/database/CPostgresDatabase.h"
#include "modeldb/database/CSqliteDatabase.h"
#include "modeldb/store/schema.h"
#include "modeldb/store/store_query.h"

namespace {

constexpr std::int64_t kStaleSeconds = 24 * 60 * 60;  ///< no transfer takes so long

CDatabase::EAccess AccessFor(EStoreUse use) {
    switch (use) {
        case EStoreUse::Read:
            return CDatabase::EAccess::Read;
        case EStoreUse::Write:
            return CDatabase::EAccess::Write;
        default:
            return CDatabase::EAccess::Create;
    }
}

/** The file keeps the setting. It waits for the moment in which nobody else has the file open, unless somebody else was
 * quicker. */
CStatus TurnLogOn(CDatabase& database) {
    constexpr int kTries = 100;
    CStatus done = CDone{};
    for (int i = 0; i < kTries; ++i) {
        done = database.RunScript("PRAGMA journal_mode=WAL");
        if (done || done.Error().code != EErrorCode::Busy) return done;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return done;
}

}  // namespace

CModelStore::CModelStore(std::unique_ptr<CDatabase> database, EStoreUse use)
    : m_database(std::move(database)), m_use(use) {}
CModelStore::CModelStore(CModelStore&&) noexcept = default;
CModelStore& CModelStore::operator=(CModelStore&&) noexcept = default;
CModelStore::~CModelStore() = default;

std::string CModelStore::DefaultPath() {
    return file_util_ex::MakePath(std_file_paths::GetUserDataFolderPath(), "models.sqlite");
}

CResult<CModelStore> CModelStore::Open(const CStoreAddress& address, EStoreUse use) {
    CResult<std::unique_ptr<CDatabase>> database = address.kind == CStoreAddress::EKind::File
                                                       ? CSqliteDatabase::Open(address.text, AccessFor(use))
                                                       : CPostgresDatabase::Open(address, AccessFor(use));
    if (!database) return database.Error();
    CModelStore store(std::move(database).Value(), use);
    if (CStatus ready = store.GetReady(); !ready) return ready.Error();
    return store;
}

CStatus CModelStore::GetReady() {
    CDatabase& database = *m_database;
    const CResult<int> version =
        store_query::Gather<int>(database, &CDatabase::Read, [&](int& value) -> CStatus {
            CResult<int> read = StoreVersionOf(database);
            if (!read) return read.Error();
            value = read.Value();
            return CDone{};
        });
    if (!version) return version.Error();
    if (version.Value() == 0 && m_use != EStoreUse::Create)
        return CError{EErrorCode::NotFound, lng::Mark("there is no model store"), database.Place()};
    if (m_use == EStoreUse::Read && version.Value() < kStoreVersion)
        return CError{EErrorCode::Unsupported,
                      lng::Mark("the model store was written by an older version of the program, and must be "
                                "brought up to date first"),
                      database.Place()};
    if (CStatus upgraded = UpgradeStore(database); !upgraded) return upgraded;
    const bool isWritten = m_use != EStoreUse::Read;
    if (isWritten && database.Engine() == CDatabase::EEngine::Sqlite)
        if (CStatus on = TurnLogOn(database); !on) return on;
    const CResult<bool> trigrams = HasTrigramTable(database);
    if (!trigrams) return trigrams.Error();
    m_hasTrigrams = trigrams.Value();
    return isWritten ? DeleteStale() : CDone{};
}

CStatus CModelStore::DeleteStale() {
    const std::int64_t before = store_query::Now() - kStaleSeconds;
    const CResult<std::int64_t> count =
        store_query::Gather<std::int64_t>(*m_database, &CDatabase::Read, [&](std::int64_t& value) -> CStatus {
            return store_query::Done(
                m_database->Run("SELECT count(*) FROM blobs WHERE sha256 IS NULL AND touched < $1", {before},
                                [&](const CDbRow& row) -> CStatus {
                                    value = row.Int(0);
                                    return CDone{};
                                }));
        });
    if (!count) return count.Error();
    if (count.Value() == 0) return CDone{};
    return m_database->Change([&] {
        return store_query::Done(
            m_database->Run("DELETE FROM blobs WHERE sha256 IS NULL AND touched < $1", {before}));
    });
}
