// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "modeldb/client/CModelLibrary.h"
#include "modeldb/client/CServerCalls.h"
#include "modeldb/client/cache/CModelCache.h"

/** A library on a server. Nothing that it sends is trusted. */
class CServerLibrary final : public CModelLibrary {
  public:
    explicit CServerLibrary(CServerCalls::CServer server) : m_calls(std::move(server)) {}

    [[nodiscard]] CStatus Open() override;
    [[nodiscard]] CResult<bool> Accepts(const std::string& version) override;
    [[nodiscard]] CResult<std::vector<CGroupRecord>> Groups(CProgressUnits& units) override;
    [[nodiscard]] CResult<CGroupRecord> Group(const std::string& name) override;
    [[nodiscard]] CResult<CSmpModelArr> Models(const std::string& group, CProgressUnits& units) override;
    [[nodiscard]] CResult<std::vector<CFoundModel>> Search(const std::string& text,
                                                           CProgressUnits& units) override;
    [[nodiscard]] CResult<bool> Has(std::uint32_t key) override;
    [[nodiscard]] CResult<CModelRecord> Model(std::uint32_t key, CProgressUnits& units) override;
    [[nodiscard]] std::uint64_t TransferredBytes(const CStoredBlob& blob) const override {
        return blob.stored;
    }
    [[nodiscard]] CStatus Read(const CStoredBlob& blob, std::span<std::byte> target,
                               CProgressUnits& units) override;
    [[nodiscard]] CStatus Upload(const CModelUpload& upload, CProgressUnits& units) override;
    void Stop() override { m_calls.Stop(); }

  private:
    [[nodiscard]] CResult<CGroupRecord> GroupOf(const std::string& name, CProgressUnits& units);

    CServerCalls m_calls;
    CModelCache m_cache;
};
