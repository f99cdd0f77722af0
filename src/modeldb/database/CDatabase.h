// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include "base/CResult.h"

struct CStoreAddress;

/** A value for a statement: null, a number, a text (UTF-8 without a zero byte), bytes. The last two are the caller's. */
using CDbValue = std::variant<std::monostate, std::int64_t, std::string_view, std::span<const std::byte>>;

/** One row of an answer. Valid, with what it returns, while it is handed over. Columns count from 0. */
class CDbRow {
  public:
    virtual ~CDbRow() = default;
    [[nodiscard]] virtual bool IsNull(int column) const = 0;
    [[nodiscard]] virtual std::int64_t Int(int column) const = 0;
    [[nodiscard]] virtual std::string_view Text(int column) const = 0;
    [[nodiscard]] virtual std::span<const std::byte> Bytes(int column) const = 0;
};

/** A connection to a database, for one thread at a time. One SQL text serves both engines: values are $1, $2 ..., numbers are
 * 64-bit, and nothing is ever spliced into a text. Statements are prepared once and kept. Error messages hold
 * no values. */
class CDatabase {
  public:
    enum class EEngine { Sqlite, PostgreSql };
    enum class EAccess { Read, Write, Create };
    using CRowTaker = std::function<CStatus(const CDbRow&)>;
    using CWork = std::function<CStatus()>;

    /** Equal marks: nothing was committed between them, by whomever. */
    using CStateMark = std::array<unsigned char, 48>;

    virtual ~CDatabase() = default;
    [[nodiscard]] virtual EEngine Engine() const = 0;
    /** For the errors of others: the file or server, without secrets. */
    [[nodiscard]] virtual std::string Place() const = 0;

    /** Runs one statement; how many rows it changed. take gets each row of the answer; its failure ends the statement
     * and is the result. Call it within Read, Look or Change. */
    [[nodiscard]] virtual CResult<std::int64_t> Run(std::string_view sql, std::span<const CDbValue> values,
                                                    const CRowTaker& take) = 0;
    [[nodiscard]] CResult<std::int64_t> Run(std::string_view sql, std::initializer_list<CDbValue> values,
                                            const CRowTaker& take = {}) {
        return Run(sql, std::span(values.begin(), values.size()), take);
    }
    /** A mark of what others would read now, much cheaper than any statement. Nothing where it cannot be told: within a transaction,
     * and by an engine that does not tell. */
    [[nodiscard]] virtual std::optional<CStateMark> StateMark() { return std::nullopt; }
    /** Runs statements that take no values and give no rows, divided by ';'. */
    [[nodiscard]] virtual CStatus RunScript(std::string_view sql) = 0;

    /** Runs work that reads by one statement. */
    [[nodiscard]] CStatus Read(const CWork& work) { return Try(EScope::None, work); }
    /** Runs work that reads by several statements, which all see one state. */
    [[nodiscard]] CStatus Look(const CWork& work) { return Try(EScope::Look, work); }
    /** Runs work in a transaction that is on the disk when this returns, or undone after a failure. */
    [[nodiscard]] CStatus Change(const CWork& work) { return Try(EScope::Change, work); }
    /** Change that keeps all others out, for new forms of the tables. */
    [[nodiscard]] CStatus Rebuild(const CWork& work) { return Try(EScope::Rebuild, work); }

  protected:
    enum class EScope { None, Look, Change, Rebuild };

  private:
    /** Work that failed because others were quicker, or because the connection is gone, is done again from its
     * beginning, a few times; so it must set all that it fills. */
    [[nodiscard]] CStatus Try(EScope scope, const CWork& work);
    [[nodiscard]] CStatus TryOnce(EScope scope, const CWork& work);

    [[nodiscard]] virtual CStatus Begin(EScope scope) = 0;
    [[nodiscard]] virtual CStatus Commit() = 0;
    virtual void Rollback() = 0;
    /** Whether another try makes sense after what failed last; connects again where the connection is gone. */
    [[nodiscard]] virtual bool CanTryAgain() = 0;
};
