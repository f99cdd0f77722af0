// SPDX-License-Identifier: MIT
#include "export/pov/CPovPictures.h"

#include <gtest/gtest.h>

#include "engine/test_scenes.h"
#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"
#include "model/textures/CTextureLocator.h"
#include "picture/decode/image_codec.h"
#include "picture/image_writer.h"
#include "row_name.h"

namespace {

/** A scene whose one picture lies in a file; outputs go beside it. */
struct CPictureScene {
    CTestFolder folder;
    CPreparedScene scene;
    CTextureLocator locator;

    CPictureScene(const std::string& name, const CImage& image) {
        const std::string path = folder / name;
        EXPECT_TRUE(name.ends_with(".jpg") ? image_codec::WriteJpeg(path, image)
                                           : image_codec::WritePng(path, image, true));
        locator = CTextureLocator::BesideModel(folder / "model.3ds");
        const bool translucent = image.Pixel(0, 0)[3] != 255;
        scene.textures.push_back({name, path, image_codec::ReadImageFile(path).Value().image, translucent});
    }
    /** Writes the picture and returns its path. */
    std::string Write(EPovPicture kind, const char* type) {
        CPovPictures pictures(scene, locator, folder / "out.pov");
        const auto* picture = pictures.Use(0, kind);
        if (!picture || !pictures.Stage(0).HasValue()) return {};
        EXPECT_EQ(picture->type, type);
        const std::string written = picture->fileName;
        EXPECT_TRUE(pictures.TakeStaged().Commit().HasValue());
        return folder / written;
    }
};

CImage Fading() {
    return test_scenes::MakeImage(8, 8, [](int x, int y) {
        return std::array<std::uint8_t, 4>{200, 100, static_cast<std::uint8_t>(y * 30),
                                           static_cast<std::uint8_t>(x * 36)};
    });
}

TEST(CPovPicturesTest, WhatPovReadsAlikeIsCopiedByteByByte) {
    CPictureScene set("Wood.JPG.jpg", test_scenes::QuarterImage());
    const std::string written = set.Write(EPovPicture::Color, "jpeg");
    EXPECT_EQ(CTestFolder::TextOf(written), CTestFolder::TextOf(set.scene.textures[0].foundAt));
    EXPECT_NE(written, set.scene.textures[0].foundAt);
}

struct CKind {
    const char* name;
    EPovPicture kind;
    std::array<int, 3> pixel;  ///< of the fading picture at (4, 2): 200, 100, 60 and alpha 144
};
class CConvertedPictureTest : public testing::TestWithParam<CKind> {};

TEST_P(CConvertedPictureTest, IsAnOpaquePngOfWhatIsAskedFor) {
    CPictureScene set("leaf.png", Fading());
    const auto read = image_codec::ReadImageFile(set.Write(GetParam().kind, "png"));
    ASSERT_TRUE(read.HasValue());
    const std::uint8_t* pixel = read.Value().image.Pixel(4, 2);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(pixel[i], GetParam().pixel[i], 1);
    EXPECT_EQ(pixel[3], 255);
}
const CKind kKinds[] = {{"Color", EPovPicture::Color, {200, 100, 60}},
                        {"NegativeColor", EPovPicture::NegativeColor, {55, 155, 195}},
                        {"Value", EPovPicture::Value, {125, 125, 125}},
                        {"NegativeValue", EPovPicture::NegativeValue, {130, 130, 130}},
                        {"Alpha", EPovPicture::Alpha, {144, 144, 144}},
                        {"NegativeAlpha", EPovPicture::NegativeAlpha, {111, 111, 111}}};
INSTANTIATE_TEST_SUITE_P(Kinds, CConvertedPictureTest, testing::ValuesIn(kKinds), kRowName);

TEST(CPovPicturesTest, SourcesAreNeverTargets) {
    CPictureScene set("out-t0.png", Fading());
    const std::string before = CTestFolder::TextOf(set.folder / "out-t0.png");
    EXPECT_NE(set.Write(EPovPicture::Color, "png"), set.folder / "out-t0.png");
    EXPECT_EQ(CTestFolder::TextOf(set.folder / "out-t0.png"), before);
}

TEST(CPovPicturesTest, WithoutCommitNothingIsLeft) {
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

TEST(CPovPicturesTest, OnlyPlainFormatsAreTakenAsTheyAre) {
    using namespace std::literals;
    constexpr auto kJpegHead = "\xFF\xD8\xFF\xE0\0\x04\0\0\xFF\xC0\0\x11\x08\0\x10\0\x10"sv;
    const auto jpeg = [&](char components, const std::string& data = "\xFF\xDA\0\x04\0\0..\xFF\0.\xFF\xD9"s) {
        return Bytes(std::string(kJpegHead) + components + std::string(9, '\0') + data);
    };
    const std::string end("\0\0\0\0IEND\xAE\x42\x60\x82"sv);
    const auto png = [&](char bits, char color, const std::string& chunk, const std::string& last) {
        std::string text = "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\x01\0\0\0\x01"s;
        text += bits;
        text += color;
        return Bytes(text + std::string(7, '\0') + chunk + std::string("\0\0\0\0IDAT\0\0\0\0"sv) + last);
    };
    const std::string gamma("\0\0\0\x04gAMA\0\0\0\0\0\0\0\0"sv);
    std::string_view type;
    EXPECT_TRUE(PovReadsAlike(jpeg(3), type));
    EXPECT_FALSE(PovReadsAlike(jpeg(4), type));  // CMYK
    EXPECT_TRUE(PovReadsAlike(png(8, 2, {}, end), type));
    EXPECT_FALSE(PovReadsAlike(png(8, 2, gamma, end), type));
    EXPECT_FALSE(PovReadsAlike(png(16, 2, {}, end), type));
    EXPECT_FALSE(PovReadsAlike(png(8, 6, {}, end), type));
    const std::string scan("\xFF\xDA\0\x04\0\0.."sv);
    for (const char* damaged : {"\xFF\x5C..", "\xFF\xD8..", "\xFF\xC0.."})
        EXPECT_FALSE(PovReadsAlike(jpeg(3, scan + damaged), type)) << damaged;
    for (const std::string& damaged :
         {""s, end.substr(0, 9), "\0\0\0\0WHAT...."s + end, end.substr(0, 11) + "."})
        EXPECT_FALSE(PovReadsAlike(png(8, 2, {}, damaged), type)) << damaged;
    EXPECT_FALSE(PovReadsAlike(Bytes("GIF89a....................."), type));
    EXPECT_FALSE(PovReadsAlike({}, type));
}

}  // namespace
