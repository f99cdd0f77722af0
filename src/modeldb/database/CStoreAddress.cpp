// SPDX-License-Identifier: MIT
#include "modeldb/database/CStoreAddress.h"

#include <libpq-fe.h>

#include <memory>

namespace {

struct COptionsDeleter {
    void operator()(PQconninfoOption* options) const { PQconninfoFree(options); }
};

}  // namespace

CStoreAddress CStoreAddress::Parse(std::string_view text) {
    const bool isServer = text.starts_with("postgresql://") || text.starts_with("postgres://");
    return {isServer ? EKind::PostgreSql : EKind::File, std::string(text)};
}

std::string CStoreAddress::Shown() const {
    if (kind == EKind::File) return text;
    std::string host, database;
    const std::unique_ptr<PQconninfoOption, COptionsDeleter> options(PQconninfoParse(text.c_str(), nullptr));
    for (const PQconninfoOption* option = options.get(); option && option->keyword; ++option) {
        const std::string_view keyword = option->keyword;
        if (!option->val) continue;
        if (keyword == "host") host = option->val;
        if (keyword == "dbname") database = option->val;
    }
    return "postgresql://" + host + (database.empty() ? "" : "/" + database);
}
