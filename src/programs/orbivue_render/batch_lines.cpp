// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/batch_lines.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "base/text/utf8_text.h"

namespace batch_lines {
namespace {

using nlohmann::ordered_json;

/** Names are bytes; those that are not UTF-8 become the replacement character. */
std::string Line(const ordered_json& object) {
    return object.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string Success(const CBatchItem& item, std::uint64_t triangles, std::uint64_t nodes, double ms) {
    return Line({{"number", item.number},
                 {"input", item.input},
                 {"output", item.output},
                 {"triangles", triangles},
                 {"nodes", nodes},
                 {"milliseconds", std::round(ms * 100) / 100}});
}

std::string IconSuccess(const CBatchItem& item, double ms) {
    return Line({{"number", item.number},
                 {"input", item.input},
                 {"output", item.output},
                 {"milliseconds", std::round(ms * 100) / 100}});
}

std::string Failure(const CBatchItem& item, const std::string& why, EBatchFailure kind) {
    ordered_json object{
        {"number", item.number}, {"input", item.input}, {"error", utf8_text::Printable(why, ' ')}};
    if (kind == EBatchFailure::Passing) object["passing"] = true;
    return Line(object);
}

}  // namespace batch_lines
