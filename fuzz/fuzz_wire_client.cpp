// SPDX-License-Identifier: MIT
// What a server of models answers: any bytes are read or refused; what is read keeps to the limits and comes back the same
// after it is written. The first byte chooses the kind of the answer.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/text/utf8_text.h"
#include "modeldb/protocol/wire_errors.h"
#include "modeldb/protocol/wire_limits.h"
#include "modeldb/protocol/wire_records.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void CheckName(const std::string& name, std::size_t mostBytes) {
    Require(!name.empty() && name.size() <= mostBytes && name.find('\0') == std::string::npos);
    Require(utf8_text::Decode(name).has_value());
}

/** Reads, checks, writes and reads again. */
template <class Read, class Write, class Check>
void Try(std::string_view json, Read read, Write write, Check check) {
    const auto first = read(json);
    if (!first) return;
    check(first.Value());
    const std::string written = write(first.Value());
    const auto second = read(written);
    Require(second.HasValue() && write(second.Value()) == written);
}

void CheckModel(const CModelRecord& model) {
    CheckName(model.name, store_limits::kModelName);
    CheckName(model.group, store_limits::kGroupName);
    Require(model.createdSeconds >= 0 && model.textures.size() <= store_limits::kTextures);
    Require(model.file.size <= store_limits::kBlobBytes && model.file.stored <= store_limits::kBlobBytes);
    Require(!model.preview || model.preview->size <= wire_limits::kPreviewBytes);
    for (const CStoredTexture& texture : model.textures) CheckName(texture.name, store_limits::kTextureName);
}

void CheckPage(const CModelsPage& page) {
    Require(!page.more || !page.models.empty());
    for (const CModelSummary& model : page.models) CheckName(model.name, store_limits::kModelName);
}

void CheckError(std::string_view body) {
    for (const CWireErrorKind& kind : wire_errors::Kinds()) {
        const CError error = wire_errors::Read(kind.status, body);
        CheckName(error.message, wire_limits::kMessage);
        Require(error.message.find('\n') == std::string::npos);
        const std::string written = wire_errors::Write(kind.status, error.message);
        Require(wire_errors::Read(kind.status, written).message == error.message);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view json(reinterpret_cast<const char*>(data) + 1, size - 1);
    constexpr auto kNoCheck = [](const auto&) {};
    using namespace wire_records;
    switch (data[0] % 8) {
        case 0:
            Try(json, ReadVersion, WriteVersion, kNoCheck);
            break;
        case 1:
            Try(
                json, ReadGroups, [](const auto& groups) { return WriteGroups(groups); }, kNoCheck);
            break;
        case 2:
            Try(json, ReadGroup, WriteGroup, [](const CGroupRecord& group) { Require(group.id > 0); });
            break;
        case 3:
            Try(
                json, ReadModels, [](const auto& page) { return WriteModels(page.models, page.more); },
                CheckPage);
            break;
        case 4:
            Try(json, ReadModel, WriteModel, CheckModel);
            break;
        case 5:
            Try(
                json, ReadFound, [](const auto& page) { return WriteFound(page.models, page.more); },
                kNoCheck);
            break;
        case 6:
            Try(json, ReadUploaded, WriteUploaded, kNoCheck);
            break;
        default:
            CheckError(json);
            break;
    }
    return 0;
}
