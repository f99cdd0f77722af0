// SPDX-License-Identifier: MIT
#include <algorithm>
#include <nlohmann/json.hpp>
#include <tuple>

#include "base/text/lng.h"
#include "modeldb/protocol/codec_names.h"
#include "modeldb/protocol/read_json.h"
#include "modeldb/protocol/wire_limits.h"
#include "modeldb/protocol/wire_records.h"

namespace wire_records {

namespace {

using CJson = nlohmann::json;
using read_json::HashOf;
using read_json::KeyOf;
using read_json::Member;
using read_json::NameOf;
using read_json::NumberOf;
using read_json::TextOf;

/** Values in a body beside those of a list's items. */
constexpr std::size_t kFewValues = 1000;

CError BadAnswer() {
    return {EErrorCode::BadFormat, lng::Mark("the server's answer is not what it should be"), {}};
}
CError TooMany() {
    return {EErrorCode::TooLarge, lng::Mark("the other side sends more than is allowed"), {}};
}

/** Moves a value into its place; false where there is none. */
template <class T>
bool Put(std::optional<T> value, T& place) {
    if (value) place = std::move(*value);
    return value.has_value();
}
bool PutFlag(const CJson& value, bool& place) {
    if (value.is_boolean()) place = value.get<bool>();
    return value.is_boolean();
}
bool PutSeconds(const CJson& value, std::int64_t& place) {
    const auto number = NumberOf(value, INT64_MAX);
    place = static_cast<std::int64_t>(number.value_or(0));
    return number.has_value();
}

/** Reads each value of a list; nothing where it is no list, or read(value, item) is false for one. */
template <class T, class Read>
CResult<std::vector<T>> ListOf(const CJson& list, std::size_t most, Read read) {
    if (!list.is_array()) return BadAnswer();
    if (list.size() > most) return TooMany();
    std::vector<T> items(list.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        if (!read(list[i], items[i])) return BadAnswer();
    return items;
}

bool ReadInto(const CJson& json, CGroupRecord& group) {
    return PutSeconds(Member(json, "id"), group.id) && group.id > 0 &&
           Put(NameOf(Member(json, "name"), store_limits::kGroupName), group.name) &&
           Put(NumberOf(Member(json, "models"), UINT64_MAX), group.modelCount) &&
           Put(NumberOf(Member(json, "version"), UINT64_MAX), group.version);
}

bool ReadInto(const CJson& json, CModelSummary& model) {
    return json.is_array() && json.size() == 2 &&
           Put(NameOf(json[0], store_limits::kModelName), model.name) && Put(KeyOf(json[1]), model.key);
}

bool ReadInto(const CJson& json, CFoundModel& model) {
    return Put(NameOf(Member(json, "group"), store_limits::kGroupName), model.group) &&
           Put(NameOf(Member(json, "name"), store_limits::kModelName), model.name) &&
           Put(KeyOf(Member(json, "key")), model.key);
}

bool ReadInto(const CJson& json, CStoredBlob& blob) {
    const CJson& codec = Member(json, "codec");
    return Put(HashOf(Member(json, "sha256")), blob.hash) &&
           Put(NumberOf(Member(json, "size"), store_limits::kBlobBytes), blob.size) &&
           Put(NumberOf(Member(json, "stored"), store_limits::kBlobBytes), blob.stored) &&
           codec.is_string() && Put(codec_names::CodecOf(codec.get_ref<const std::string&>()), blob.codec) &&
           (blob.codec != EBlobCodec::Plain || blob.stored == blob.size);
}

bool ReadInto(const CJson& json, CStoredTexture& texture) {
    return Put(NameOf(Member(json, "name"), store_limits::kTextureName), texture.name) &&
           ReadInto(json, texture.blob);
}

bool ReadInto(const CJson& json, CUploadPart& part) {
    return Put(NumberOf(Member(json, "size"), store_limits::kBlobBytes), part.size) &&
           Put(HashOf(Member(json, "sha256")), part.hash);
}

bool ReadInto(const CJson& json, CUploadTexture& texture) {
    return Put(NameOf(Member(json, "name"), store_limits::kTextureName), texture.name) &&
           ReadInto(json, texture.part);
}

bool ReadPreview(const CJson& json, std::optional<CStoredBlob>& preview) {
    if (json.is_null()) return true;
    return ReadInto(json, preview.emplace()) && preview->size <= wire_limits::kPreviewBytes;
}

/** All of a model but its textures. */
bool ReadInto(const CJson& json, CModelRecord& model) {
    return Put(KeyOf(Member(json, "key")), model.key) &&
           Put(NameOf(Member(json, "group"), store_limits::kGroupName), model.group) &&
           Put(NameOf(Member(json, "name"), store_limits::kModelName), model.name) &&
           Put(TextOf(Member(json, "code"), store_limits::kCode), model.code) &&
           Put(TextOf(Member(json, "note"), store_limits::kNote), model.note) &&
           PutSeconds(Member(json, "created"), model.createdSeconds) &&
           ReadInto(Member(json, "file"), model.file) && ReadPreview(Member(json, "preview"), model.preview);
}

template <class T>
constexpr auto kReadItem = [](const CJson& json, T& item) { return ReadInto(json, item); };

/** A body of one object; read(json, value) fills it. */
template <class T, class Read>
CResult<T> ObjectOf(std::string_view text, const read_json::CJsonBounds& bounds, Read read) {
    const CResult<CJson> json = read_json::Parse(text, bounds);
    if (!json) return json.Error();
    T value;
    if (!read(json.Value(), value)) return BadAnswer();
    return value;
}

constexpr read_json::CJsonBounds kSmall{wire_limits::kSmallBody, kFewValues};

}  // namespace

CResult<CVersionAnswer> ReadVersion(std::string_view json) {
    return ObjectOf<CVersionAnswer>(json, kSmall, [](const CJson& value, CVersionAnswer& answer) {
        const CJson& limits = Member(value, "limits");
        auto protocols = ListOf<std::string>(Member(value, "protocols"), wire_limits::kProtocols,
                                             [](const CJson& item, std::string& name) {
                                                 return Put(TextOf(item, wire_limits::kVersionText), name);
                                             });
        if (!protocols) return false;
        answer.protocols = std::move(protocols).Value();
        return PutFlag(Member(value, "accepted"), answer.accepted) &&
               Put(TextOf(Member(value, "server"), wire_limits::kMessage), answer.server) &&
               PutFlag(Member(value, "private"), answer.isPrivate) &&
               Put(NumberOf(Member(limits, "upload_bytes"), UINT64_MAX), answer.uploadBytes) &&
               Put(NumberOf(Member(limits, "textures"), UINT64_MAX), answer.textures);
    });
}

CResult<std::vector<CGroupRecord>> ReadGroups(std::string_view json) {
    constexpr std::size_t kValuesOfOne = 5;
    const auto body =
        read_json::Parse(json, {wire_limits::kListBody, wire_limits::kGroups * kValuesOfOne + kFewValues});
    if (!body) return body.Error();
    auto groups =
        ListOf<CGroupRecord>(Member(body.Value(), "groups"), wire_limits::kGroups, kReadItem<CGroupRecord>);
    if (groups && std::ranges::adjacent_find(groups.Value(), std::greater_equal<>(), &CGroupRecord::name) !=
                      groups.Value().end()) {
        return BadAnswer();
    }
    return groups;
}

CResult<CGroupRecord> ReadGroup(std::string_view json) {
    return ObjectOf<CGroupRecord>(json, kSmall, kReadItem<CGroupRecord>);
}

CResult<CModelsPage> ReadModels(std::string_view json) {
    constexpr std::size_t kValuesOfOne = 3;
    const auto body = read_json::Parse(
        json, {wire_limits::kListBody, store_limits::kPageModels * kValuesOfOne + kFewValues});
    if (!body) return body.Error();
    auto models = ListOf<CModelSummary>(Member(body.Value(), "models"), store_limits::kPageModels,
                                        kReadItem<CModelSummary>);
    if (!models) return models.Error();
    CModelsPage page{std::move(models).Value()};
    const auto place = [](const CModelSummary& model) { return std::tie(model.name, model.key); };
    const bool isOrdered =
        std::ranges::adjacent_find(page.models, std::greater_equal<>(), place) == page.models.end();
    // A page that is empty and yet not the last one would be asked for again for ever.
    if (!isOrdered || !PutFlag(Member(body.Value(), "more"), page.more) || (page.more && page.models.empty()))
        return BadAnswer();
    return page;
}

CResult<CModelRecord> ReadModel(std::string_view json) {
    constexpr std::size_t kValuesOfOne = 6;
    const auto body = read_json::Parse(
        json, {wire_limits::kModelBody, store_limits::kTextures * kValuesOfOne + kFewValues});
    if (!body) return body.Error();
    auto textures = ListOf<CStoredTexture>(Member(body.Value(), "textures"), store_limits::kTextures,
                                           kReadItem<CStoredTexture>);
    if (!textures) return textures.Error();
    CModelRecord model;
    if (!ReadInto(body.Value(), model)) return BadAnswer();
    model.textures = std::move(textures).Value();
    return model;
}

CResult<CFoundPage> ReadFound(std::string_view json) {
    constexpr std::size_t kValuesOfOne = 4;
    const auto body =
        read_json::Parse(json, {wire_limits::kListBody, wire_limits::kFound * kValuesOfOne + kFewValues});
    if (!body) return body.Error();
    auto models =
        ListOf<CFoundModel>(Member(body.Value(), "models"), wire_limits::kFound, kReadItem<CFoundModel>);
    if (!models) return models.Error();
    CFoundPage page{std::move(models).Value()};
    if (!PutFlag(Member(body.Value(), "more"), page.more)) return BadAnswer();
    return page;
}

CResult<CAddedModel> ReadUploaded(std::string_view json) {
    return ObjectOf<CAddedModel>(json, kSmall, [](const CJson& value, CAddedModel& added) {
        const CJson& how = Member(value, "how");
        added.how = how == "same" ? EAdded::SameIsThere : EAdded::Added;
        return Put(KeyOf(Member(value, "key")), added.key) && (how == "same" || how == "added");
    });
}

CResult<CUploadHead> ReadUploadHead(std::string_view json, std::size_t mostTextures) {
    const CError bad{EErrorCode::BadFormat, "the head of the upload is not what it should be", {}};
    constexpr std::size_t kValuesOfOne = 4;
    const auto body = read_json::Parse(
        json, {wire_limits::kHeadBytes, store_limits::kTextures * kValuesOfOne + kFewValues});
    if (!body) return body.Error();
    auto textures =
        ListOf<CUploadTexture>(Member(body.Value(), "textures"),
                               std::min(mostTextures, store_limits::kTextures), kReadItem<CUploadTexture>);
    if (!textures) return textures.Error().code == EErrorCode::TooLarge ? textures.Error() : bad;
    CUploadHead head;
    const CJson& value = body.Value();
    if (!Put(NameOf(Member(value, "name"), store_limits::kModelName), head.name) ||
        !Put(NameOf(Member(value, "group"), store_limits::kGroupName), head.group) ||
        !Put(TextOf(Member(value, "code"), store_limits::kCode), head.code) ||
        !Put(TextOf(Member(value, "note"), store_limits::kNote), head.note) ||
        !ReadInto(Member(value, "file"), head.file)) {
        return bad;
    }
    head.textures = std::move(textures).Value();
    return head;
}

}  // namespace wire_records
