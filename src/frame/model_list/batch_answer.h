// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/** What the drawing program says of one picture. */
struct CBatchAnswer {
    std::size_t number = 0;  ///< of the picture, from 1
    std::string problem;     ///< a line of English; empty when there is a picture
    bool isPassing = false;  ///< a later try may succeed
};

/** Reads a line of the drawing program's batch; nothing for what is none. The line may have any content. */
[[nodiscard]] std::optional<CBatchAnswer> ReadBatchAnswer(std::string_view line);
