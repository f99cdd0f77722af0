// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

class CModelList;

/** Finds an entry by the beginning of its name while a person types it. A pause begins a new name; the same letter again
 * and again goes through the names that begin with it. */
class CTypeAhead {
  public:
    using CTime = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::milliseconds kPause{1200};

    /** The entry to go to; nothing when no name begins so. */
    [[nodiscard]] std::optional<std::size_t> Type(wchar_t letter, const CModelList& list, CTime now);
    /** True while a further letter continues a name, so that a blank belongs to it. */
    [[nodiscard]] bool IsTyping(CTime now) const { return !m_typed.empty() && now < m_last + kPause; }
    void Forget() { m_typed.clear(); }

  private:
    std::wstring m_typed;
    CTime m_last{};
};
