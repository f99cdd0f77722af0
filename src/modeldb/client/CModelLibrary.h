// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "model/textures/CTextureLocator.h"
#include "modeldb/client/CProgressUnits.h"
#include "modeldb/client/CSmpModel.h"
#include "modeldb/records/store_records.h"

/** A model that is to be added. All of it is the caller's. */
struct CModelUpload {
    const std::string& name;
    const std::string& group;
    std::span<const std::byte> file;
    const CImageDataTextVec& textures;
};

/** A library of models, wherever it is. Several threads may call at once. `where` of an error tells who failed: a server's
 * name, or a path. Cancelled: units or Stop ended the call. */
class CModelLibrary {
  public:
    virtual ~CModelLibrary() = default;

    /** Makes sure that it is there and answers. May be called again. */
    [[nodiscard]] virtual CStatus Open() = 0;
    /** It speaks this version of the protocol. */
    [[nodiscard]] virtual CResult<bool> Accepts(const std::string& version) = 0;

    [[nodiscard]] virtual CResult<std::vector<CGroupRecord>> Groups(CProgressUnits& units) = 0;
    /** NotFound. */
    [[nodiscard]] virtual CResult<CGroupRecord> Group(const std::string& name) = 0;
    /** All models of a group; NotFound. Units: pages. */
    [[nodiscard]] virtual CResult<CSmpModelArr> Models(const std::string& group, CProgressUnits& units) = 0;
    [[nodiscard]] virtual CResult<std::vector<CFoundModel>> Search(const std::string& text,
                                                                   CProgressUnits& units) = 0;

    [[nodiscard]] virtual CResult<bool> Has(std::uint32_t key) = 0;
    /** NotFound. Units: only asked whether to go on. */
    [[nodiscard]] virtual CResult<CModelRecord> Model(std::uint32_t key, CProgressUnits& units) = 0;
    /** How many bytes are transferred for these. */
    [[nodiscard]] virtual std::uint64_t TransferredBytes(const CStoredBlob& blob) const = 0;
    /** Fills target, which has the blob's size, with its bytes, checked by their hash. Units: a part of TransferredBytes. */
    [[nodiscard]] virtual CStatus Read(const CStoredBlob& blob, std::span<std::byte> target,
                                       CProgressUnits& units) = 0;
    /** Succeeds also where the library has this very file; Exists: another one has its key. */
    [[nodiscard]] virtual CStatus Upload(const CModelUpload& upload, CProgressUnits& units) = 0;

    /** Ends all running calls, and all later ones. */
    virtual void Stop() = 0;
};
