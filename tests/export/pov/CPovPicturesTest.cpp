// SPDX-License-Identifier: MIT
#include "export/pov/CPovPictures.h"

#include <gtest/gtest.h>

#include "engine/test_scenes.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"
#include "model/textures/CTextureLocator.h"
#include "picture/image_codec.h"
#include "row_name.h"

namespace {

/** A scene whose one picture lies in a file; outputs go beside it. */
struct CPictureScene {
    CTestFolder folder;
    CPreparedScene scene;
    CTextureLocator locator;

    CPictureScene(const std::string& name, const CImage& image) {
        const std::string path = folder / name;
        if (name.ends_with(".jpg")) {
            EXPECT_TRUE(image_codec::WriteJpeg(path, image).HasValue());
        } else {
            EXPECT_TRUE(image_codec::WritePng(path, image, true).HasValue());
        }
        locator = CTextureLocator::BesideModel(folder / "model.3ds");
        scene.textures.push_back({name, path, image_codec::ReadImageFile(path).Value(), false});
        for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
            scene.textures[0].hasTranslucency = scene.textures[0].hasTranslucency || image.rgba[i] != 255;
        }
    }
};

CImage Fading() {
    return test_scenes::MakeImage(8, 8, [](int x, int y) {
        return std::array<std::uint8_t, 4>{200, 100, static_cast<std::uint8_t>(y * 30),
                                           static_cast<std::uint8_t>(x * 36)};
    });
}

TEST(CPovPictures, WhatPovReadsAlikeIsCopiedByteByByte) {
    CPictureScene set("Wood.JPG.jpg", test_scenes::QuarterImage());
    CPovPictures pictures(set.scene, set.locator, set.folder / "out.pov");
    const auto* picture = pictures.Use(0, EPovPicture::Color);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->type, "jpeg");
    EXPECT_EQ(pictures.Use(0, EPovPicture::Color)->fileName, picture->fileName);
    EXPECT_EQ(pictures.Use(1, EPovPicture::Color), nullptr);
    ASSERT_TRUE(pictures.Stage(0).HasValue());
    ASSERT_TRUE(pictures.TakeStaged().Commit().HasValue());
    EXPECT_EQ(CTestFolder::TextOf(set.folder / picture->fileName),
              CTestFolder::TextOf(set.scene.textures[0].foundAt));
}

struct CKind {
    const char* name;
    EPovPicture kind;
    std::array<int, 3> pixel;  ///< of the fading picture at (4, 2): 200, 100, 60 and alpha 144
};
class ConvertedPicture : public testing::TestWithParam<CKind> {};

TEST_P(ConvertedPicture, IsAnOpaquePngOfWhatIsAskedFor) {
    CPictureScene set("leaf.png", Fading());
    CPovPictures pictures(set.scene, set.locator, set.folder / "out.pov");
    const auto* picture = pictures.Use(0, GetParam().kind);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->type, "png");
    ASSERT_TRUE(pictures.Stage(0).HasValue());
    ASSERT_TRUE(pictures.TakeStaged().Commit().HasValue());
    const auto read = image_codec::ReadImageFile(set.folder / picture->fileName);
    ASSERT_TRUE(read.HasValue());
    const std::uint8_t* pixel = read.Value().Pixel(4, 2);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(pixel[i], GetParam().pixel[i], 1);
    EXPECT_EQ(pixel[3], 255);
}
INSTANTIATE_TEST_SUITE_P(CPovPictures, ConvertedPicture,
                         testing::Values(CKind{"Color", EPovPicture::Color, {200, 100, 60}},
                                         CKind{"NegativeColor", EPovPicture::NegativeColor, {55, 155, 195}},
                                         CKind{"Value", EPovPicture::Value, {125, 125, 125}},
                                         CKind{"NegativeValue", EPovPicture::NegativeValue, {130, 130, 130}},
                                         CKind{"Alpha", EPovPicture::Alpha, {144, 144, 144}},
                                         CKind{"NegativeAlpha", EPovPicture::NegativeAlpha, {111, 111, 111}}),
                         kRowName);

TEST(CPovPictures, SourcesAreNeverTargets) {
    CPictureScene set("out-t0.png", Fading());
    const std::string before = CTestFolder::TextOf(set.folder / "out-t0.png");
    CPovPictures pictures(set.scene, set.locator, set.folder / "out.pov");
    EXPECT_NE(pictures.Use(0, EPovPicture::Color)->fileName, "out-t0.png");
    ASSERT_TRUE(pictures.Stage(0).HasValue());
    ASSERT_TRUE(pictures.TakeStaged().Commit().HasValue());
    EXPECT_EQ(CTestFolder::TextOf(set.folder / "out-t0.png"), before);
}

TEST(CPovPictures, WithoutCommitNothingIsLeft) {
    const CPictureScene set("leaf.png", Fading());
    {
        CPovPictures pictures(set.scene, set.locator, set.folder / "out.pov");
        (void)pictures.Use(0, EPovPicture::Color);
        ASSERT_TRUE(pictures.Stage(0).HasValue());
    }
    EXPECT_EQ(set.folder.Count(), 1u);
}

std::vector<std::byte> Bytes(std::string_view text) {
    const auto* begin = reinterpret_cast<const std::byte*>(text.data());
    return {begin, begin + text.size()};
}

TEST(CPovPictures, OnlyPlainFormatsAreTakenAsTheyAre) {
    using namespace std::literals;
    constexpr auto kJpegHead = "\xFF\xD8\xFF\xE0\0\x04\0\0\xFF\xC0\0\x11\x08\0\x10\0\x10"sv;
    const auto jpeg = [&](char components) {
        return Bytes(std::string(kJpegHead) + components + std::string(20, '\0'));
    };
    const auto png = [](char bits, char color, const std::string& chunk) {
        std::string text = "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\x01\0\0\0\x01"s;
        text += bits;
        text += color;
        return Bytes(text + std::string(7, '\0') + chunk + std::string("\0\0\0\0IDAT\0\0\0\0\0\0\0\0"sv));
    };
    const std::string gamma("\0\0\0\x04gAMA\0\0\0\0\0\0\0\0"sv);
    std::string_view type;
    EXPECT_TRUE(PovReadsAlike(jpeg(3), type));
    EXPECT_FALSE(PovReadsAlike(jpeg(4), type));  // CMYK
    EXPECT_TRUE(PovReadsAlike(png(8, 2, {}), type));
    EXPECT_FALSE(PovReadsAlike(png(8, 2, gamma), type));
    EXPECT_FALSE(PovReadsAlike(png(16, 2, {}), type));
    EXPECT_FALSE(PovReadsAlike(png(8, 6, {}), type));
    EXPECT_FALSE(PovReadsAlike(Bytes("GIF89a....................."), type));
    EXPECT_FALSE(PovReadsAlike({}, type));
}

}  // namespace
