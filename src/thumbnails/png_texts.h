// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

/** The texts in a PNG picture, pairs of a key and a value. The bytes may be a stranger's. */
namespace png_texts {

using CTexts = std::vector<std::pair<std::string, std::string>>;

/** All texts, plain, packed and international ones, in their order; at most 64 of at most 64 kB each, the others are
 * passed over. Nothing else of the picture is looked at; bytes that are none give no texts. */
[[nodiscard]] CTexts Read(std::span<const std::byte> png);
/** Puts plain texts behind the header of a picture that image_codec::PngBytes made. Keys have 1 to 79 characters. */
void Add(const CTexts& texts, std::vector<std::byte>& png);

}  // namespace png_texts
