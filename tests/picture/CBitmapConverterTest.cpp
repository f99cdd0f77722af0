// SPDX-License-Identifier: MIT
#include "picture/CBitmapConverter.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "picture/decode/image_codec.h"
#include "picture/picture_formats.h"
#include "row_name.h"

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

struct CNameCase {
    const char* name;
    std::string file;
    EPictureFormat kind = EPictureFormat::Unknown;  ///< none: nothing is written
};

class CBitmapConverterTest : public testing::TestWithParam<CNameCase> {
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

TEST_P(CBitmapConverterTest, GoesByTheName) {
    const CNameCase& row = GetParam();
    converter.SetFormat(CBitmapConverter::EImageExFormat{2});
    const bool isPicture = row.kind != EPictureFormat::Unknown;
    EXPECT_EQ(IsPictureName(PathOf(row.file)), isPicture);
    ASSERT_EQ(Save(row.file, Stripes()), isPicture) << converter.LastError().Text();
    EXPECT_EQ(folder.Count(), isPicture ? 1u : 0u);
    if (!isPicture) return;
    const auto bytes = file_util_ex::ReadWholeFile(folder / row.file);
    EXPECT_EQ(FormatOfSignature(bytes.Value()), row.kind);
    const auto read = image_codec::ReadImageFile(folder / row.file);
    ASSERT_TRUE(read) << read.Error().Text();
    EXPECT_LE(FarthestOff(Stripes(), read.Value().image), row.kind == EPictureFormat::Png ? 0 : 16);
}

const CNameCase kNames[] = {{"Jpg", "a.jpg", EPictureFormat::Jpeg},
                            {"Jpeg", "a.JPEG", EPictureFormat::Jpeg},
                            {"Png", "a.b.png", EPictureFormat::Png},
                            {"BigPng", "Ü x.PNG", EPictureFormat::Png},
                            {"Model", "model.3ds"},
                            {"OtherPicture", "a.bmp"},
                            {"NoEnding", "png"}};
INSTANTIATE_TEST_SUITE_P(Names, CBitmapConverterTest, testing::ValuesIn(kNames), kRowName);

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
