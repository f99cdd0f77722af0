// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "bytes_of.h"
#include "files/CTestFolder.h"
#include "modeldb/database/CPostgresDatabase.h"
#include "modeldb/database/CSqliteDatabase.h"
#include "modeldb/store/CModelStore.h"
#include "row_name.h"

/** An engine to test with. */
struct CEngineRow {
    std::string name;
    bool isPostgres = false;
};

/** SQLite, or PostgreSQL where tests/modeldb/run_with_postgres.sh runs the tests. */
inline std::vector<CEngineRow> Engines(bool onlyServers = false) {
    if (std::getenv("ORBIVUE_TEST_POSTGRES") != nullptr) return {{"PostgreSql", true}};
    if (onlyServers) return {};
    return {{"Sqlite", false}};
}

/** A place for a store that is not there yet; deleted with all in it. */
class CTestPlace {
  public:
    explicit CTestPlace(const CEngineRow& engine) {
        if (!engine.isPostgres) {
            m_address = CStoreAddress::Parse(folder / "store.sqlite");
            return;
        }
        static int number = 0;
        const std::string name = "test_" + std::to_string(::getpid()) + "_" + std::to_string(++number);
        m_server = std::getenv("ORBIVUE_TEST_POSTGRES");
        Server("CREATE DATABASE " + name);
        m_address = CStoreAddress::Parse(m_server + name);
        m_name = name;
    }
    CTestPlace(const CTestPlace&) = delete;
    CTestPlace& operator=(const CTestPlace&) = delete;
    ~CTestPlace() {
        if (!m_name.empty()) Server("DROP DATABASE " + m_name + " WITH (FORCE)");
    }

    [[nodiscard]] const CStoreAddress& Address() const { return m_address; }
    [[nodiscard]] CModelStore Open(EStoreUse use = EStoreUse::Create) const {
        CResult<CModelStore> store = CModelStore::Open(m_address, use);
        EXPECT_TRUE(store) << (store ? "" : store.Error().Text());
        return std::move(store).Value();
    }
    /** The tables themselves. */
    [[nodiscard]] std::unique_ptr<CDatabase> Raw(CDatabase::EAccess access) const {
        auto database = m_name.empty() ? CSqliteDatabase::Open(m_address.text, access)
                                       : CPostgresDatabase::Open(m_address, access);
        EXPECT_TRUE(database) << database.Error().Text();
        return std::move(database).Value();
    }
    /** Has the server do something that no store does. */
    void Server(const std::string& sql) const {
        auto server =
            CPostgresDatabase::Open(CStoreAddress::Parse(m_server + "postgres"), CDatabase::EAccess::Write);
        ASSERT_TRUE(server) << server.Error().Text();
        const CStatus done = server.Value()->RunScript(sql);
        ASSERT_TRUE(done) << done.Error().Text();
    }

    CTestFolder folder;

  private:
    CStoreAddress m_address;
    std::string m_server, m_name;
};

inline CNewBlob BlobOf(CModelStore* store, std::string_view text) {
    CResult<CNewBlob> blob = CBlobWriter::Write(store, BytesOf(text));
    EXPECT_TRUE(blob);
    return std::move(blob).Value();
}

/** A model whose file is this text. */
inline CNewModel ModelOf(std::string_view group, std::string_view name, std::string_view file) {
    CNewModel model;
    model.group = group;
    model.name = name;
    model.file = BlobOf(nullptr, file);
    return model;
}

/** The unpacked bytes of a hash. */
inline std::string ContentOf(CModelStore& store, const CBlobHash& hash) {
    CMemorySink sink(64 << 20);
    const CStatus read = store.ReadBytes(hash, sink);
    EXPECT_TRUE(read) << read.Error().Text();
    return CTestFolder::TextOf(sink.bytes);
}

/** Nothing, or the message of a failure. */
inline std::string Complaint(const CStatus& status) {
    return status ? "" : status.Error().message;
}

/** The first thing that is wrong with a store; nothing where all is sound. */
inline std::string FaultOf(CModelStore& store) {
    const CResult<CCheckReport> report = store.Check(CModelStore::ECheck::Full);
    if (!report) return report.Error().Text();
    return report.Value().faultCount == 0 ? "" : report.Value().faults.front();
}

/** How many of these models a store lacks; nothing else may be wrong with it either. */
inline std::size_t LostOf(CModelStore& store, const std::set<std::uint32_t>& keys) {
    EXPECT_EQ(FaultOf(store), "");
    const auto isLost = [&](std::uint32_t key) { return !store.HasModel(key).Value(); };
    return static_cast<std::size_t>(std::ranges::count_if(keys, isLost));
}
