// SPDX-License-Identifier: MIT
#include "frame/model_list/batch_answer.h"

#include <nlohmann/json.hpp>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"

std::optional<CBatchAnswer> ReadBatchAnswer(std::string_view line) {
    constexpr std::size_t kMostBytes = 500;
    const nlohmann::json object = nlohmann::json::parse(line, nullptr, false);
    if (!object.is_object()) return std::nullopt;
    const auto number = object.find("number"), error = object.find("error"),
               triangles = object.find("triangles");
    const auto passing = object.find("passing");
    if (number == object.end() || !number->is_number_unsigned()) return std::nullopt;
    CBatchAnswer answer{number->get<std::size_t>(), {}, passing != object.end() && *passing == true};
    if (error != object.end() && error->is_string()) {
        const std::string text = utf8_text::Printable(error->get<std::string>(), ' ');
        answer.problem = utf8_text::Cut(text, kMostBytes);
    } else if (!object.contains("output") || (triangles != object.end() && *triangles == 0)) {
        answer.problem = lng::Mark("There is nothing to see in this file.");
    }
    return answer;
}
