// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/CResult.h"
#include "modeldb/bytes/byte_stream.h"
#include "modeldb/records/store_records.h"

class CModelStore;

/** Bytes on their way into a store: packed, with their hash. Small ones are held here, large ones lie in the store already,
 * where nobody sees them until a model has them. A value that is dropped leaves the latter there; the store
 * deletes them after some hours, or at once by CModelStore::Discard. */
struct CNewBlob {
    CStoredBlob facts;
    std::uint32_t crc = 0;                      ///< CalcCrc of the plain bytes
    std::vector<std::vector<std::byte>> parts;  ///< what is held here
    std::int64_t stagedId = 0;                  ///< of what lies in the store; 0: none
};

/** Takes bytes in pieces and makes a CNewBlob of them. More than kHeldBytes, as packed, go into the store in short
 * transactions. Without a store all is held in memory, and the writer may be used on any thread; otherwise it is
 * of the store's thread. */
class CBlobWriter final : public CByteSink {
  public:
    static constexpr std::size_t kHeldBytes = 4 << 20;

    /** store may be null; else it must outlive this object. */
    explicit CBlobWriter(CModelStore* store);
    CBlobWriter(CBlobWriter&&) noexcept;
    /** Deletes what was written and not finished. */
    ~CBlobWriter() override;

    /** TooLarge: over store_limits::kBlobBytes. After a failure only the destructor is left to call. */
    [[nodiscard]] CStatus Take(std::span<const std::byte> piece) override;
    /** Call it once, after the last piece. */
    [[nodiscard]] CResult<CNewBlob> Finish();

    /** All of it in one call. */
    [[nodiscard]] static CResult<CNewBlob> Write(CModelStore* store, std::span<const std::byte> bytes);
    [[nodiscard]] static CResult<CNewBlob> Write(CModelStore* store, CByteSource& source);

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
