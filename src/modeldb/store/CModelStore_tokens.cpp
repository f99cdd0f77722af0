// SPDX-License-Identifier: MIT
#include <sys/random.h>

#include <array>
#include <charconv>
#include <cstring>

#include "base/text/lng.h"
#include "modeldb/bytes/hex_text.h"
#include "modeldb/store/CModelStore.h"
#include "modeldb/store/store_names.h"
#include "modeldb/store/store_query.h"

namespace {

using store_query::Done;
using CSecret = std::array<std::byte, 32>;

/** A token is this, the number of its row, '_', and the secret in hexadecimal digits. */
constexpr std::string_view kPrefix = "orbivue_";

struct CTokenText {
    std::int64_t id = 0;
    CSecret secret{};
};

std::optional<CTokenText> Parse(std::string_view text) {
    if (!text.starts_with(kPrefix)) return std::nullopt;
    text.remove_prefix(kPrefix.size());
    const std::size_t divider = text.find('_');
    if (divider == text.npos) return std::nullopt;
    CTokenText token;
    const char* end = text.data() + divider;
    const auto [stop, error] = std::from_chars(text.data(), end, token.id);
    if (error != std::errc() || stop != end || token.id < 1) return std::nullopt;
    if (!hex_text::Read(text.substr(divider + 1), token.secret)) return std::nullopt;
    return token;
}

}  // namespace

CResult<std::string> CModelStore::CreateToken(std::string_view name, CStoreRights rights) {
    if (CStatus sound = store_names::Check(name, store_limits::kTokenName); !sound) return sound.Error();
    CSecret secret{};
    if (::getrandom(secret.data(), secret.size(), 0) != static_cast<ssize_t>(secret.size()))
        return CError{EErrorCode::Unreadable, lng::Mark("the system gives no random numbers"), {}};
    const CBlobHash hash = CBlobHash::Of(secret);
    const CResult<std::int64_t> id =
        store_query::Gather<std::int64_t>(*m_database, &CDatabase::Change, [&](std::int64_t& made) {
            return Done(m_database->Run(
                "INSERT INTO tokens(name, hash, rights, created) VALUES($1, $2, $3, $4) "
                "ON CONFLICT(name) DO NOTHING RETURNING id",
                {name, std::span<const std::byte>(hash.bytes), std::int64_t{rights.bits}, store_query::Now()},
                [&](const CDbRow& row) -> CStatus {
                    made = row.Int(0);
                    return CDone{};
                }));
        });
    if (!id) return id.Error();
    if (id.Value() == 0) return CError{EErrorCode::Exists, lng::Mark("a token has this name already"), {}};
    return std::string(kPrefix) + std::to_string(id.Value()) + "_" + hex_text::Write(secret);
}

CResult<std::vector<CTokenRecord>> CModelStore::Tokens() {
    return store_query::Gather<std::vector<CTokenRecord>>(*m_database, &CDatabase::Read, [&](auto& tokens) {
        return Done(m_database->Run(
            "SELECT name, rights, created FROM tokens ORDER BY name", {}, [&](const CDbRow& row) -> CStatus {
                tokens.push_back(
                    {std::string(row.Text(0)), {static_cast<std::uint32_t>(row.Int(1))}, row.Int(2)});
                return CDone{};
            }));
    });
}

CStatus CModelStore::RevokeToken(std::string_view name) {
    if (CStatus sound = store_names::Check(name, store_limits::kTokenName); !sound) return sound;
    return m_database->Change([&]() -> CStatus {
        const auto removed = m_database->Run("DELETE FROM tokens WHERE name = $1", {name});
        if (!removed) return removed.Error();
        if (removed.Value() == 0) return store_query::Missing(lng::Mark("there is no such token"));
        return CDone{};
    });
}

CResult<std::optional<CTokenRecord>> CModelStore::FindToken(std::string_view token) {
    const std::optional<CTokenText> parsed = Parse(token);
    if (!parsed) return std::optional<CTokenRecord>();
    struct CFound {
        CTokenRecord record;
        CBlobHash hash;
    };
    const CResult<CFound> found =
        store_query::Gather<CFound>(*m_database, &CDatabase::Read, [&](CFound& result) {
            return Done(m_database->Run(
                "SELECT name, rights, created, hash FROM tokens WHERE id = $1", {parsed->id},
                [&](const CDbRow& row) -> CStatus {
                    result.record = {
                        std::string(row.Text(0)), {static_cast<std::uint32_t>(row.Int(1))}, row.Int(2)};
                    result.hash = CBlobHash::FromBytes(row.Bytes(3)).value_or(CBlobHash{});
                    return CDone{};
                }));
        });
    if (!found) return found.Error();
    // Where there is no such row it is compared all the same, with zeros that no secret leads to.
    if (!EqualInConstantTime(found.Value().hash, CBlobHash::Of(parsed->secret)))
        return std::optional<CTokenRecord>();
    return std::optional(found.Value().record);
}
