// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "files/CTestFolder.h"
#include "picture/decode/image_codec.h"
#include "picture/image_writer.h"

namespace {

// Smooth, with noise in the low bits, and transparency.
CImage TestImage(int width, int height) {
    CImage image{width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int values[] = {x * 255 / width, y * 255 / height, (x + y) & 127, x ^ y};
            for (const int value : values) image.rgba.push_back(static_cast<std::uint8_t>(value));
        }
    }
    return image;
}

TEST(ImageWriterTest, PngKeepsEveryPixel) {
    const CTestFolder folder;
    const CImage image = TestImage(301, 77);
    ASSERT_TRUE(image_codec::WritePng(folder / "a.png", image, true));
    EXPECT_EQ(image_codec::ReadImageFile(folder / "a.png").Value().image.rgba, image.rgba);
    ASSERT_TRUE(image_codec::WritePng(folder / "b.png", image, false));
    CImage opaque = image;
    for (std::size_t i = 3; i < opaque.rgba.size(); i += 4) opaque.rgba[i] = 255;
    EXPECT_EQ(image_codec::ReadImageFile(folder / "b.png").Value().image.rgba, opaque.rgba);
}

TEST(ImageWriterTest, JpegIsCloseAndACutOneIsStillShown) {
    const CTestFolder folder;
    CImage image = TestImage(320, 200);
    for (std::size_t i = 2; i < image.rgba.size(); i += i % 4 == 2 ? 1 : 3)
        image.rgba[i] = i % 4 == 2 ? 90 : 255;
    ASSERT_TRUE(image_codec::WriteJpeg(folder / "a.jpg", image, 95));
    const auto read = image_codec::ReadImageFile(folder / "a.jpg");
    ASSERT_TRUE(read);
    ASSERT_EQ(read.Value().image.rgba.size(), image.rgba.size());
    int worst = 0;
    for (std::size_t i = 0; i < image.rgba.size(); ++i) {
        worst = std::max(worst, std::abs(int{image.rgba[i]} - int{read.Value().image.rgba[i]}));
    }
    EXPECT_LE(worst, 8);
    const std::string bytes = CTestFolder::TextOf(folder / "a.jpg");
    const auto cut =
        image_codec::DecodeImage(std::as_bytes(std::span(bytes).first(bytes.size() * 2 / 3)), "");
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut.Value().image.rgba[1], read.Value().image.rgba[1]);
}

TEST(ImageWriterTest, RefusesPicturesThatAreNone) {
    const CTestFolder folder;
    CImage shortOne = TestImage(4, 4);
    shortOne.rgba.pop_back();
    for (const CImage& image : {CImage(), shortOne, CImage{-1, 4, {}}}) {
        EXPECT_EQ(image_codec::WritePng(folder / "a", image, true).Error().code, EErrorCode::BadArgument);
        EXPECT_EQ(image_codec::WriteJpeg(folder / "a", image).Error().code, EErrorCode::BadArgument);
    }
    EXPECT_EQ(image_codec::WritePng(folder / "none/a", TestImage(2, 2), true).Error().code,
              EErrorCode::WriteFailed);
    EXPECT_EQ(folder.Count(), 0U);
}

}  // namespace
