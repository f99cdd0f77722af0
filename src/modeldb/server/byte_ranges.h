// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "modeldb/server/cache/CHotFolder.h"
#include "modeldb/server/http/CHttpAnswer.h"
#include "modeldb/server/http/CHttpRequest.h"

/** Parts of bytes, as clients ask for them. */
namespace byte_ranges {

struct CRange {
    enum class EKind {
        Whole,    ///< no range is asked for, several are, or none that this server knows
        Part,     ///< from `first`, `length` bytes, which are there
        Outside,  ///< nothing of it is there
    };
    EKind kind = EKind::Whole;
    std::uint64_t first = 0, length = 0;
};
/** What a header "Range" asks for of so many bytes. */
[[nodiscard]] CRange Read(std::string_view header, std::uint64_t size);

/** The answer to a GET or HEAD of bytes that never change: all of them, a part (Range, If-Range), or that the client has them
 * (If-None-Match). tag: their strong ETag. isPrivate: they are for no shared cache. */
[[nodiscard]] CHttpAnswer Answer(const CHttpRequest& request, const CHotFile& file, std::string_view tag,
                                 bool isPrivate);

}  // namespace byte_ranges
