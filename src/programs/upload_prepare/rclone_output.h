// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/** What rclone prints, read. It is not trusted: anything may stand there, and nothing of it is shown that could be a
 * secret of its configuration. */
namespace rclone_output {

/** The names of the remotes of one type in the answer of "rclone listremotes --long", a line "NAME: TYPE" each. What is
 * no name by rclone's rules (letters, digits, "_-.+@" and blanks, none of "- " first) is left out. */
[[nodiscard]] std::vector<std::string> RemotesOf(std::string_view text, std::string_view type);

struct CProgress {
    std::uint64_t bytes = 0, totalBytes = 0;
    std::uint64_t files = 0, totalFiles = 0;
};
/** One line of "rclone copy --use-json-log". */
struct CLine {
    std::optional<CProgress> progress;
    std::string error;  ///< empty: the line tells of none
};
/** Nothing but the text of the line as an error where it is no JSON, as rclone gives up in plain text. */
[[nodiscard]] CLine ReadLine(std::string_view line);

/** A line of plain text as people may see it: without the date before it, without control characters, cut to a length
 * that a window can show, and with "..." in the place of long words that could be keys. */
[[nodiscard]] std::string ShownLine(std::string_view line);

/** The address on the first line of "rclone link"; empty unless it is one of "https://". */
[[nodiscard]] std::string AddressIn(std::string_view text);
/** The address, in Google Drive, of the folder with this name in the answer of "rclone lsjson"; empty where it has none. */
[[nodiscard]] std::string FolderAddressIn(std::string_view json, std::string_view folder);

}  // namespace rclone_output
