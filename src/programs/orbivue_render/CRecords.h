// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/** Splits what comes in portions into records that end with a separator. Empty records are passed over, and
 * so are those longer than any path. */
class CRecords {
  public:
    static constexpr std::size_t kMostBytes = 1 << 16;

    explicit CRecords(char separator) : m_separator(separator) {}

    /** The records that are complete with these bytes. */
    std::vector<std::string> Add(std::string_view bytes) {
        std::vector<std::string> complete;
        for (const char c : bytes) {
            if (c != m_separator) {
                if (m_begun.size() <= kMostBytes) m_begun += c;
            } else if (auto record = Take(); !record.empty()) {
                complete.push_back(std::move(record));
            }
        }
        return complete;
    }
    /** What no separator ended. */
    std::vector<std::string> End() {
        std::string record = Take();
        if (record.empty()) return {};
        return {std::move(record)};
    }

  private:
    std::string Take() {
        std::string record = std::exchange(m_begun, {});
        return record.size() <= kMostBytes ? record : std::string();
    }

    char m_separator;
    std::string m_begun;
};
