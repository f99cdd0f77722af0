// SPDX-License-Identifier: MIT
#include "modeldb/database/CPostgresDatabase.h"

#include <endian.h>
#include <libpq-fe.h>

#include <array>
#include <cstring>
#include <vector>

#include "modeldb/database/postgres_errors.h"

namespace {

constexpr Oid kBytesType = 17, kNumberType = 20, kTextType = 25;  ///< of PostgreSQL's catalogue

class CPostgresRow final : public CDbRow {
  public:
    CPostgresRow(const PGresult* answer, int row) : m_answer(answer), m_row(row) {}
    [[nodiscard]] bool IsNull(int column) const override { return PQgetisnull(m_answer, m_row, column) == 1; }
    [[nodiscard]] std::int64_t Int(int column) const override {
        std::uint64_t number = 0;
        if (Size(column) == sizeof(number))
            std::memcpy(&number, PQgetvalue(m_answer, m_row, column), sizeof(number));
        return static_cast<std::int64_t>(be64toh(number));
    }
    [[nodiscard]] std::string_view Text(int column) const override {
        return {PQgetvalue(m_answer, m_row, column), Size(column)};
    }
    [[nodiscard]] std::span<const std::byte> Bytes(int column) const override {
        return {reinterpret_cast<const std::byte*>(PQgetvalue(m_answer, m_row, column)), Size(column)};
    }

  private:
    [[nodiscard]] std::size_t Size(int column) const {
        return static_cast<std::size_t>(PQgetlength(m_answer, m_row, column));
    }
    const PGresult* m_answer;
    int m_row;
};

Oid TypeOf(const CDbValue& value) {
    if (std::holds_alternative<std::int64_t>(value)) return kNumberType;
    if (std::holds_alternative<std::string_view>(value)) return kTextType;
    return std::holds_alternative<std::span<const std::byte>>(value) ? kBytesType : 0;
}

/** The values as the server takes them: binary, in its byte order. They refer to the CDbValues. */
struct CParameters {
    explicit CParameters(std::span<const CDbValue> values)
        : numbers(values.size()), pointers(values.size()), lengths(values.size()), formats(values.size(), 1) {
        for (std::size_t i = 0; i < values.size(); ++i) Set(i, values[i]);
    }

    void Set(std::size_t i, const CDbValue& value) {
        static constexpr char kNothing = 0;  // a null pointer would be a null
        if (const auto* number = std::get_if<std::int64_t>(&value)) {
            numbers[i] = htobe64(static_cast<std::uint64_t>(*number));
            pointers[i] = reinterpret_cast<const char*>(&numbers[i]);
            lengths[i] = sizeof(numbers[i]);
        } else if (const auto* text = std::get_if<std::string_view>(&value)) {
            pointers[i] = text->empty() ? &kNothing : text->data();
            lengths[i] = static_cast<int>(text->size());
        } else if (const auto* bytes = std::get_if<std::span<const std::byte>>(&value)) {
            pointers[i] = bytes->empty() ? &kNothing : reinterpret_cast<const char*>(bytes->data());
            lengths[i] = static_cast<int>(bytes->size());
        }
    }

    std::vector<std::uint64_t> numbers;
    std::vector<const char*> pointers;
    std::vector<int> lengths, formats;
};

/** How every connection works: where the tables are; nobody waits for ever; what is acknowledged is on the disk. */
constexpr const char* kSetUp =
    "SET search_path TO orbivue, public; SET lock_timeout = '5s'; SET idle_in_transaction_session_timeout = "
    "'60s';"
    "SELECT set_config('synchronous_commit', 'on', false) WHERE current_setting('synchronous_commit') = "
    "'off';";

}  // namespace

void CPostgresDatabase::CCloser::operator()(pg_conn* connection) const {
    PQfinish(connection);
}
void CPostgresDatabase::CClearer::operator()(pg_result* result) const {
    PQclear(result);
}

CResult<std::unique_ptr<CDatabase>> CPostgresDatabase::Open(const CStoreAddress& address, EAccess access) {
    std::unique_ptr<CPostgresDatabase> database(new CPostgresDatabase(address, access));
    if (CStatus connected = database->Connect(); !connected) return connected.Error();
    return std::unique_ptr<CDatabase>(std::move(database));
}

CStatus CPostgresDatabase::Connect() {
    // What stands before the address may be overruled by it, what stands behind may not.
    constexpr std::array<const char*, 9> kKeywords{"connect_timeout",
                                                   "keepalives_idle",
                                                   "keepalives_interval",
                                                   "tcp_user_timeout",
                                                   "fallback_application_name",
                                                   "dbname",
                                                   "client_encoding",
                                                   "options",
                                                   nullptr};
    const bool reads = m_access == EAccess::Read;
    const std::array<const char*, 9> values{
        "5",       "30",
        "10",      "30000",
        "orbivue", m_address.text.c_str(),
        "UTF8",    reads ? "-c default_transaction_read_only=on" : nullptr,
        nullptr};
    m_names.clear();
    m_connection.reset(PQconnectdbParams(kKeywords.data(), values.data(), 1));
    if (!m_connection) throw std::bad_alloc();
    if (PQstatus(m_connection.get()) != CONNECTION_OK) return WhyNotConnected();
    PQsetNoticeProcessor(
        m_connection.get(), [](void*, const char*) {}, nullptr);
    return RunScript(kSetUp);
}

// Of a connection that was refused libpq tells no code of the server's.
CError CPostgresDatabase::WhyNotConnected() const {
    const std::string_view text = PQerrorMessage(m_connection.get());
    if (text.find("database \"") != text.npos && text.find("does not exist") != text.npos)
        return PostgresError("3D000", Place());
    const bool wasAsked = PQconnectionNeedsPassword(m_connection.get()) == 1 ||
                          PQconnectionUsedPassword(m_connection.get()) == 1;
    return PostgresError(wasAsked ? "28" : "08", Place());
}

CError CPostgresDatabase::Failure(const CAnswer& answer) {
    const char* state = answer ? PQresultErrorField(answer.get(), PG_DIAG_SQLSTATE) : nullptr;
    const bool lost = PQstatus(m_connection.get()) != CONNECTION_OK;
    const std::string code = lost || !state ? "" : state;
    m_conflict = IsConflict(code);
    return PostgresError(code, Place());
}

CStatus CPostgresDatabase::Expect(const CAnswer& answer) {
    const ExecStatusType status = PQresultStatus(answer.get());
    if (status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK) return CDone{};
    return Failure(answer);
}

CResult<std::string> CPostgresDatabase::Prepare(std::string_view sql, std::span<const CDbValue> values) {
    const std::string text(sql);
    if (const auto known = m_names.find(text); known != m_names.end()) return known->second;
    std::vector<Oid> types;
    for (const CDbValue& value : values) types.push_back(TypeOf(value));
    std::string name = "s" + std::to_string(m_names.size());
    const CAnswer answer(PQprepare(m_connection.get(), name.c_str(), text.c_str(),
                                   static_cast<int>(types.size()), types.data()));
    if (CStatus prepared = Expect(answer); !prepared) return prepared.Error();
    return m_names.emplace(text, std::move(name)).first->second;
}

CResult<std::int64_t> CPostgresDatabase::Run(std::string_view sql, std::span<const CDbValue> values,
                                             const CRowTaker& take) {
    m_conflict = false;
    const CResult<std::string> name = Prepare(sql, values);
    if (!name) return name.Error();
    const CParameters parameters(values);
    const CAnswer answer(PQexecPrepared(m_connection.get(), name.Value().c_str(),
                                        static_cast<int>(values.size()), parameters.pointers.data(),
                                        parameters.lengths.data(), parameters.formats.data(), 1));
    if (CStatus done = Expect(answer); !done) return done.Error();
    for (int row = 0; take && row < PQntuples(answer.get()); ++row)
        if (CStatus taken = take(CPostgresRow(answer.get(), row)); !taken) return taken.Error();
    const std::string_view changed = PQcmdTuples(answer.get());
    std::int64_t count = 0;
    for (const char digit : changed) count = count * 10 + (digit - '0');
    return count;
}

CStatus CPostgresDatabase::RunScript(std::string_view sql) {
    m_conflict = false;
    return Expect(CAnswer(PQexec(m_connection.get(), std::string(sql).c_str())));
}

CStatus CPostgresDatabase::Begin(EScope scope) {
    switch (scope) {
        case EScope::Look:
            return RunScript("BEGIN ISOLATION LEVEL REPEATABLE READ, READ ONLY");
        case EScope::Rebuild:
            // A number of our own for a lock that only we know.
            return RunScript(
                "BEGIN; SET LOCAL lock_timeout = '60s'; SELECT pg_advisory_xact_lock(1332896333)");
        default:
            return RunScript("BEGIN");
    }
}

CStatus CPostgresDatabase::Commit() {
    const CAnswer answer(PQexec(m_connection.get(), "COMMIT"));
    m_conflict = false;
    if (CStatus done = Expect(answer); !done) return done;
    // A transaction in which something failed ends so, without an error.
    if (std::string_view(PQcmdStatus(answer.get())) == "COMMIT") return CDone{};
    return PostgresError("40", Place());
}

void CPostgresDatabase::Rollback() {
    const bool conflict = m_conflict;
    if (PQstatus(m_connection.get()) == CONNECTION_OK &&
        PQtransactionStatus(m_connection.get()) != PQTRANS_IDLE)
        (void)RunScript("ROLLBACK");  // a connection that cannot even do this is connected anew
    m_conflict = conflict;
}

bool CPostgresDatabase::CanTryAgain() {
    if (PQstatus(m_connection.get()) == CONNECTION_OK) return m_conflict;
    return Connect().HasValue();
}
