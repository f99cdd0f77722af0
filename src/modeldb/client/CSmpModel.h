// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/** A model of a group. */
struct CSmpModel {
    std::string name;  ///< UTF-8, not empty, of at most 400 bytes; anything may be in it but a zero byte
    std::uint32_t id = 0;
};
using CSmpModelArr = std::vector<CSmpModel>;
