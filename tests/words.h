// SPDX-License-Identifier: MIT
#pragma once

#include <sstream>
#include <string>
#include <vector>

/** A line of a table as a command line's arguments, parted at blanks; "''" is an empty one. */
inline std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> words;
    std::istringstream all(line);
    for (std::string word; all >> word;) words.push_back(word == "''" ? "" : word);
    return words;
}
