// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "modeldb/protocol/wire_address.h"

/** What the {{words}} of a form become. Each kind of value is made harmless for where it stands, so that a stranger's text
 * stays text, in one line and in one direction. */
class CFields {
  public:
    /** basePath: see CSite; in front of addresses. */
    explicit CFields(std::string_view basePath) : m_basePath(basePath) {}

    /** A text between tags or in an attribute: control characters and those that change the direction of writing are
     * replaced. */
    CFields& Put(std::string_view word, std::string_view text);
    /** The same, of several lines. */
    CFields& Lines(std::string_view word, std::string_view text);
    CFields& Number(std::string_view word, std::uint64_t number);  ///< "12,345"
    CFields& Size(std::string_view word, std::uint64_t bytes);     ///< "12.3 MB"
    CFields& Address(std::string_view word, const CWireAddress& address);
    /** Markup that other forms gave. */
    CFields& Markup(std::string_view word, std::string markup);

    [[nodiscard]] std::string Fill(std::string_view form) const;

  private:
    std::string_view m_basePath;
    std::map<std::string_view, std::string> m_values;
};

/** "1 model", "12,345 models": the noun gets its s. */
[[nodiscard]] std::string CountText(std::uint64_t count, std::string_view noun);
[[nodiscard]] std::string SizeText(std::uint64_t bytes);
/** "2026-11-22", in UTC. */
[[nodiscard]] std::string DayText(std::int64_t secondsSince1970);
