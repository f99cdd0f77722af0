// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "modeldb/database/CDatabase.h"
#include "modeldb/database/CStoreAddress.h"

struct pg_conn;
struct pg_result;

/** A store in a PostgreSQL database, in its schema "orbivue". Bytes travel as they are, never as text. */
class CPostgresDatabase final : public CDatabase {
  public:
    /** Busy: the server cannot be reached; Unreadable: it refuses the login; NotFound: no such database. */
    [[nodiscard]] static CResult<std::unique_ptr<CDatabase>> Open(const CStoreAddress& address,
                                                                  EAccess access);

    [[nodiscard]] EEngine Engine() const override { return EEngine::PostgreSql; }
    [[nodiscard]] std::string Place() const override { return m_address.Shown(); }
    using CDatabase::Run;
    [[nodiscard]] CResult<std::int64_t> Run(std::string_view sql, std::span<const CDbValue> values,
                                            const CRowTaker& take) override;
    [[nodiscard]] CStatus RunScript(std::string_view sql) override;

  private:
    struct CCloser {
        void operator()(pg_conn* connection) const;
    };
    struct CClearer {
        void operator()(pg_result* result) const;
    };
    using CAnswer = std::unique_ptr<pg_result, CClearer>;

    CPostgresDatabase(CStoreAddress address, EAccess access)
        : m_address(std::move(address)), m_access(access) {}
    [[nodiscard]] CStatus Connect();
    [[nodiscard]] CError WhyNotConnected() const;
    [[nodiscard]] CResult<std::string> Prepare(std::string_view sql, std::span<const CDbValue> values);
    /** Notes the failure for CanTryAgain. */
    [[nodiscard]] CError Failure(const CAnswer& answer);
    [[nodiscard]] CStatus Expect(const CAnswer& answer);

    [[nodiscard]] CStatus Begin(EScope scope) override;
    [[nodiscard]] CStatus Commit() override;
    void Rollback() override;
    [[nodiscard]] bool CanTryAgain() override;

    CStoreAddress m_address;
    EAccess m_access;
    std::unique_ptr<pg_conn, CCloser> m_connection;
    std::unordered_map<std::string, std::string> m_names;  ///< of prepared statements, by their text
    bool m_conflict = false;
};
