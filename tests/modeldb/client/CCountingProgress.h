// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "modeldb/client/CBlobProgress.h"

/** Counts what a call tells, and cancels it after some steps. */
class CCountingProgress final : public CBlobProgress {
  public:
    void OnProgressStart(std::int64_t units) override { total = units; }
    void OnProgressStep() override { ++steps; }
    bool DoContinue() override { return steps < most; }
    std::int64_t total = -1, steps = 0, most = 1 << 30;
};
