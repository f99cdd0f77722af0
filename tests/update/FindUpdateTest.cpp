// SPDX-License-Identifier: MIT
#include "update/find_update.h"

#include <gtest/gtest.h>

#include "row_name.h"
#include "update/CVersionNumber.h"

namespace {

struct CPair {
    const char* name;
    const char* later;
    const char* earlier;
};
class LaterVersionTest : public testing::TestWithParam<CPair> {};

TEST_P(LaterVersionTest, IsNewerOneWayOnly) {
    EXPECT_TRUE(IsNewerVersion(GetParam().later, GetParam().earlier));
    EXPECT_FALSE(IsNewerVersion(GetParam().earlier, GetParam().later));
}

const CPair kPairs[] = {
    {"ByNumber", "1.10.0", "1.9.5"},
    {"MoreFields", "1.9.5.1", "1.9.5"},
    {"BeforeIsOlder", "2.0", "2.0-beta1"},
    {"LetterIsOlder", "2.0.0", "2.0rc1"},
    {"BeforeOfALaterOne", "2.0-beta1", "1.9.5"},
    {"NumbersInWords", "2.0-beta10", "2.0-beta9"},
    {"WordsByAlphabet", "2.0-RC.1", "2.0-beta.2"},
    {"LongerBefore", "2.0-rc.1", "2.0-rc"},
    {"V", "v2", "1.99"},
    {"Largest", "18446744073709551615", "18446744073709551614"},
};
INSTANTIATE_TEST_SUITE_P(Versions, LaterVersionTest, testing::ValuesIn(kPairs), kRowName);

TEST(VersionTest, EqualOnesAreNotNewer) {
    for (const auto& [a, b] :
         {std::pair("1.9.5", "1.9.5.0.0"), {"2.0+debian3", "2"}, {"2.0-RC1", "2.0rc1"}, {" 1.0\n", "v1"}}) {
        EXPECT_FALSE(IsNewerVersion(a, b)) << a;
        EXPECT_FALSE(IsNewerVersion(b, a)) << b;
    }
}

TEST(VersionTest, WhatCannotBeReadIsNeverNewer) {
    for (const char* text : {"", "latest", "-1", "-99.0", "99..1", "99.", ".99", "99.-1", "99,0", "99 beta",
                             "99 999", "18446744073709551616", "9.9.9.9.9.9.9.9.9", "99\xC3\xA4",
                             "9999999999999999999999999999999999999999999999999999999999999999-a"})
        EXPECT_FALSE(IsNewerVersion(text, "1.9.5")) << text;
    EXPECT_FALSE(IsNewerVersion("2.0", "unknown"));
}

struct CSystemRow {
    const char* name;
    std::vector<std::string> systems;
    const char* minimum;
    bool isOffered;
};
class OfferedTest : public testing::TestWithParam<CSystemRow> {};

TEST_P(OfferedTest, BySystemAndMachine) {
    const CSystemRow& row = GetParam();
    CAppcast list;
    list.items.push_back({.version = "2.0", .minimumSystem = row.minimum, .systems = row.systems});
    EXPECT_EQ(FindUpdate(list, {"1.9.5", "6.1.0", "x86_64"}).has_value(), row.isOffered);
}

const CSystemRow kSystems[] = {
    {"ForAll", {""}, "", true},
    {"Linux", {"windows", "linux"}, "6.1", true},
    {"OurMachine", {"linux-amd64"}, "", true},
    {"OtherMachine", {"linux-arm64"}, "", false},
    {"OtherSystems", {"windows", "macos"}, "", false},
    {"SimilarName", {"linuxoid"}, "", false},
    {"LaterSystem", {"linux"}, "6.1.1", false},
    {"UnreadableSystem", {"linux"}, "any", false},
};
INSTANTIATE_TEST_SUITE_P(Systems, OfferedTest, testing::ValuesIn(kSystems), kRowName);

TEST(FindUpdateTest, TheNewestThatFitsIsFoundWhereverItStands) {
    CAppcast list;
    for (const char* version : {"1.9.4", "2.0-beta1", "2.0", "1.9.9", "nightly"})
        list.items.push_back({.version = version, .systems = {""}});
    list.items.push_back({.version = "3.0", .systems = {"windows"}});
    const CUpdateTarget target{"1.9.5", "6.1", "x86_64"};
    ASSERT_TRUE(FindUpdate(list, target));
    EXPECT_EQ(FindUpdate(list, target)->version, "2.0");
    EXPECT_FALSE(FindUpdate(list, {"2.0.0", "6.1", "x86_64"}));
}

TEST(FindUpdateTest, OnlyTheSkippedVersionIsSkipped) {
    const CAppcastItem item{.version = "2.0"};
    EXPECT_TRUE(::IsSkipped(item, "2.0.0"));
    for (const char* other : {"", "1.9", "2.0.1", "x"}) EXPECT_FALSE(::IsSkipped(item, other)) << other;
}

TEST(FindUpdateTest, AnUnaskedCheckIsDueADayLater) {
    constexpr std::int64_t kNow = 1'800'000'000;
    for (const char* last : {"", "yesterday", "-5", "1799913600", "1800000001", "99999999999999999999"})
        EXPECT_TRUE(IsCheckDue(last, kNow)) << last;
    for (const char* last : {"1799913601", "1800000000"}) EXPECT_FALSE(IsCheckDue(last, kNow)) << last;
}

}  // namespace
