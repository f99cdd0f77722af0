// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "modeldb/bytes/CBlobHash.h"
#include "modeldb/records/store_records.h"

/** What a server says of itself. */
struct CVersionAnswer {
    bool accepted = false;
    std::vector<std::string> protocols;
    std::string server;             ///< program and version, for people
    bool isPrivate = false;         ///< nothing is answered without a token, but this
    std::uint64_t uploadBytes = 0;  ///< the longest body of an upload
    std::uint64_t textures = 0;     ///< the most of one model
};

/** A page of a group's models. */
struct CModelsPage {
    std::vector<CModelSummary> models;
    bool more = false;  ///< the next page begins behind the last of these
};
struct CFoundPage {
    std::vector<CFoundModel> models;
    bool more = false;  ///< there are more than were asked for
};

/** One of an upload's byte sequences. */
struct CUploadPart {
    std::uint64_t size = 0;
    CBlobHash hash;
};
struct CUploadTexture {
    std::string name;
    CUploadPart part;
};
/** What comes before the bytes of an upload. */
struct CUploadHead {
    std::string name, group;
    std::string code, note;  ///< may be empty
    CUploadPart file;
    std::vector<CUploadTexture> textures;
};

/** The JSON bodies of the protocol. Texts that are written must be valid UTF-8, as those of a store are. Nothing that is
 * read is trusted: length, depth and count are bounded before anything is built, each text, number and hash is
 * checked, and a fault of any is BadFormat (TooLarge for a limit) with one sentence that quotes nothing of the body. Members that
 * nobody knows are ignored. A value that is read holds the promises of its record: names are neither empty nor longer than
 * store_limits says, numbers of groups are above 0. */
namespace wire_records {

[[nodiscard]] std::string WriteVersion(const CVersionAnswer& answer);
[[nodiscard]] CResult<CVersionAnswer> ReadVersion(std::string_view json);

[[nodiscard]] std::string WriteGroups(std::span<const CGroupRecord> groups);
[[nodiscard]] CResult<std::vector<CGroupRecord>> ReadGroups(std::string_view json);

[[nodiscard]] std::string WriteGroup(const CGroupRecord& group);
[[nodiscard]] CResult<CGroupRecord> ReadGroup(std::string_view json);

[[nodiscard]] std::string WriteModels(std::span<const CModelSummary> models, bool more);
[[nodiscard]] CResult<CModelsPage> ReadModels(std::string_view json);

[[nodiscard]] std::string WriteModel(const CModelRecord& model);
[[nodiscard]] CResult<CModelRecord> ReadModel(std::string_view json);

[[nodiscard]] std::string WriteFound(std::span<const CFoundModel> models, bool more);
[[nodiscard]] CResult<CFoundPage> ReadFound(std::string_view json);

/** What became of an upload: status 201 for Added, 200 for SameIsThere. */
[[nodiscard]] std::string WriteUploaded(const CAddedModel& added);
[[nodiscard]] CResult<CAddedModel> ReadUploaded(std::string_view json);

[[nodiscard]] std::string WriteUploadHead(const CUploadHead& head);
/** mostTextures: what the server allows. */
[[nodiscard]] CResult<CUploadHead> ReadUploadHead(std::string_view json, std::size_t mostTextures);

}  // namespace wire_records
