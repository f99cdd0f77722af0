// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "modeldb/client/CModelLibrary.h"
#include "modeldb/store/CModelStore.h"

/** The user's own library: a store in a file, used by this process itself. Other processes may use it at the same time. */
class CEmbeddedLibrary final : public CModelLibrary {
  public:
    /** path: of the store, which Open makes, with the samples that lie in a folder, when it is not there. */
    CEmbeddedLibrary(std::string path, std::string samplesFolder)
        : m_path(std::move(path)), m_samplesFolder(std::move(samplesFolder)) {}

    [[nodiscard]] CStatus Open() override;
    [[nodiscard]] CResult<bool> Accepts(const std::string& version) override;
    [[nodiscard]] CResult<std::vector<CGroupRecord>> Groups(CProgressUnits& units) override;
    [[nodiscard]] CResult<CGroupRecord> Group(const std::string& name) override;
    [[nodiscard]] CResult<CSmpModelArr> Models(const std::string& group, CProgressUnits& units) override;
    [[nodiscard]] CResult<std::vector<CFoundModel>> Search(const std::string& text,
                                                           CProgressUnits& units) override;
    [[nodiscard]] CResult<bool> Has(std::uint32_t key) override;
    [[nodiscard]] CResult<CModelRecord> Model(std::uint32_t key, CProgressUnits& units) override;
    [[nodiscard]] std::uint64_t TransferredBytes(const CStoredBlob& blob) const override { return blob.size; }
    [[nodiscard]] CStatus Read(const CStoredBlob& blob, std::span<std::byte> target,
                               CProgressUnits& units) override;
    [[nodiscard]] CStatus Upload(const CModelUpload& upload, CProgressUnits& units) override;
    void Stop() override { m_isStopped = true; }

  private:
    using CStorePtr = std::unique_ptr<CModelStore>;
    /** Runs a call with a connection that no other thread has. */
    template <class TCall>
    auto With(TCall call) -> decltype(call(std::declval<CModelStore&>()));
    [[nodiscard]] CResult<CStorePtr> Take();

    std::string m_path, m_samplesFolder;
    std::atomic<bool> m_isStopped = false;
    std::mutex m_mutex;
    std::vector<CStorePtr> m_resting;  ///< guarded
};
