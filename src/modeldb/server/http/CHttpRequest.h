// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

enum class EHttpMethod { Get, Head, Post, Delete, Other };

/** The head of one request, checked: nothing in it refers to the connection, so it may be moved to any thread and kept.
 * Names and values of header fields are bytes as sent, without blanks around them and without control characters; they
 * need not be UTF-8. */
struct CHttpRequest {
    EHttpMethod method = EHttpMethod::Get;
    /** Begins with one '/', printable ASCII without blanks and '#', at most 4 KiB; percent-encoded as it was sent. */
    std::string target;
    /** The client's numeric address. Behind a trusted proxy the one that it names; never empty. */
    std::string peer;
    std::uint64_t bodyBytes = 0;  ///< what Content-Length says; 0 without one
    std::uint64_t id = 0;         ///< counts up in one server, from 1; the log line has it, too

    /** The target before its first '?', raw. */
    [[nodiscard]] std::string_view Path() const;
    /** The target behind its first '?', raw; empty without one. */
    [[nodiscard]] std::string_view Query() const;
    /** The value of the first field of that name, in any case of letters; empty where there is none. A request with two
     * fields of a name that means one thing (Host, Authorization, Range ...) does not come this far. The text lives
     * as long as this object stays where it is and gets no further header. */
    [[nodiscard]] std::string_view Header(std::string_view name) const;
    [[nodiscard]] bool HasHeader(std::string_view name) const;
    [[nodiscard]] std::size_t CountHeader(std::string_view name) const;

    /** Adds a field behind those that are there. For the parser, and for tests of what answers requests. */
    void AddHeader(std::string_view name, std::string_view value);

  private:
    struct CField {
        std::uint32_t at, nameBytes,
            valueBytes;  ///< the name at that place of m_fieldText, the value right behind it
    };
    [[nodiscard]] bool IsNamed(const CField& field, std::string_view name) const;
    [[nodiscard]] const CField* Find(std::string_view name) const;

    std::string m_fieldText;
    std::vector<CField> m_fields;
};
