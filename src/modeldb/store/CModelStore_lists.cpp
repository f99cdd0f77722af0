// SPDX-License-Identifier: MIT
#include <algorithm>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "modeldb/store/CModelStore.h"
#include "modeldb/store/blob_rows.h"
#include "modeldb/store/store_names.h"
#include "modeldb/store/store_query.h"

namespace {

using store_query::Done;
using store_query::Gather;

CGroupRecord GroupFrom(const CDbRow& row) {
    return {row.Int(0), std::string(row.Text(1)), static_cast<std::uint64_t>(row.Int(2)),
            static_cast<std::uint64_t>(row.Int(3))};
}

CResult<CGroupRecord> OneGroup(CDatabase& database, std::string_view sql, const CDbValue& which) {
    CResult<CGroupRecord> group = Gather<CGroupRecord>(database, &CDatabase::Read, [&](auto& found) {
        return Done(database.Run(sql, {which}, [&](const CDbRow& row) -> CStatus {
            found = GroupFrom(row);
            return CDone{};
        }));
    });
    if (group && group.Value().id == 0) return store_query::Missing(lng::Mark("there is no such group"));
    return group;
}

std::uint32_t KeyFrom(const CDbRow& row, int column) {
    return static_cast<std::uint32_t>(row.Int(column));
}

/** A pattern for LIKE that finds the text as it is; '!' takes the meaning from what follows it. */
std::string PatternOf(std::string_view text) {
    std::string pattern = "%";
    for (const char c : text) {
        if (c == '%' || c == '_' || c == '!') pattern += '!';
        pattern += c;
    }
    return pattern + "%";
}

/** A phrase for the index: its trigrams, one behind the other. */
std::string PhraseOf(std::string_view text) {
    std::string phrase = "\"";
    for (const char c : text) phrase += c == '"' ? std::string("\"\"") : std::string(1, c);
    return phrase + "\"";
}

constexpr std::size_t kMostGroupsSeen = 4096;

constexpr std::string_view kSearch =
    "SELECT g.name, m.name, m.key FROM models m JOIN model_groups g ON g.id = m.group_id "
    "WHERE m.folded LIKE $1 ESCAPE '!' AND ($2 = 0 OR m.group_id = $2) ORDER BY m.key LIMIT $3";
constexpr std::string_view kSearchByTrigrams =
    "SELECT g.name, m.name, m.key FROM model_search s JOIN models m ON m.key = s.rowid "
    "JOIN model_groups g ON g.id = m.group_id "
    "WHERE s.model_search MATCH $1 AND ($2 = 0 OR m.group_id = $2) ORDER BY s.rowid LIMIT $3";

CStatus ReadTextures(CDatabase& database, std::uint32_t key, std::vector<CStoredTexture>& textures) {
    return Done(
        database.Run("SELECT t.name, b.sha256, b.size, b.stored, b.codec FROM textures t "
                     "JOIN blobs b ON b.id = t.blob WHERE t.model_key = $1 ORDER BY t.pos",
                     {std::int64_t{key}}, [&](const CDbRow& row) -> CStatus {
                         textures.push_back({std::string(row.Text(0)), blob_rows::FactsOf(row, 1)});
                         return CDone{};
                     }));
}

CModelRecord ModelFrom(const CDbRow& row) {
    CModelRecord model;
    model.key = KeyFrom(row, 0);
    model.group = row.Text(1);
    model.name = row.Text(2);
    model.code = row.Text(3);
    model.note = row.Text(4);
    model.createdSeconds = row.Int(5);
    model.file = blob_rows::FactsOf(row, 6);
    if (!row.IsNull(10)) model.preview = blob_rows::FactsOf(row, 10);
    return model;
}

}  // namespace

CResult<std::vector<CGroupRecord>> CModelStore::Groups() {
    return Gather<std::vector<CGroupRecord>>(*m_database, &CDatabase::Read, [&](auto& groups) {
        return Done(m_database->Run("SELECT id, name, model_count, version FROM model_groups ORDER BY name",
                                    {}, [&](const CDbRow& row) -> CStatus {
                                        groups.push_back(GroupFrom(row));
                                        return CDone{};
                                    }));
    });
}

CResult<CGroupRecord> CModelStore::Group(std::string_view name) {
    if (CStatus sound = store_names::Check(name, store_limits::kGroupName); !sound) return sound.Error();
    return OneGroup(*m_database, "SELECT id, name, model_count, version FROM model_groups WHERE name = $1",
                    name);
}

CResult<CGroupRecord> CModelStore::GroupById(std::int64_t id) {
    // The state first: what is read later may be newer, and is then read again.
    const std::optional<CDatabase::CStateMark> state = m_database->StateMark();
    if (!state || !m_groupsSeen || m_groupsSeen->state != *state ||
        m_groupsSeen->byId.size() >= kMostGroupsSeen)
        m_groupsSeen.reset();
    else if (const auto seen = m_groupsSeen->byId.find(id); seen != m_groupsSeen->byId.end())
        return seen->second;
    CResult<CGroupRecord> group =
        OneGroup(*m_database, "SELECT id, name, model_count, version FROM model_groups WHERE id = $1", id);
    if (!state || !group) return group;
    if (!m_groupsSeen) m_groupsSeen = CGroupsSeen{*state, {}};
    m_groupsSeen->byId.emplace(id, group.Value());
    return group;
}

CResult<std::vector<CModelSummary>> CModelStore::Models(std::int64_t groupId,
                                                        const std::optional<CPagePlace>& after,
                                                        std::size_t limit) {
    const std::string name = after ? after->name : std::string();
    if (CStatus sound = store_names::CheckText(name, store_limits::kModelName); !sound) return sound.Error();
    const std::int64_t key = after ? std::int64_t{after->key} : -1;
    const auto most = static_cast<std::int64_t>(std::min(limit, store_limits::kPageModels));
    return Gather<std::vector<CModelSummary>>(*m_database, &CDatabase::Read, [&](auto& models) {
        return Done(
            m_database->Run("SELECT key, name FROM models WHERE group_id = $1 AND (name, key) > ($2, $3) "
                            "ORDER BY name, key LIMIT $4",
                            {groupId, name, key, most}, [&](const CDbRow& row) -> CStatus {
                                models.push_back({std::string(row.Text(1)), KeyFrom(row, 0)});
                                return CDone{};
                            }));
    });
}

CResult<std::vector<CFoundModel>> CModelStore::Search(std::string_view text, std::int64_t groupId,
                                                      std::size_t limit) {
    if (CStatus sound = store_names::Check(text, store_limits::kModelName); !sound) return sound.Error();
    const std::string folded = store_names::Folded(text);
    // The index knows nothing shorter than three characters.
    const bool byIndex = m_hasTrigrams && utf8_text::Decode(folded).value_or(U"").size() >= 3;
    const std::string wanted = byIndex ? PhraseOf(folded) : PatternOf(folded);
    const auto most = static_cast<std::int64_t>(std::min(limit, store_limits::kPageModels));
    return Gather<std::vector<CFoundModel>>(*m_database, &CDatabase::Read, [&](auto& models) {
        return Done(m_database->Run(
            byIndex ? kSearchByTrigrams : kSearch, {wanted, groupId, most},
            [&](const CDbRow& row) -> CStatus {
                models.push_back({std::string(row.Text(0)), std::string(row.Text(1)), KeyFrom(row, 2)});
                return CDone{};
            }));
    });
}

CResult<bool> CModelStore::HasModel(std::uint32_t key) {
    return Gather<bool>(*m_database, &CDatabase::Read, [&](bool& found) {
        return Done(m_database->Run("SELECT 1 FROM models WHERE key = $1", {std::int64_t{key}},
                                    [&](const CDbRow&) -> CStatus {
                                        found = true;
                                        return CDone{};
                                    }));
    });
}

CResult<CModelRecord> CModelStore::Model(std::uint32_t key) {
    struct CFound {
        bool isThere = false;
        CModelRecord model;
    };
    CResult<CFound> found = Gather<CFound>(*m_database, &CDatabase::Look, [&](CFound& result) -> CStatus {
        CStatus read = Done(m_database->Run(
            "SELECT m.key, g.name, m.name, m.code, m.note, m.created, b.sha256, b.size, b.stored, b.codec, "
            "p.sha256, p.size, p.stored, p.codec FROM models m JOIN model_groups g ON g.id = m.group_id "
            "JOIN blobs b ON b.id = m.blob LEFT JOIN blobs p ON p.id = m.preview WHERE m.key = $1",
            {std::int64_t{key}}, [&](const CDbRow& row) -> CStatus {
                result = {true, ModelFrom(row)};
                return CDone{};
            }));
        if (!read || !result.isThere) return read;
        return ReadTextures(*m_database, key, result.model.textures);
    });
    if (!found) return found.Error();
    if (!found.Value().isThere) return store_query::Missing(lng::Mark("there is no such model"));
    return std::move(found).Value().model;
}

CResult<std::string> CModelStore::GroupOf(std::uint32_t key) {
    CResult<std::string> group = Gather<std::string>(*m_database, &CDatabase::Read, [&](std::string& name) {
        return Done(m_database->Run(
            "SELECT g.name FROM models m JOIN model_groups g ON g.id = m.group_id WHERE m.key = $1",
            {std::int64_t{key}}, [&](const CDbRow& row) -> CStatus {
                name = row.Text(0);
                return CDone{};
            }));
    });
    if (group && group.Value().empty()) return store_query::Missing(lng::Mark("there is no such model"));
    return group;
}

CResult<std::optional<CBlobHash>> CModelStore::PreviewOf(std::uint32_t key) {
    bool isThere = false;
    auto preview = Gather<std::optional<CBlobHash>>(*m_database, &CDatabase::Read, [&](auto& found) {
        return Done(m_database->Run(
            "SELECT b.sha256 FROM models m LEFT JOIN blobs b ON b.id = m.preview WHERE m.key = $1",
            {std::int64_t{key}}, [&](const CDbRow& row) -> CStatus {
                isThere = true;
                if (!row.IsNull(0)) found = blob_rows::HashOf(row, 0);
                return CDone{};
            }));
    });
    if (preview && !isThere) return store_query::Missing(lng::Mark("there is no such model"));
    return preview;
}

CResult<std::vector<std::uint32_t>> CModelStore::ModelsWithoutPreview(std::uint32_t from, std::size_t limit) {
    const auto most = static_cast<std::int64_t>(std::min(limit, store_limits::kPageModels));
    return Gather<std::vector<std::uint32_t>>(*m_database, &CDatabase::Read, [&](auto& keys) {
        return Done(m_database->Run(
            "SELECT key FROM models WHERE key >= $1 AND preview IS NULL ORDER BY key LIMIT $2",
            {std::int64_t{from}, most}, [&](const CDbRow& row) -> CStatus {
                keys.push_back(KeyFrom(row, 0));
                return CDone{};
            }));
    });
}
