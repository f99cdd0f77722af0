// SPDX-License-Identifier: MIT
#include "export/drive/CDriveWorkArea.h"

#include <gtest/gtest.h>

#include "files/CTestFolder.h"
#include "row_name.h"

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using CTime = CDriveWorkArea::CTime;

namespace {

CTime Now() {
    return CTime::clock::now();
}

struct CAgeCase {
    const char* name;
    std::optional<std::chrono::seconds> age;
    bool isOver;
};
class AgeTest : public testing::TestWithParam<CAgeCase> {};

TEST_P(AgeTest, ADayIsTooOld) {
    const CTime now = Now();
    std::optional<CTime> created;
    if (GetParam().age) created = now - *GetParam().age;
    EXPECT_EQ(CDriveWorkArea::IsOver(created, now), GetParam().isOver);
}

const CAgeCase kAges[] = {
    {"Hours23", 23h, false}, {"SecondBeforeADay", 24h - 1s, false}, {"ADay", 24h, true},
    {"Hours25", 25h, true},  {"InTheFuture", -100h, false},         {"Unknown", std::nullopt, true},
};
INSTANTIATE_TEST_SUITE_P(Ages, AgeTest, testing::ValuesIn(kAges), kRowName);

class CDriveWorkAreaTest : public testing::Test {
  protected:
    CDriveWorkAreaTest() { fs::create_directories(victim + "/old/below"); }
    [[nodiscard]] CDriveWorkArea Open() const { return CDriveWorkArea::Open(cache.Path()).Value(); }
    [[nodiscard]] bool IsVictimWhole() const { return fs::exists(victim + "/old/below"); }

    const CTestFolder cache, elsewhere;
    const std::string area = cache / "Orbivue_GDriveTmp";
    const std::string victim = elsewhere / "victim";
};

}  // namespace

TEST_F(CDriveWorkAreaTest, RemovesFoldersOfADayAndNothingElse) {
    fs::create_directories(area + "/model_1/below");
    std::ofstream(area + "/model_1/below/page") << "x";
    std::ofstream(area + "/file") << "x";
    Open().RemoveOld(Now() + 23h);
    EXPECT_TRUE(fs::exists(area + "/model_1/below/page"));
    Open().RemoveOld(Now() + 25h);
    EXPECT_FALSE(fs::exists(area + "/model_1"));
    EXPECT_TRUE(fs::exists(area + "/file"));
}

TEST_F(CDriveWorkAreaTest, FollowsNoLinkInTheArea) {
    fs::create_directories(area + "/model_1");
    fs::create_directory_symlink(victim, area + "/model_2");
    fs::create_directory_symlink(victim, area + "/model_1/inside");
    Open().RemoveOld(Now() + 25h);
    EXPECT_TRUE(fs::is_empty(area));
    EXPECT_TRUE(IsVictimWhole());
}

TEST_F(CDriveWorkAreaTest, RefusesALinkInTheAreasPlace) {
    fs::create_directory_symlink(victim, area);
    EXPECT_FALSE(CDriveWorkArea::Open(cache.Path()));
    EXPECT_TRUE(IsVictimWhole());
}

TEST_F(CDriveWorkAreaTest, StaysInTheAreaWhenItsNameLeadsElsewhere) {
    fs::create_directories(area);
    const CDriveWorkArea opened = Open();
    fs::rename(area, cache / "moved");
    fs::create_directory_symlink(victim, area);
    opened.RemoveOld(Now() + 25h);
    EXPECT_TRUE(IsVictimWhole());
}

TEST_F(CDriveWorkAreaTest, IsTheUsersAlone) {
    fs::create_directories(area);
    fs::permissions(area, fs::perms::all);
    CDriveWorkArea opened = Open();
    EXPECT_EQ(fs::status(area).permissions(), fs::perms(0700));
    ASSERT_TRUE(opened.MakeModelFolder(1ms));
    EXPECT_EQ(fs::status(opened.ModelFolder()).permissions(), fs::perms(0700));
}

TEST_F(CDriveWorkAreaTest, NumbersFoldersByTheLow32BitsOfTheTime) {
    CDriveWorkArea opened = Open();
    ASSERT_TRUE(opened.MakeModelFolder(std::chrono::milliseconds((7LL << 32) + 4'000'000'000LL)));
    ASSERT_TRUE(opened.MakeUploadFolder());
    EXPECT_TRUE(fs::is_directory(area + "/model_4000000000"));
    EXPECT_TRUE(fs::is_directory(area + "/upload_4000000000"));
    fs::remove(area + "/model_4000000000");  // the number is taken still
    ASSERT_TRUE(opened.MakeModelFolder(4'000'000'000ms));
    EXPECT_EQ(opened.ModelFolder(), area + "/model_4000000001");
}
