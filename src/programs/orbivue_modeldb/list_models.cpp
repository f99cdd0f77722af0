// SPDX-License-Identifier: MIT
#include <nlohmann/json.hpp>

#include "base/text/lng.h"
#include "modeldb/bytes/calc_crc.h"
#include "programs/orbivue_modeldb/model_commands.h"
#include "programs/orbivue_modeldb/store_output.h"
#include "programs/orbivue_modeldb/walk_models.h"

namespace {

using CJson = nlohmann::ordered_json;

/** Prints entries one by one, as lines or as the items of one JSON array: a list may be longer than memory is large. */
class CListing {
  public:
    explicit CListing(bool isJson) : m_isJson(isJson) {}

    CStatus Add(const std::string& line, const CJson& item) {
        if (!m_isJson) return Write(line + "\n");
        return Write((m_count++ == 0 ? "[\n " : ",\n ") + item.dump());
    }
    CStatus End() {
        if (!m_isJson) return CDone{};
        return Write(m_count == 0 ? "[]\n" : "\n]\n");
    }

  private:
    static CStatus Write(const std::string& text) {
        if (Print(text)) return CDone{};
        return CError{EErrorCode::WriteFailed, lng::Mark("the output cannot be written"), {}};
    }
    bool m_isJson;
    std::size_t m_count = 0;
};

std::string Padded(std::string text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

CStatus ListGroups(CModelStore& store, CListing& listing) {
    const CResult<std::vector<CGroupRecord>> groups = store.Groups();
    if (!groups) return groups.Error();
    for (const CGroupRecord& group : groups.Value()) {
        const CStatus added =
            listing.Add(Padded(std::to_string(group.modelCount), 8) + "  " + Shown(group.name),
                        {{"group", group.name}, {"models", group.modelCount}});
        if (!added) return added;
    }
    return CDone{};
}

CStatus ListGroup(CModelStore& store, const std::string& name, CListing& listing) {
    const CResult<CGroupRecord> group = store.Group(name);
    if (!group) return group.Error();
    return WalkGroup(store, group.Value().id, [&](const CModelSummary& model) {
        const std::string key = model_key::ToText(model.key);
        return listing.Add(key + "  " + Shown(model.name), {{"key", key}, {"name", model.name}});
    });
}

CStatus ListFound(CModelStore& store, const CModelDbOptions& options, CListing& listing) {
    std::int64_t groupId = 0;
    if (!options.group.empty()) {
        const CResult<CGroupRecord> group = store.Group(options.group);
        if (!group) return group.Error();
        groupId = group.Value().id;
    }
    const CResult<std::vector<CFoundModel>> found =
        store.Search(options.search, groupId, store_limits::kPageModels);
    if (!found) return found.Error();
    for (const CFoundModel& model : found.Value()) {
        const std::string key = model_key::ToText(model.key);
        const CStatus added = listing.Add(key + "  " + Shown(model.group) + "  " + Shown(model.name),
                                          {{"key", key}, {"group", model.group}, {"name", model.name}});
        if (!added) return added;
    }
    return CDone{};
}

CJson JsonOf(const CStoredBlob& blob) {
    return {{"sha256", blob.hash.ToHex()},
            {"bytes", blob.size},
            {"stored", blob.stored},
            {"codec", blob.codec == EBlobCodec::Zstd ? "zstd" : "plain"}};
}

std::string LineOf(const char* what, const CStoredBlob& blob) {
    return std::string("\n  ") + what + ": " + std::to_string(blob.size) + " bytes, " + blob.hash.ToHex();
}

CStatus ListModel(CModelStore& store, std::uint32_t key, CListing& listing) {
    const CResult<CModelRecord> found = store.Model(key);
    if (!found) return found.Error();
    const CModelRecord& model = found.Value();
    std::string line = model_key::ToText(key) + "  " + Shown(model.group) + "  " + Shown(model.name) +
                       LineOf("file", model.file);
    CJson item{{"key", model_key::ToText(key)},
               {"group", model.group},
               {"name", model.name},
               {"code", model.code},
               {"note", model.note},
               {"created", model.createdSeconds},
               {"file", JsonOf(model.file)}};
    if (model.preview) {
        line += LineOf("preview", *model.preview);
        item["preview"] = JsonOf(*model.preview);
    }
    item["textures"] = CJson::array();
    for (const CStoredTexture& texture : model.textures) {
        line += LineOf("texture", texture.blob) + " " + Shown(texture.name);
        CJson one = JsonOf(texture.blob);
        one["name"] = texture.name;
        item["textures"].push_back(one);
    }
    return listing.Add(line, item);
}

CStatus ListWhat(CModelStore& store, const CModelDbOptions& options, CListing& listing) {
    if (!options.arguments.empty())
        return WalkModels(store, options, [&](std::uint32_t key) { return ListModel(store, key, listing); });
    if (!options.search.empty()) return ListFound(store, options, listing);
    return options.group.empty() ? ListGroups(store, listing) : ListGroup(store, options.group, listing);
}

}  // namespace

int model_commands::List(const CModelDbOptions& options) {
    CResult<CModelStore> store = OpenStore(options, EStoreUse::Read);
    if (!store) return Complain(store.Error(), kStoreFails);
    CListing listing(options.json);
    const CStatus listed = ListWhat(store.Value(), options, listing);
    if (!listed) return Complain(listed.Error(), WalkFailureCode(listed.Error()));
    return listing.End() ? kDone : kCannotWrite;
}
