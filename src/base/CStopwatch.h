// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

/** Measures the time since it was made, by a clock that nobody can set. */
class CStopwatch {
  public:
    /** Milliseconds. */
    [[nodiscard]] double Ms() const {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - m_start).count();
    }

  private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};
