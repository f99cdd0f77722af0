// SPDX-License-Identifier: MIT
#include "modeldb/bytes/calc_crc.h"
#include "modeldb/protocol/codec_names.h"
#include "modeldb/protocol/wire_records.h"
#include "modeldb/protocol/write_json.h"

namespace wire_records {

namespace {

using write_json::AppendName;
using write_json::AppendNumber;
using write_json::AppendText;

void AppendText(std::string& out, std::string_view name, std::string_view value) {
    AppendName(out, name);
    AppendText(out, value);
}
void AppendNumber(std::string& out, std::string_view name, std::uint64_t value) {
    AppendName(out, name);
    AppendNumber(out, value);
}
void AppendFlag(std::string& out, std::string_view name, bool value) {
    AppendName(out, name);
    out += value ? "true" : "false";
}

/** Appends a list under a name; append(item) appends one of its values. */
template <class List, class Append>
void AppendList(std::string& out, std::string_view name, const List& list, Append append) {
    AppendName(out, name);
    out += '[';
    const char* separator = "";
    for (const auto& item : list) {
        out += separator;
        append(item);
        separator = ",";
    }
    out += ']';
}

void AppendGroup(std::string& out, const CGroupRecord& group) {
    out += '{';
    AppendNumber(out, "id", static_cast<std::uint64_t>(group.id));
    AppendText(out, "name", group.name);
    AppendNumber(out, "models", group.modelCount);
    AppendNumber(out, "version", group.version);
    out += '}';
}

/** Appends the members that tell of bytes. */
void AppendBlob(std::string& out, const CStoredBlob& blob) {
    AppendText(out, "sha256", blob.hash.ToHex());
    AppendNumber(out, "size", blob.size);
    AppendNumber(out, "stored", blob.stored);
    AppendText(out, "codec", codec_names::NameOf(blob.codec));
}

void AppendPart(std::string& out, const CUploadPart& part) {
    AppendNumber(out, "size", part.size);
    AppendText(out, "sha256", part.hash.ToHex());
}

}  // namespace

std::string WriteVersion(const CVersionAnswer& answer) {
    std::string out = "{";
    AppendFlag(out, "accepted", answer.accepted);
    AppendList(out, "protocols", answer.protocols, [&](const std::string& name) { AppendText(out, name); });
    AppendText(out, "server", answer.server);
    AppendFlag(out, "private", answer.isPrivate);
    AppendName(out, "limits");
    out += '{';
    AppendNumber(out, "upload_bytes", answer.uploadBytes);
    AppendNumber(out, "textures", answer.textures);
    return out += "}}";
}

std::string WriteGroups(std::span<const CGroupRecord> groups) {
    std::string out = "{";
    AppendList(out, "groups", groups, [&](const CGroupRecord& group) { AppendGroup(out, group); });
    return out += '}';
}

std::string WriteGroup(const CGroupRecord& group) {
    std::string out;
    AppendGroup(out, group);
    return out;
}

std::string WriteModels(std::span<const CModelSummary> models, bool more) {
    constexpr std::size_t kUsualBytes = 48;
    std::string out = "{";
    out.reserve(models.size() * kUsualBytes);
    AppendList(out, "models", models, [&](const CModelSummary& model) {
        out += '[';
        AppendText(out, model.name);
        out += ",\"";
        out += model_key::ToText(model.key);
        out += "\"]";
    });
    AppendFlag(out, "more", more);
    return out += '}';
}

std::string WriteModel(const CModelRecord& model) {
    std::string out = "{";
    AppendText(out, "key", model_key::ToText(model.key));
    AppendText(out, "group", model.group);
    AppendText(out, "name", model.name);
    AppendText(out, "code", model.code);
    AppendText(out, "note", model.note);
    AppendNumber(out, "created", static_cast<std::uint64_t>(model.createdSeconds));
    AppendName(out, "file");
    out += '{';
    AppendBlob(out, model.file);
    out += '}';
    AppendName(out, "preview");
    if (model.preview) {
        out += '{';
        AppendBlob(out, *model.preview);
        out += '}';
    } else {
        out += "null";
    }
    AppendList(out, "textures", model.textures, [&](const CStoredTexture& texture) {
        out += '{';
        AppendText(out, "name", texture.name);
        AppendBlob(out, texture.blob);
        out += '}';
    });
    return out += '}';
}

std::string WriteFound(std::span<const CFoundModel> models, bool more) {
    std::string out = "{";
    AppendList(out, "models", models, [&](const CFoundModel& model) {
        out += '{';
        AppendText(out, "group", model.group);
        AppendText(out, "name", model.name);
        AppendText(out, "key", model_key::ToText(model.key));
        out += '}';
    });
    AppendFlag(out, "more", more);
    return out += '}';
}

std::string WriteUploaded(const CAddedModel& added) {
    std::string out = "{";
    AppendText(out, "key", model_key::ToText(added.key));
    AppendText(out, "how", added.how == EAdded::Added ? "added" : "same");
    return out += '}';
}

std::string WriteUploadHead(const CUploadHead& head) {
    std::string out = "{";
    AppendText(out, "name", head.name);
    AppendText(out, "group", head.group);
    AppendText(out, "code", head.code);
    AppendText(out, "note", head.note);
    AppendName(out, "file");
    out += '{';
    AppendPart(out, head.file);
    out += '}';
    AppendList(out, "textures", head.textures, [&](const CUploadTexture& texture) {
        out += '{';
        AppendText(out, "name", texture.name);
        AppendPart(out, texture.part);
        out += '}';
    });
    return out += '}';
}

}  // namespace wire_records
