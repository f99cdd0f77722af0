// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** What a long call of C3DModelsLoadApi tells its caller, on the thread of the call. A transfer is counted in units of 64 KiB,
 * begun ones included, a list in pages. */
class CBlobProgress {
  public:
    /** Comes once, before the first step; total: how many steps a call that succeeds makes, at least 1. */
    virtual void OnProgressStart(std::int64_t total) = 0;
    /** One more unit is done. */
    virtual void OnProgressStep() = 0;
    /** False ends the call. It is asked before each unit, and several times a second while nothing arrives. */
    virtual bool DoContinue() = 0;

  protected:
    ~CBlobProgress() = default;
};
