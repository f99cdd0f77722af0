// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "modeldb/bytes/CBlobHash.h"
#include "modeldb/bytes/pack_bytes.h"

/** Bytes that a store has. */
struct CStoredBlob {
    CBlobHash hash;            ///< of the plain bytes
    std::uint64_t size = 0;    ///< of the plain bytes
    std::uint64_t stored = 0;  ///< as they are kept: what is transferred and what ranges count
    EBlobCodec codec = EBlobCodec::Plain;
};

struct CGroupRecord {
    std::int64_t id = 0;  ///< never given to another group again
    std::string name;
    std::uint64_t modelCount = 0;
    std::uint64_t version =
        0;  ///< grows with every change of the group's models: with the id good for an ETag
};

/** A model in a list. */
struct CModelSummary {
    std::string name;
    std::uint32_t key = 0;
};

/** Where a page of a list goes on: behind this entry. */
struct CPagePlace {
    std::string name;
    std::uint32_t key = 0;
};

struct CStoredTexture {
    std::string name;  ///< a stranger's text: no file name
    CStoredBlob blob;
};

/** All of a model but its bytes. */
struct CModelRecord {
    std::uint32_t key = 0;
    std::string group, name, code, note;
    std::int64_t createdSeconds = 0;  ///< since 1970
    CStoredBlob file;
    std::optional<CStoredBlob> preview;
    std::vector<CStoredTexture> textures;
};

/** A model that a search found. */
struct CFoundModel {
    std::string group, name;
    std::uint32_t key = 0;
};

/** What a token allows; several together. The numbers stand in stores. */
enum class EStoreRight : std::uint32_t { Read = 1, Upload = 2, Remove = 4 };
struct CStoreRights {
    std::uint32_t bits = 0;
    [[nodiscard]] bool Has(EStoreRight right) const {
        return (bits & static_cast<std::uint32_t>(right)) != 0;
    }
};

struct CTokenRecord {
    std::string name;
    CStoreRights rights;
    std::int64_t createdSeconds = 0;  ///< since 1970
};

/** How one model of several fared. */
enum class EAdded {
    Added,
    SameIsThere,  ///< the very file is in the store, under its key; nothing was changed
};
struct CAddedModel {
    std::uint32_t key = 0;
    EAdded how = EAdded::Added;
};

/** The longest texts, in bytes; all are valid UTF-8 without a zero byte. */
namespace store_limits {

constexpr std::size_t kGroupName = 200;
constexpr std::size_t kModelName = 400;
constexpr std::size_t kCode = 400;
constexpr std::size_t kNote = 4000;
constexpr std::size_t kTextureName = 400;
constexpr std::size_t kTokenName = 100;
constexpr std::size_t kTextures = 2000;           ///< of one model
constexpr std::uint64_t kBlobBytes = 1ULL << 30;  ///< of one file, unpacked
constexpr std::size_t kPartBytes = 256 << 10;     ///< of what is kept, in one row
constexpr std::size_t kPageModels = 10'000;       ///< of one call

}  // namespace store_limits

/** What a check found. */
struct CCheckReport {
    std::vector<std::string> faults;  ///< the first hundred, each a line of English
    std::uint64_t faultCount = 0;
    std::uint64_t groups = 0, models = 0, blobs = 0, storedBytes = 0;
};
