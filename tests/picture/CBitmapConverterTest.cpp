// SPDX-License-Identifier: MIT
#include "picture/CBitmapConverter.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "picture/decode/image_codec.h"
#include "picture/picture_formats.h"

namespace {

/** Thin lines of strong colours, which a JPEG with halved colours would blur. */
CImage Stripes() {
    CImage image{24, 16, {}};
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            const bool red = x % 4 < 2;
            image.rgba.insert(image.rgba.end(),
                              {static_cast<std::uint8_t>(red ? 220 : 20), 30,
                               static_cast<std::uint8_t>(red ? 40 : 200), static_cast<std::uint8_t>(y * 16)});
        }
    return image;
}

/** Of one channel of one pixel; alpha must be opaque. */
int FarthestOff(const CImage& a, const CImage& b) {
    int farthest = a.width == b.width && a.height == b.height ? 0 : 255;
    for (std::size_t i = 0; farthest < 255 && i < a.rgba.size(); ++i)
        farthest = std::max(farthest, std::abs((i % 4 == 3 ? 255 : a.rgba[i]) - b.rgba[i]));
    return farthest;
}

class CBitmapConverterTest : public testing::Test {
  protected:
    [[nodiscard]] std::wstring PathOf(const std::string& name) const {
        return file_util_ex::ConvertFromUTF8W(folder / name);
    }
    [[nodiscard]] bool Save(const std::string& name, const CImage& image) {
        return converter.RGBA2File(image.rgba.data(), image.rgba.size(), image.width, image.height,
                                   PathOf(name));
    }
    CTestFolder folder;
    CBitmapConverter converter;
};

TEST_F(CBitmapConverterTest, GoesByTheName) {
    converter.SetFormat(CBitmapConverter::EImageExFormat{2});
    for (const auto& [name, kind] : {std::pair{"a.jpg", EPictureFormat::Jpeg},
                                     {"a.JPEG", EPictureFormat::Jpeg},
                                     {"a.b.png", EPictureFormat::Png},
                                     {"Ü x.PNG", EPictureFormat::Png}}) {
        EXPECT_TRUE(IsPictureName(PathOf(name)));
        ASSERT_TRUE(Save(name, Stripes())) << converter.LastError().Text();
        EXPECT_EQ(FormatOfSignature(file_util_ex::ReadWholeFile(folder / name).Value()), kind) << name;
        const auto read = image_codec::ReadImageFile(folder / name);
        ASSERT_TRUE(read) << read.Error().Text();
        EXPECT_LE(FarthestOff(Stripes(), read.Value().image), kind == EPictureFormat::Png ? 0 : 16) << name;
    }
    for (const char* name : {"model.3ds", "a.bmp", "png"})
        EXPECT_FALSE(IsPictureName(PathOf(name)) || Save(name, Stripes())) << name;
    EXPECT_EQ(folder.Count(), 4u) << "nothing else was written";
}

TEST_F(CBitmapConverterTest, AFormatCountsMoreThanTheName) {
    converter.SetFormat(CBitmapConverter::EImageExFormat::Png);
    ASSERT_TRUE(Save("a.jpg", Stripes()));
    EXPECT_EQ(FormatOfSignature(file_util_ex::ReadWholeFile(folder / "a.jpg").Value()), EPictureFormat::Png);
}

TEST_F(CBitmapConverterTest, AFailureLeavesWhatWasThere) {
    const std::string old = folder.Add("old.png", "old");
    const CImage image = Stripes();
    EXPECT_FALSE(converter.RGBA2File(image.rgba.data(), image.rgba.size() - 4, 24, 16, PathOf("old.png")));
    EXPECT_FALSE(converter.RGBA2File(nullptr, 0, 24, 16, PathOf("old.png")));
    EXPECT_FALSE(Save("no folder/a.png", image));
    EXPECT_EQ(converter.LastError().code, EErrorCode::WriteFailed);
    EXPECT_EQ(CTestFolder::TextOf(old), "old");
    std::filesystem::create_symlink("old.png", folder / "link.png");
    EXPECT_TRUE(Save("link.png", image));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.png"));
    EXPECT_NE(CTestFolder::TextOf(old), "old") << "a link leads to the file that is replaced";
}

}  // namespace
