// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/** How an upload's body begins; see CUploadBodyReader. */
namespace upload_form {

constexpr std::array<char, 4> kMark{'O', 'r', 'b', 'U'};
constexpr std::uint8_t kVersion = 1;
constexpr std::size_t kVersionAt = kMark.size(), kLengthAt = kVersionAt + 1, kPrefixBytes = kLengthAt + 4;

}  // namespace upload_form
