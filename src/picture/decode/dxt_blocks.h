// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/** How the pixels of a block are packed, as DirectX names it. */
enum class EDxt { Dxt1, Dxt3, Dxt5 };

/** Bytes of a block of 4 x 4 pixels, packed. */
constexpr std::size_t DxtBlockBytes(EDxt kind) {
    return kind == EDxt::Dxt1 ? 8 : 16;
}
constexpr std::size_t kDxtUnpackedBytes = std::size_t{4} * 4 * 4;

/** The function of the plug-in orbivue_dxt_blocks, which calls libsquish. It is a plug-in because loading
 * libsquish and its OpenMP would add a millisecond to every start, and few models have such pictures.
 *
 * Unpacks `count` blocks that stand one after another into RGBA, 64 bytes a block, rows from the top. Any
 * thread may call, several at a time. */
using FUnpackDxt = void (*)(EDxt kind, const std::byte* blocks, std::size_t count, std::uint8_t* rgba);
constexpr const char* kUnpackDxtName = "OrbivueUnpackDxt";
