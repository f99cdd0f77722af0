// SPDX-License-Identifier: MIT
#include "picture/decode/image_codec.h"

#include <new>
#include <vector>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "picture/decode/decoders.h"

namespace picture_decoders {

std::unique_lock<std::mutex> WaitForTurn(const CPictureClaim& claim) {
    static std::mutex turn;
    constexpr std::uint64_t kSmall = 2ULL << 20;
    return claim.width * claim.height > kSmall ? std::unique_lock(turn) : std::unique_lock<std::mutex>();
}

CError EndsEarly() {
    return {EErrorCode::BadFormat, lng::Mark("the picture's data ends early"), {}};
}
CError HeaderIsDamaged() {
    return {EErrorCode::BadFormat, lng::Mark("the picture's header is damaged"), {}};
}
CError DataIsDamaged() {
    return {EErrorCode::BadFormat, lng::Mark("the picture's data is damaged"), {}};
}
CError ClaimsTooMuch() {
    return {EErrorCode::BadFormat, lng::Mark("the picture claims a size that its data cannot hold"), {}};
}
CError KindIsNotRead() {
    return {EErrorCode::Unsupported, lng::Mark("pictures of this kind are not read"), {}};
}
CError IsTooLarge() {
    return {EErrorCode::TooLarge, lng::Mark("the picture is too large"), {}};
}

}  // namespace picture_decoders

namespace image_codec {
namespace {

using image_probe::EFormat;

picture_decoders::CDecoded Decode(std::span<const std::byte> bytes, const CPictureClaim& claim,
                                  const CDecodeLimits& limits) {
    switch (claim.format) {
        case EFormat::Jpeg:
            return picture_decoders::DecodeJpeg(bytes, claim, limits);
        case EFormat::Png:
            return picture_decoders::DecodePng(bytes, claim, limits);
        case EFormat::Tga:
            return picture_decoders::DecodeTga(bytes, claim, limits);
        case EFormat::Bmp:
            return picture_decoders::DecodeBmp(bytes, claim, limits);
        case EFormat::Gif:
            return picture_decoders::DecodeGif(bytes, claim, limits);
        case EFormat::Tiff:
            return picture_decoders::DecodeTiff(bytes, claim, limits);
        case EFormat::Pcx:
            return picture_decoders::DecodePcx(bytes, claim, limits);
        case EFormat::Dds:
            return picture_decoders::DecodeDds(bytes, claim, limits);
        case EFormat::Sgi:
            return picture_decoders::DecodeSgi(bytes, claim, limits);
        case EFormat::Unknown:
            break;
    }
    return picture_decoders::KindIsNotRead();
}

}  // namespace

CResult<CDecodedImage> DecodeImage(std::span<const std::byte> bytes, std::string_view nameHint,
                                   const CDecodeLimits& limits) {
    const CResult<CPictureClaim> claim = ClaimOf(bytes, nameHint);
    if (!claim) return claim.Error();
    constexpr std::uint64_t kSide = kMaxSide;
    if (claim.Value().width > kSide || claim.Value().height > kSide) return picture_decoders::IsTooLarge();
    try {
        return Decode(bytes, claim.Value(), limits);
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory for the picture"), {}};
    }
}

CResult<CDecodedImage> ReadImageFile(std::string_view path, const CDecodeLimits& limits) {
    const CResult<std::vector<std::byte>> bytes = file_util_ex::ReadWholeFile(path, kMaxFileBytes);
    if (!bytes) return bytes.Error();
    CResult<CDecodedImage> image = DecodeImage(bytes.Value(), path, limits);
    if (image) return image;
    CError error = image.Error();
    error.where = path;
    return error;
}

}  // namespace image_codec
