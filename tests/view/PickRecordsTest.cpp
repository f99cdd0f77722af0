// SPDX-License-Identifier: MIT
#include "view/pick_records.h"

#include <gtest/gtest.h>

#include <vector>

#include "row_name.h"
#include "view/CWheelNotches.h"

namespace {

struct CPickCase {
    const char* name;
    int hits;
    std::vector<unsigned> words;
    std::optional<int> expected;
};

class CPickRecordsTest : public testing::TestWithParam<CPickCase> {};

TEST_P(CPickRecordsTest, FindsTheNearestName) {
    EXPECT_EQ(NearestName(GetParam().hits, GetParam().words), GetParam().expected);
}

constexpr unsigned kFar = 0x90000000u;  // negative if it were compared as a signed number

const CPickCase kRecords[] = {
    {"NoHit", 0, {1, 5, 9, 42}, std::nullopt},
    {"Overflow", -1, {1, 5, 9, 42}, std::nullopt},
    {"NearerLater", 3, {1, 7, 9, 1, 1, 5, 9, 2, 1, 6, 6, 3}, 2},
    {"EquallyNearTheFirst", 3, {1, 7, 9, 1, 1, 5, 9, 2, 1, 5, 5, 3}, 2},
    {"DepthIsUnsigned", 2, {1, 5, 9, 1, 1, kFar, kFar, 2}, 1},
    {"OnlyHitsCount", 1, {1, 7, 9, 1, 1, 5, 9, 2}, 1},
    {"MoreHitsThanWords", 9, {1, 7, 9, 1, 1, 5, 9, 2}, 2},
    {"NoWords", 2, {}, std::nullopt},
};
INSTANTIATE_TEST_SUITE_P(Records, CPickRecordsTest, testing::ValuesIn(kRecords), kRowName);

struct CNotchCase {
    const char* name;
    std::vector<int> rotations;
    std::vector<int> notches;
};

class CWheelNotchesTest : public testing::TestWithParam<CNotchCase> {};

TEST_P(CWheelNotchesTest, CountsWholeOnes) {
    CWheelNotches wheel;
    std::vector<int> counted;
    for (const int rotation : GetParam().rotations) counted.push_back(wheel.Add(rotation, 120));
    EXPECT_EQ(counted, GetParam().notches);
}

const CNotchCase kRotations[] = {{"Wheel", {120, -120, 240}, {1, -1, 2}},
                                 {"TouchPad", {50, 50, 50, 50}, {0, 0, 1, 0}},
                                 {"TurningBackStartsAfresh", {100, -60, -60}, {0, 0, -1}},
                                 {"TowardsTheUser", {-50, -50, -50}, {0, 0, -1}}};
INSTANTIATE_TEST_SUITE_P(Rotations, CWheelNotchesTest, testing::ValuesIn(kRotations), kRowName);

}  // namespace
