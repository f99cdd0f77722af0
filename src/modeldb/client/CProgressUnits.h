// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "modeldb/client/CBlobProgress.h"

/** Turns what a call transfers into the steps of its progress: so many as were announced when the call succeeds, never
 * more, and none twice, whatever is sent again. */
class CProgressUnits {
  public:
    static constexpr std::uint64_t kUnitBytes = 64 << 10;
    /** Further units are neither announced nor told: their number may be a server's, and each may cost its watcher an event. */
    static constexpr std::uint64_t kMostUnits = 1 << 16;

    /** progress may be null; else it must outlive this object. */
    explicit CProgressUnits(CBlobProgress* progress) : m_progress(progress) {}

    /** Somebody watches, so the call may last. */
    [[nodiscard]] bool IsWatched() const { return m_progress != nullptr; }
    /** Announces units; call one of these two once, before the first step. */
    void Start(std::uint64_t units);
    void StartBytes(std::uint64_t bytes);
    /** So many units, or bytes of the part under way, are done. False: the call is cancelled. */
    [[nodiscard]] bool StepTo(std::uint64_t units);
    [[nodiscard]] bool BytesTo(std::uint64_t bytes) { return StepTo((m_partsBytes + bytes) / kUnitBytes); }
    /** A part of so many bytes is done; the next one begins. */
    void EndPart(std::uint64_t bytes);
    /** All is done. */
    void Finish();
    [[nodiscard]] bool DoContinue() const { return m_progress == nullptr || m_progress->DoContinue(); }

  private:
    CBlobProgress* m_progress;
    std::uint64_t m_total = 0, m_done = 0, m_partsBytes = 0;
};
