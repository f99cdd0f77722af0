// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "engine/test_scenes.h"
#include "export/gltf/parts/CGltfTransform.h"
#include "export/gltf/parts/key_reduction.h"
#include "export/gltf/parts/picture_bytes.h"
#include "picture/decode/image_codec.h"
#include "picture/image_writer.h"
#include "row_name.h"

namespace {

struct CMatrixCase {
    const char* name;
    CMatrix4d matrix;
    std::size_t nodes;
};
class TransformsOfTest : public testing::TestWithParam<CMatrixCase> {};

CMatrix4d Turned(double angle) {
    return CMatrix4d::Rotation(angle, {1, 2, -3});
}
CMatrix4d Sheared() {
    return CMatrix4d::Scale({1, 3, 0.5}) * Turned(40) * CMatrix4d::Scale({2, 1, 1}) * Turned(-70);
}

TEST_P(TransformsOfTest, MultiplyToTheMatrix) {
    const std::vector<CGltfTransform> transforms = TransformsOf(GetParam().matrix);
    EXPECT_EQ(transforms.size(), GetParam().nodes);
    CMatrix4d product;
    double largest = 0;
    for (const double value : GetParam().matrix.m) largest = std::max(largest, std::abs(value));
    for (const CGltfTransform& transform : transforms) {
        EXPECT_TRUE(transform.IsFinite());
        double length = 0;
        for (const float part : transform.rotation)
            length += static_cast<double>(part) * static_cast<double>(part);
        EXPECT_NEAR(length, 1, 1e-5);
        product = product * transform.Matrix();
    }
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_NEAR(product.m[i], GetParam().matrix.m[i], largest * 2e-6) << i;
}

INSTANTIATE_TEST_SUITE_P(
    Matrices, TransformsOfTest,
    testing::Values(CMatrixCase{"Turned", CMatrix4d::Translation({1, 2, 3}) * Turned(200), 1},
                    CMatrixCase{"HalfTurned", CMatrix4d::Rotation(180, {0, 1, 0}), 1},
                    CMatrixCase{"Mirrored", Turned(20) * CMatrix4d::Scale({2, -3, 4}), 1},
                    CMatrixCase{"Sheared", CMatrix4d::Translation({9, 8, 7}) * Sheared(), 2},
                    CMatrixCase{"MirroredAndSheared", Sheared() * CMatrix4d::Scale({-1, 1, 1}), 2},
                    CMatrixCase{"Flattened", Turned(33) * CMatrix4d::Scale({2, 0, 1}), 1},
                    CMatrixCase{"FlattenedAndSheared", CMatrix4d::Scale({1, 0, 1}) * Sheared(), 2},
                    CMatrixCase{"ALine", Turned(33) * CMatrix4d::Scale({0, 0, 5}), 1},
                    CMatrixCase{"APoint", CMatrix4d::Scale({0, 0, 0}), 1},
                    CMatrixCase{"Huge", CMatrix4d::Scale({1e30, 1e30, 1e30}) * Sheared(), 2},
                    CMatrixCase{"Tiny", CMatrix4d::Scale({1e-25, 1e-25, 1e-25}) * Sheared(), 2}),
    kRowName);

using CTurn = std::array<double, 4>;

std::vector<float> Times(std::size_t count) {
    std::vector<float> times;
    for (std::size_t i = 0; i < count; ++i) times.push_back(static_cast<float>(i) / 30);
    return times;
}

TEST(KeyReductionTest, TurnsEvenlyByFewKeysThatReadersTakeTheShortWay) {
    std::vector<float> turns;
    for (int i = 0; i <= 200; ++i) {
        const double half = i * 0.05;  // over three whole turns
        const double sign = i % 7 == 0 ? -1 : 1;
        for (const double part : {0.0, std::sin(half) * 0.6, std::sin(half) * 0.8, std::cos(half)})
            turns.push_back(static_cast<float>(part * sign));
    }
    const std::vector<float> times = Times(201);
    const std::vector<std::uint32_t> kept = key_reduction::KeptTurns(times, turns, 1e-4F);
    EXPECT_LE(kept.size(), 10U);
    for (std::size_t k = 1; k < kept.size(); ++k) EXPECT_LT((kept[k] - kept[k - 1]) * 0.1, std::numbers::pi);
}

TEST(KeyReductionTest, OneKeyIsEnoughForWhatRests) {
    EXPECT_EQ(key_reduction::KeptValues(Times(50), std::vector<float>(150, 2.5F), 3, 0).size(), 1U);
}

std::string TextOf(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}
std::vector<std::byte> BytesOf(const std::string& text) {
    const auto* bytes = reinterpret_cast<const std::byte*>(text.data());
    return {bytes, bytes + text.size()};
}
std::string Jpeg() {
    return TextOf(image_codec::JpegBytes(test_scenes::QuarterImage()).Value());
}
std::string Png() {
    return TextOf(image_codec::PngBytes(test_scenes::QuarterImage(), true).Value());
}
std::string Segment(char marker, const std::string& data) {
    return std::string("\xFF") + marker + '\0' + static_cast<char>(data.size() + 2) + data;
}
std::string Chunk(const std::string& name, const std::string& data) {
    return std::string("\0\0\0", 3) + static_cast<char>(data.size()) + name + data + "sums";
}

struct CPictureCase {
    const char* name;
    std::string file;
    bool isTaken = true;
};
class BarePictureTest : public testing::TestWithParam<CPictureCase> {};

TEST_P(BarePictureTest, KeepsThePixelsAndNothingElse) {
    const CPictureBytes bare = BarePicture(BytesOf(GetParam().file));
    ASSERT_EQ(bare.bytes.empty(), !GetParam().isTaken);
    if (!GetParam().isTaken) return;
    EXPECT_EQ(TextOf(bare.bytes).find("secret"), std::string::npos);
    EXPECT_EQ(bare.width, 64);
    const auto before = image_codec::DecodeImage(BytesOf(GetParam().file), {}),
               after = image_codec::DecodeImage(bare.bytes, {});
    ASSERT_TRUE(before && after);
    EXPECT_EQ(before.Value().image.rgba, after.Value().image.rgba);
}

std::string With(std::string file, std::size_t at, const std::string& part) {
    return file.insert(at, part);
}
std::string Changed(std::string file, const std::string& from, const std::string& to) {
    return file.replace(file.find(from), from.size(), to);
}

INSTANTIATE_TEST_SUITE_P(
    Files, BarePictureTest,
    testing::Values(CPictureCase{"Jpeg", Jpeg()},
                    CPictureCase{"JpegWithPlace", With(Jpeg(), 2, Segment('\xE1', "Exif secret"))},
                    CPictureCase{"JpegWithThumbnail",
                                 With(Jpeg(), 20, Segment('\xE0', std::string("JFXX\0\x10 secret", 13)))},
                    CPictureCase{"JpegWithProfile", With(Jpeg(), 2, Segment('\xE2', "ICC secret"))},
                    CPictureCase{"JpegWithComment", With(Jpeg(), 2, Segment('\xFE', "secret"))},
                    CPictureCase{"JpegWithMoreBehind", Jpeg() + "secret"},
                    CPictureCase{"JpegCutOff", Jpeg().substr(0, Jpeg().size() - 20), false},
                    CPictureCase{"JpegOfAnUnknownKind", Changed(Jpeg(), "\xFF\xC0", "\xFF\xC9"), false},
                    CPictureCase{"Png", Png()},
                    CPictureCase{"PngWithText", With(Png(), 33, Chunk("tEXt", "secret"))},
                    CPictureCase{"PngWithProfile", With(Png(), 33, Chunk("iCCP", "secret"))},
                    CPictureCase{"PngWithUnknownCriticalPart", With(Png(), 33, Chunk("ABCD", "x")), false},
                    CPictureCase{"PngCutOff", Png().substr(0, Png().size() - 5), false},
                    CPictureCase{"Bitmap", "BM" + std::string(60, 'x'), false}),
    kRowName);

}  // namespace
