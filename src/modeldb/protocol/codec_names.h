// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "modeldb/bytes/pack_bytes.h"

/** How the protocol calls the forms in which bytes are kept. */
namespace codec_names {

constexpr std::string_view kPlain = "plain", kZstd = "zstd";

[[nodiscard]] constexpr std::string_view NameOf(EBlobCodec codec) {
    return codec == EBlobCodec::Zstd ? kZstd : kPlain;
}
[[nodiscard]] constexpr std::optional<EBlobCodec> CodecOf(std::string_view name) {
    if (name == kPlain) return EBlobCodec::Plain;
    return name == kZstd ? std::optional(EBlobCodec::Zstd) : std::nullopt;
}

}  // namespace codec_names
