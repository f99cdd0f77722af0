// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/** One picture of a batch. */
struct CBatchItem {
    std::size_t number = 0;  ///< from 1
    std::string input;       ///< as it was given
    std::string output;      ///< where its picture goes
    std::string path;        ///< of the input
};

/** Whether a later try may end otherwise. */
enum class EBatchFailure { Lasting, Passing };

/** What is printed for each picture: an object of JSON in one line, with its end. "number" and "input" say which one; then
 * either "output", "triangles", "nodes" (those that show something) and "milliseconds", or "error", a sentence, with
 * "passing": true where a later try may succeed. */
namespace batch_lines {

[[nodiscard]] std::string Success(const CBatchItem& item, std::uint64_t triangles, std::uint64_t nodes,
                                  double ms);
/** "output" and "milliseconds" alone, for a script's icon. */
[[nodiscard]] std::string IconSuccess(const CBatchItem& item, double ms);
[[nodiscard]] std::string Failure(const CBatchItem& item, const std::string& why, EBatchFailure kind);

}  // namespace batch_lines
