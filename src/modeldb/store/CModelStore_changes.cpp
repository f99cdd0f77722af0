// SPDX-License-Identifier: MIT
#include <set>

#include "base/text/lng.h"
#include "modeldb/store/CModelStore.h"
#include "modeldb/store/blob_rows.h"
#include "modeldb/store/store_names.h"
#include "modeldb/store/store_query.h"

namespace {

using store_query::Done;

CStatus CheckTexts(const CNewModel& model) {
    struct CText {
        const std::string& text;
        std::size_t most;
        bool mayBeEmpty;
    };
    const CText texts[] = {{model.group, store_limits::kGroupName, false},
                           {model.name, store_limits::kModelName, false},
                           {model.code, store_limits::kCode, true},
                           {model.note, store_limits::kNote, true}};
    for (const CText& text : texts) {
        CStatus sound = text.mayBeEmpty ? store_names::CheckText(text.text, text.most)
                                        : store_names::Check(text.text, text.most);
        if (!sound) return sound;
    }
    if (model.textures.size() > store_limits::kTextures)
        return CError{EErrorCode::TooLarge, lng::Mark("the model has too many textures"), {}};
    for (const CNewTexture& texture : model.textures)
        if (CStatus sound = store_names::Check(texture.name, store_limits::kTextureName); !sound)
            return sound;
    return CDone{};
}

/** The hash of the file that has the key. */
CResult<std::optional<CBlobHash>> FileWithKey(CDatabase& database, std::uint32_t key) {
    std::optional<CBlobHash> hash;
    const auto read =
        database.Run("SELECT b.sha256 FROM models m JOIN blobs b ON b.id = m.blob WHERE m.key = $1",
                     {std::int64_t{key}}, [&](const CDbRow& row) -> CStatus {
                         hash = CBlobHash::FromBytes(row.Bytes(0));
                         return CDone{};
                     });
    if (!read) return read.Error();
    return hash;
}

CResult<std::int64_t> GroupId(CDatabase& database, std::string_view name) {
    std::int64_t id = 0;
    const auto take = [&](const CDbRow& row) -> CStatus {
        id = row.Int(0);
        return CDone{};
    };
    constexpr std::string_view kFind = "SELECT id FROM model_groups WHERE name = $1";
    auto done = database.Run(kFind, {name}, take);
    if (done && id == 0)
        done = database.Run(
            "INSERT INTO model_groups(name) VALUES($1) ON CONFLICT(name) DO NOTHING RETURNING id", {name},
            take);
    // Somebody else has made it at this moment.
    if (done && id == 0) done = database.Run(kFind, {name}, take);
    if (!done) return done.Error();
    return id;
}

CStatus DropAllStaged(CDatabase& database, const CNewModel& model) {
    if (CStatus dropped = blob_rows::DropStaged(database, model.file); !dropped) return dropped;
    if (model.preview)
        if (CStatus dropped = blob_rows::DropStaged(database, *model.preview); !dropped) return dropped;
    for (const CNewTexture& texture : model.textures)
        if (CStatus dropped = blob_rows::DropStaged(database, texture.blob); !dropped) return dropped;
    return CDone{};
}

CStatus InsertTextures(CDatabase& database, const CNewModel& model) {
    std::int64_t pos = 0;
    for (const CNewTexture& texture : model.textures) {
        const CResult<std::int64_t> blob = blob_rows::Put(database, texture.blob);
        if (!blob) return blob.Error();
        const auto inserted =
            database.Run("INSERT INTO textures(model_key, pos, name, blob) VALUES($1, $2, $3, $4)",
                         {std::int64_t{model.file.crc}, pos++, texture.name, blob.Value()});
        if (!inserted) return inserted.Error();
    }
    return CDone{};
}

CError NoModel() {
    return store_query::Missing(lng::Mark("there is no such model"));
}

}  // namespace

CStatus CModelStore::InsertModel(const CNewModel& model) {
    CDatabase& database = *m_database;
    const CResult<std::int64_t> group = GroupId(database, model.group);
    if (!group) return group.Error();
    const CResult<std::int64_t> file = blob_rows::Put(database, model.file);
    if (!file) return file.Error();
    CDbValue preview;
    if (model.preview) {
        const CResult<std::int64_t> put = blob_rows::Put(database, *model.preview);
        if (!put) return put.Error();
        preview = put.Value();
    }
    const std::string folded = store_names::Folded(model.name);
    const auto inserted = database.Run(
        "INSERT INTO models(key, group_id, name, code, note, blob, preview, created, folded) "
        "VALUES($1, $2, $3, $4, $5, $6, $7, $8, $9)",
        {std::int64_t{model.file.crc}, group.Value(), model.name,
         model.code.empty() ? model.name : model.code, model.note, file.Value(), preview, store_query::Now(),
         folded});
    if (!inserted) return inserted.Error();
    return InsertTextures(database, model);
}

CStatus CModelStore::AddOne(const CNewModel& model, CResult<CAddedModel>& result) {
    const std::uint32_t key = model.file.crc;
    result = CAddedModel{key, EAdded::Added};
    const CStatus sound = CheckTexts(model);
    if (!sound) {
        result = sound.Error();
        return DropAllStaged(*m_database, model);
    }
    const CResult<std::optional<CBlobHash>> known = FileWithKey(*m_database, key);
    if (!known) return known.Error();
    if (!known.Value()) return InsertModel(model);
    if (*known.Value() == model.file.facts.hash)
        result = CAddedModel{key, EAdded::SameIsThere};
    else
        result = CError{EErrorCode::Exists, lng::Mark("another model has the same key already"), {}};
    return DropAllStaged(*m_database, model);
}

CResult<CAddedModel> CModelStore::AddModel(CNewModel model) {
    auto added = AddModels({&model, 1});
    if (!added) return added.Error();
    return added.Value().front();
}

CResult<std::vector<CResult<CAddedModel>>> CModelStore::AddModels(std::span<CNewModel> models) {
    std::vector<CResult<CAddedModel>> results(models.size(), CAddedModel{});
    const CStatus done = m_database->Change([&]() -> CStatus {
        for (std::size_t i = 0; i < models.size(); ++i)
            if (CStatus added = AddOne(models[i], results[i]); !added) return added;
        return CDone{};
    });
    if (!done) return done.Error();
    return results;
}

CStatus CModelStore::SetPreview(std::uint32_t key, CNewBlob preview) {
    return m_database->Change([&]() -> CStatus {
        std::int64_t old = -1;
        CStatus done = Done(m_database->Run("SELECT coalesce(preview, 0) FROM models WHERE key = $1",
                                            {std::int64_t{key}}, [&](const CDbRow& row) -> CStatus {
                                                old = row.Int(0);
                                                return CDone{};
                                            }));
        if (!done) return done;
        if (old == -1) return NoModel();
        const CResult<std::int64_t> put = blob_rows::Put(*m_database, preview);
        if (!put) return put.Error();
        if (put.Value() == old) return CDone{};
        done = Done(m_database->Run("UPDATE models SET preview = $1 WHERE key = $2",
                                    {put.Value(), std::int64_t{key}}));
        return done && old != 0 ? blob_rows::DropUnused(*m_database, old) : done;
    });
}

CStatus CModelStore::RemoveModel(std::uint32_t key) {
    return m_database->Change([&]() -> CStatus {
        std::set<std::int64_t> blobs;
        const auto note = [&](const CDbRow& row) -> CStatus {
            blobs.insert(row.Int(0));
            return CDone{};
        };
        // Textures first: that the model was there is told by what its deletion changes.
        const auto noted = m_database->Run(
            "SELECT blob FROM models WHERE key = $1 UNION SELECT preview FROM models WHERE key = $1 AND "
            "preview IS NOT NULL "
            "UNION SELECT blob FROM textures WHERE model_key = $1",
            {std::int64_t{key}}, note);
        if (!noted) return noted.Error();
        const auto removed = m_database->Run("DELETE FROM models WHERE key = $1", {std::int64_t{key}});
        if (!removed) return removed.Error();
        if (removed.Value() == 0) return NoModel();
        for (const std::int64_t blob : blobs)
            if (CStatus dropped = blob_rows::DropUnused(*m_database, blob); !dropped) return dropped;
        return CDone{};
    });
}

CStatus CModelStore::RemoveGroup(std::string_view name) {
    if (CStatus sound = store_names::Check(name, store_limits::kGroupName); !sound) return sound;
    return m_database->Change([&]() -> CStatus {
        const auto removed = m_database->Run(
            "DELETE FROM model_groups WHERE name = $1 AND NOT EXISTS("
            "SELECT 1 FROM models WHERE group_id = model_groups.id)",
            {name});
        if (!removed) return removed.Error();
        if (removed.Value() == 1) return CDone{};
        bool isThere = false;
        const auto read = m_database->Run("SELECT 1 FROM model_groups WHERE name = $1", {name},
                                          [&](const CDbRow&) -> CStatus {
                                              isThere = true;
                                              return CDone{};
                                          });
        if (!read) return read.Error();
        if (isThere) return CError{EErrorCode::Exists, lng::Mark("the group still has models"), {}};
        return store_query::Missing(lng::Mark("there is no such group"));
    });
}

void CModelStore::Discard(const CNewBlob& blob) {
    if (blob.stagedId == 0) return;
    // What cannot be deleted now goes with other old rows.
    (void)m_database->Change([&] { return blob_rows::DropStaged(*m_database, blob); });
}
