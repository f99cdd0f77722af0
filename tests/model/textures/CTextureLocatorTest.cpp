// SPDX-License-Identifier: MIT
#include "model/textures/CTextureLocator.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <thread>

#include "files/CTestFolder.h"
#include "row_name.h"

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

const std::string kCat = "g/u/t/\xD0\xBA\xD0\xBE\xD1\x82.jpg";  // three Cyrillic letters

// The model lies at g/u/t/tank.3ds (game, units, tank) in each case.
const CCase kOnDisk[] = {
    {"SameCase", {"g/u/t/Hull.jpg", "g/u/t/hull.jpg"}, "hull.jpg", "g/u/t/hull.jpg"},
    {"OtherCase", {"g/u/t/hull.jpg"}, "HULL.JPG", "g/u/t/hull.jpg"},
    {"DosPath", {"g/u/t/hull.jpg"}, "C:\\MAPS\\HULL.JPG", "g/u/t/hull.jpg"},
    {"HostPath", {"g/u/t/hull.jpg"}, "\\\\server\\share\\hull.jpg", "g/u/t/hull.jpg"},
    {"QuotesAndBlanks", {"g/u/t/hull.jpg"}, " \"hull.jpg\" ", "g/u/t/hull.jpg"},
    {"RelativePathFirst", {"g/u/t/hull.jpg", "g/u/t/x/hull.jpg"}, "X\\Hull.jpg", "g/u/t/x/hull.jpg"},
    {"FolderBeforeAbsolutePath", {"g/u/t/hull.jpg", "g/u/t/x/hull.jpg"}, "D:\\x\\hull.jpg", "g/u/t/hull.jpg"},
    {"EndOfAbsolutePath", {"g/u/t/a/b/c/hull.jpg"}, "D:\\work\\A\\B\\C\\hull.jpg", "g/u/t/a/b/c/hull.jpg"},
    {"UsualSubFolderFirst", {"g/u/t/a/hull.jpg", "g/u/t/Tex/hull.jpg"}, "hull.jpg", "g/u/t/Tex/hull.jpg"},
    {"NearerSubFolder", {"g/u/t/a/b/hull.jpg", "g/u/t/z/hull.jpg"}, "hull.jpg", "g/u/t/z/hull.jpg"},
    {"SubFoldersTwoDeepOnly", {"g/u/t/a/b/c/hull.jpg"}, "hull.jpg", ""},
    {"SisterFolder", {"g/u/MAPS/hull.jpg", "g/u/hull.jpg"}, "hull.jpg", "g/u/MAPS/hull.jpg"},
    {"OtherSisterFoldersNever", {"g/u/secret/hull.jpg"}, "hull.jpg", ""},
    {"NoLoosePictureAbove", {"g/u/hull.jpg"}, "hull.jpg", ""},
    {"TexturesOfTheProject", {"textures/hull.jpg"}, "HULL.JPG", "textures/hull.jpg"},
    {"NotUpwardsAtWill", {"g/u/secret/hull.jpg", "hull.jpg"}, "../secret/hull.jpg", ""},
    {"AfterDotDotStillHere", {"g/u/t/maps/hull.jpg"}, "..\\maps\\hull.jpg", "g/u/t/maps/hull.jpg"},
    {"OtherPictureFormat", {"g/u/t/hull.tga"}, "HULL.RGB", "g/u/t/hull.tga"},
    {"NameBeforeOtherFormat", {"g/u/t/hull.tga", "g/u/maps/hull.rgb"}, "HULL.RGB", "g/u/maps/hull.rgb"},
    {"OtherFormatOnItsPath", {"g/u/t/a/hull.png", "g/u/t/b/hull.png"}, "B/hull.jpg", "g/u/t/b/hull.png"},
    {"UsualFormatFirst", {"g/u/t/hull.pcx", "g/u/t/hull.jpg"}, "hull.bmp", "g/u/t/hull.jpg"},
    {"NoFormatAtAll", {"g/u/t/hull.v2.png"}, "hull.v2", "g/u/t/hull.v2.png"},
    {"OtherFormatMustBeAPicture", {"g/u/t/hull.txt"}, "hull.jpg", ""},
    {"DosShortName", {"g/u/t/Beretta new.jpg"}, "BERETT~1.JPG", "g/u/t/Beretta new.jpg"},
    {"EightLetters", {"g/u/t/camouflage.jpg"}, "CAMOUFLA.JPG", "g/u/t/camouflage.jpg"},
    {"AmbiguousShortName", {"g/u/t/camoufl_A.jpg", "g/u/t/camoufl_B.jpg"}, "CAMOUF~1.JPG", ""},
    {"ShortNameWithoutNeed", {"g/u/t/berett.jpg"}, "BERETT~1.JPG", ""},
    {"Utf8Cyrillic", {kCat}, "\xD0\x9A\xD0\x9E\xD0\xA2.JPG", kCat},
    {"Windows1251", {kCat}, "\xCA\xCE\xD2.JPG", kCat},
    {"Dos866", {kCat}, "\x8A\x8E\x92.JPG", kCat},
    {"Windows1252", {"g/u/t/gr\xC3\xBCn.jpg"}, "GR\xDCN.JPG", "g/u/t/gr\xC3\xBCn.jpg"},
    {"Dos437", {"g/u/t/gr\xC3\xBCn.jpg"}, "GR\x9AN.JPG", "g/u/t/gr\xC3\xBCn.jpg"},
    {"BytesOnDisk", {"g/u/t/gr\xFCn.jpg"}, "GR\xFCN.JPG", "g/u/t/gr\xFCn.jpg"},
    {"EmptyReference", {"g/u/t/hull.jpg"}, "", ""},
    {"EndsAtZero", {"g/u/t/hull.jpg"}, std::string("hull.jpg\0junk", 13), "g/u/t/hull.jpg"},
};

class BesideModel : public testing::TestWithParam<CCase> {};

TEST_P(BesideModel, FindsTheNearest) {
    const CTestFolder folder;
    Write(folder, "g/u/t/tank.3ds", "");
    for (const std::string& file : GetParam().files) Write(folder, file, "picture");
    const CTextureLocator locator = CTextureLocator::BesideModel(folder / "g/u/t/tank.3ds");
    for (int i = 0; i < 2; ++i) {  // the second time from memory
        const auto hit = locator.Find(GetParam().reference);
        EXPECT_EQ(hit ? hit->foundAt : folder / "", folder / GetParam().expected);
        EXPECT_TRUE(!hit || !hit->data);
    }
}
INSTANTIATE_TEST_SUITE_P(CTextureLocator, BesideModel, testing::ValuesIn(kOnDisk), kRowName);

TEST(CTextureLocatorTest, TakesOnlyRegularFiles) {
    const CTestFolder folder;
    Write(folder, "maps/skin.jpg", "picture");
    std::filesystem::create_directory(folder / "skin.jpg");
    ASSERT_EQ(mkfifo((folder / "SKIN.JPG").c_str(), 0600), 0);
    const auto hit = CTextureLocator::BesideModel(folder / "a.3ds").Find("skin.jpg");
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->foundAt, folder / "maps/skin.jpg");
}

TEST(CTextureLocatorTest, FindsByLikelySpellingInAFolderTooLargeToList) {
    const CTestFolder folder;
    const std::string picture = folder.Add("hull.jpg", "picture");
    std::filesystem::create_hard_link(picture, folder / "GUN.JPG");
    for (int i = 0; i < 10'001; ++i) std::filesystem::create_hard_link(picture, folder / std::to_string(i));
    const CTextureLocator locator = CTextureLocator::BesideModel(folder / "a.3ds");
    EXPECT_TRUE(locator.Find("Hull.jpg"));
    EXPECT_TRUE(locator.Find("gun.jpg"));
    EXPECT_FALSE(locator.Find("nothing.jpg"));
    EXPECT_FALSE(CTextureLocator().Find("hull.jpg"));
}

TEST(CTextureLocatorTest, SeveralThreadsAskAtOnce) {
    const CTestFolder folder;
    for (int i = 0; i < 50; ++i)
        Write(folder, "maps" + std::to_string(i % 7) + "/t" + std::to_string(i) + ".png", "x");
    const CTextureLocator locator = CTextureLocator::BesideModel(folder / "a.3ds");
    std::atomic<int> found = 0;
    const auto findAll = [&, copy = locator] {
        for (int i = 0; i < 50; ++i) found += copy.Find("T" + std::to_string(i) + ".PNG").has_value();
    };
    { const std::jthread a(findAll), b(findAll), c(findAll), d(findAll); }
    EXPECT_EQ(found, 200);
}

const CCase kInMemory[] = {
    {"OtherCase", {"Hull.jpg"}, "C:\\X\\HULL.JPG", "Hull.jpg"},
    {"SamePathFirst", {"a/hull.jpg", "red/hull.jpg"}, "RED\\hull.jpg", "red/hull.jpg"},
    {"BesideTheModel", {"hull.jpg", "G/u/v/hull.jpg", "g/u/T/hull.jpg"}, "hull.jpg", "g/u/T/hull.jpg"},
    {"BelowTheModel", {"g/u/hull.jpg", "g/u/t/x/hull.jpg"}, "hull.jpg", "g/u/t/x/hull.jpg"},
    {"FewestFoldersUp", {"o/hull.jpg", "g/u/v/hull.jpg", "g/o/hull.jpg"}, "hull.jpg", "g/u/v/hull.jpg"},
    {"ShortestPathElse", {"deep/a/hull.jpg", "a/hull.jpg"}, "hull.jpg", "a/hull.jpg"},
    {"OtherFormat", {"hull.dds"}, "hull.jpg", "hull.dds"},
    {"EmptyName", {""}, "hull.jpg", ""},
};

class InMemory : public testing::TestWithParam<CCase> {};

TEST_P(InMemory, GivesTheBytes) {
    CImageDataTextVec textures;
    for (const std::string& name : GetParam().files) textures.push_back({name, {std::byte{42}}});
    const CTextureLocator locator = CTextureLocator::InMemory(textures, "g/u/t/tank.3ds");
    const auto hit = locator.Find(GetParam().reference);
    ASSERT_EQ(hit.has_value(), !GetParam().expected.empty());
    if (!hit) return;
    EXPECT_EQ(hit->foundAt, GetParam().expected);
    ASSERT_NE(hit->data, nullptr);
    EXPECT_EQ(*hit->data, std::vector<std::byte>{std::byte{42}});
}
INSTANTIATE_TEST_SUITE_P(CTextureLocator, InMemory, testing::ValuesIn(kInMemory), kRowName);

}  // namespace
