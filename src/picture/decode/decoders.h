// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <mutex>
#include <span>
#include <string>

#include "base/CResult.h"
#include "picture/decode/image_codec.h"

/** A decoder for each format, for DecodeImage alone. What they share: the claim is that of the bytes, its sides are
 * 1 to kMaxSide. A decoder first makes sure that the bytes can hold what they claim, then takes memory. Errors are
 * those of DecodeImage. */
namespace picture_decoders {

using CBytes = std::span<const std::byte>;
using CDecoded = CResult<image_codec::CDecodedImage>;
using image_codec::CDecodeLimits;
using image_codec::CPictureClaim;

/** 1 to 32 bits a pixel, plain, RLE4 or RLE8, with bit masks, from the top or the bottom, headers of OS/2 too. The
 * fourth byte of 32 bits is alpha unless it is 0 everywhere. Source: Microsoft, "Bitmap Storage". */
[[nodiscard]] CDecoded DecodeBmp(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits);
/** Source: Truevision, "TGA File Format Specification 2.0". Alpha as in a BMP. */
[[nodiscard]] CDecoded DecodeTga(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits);
/** Source: ZSoft, "PCX Technical Reference Manual". */
[[nodiscard]] CDecoded DecodePcx(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits);
/** Source: Silicon Graphics, "The SGI Image File Format 1.00". */
[[nodiscard]] CDecoded DecodeSgi(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits);
/** The first frame on the file's screen, which is transparent outside of it. Source: CompuServe, "GIF89a". */
[[nodiscard]] CDecoded DecodeGif(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits);
/** The first face or slice at full size: DXT1 (whose fourth colour may be transparent), DXT3, DXT5, or plain in
 * 8 to 32 bits a pixel as grey or by bit masks. Source: Microsoft, "Programming Guide for DDS" (Direct3D). */
[[nodiscard]] CDecoded DecodeDds(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits);
[[nodiscard]] CDecoded DecodePng(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits);
[[nodiscard]] CDecoded DecodeJpeg(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits);
/** Classic TIFF, its first directory, with compressions that libtiff unpacks by itself or by zlib. */
[[nodiscard]] CDecoded DecodeTiff(CBytes bytes, const CPictureClaim& claim, const CDecodeLimits& limits);

/** Holds a turn while a decoder keeps more in memory than rows, as long as what is returned lives: of large pictures only one
 * at a time does, however many threads decode. Small ones do not wait. */
[[nodiscard]] std::unique_lock<std::mutex> WaitForTurn(const CPictureClaim& claim);

// What decoders say of a file that they refuse.
[[nodiscard]] CError EndsEarly();
[[nodiscard]] CError HeaderIsDamaged();
[[nodiscard]] CError DataIsDamaged();
[[nodiscard]] CError ClaimsTooMuch();  ///< more pixels than its bytes can hold
[[nodiscard]] CError KindIsNotRead();
[[nodiscard]] CError IsTooLarge();

}  // namespace picture_decoders
