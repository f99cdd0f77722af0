// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/** Where a store of models is: a file (SQLite), or a database of a PostgreSQL server. */
struct CStoreAddress {
    enum class EKind { File, PostgreSql };

    EKind kind = EKind::File;
    std::string text;  ///< the path (UTF-8), or "postgresql://..." with whatever secrets it holds

    /** "postgresql://..." and "postgres://..." are servers, all else is a path. */
    [[nodiscard]] static CStoreAddress Parse(std::string_view text);
    /** For messages: a path as it is; of a server host and database, never a user's name or password. */
    [[nodiscard]] std::string Shown() const;
};
