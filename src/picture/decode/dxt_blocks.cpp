// SPDX-License-Identifier: MIT
#include "picture/decode/dxt_blocks.h"

#include <squish.h>

extern "C" void OrbivueUnpackDxt(EDxt kind, const std::byte* blocks, std::size_t count, std::uint8_t* rgba);

// Block by block, as the function for whole pictures starts OpenMP's threads beside those that decode.
extern "C" void OrbivueUnpackDxt(EDxt kind, const std::byte* blocks, std::size_t count, std::uint8_t* rgba) {
    const int packing = kind == EDxt::Dxt1   ? squish::kDxt1
                        : kind == EDxt::Dxt3 ? squish::kDxt3
                                             : squish::kDxt5;
    for (std::size_t i = 0; i < count; ++i)
        squish::Decompress(rgba + i * kDxtUnpackedBytes, blocks + i * DxtBlockBytes(kind), packing);
}
