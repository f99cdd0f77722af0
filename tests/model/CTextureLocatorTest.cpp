// SPDX-License-Identifier: MIT
#include "model/CTextureLocator.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <thread>

#include "platform/CTestFolder.h"

namespace {

struct CCase {
    const char* name;
    std::vector<std::string> files;  ///< relative to the test's folder
    std::string reference;
    std::string expected;  ///< relative; empty: nothing may be found
};

void Write(const CTestFolder& folder, const std::string& relative, const std::string& text) {
    std::filesystem::create_directories(std::filesystem::path(folder / relative).parent_path());
    (void)folder.Add(relative, text);
}

std::string CaseName(const testing::TestParamInfo<CCase>& info) {
    return info.param.name;
}

// The model lies at game/units/tank/tank.3ds in each case.
const std::vector<CCase> kOnDisk{
    {"SameCase",
     {"game/units/tank/Hull.jpg", "game/units/tank/hull.jpg"},
     "hull.jpg",
     "game/units/tank/hull.jpg"},
    {"OtherCase", {"game/units/tank/hull.jpg"}, "HULL.JPG", "game/units/tank/hull.jpg"},
    {"DosPath", {"game/units/tank/hull.jpg"}, "C:\\MAPS\\HULL.JPG", "game/units/tank/hull.jpg"},
    {"HostPath", {"game/units/tank/hull.jpg"}, "\\\\server\\share\\hull.jpg", "game/units/tank/hull.jpg"},
    {"QuotesAndBlanks", {"game/units/tank/hull.jpg"}, " \"hull.jpg\" ", "game/units/tank/hull.jpg"},
    {"RelativePathFirst",
     {"game/units/tank/hull.jpg", "game/units/tank/skin2/hull.jpg"},
     "Skin2\\Hull.jpg",
     "game/units/tank/skin2/hull.jpg"},
    {"FolderBeforeAbsolutePath",
     {"game/units/tank/hull.jpg", "game/units/tank/x/hull.jpg"},
     "D:\\x\\hull.jpg",
     "game/units/tank/hull.jpg"},
    {"EndOfAbsolutePath",
     {"game/units/tank/a/b/c/hull.jpg"},
     "D:\\work\\A\\B\\C\\hull.jpg",
     "game/units/tank/a/b/c/hull.jpg"},
    {"UsualSubFolderBeforeOthers",
     {"game/units/tank/aaa/hull.jpg", "game/units/tank/Textures/hull.jpg"},
     "hull.jpg",
     "game/units/tank/Textures/hull.jpg"},
    {"AnySubFolder", {"game/units/tank/red army/hull.jpg"}, "hull.jpg", "game/units/tank/red army/hull.jpg"},
    {"NearerSubFolder",
     {"game/units/tank/a/b/hull.jpg", "game/units/tank/z/hull.jpg"},
     "hull.jpg",
     "game/units/tank/z/hull.jpg"},
    {"SubFoldersTwoDeepOnly", {"game/units/tank/a/b/c/hull.jpg"}, "hull.jpg", ""},
    {"SisterFolder",
     {"game/units/MAPS/hull.jpg", "game/units/hull.jpg"},
     "hull.jpg",
     "game/units/MAPS/hull.jpg"},
    {"OtherSisterFoldersNever", {"game/units/secret/hull.jpg"}, "hull.jpg", ""},
    {"Parent", {"game/units/hull.jpg"}, "hull.jpg", "game/units/hull.jpg"},
    {"TexturesOfTheProject", {"textures/hull.jpg"}, "HULL.JPG", "textures/hull.jpg"},
    {"NoLoosePictureFarUp", {"hull.jpg"}, "hull.jpg", ""},
    {"NotUpwardsAtWill", {"game/units/secret/hull.jpg", "hull.jpg"}, "../secret/hull.jpg", ""},
    {"AfterDotDotStillHere",
     {"game/units/tank/maps/hull.jpg"},
     "..\\maps\\hull.jpg",
     "game/units/tank/maps/hull.jpg"},
    {"OtherPictureFormat", {"game/units/tank/hull.tga"}, "HULL.RGB", "game/units/tank/hull.tga"},
    {"NameBeforeOtherFormat",
     {"game/units/tank/hull.tga", "game/units/hull.rgb"},
     "HULL.RGB",
     "game/units/hull.rgb"},
    {"UsualFormatFirst",
     {"game/units/tank/hull.pcx", "game/units/tank/hull.jpg"},
     "hull.bmp",
     "game/units/tank/hull.jpg"},
    {"NoFormatAtAll", {"game/units/tank/hull.v2.png"}, "hull.v2", "game/units/tank/hull.v2.png"},
    {"OtherFormatMustBeAPicture", {"game/units/tank/hull.txt"}, "hull.jpg", ""},
    {"DosShortName", {"game/units/tank/Beretta new.jpg"}, "BERETT~1.JPG", "game/units/tank/Beretta new.jpg"},
    {"EightLetters", {"game/units/tank/camouflage.jpg"}, "CAMOUFLA.JPG", "game/units/tank/camouflage.jpg"},
    {"AmbiguousShortName",
     {"game/units/tank/camouflage1.jpg", "game/units/tank/camouflage2.jpg"},
     "CAMOUF~1.JPG",
     ""},
    {"ShortNameWithoutNeed", {"game/units/tank/berett.jpg"}, "BERETT~1.JPG", ""},
    {"Utf8Cyrillic",
     {"game/units/tank/\xD0\xBA\xD0\xBE\xD1\x82.jpg"},
     "\xD0\x9A\xD0\x9E\xD0\xA2.JPG",
     "game/units/tank/\xD0\xBA\xD0\xBE\xD1\x82.jpg"},
    {"Windows1251",
     {"game/units/tank/\xD0\xBA\xD0\xBE\xD1\x82.jpg"},
     "\xCA\xCE\xD2.JPG",
     "game/units/tank/\xD0\xBA\xD0\xBE\xD1\x82.jpg"},
    {"Dos866",
     {"game/units/tank/\xD0\xBA\xD0\xBE\xD1\x82.jpg"},
     "\x8A\x8E\x92.JPG",
     "game/units/tank/\xD0\xBA\xD0\xBE\xD1\x82.jpg"},
    {"Windows1252", {"game/units/tank/gr\xC3\xBCn.jpg"}, "GR\xDCN.JPG", "game/units/tank/gr\xC3\xBCn.jpg"},
    {"Dos437", {"game/units/tank/gr\xC3\xBCn.jpg"}, "GR\x9AN.JPG", "game/units/tank/gr\xC3\xBCn.jpg"},
    {"BytesOnDisk", {"game/units/tank/gr\xFCn.jpg"}, "GR\xFCN.JPG", "game/units/tank/gr\xFCn.jpg"},
    {"EmptyReference", {"game/units/tank/hull.jpg"}, "", ""},
    {"OnlySlashes", {"game/units/tank/hull.jpg"}, "\\\\//..\\", ""},
    {"EndsAtZero",
     {"game/units/tank/hull.jpg"},
     std::string("hull.jpg\0junk", 13),
     "game/units/tank/hull.jpg"},
};

class BesideModel : public testing::TestWithParam<CCase> {};

TEST_P(BesideModel, FindsTheNearest) {
    const CTestFolder folder;
    Write(folder, "game/units/tank/tank.3ds", "");
    for (const std::string& file : GetParam().files) Write(folder, file, "picture");
    const CTextureLocator locator = CTextureLocator::BesideModel(folder / "game/units/tank/tank.3ds");
    for (int i = 0; i < 2; ++i) {  // the second time from memory
        const auto hit = locator.Find(GetParam().reference);
        if (GetParam().expected.empty()) {
            EXPECT_FALSE(hit) << hit->foundAt;
        } else {
            ASSERT_TRUE(hit);
            EXPECT_EQ(hit->foundAt, folder / GetParam().expected);
            EXPECT_EQ(hit->data, nullptr);
        }
    }
}
INSTANTIATE_TEST_SUITE_P(CTextureLocator, BesideModel, testing::ValuesIn(kOnDisk), CaseName);

TEST(CTextureLocator, TakesOnlyRegularFiles) {
    const CTestFolder folder;
    Write(folder, "maps/skin.jpg", "picture");
    std::filesystem::create_directory(folder / "skin.jpg");
    ASSERT_EQ(mkfifo((folder / "SKIN.JPG").c_str(), 0600), 0);
    const auto hit = CTextureLocator::BesideModel(folder / "a.3ds").Find("skin.jpg");
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->foundAt, folder / "maps/skin.jpg");
}

TEST(CTextureLocator, FindsByLikelySpellingInAFolderTooLargeToList) {
    const CTestFolder folder;
    for (int i = 0; i < 10'500; ++i) Write(folder, "f" + std::to_string(i), "");
    Write(folder, "hull.jpg", "picture");
    Write(folder, "GUN.JPG", "picture");
    const CTextureLocator locator = CTextureLocator::BesideModel(folder / "a.3ds");
    EXPECT_TRUE(locator.Find("Hull.jpg"));
    EXPECT_TRUE(locator.Find("gun.jpg"));
    EXPECT_FALSE(locator.Find("nothing.jpg"));
}

TEST(CTextureLocator, SeveralThreadsAskAtOnce) {
    const CTestFolder folder;
    for (int i = 0; i < 50; ++i)
        Write(folder, "maps" + std::to_string(i % 7) + "/t" + std::to_string(i) + ".png", "x");
    const CTextureLocator locator = CTextureLocator::BesideModel(folder / "a.3ds");
    std::atomic<int> found = 0;
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&, copy = locator] {
                for (int i = 0; i < 50; ++i) found += copy.Find("T" + std::to_string(i) + ".PNG").has_value();
            });
        }
    }
    EXPECT_EQ(found, 200);
}

const std::vector<CCase> kInMemory{
    {"OtherCase", {"Hull.jpg"}, "C:\\X\\HULL.JPG", "Hull.jpg"},
    {"SamePathFirst", {"a/hull.jpg", "red/hull.jpg"}, "RED\\hull.jpg", "red/hull.jpg"},
    {"ShortestPathElse", {"deep/a/hull.jpg", "a/hull.jpg"}, "hull.jpg", "a/hull.jpg"},
    {"OtherFormat", {"hull.dds"}, "hull.jpg", "hull.dds"},
    {"EmptyName", {""}, "hull.jpg", ""},
    {"NotThere", {"gun.jpg"}, "hull.jpg", ""},
};

class InMemory : public testing::TestWithParam<CCase> {};

TEST_P(InMemory, GivesTheBytes) {
    CImageDataTextVec textures;
    for (const std::string& name : GetParam().files) textures.push_back({name, {std::byte{42}}});
    const CTextureLocator locator = CTextureLocator::InMemory(textures);
    const auto hit = locator.Find(GetParam().reference);
    ASSERT_EQ(hit.has_value(), !GetParam().expected.empty());
    if (!hit) return;
    EXPECT_EQ(hit->foundAt, GetParam().expected);
    ASSERT_NE(hit->data, nullptr);
    EXPECT_EQ(*hit->data, std::vector<std::byte>{std::byte{42}});
}
INSTANTIATE_TEST_SUITE_P(CTextureLocator, InMemory, testing::ValuesIn(kInMemory), CaseName);

TEST(CTextureLocator, FindsNothingByDefault) {
    EXPECT_FALSE(CTextureLocator().Find("hull.jpg"));
}

}  // namespace
