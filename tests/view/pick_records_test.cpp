// SPDX-License-Identifier: MIT
#include "view/pick_records.h"

#include <gtest/gtest.h>

#include <vector>

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

INSTANTIATE_TEST_SUITE_P(
    Records, CPickRecordsTest,
    testing::Values(CPickCase{"NoHit", 0, {1, 5, 9, 42}, std::nullopt},
                    CPickCase{"Overflow", -1, {1, 5, 9, 42}, std::nullopt},
                    CPickCase{"One", 1, {1, 5, 9, 42}, 42},
                    CPickCase{"NearerLater", 3, {1, 7, 9, 1, 1, 5, 9, 2, 1, 6, 6, 3}, 2},
                    CPickCase{"EquallyNearTheFirst", 3, {1, 7, 9, 1, 1, 5, 9, 2, 1, 5, 5, 3}, 2},
                    CPickCase{"DepthIsUnsigned", 2, {1, 5, 9, 1, 1, kFar, kFar, 2}, 1},
                    CPickCase{"OnlyHitsCount", 1, {1, 7, 9, 1, 1, 5, 9, 2}, 1},
                    CPickCase{"MoreHitsThanWords", 9, {1, 7, 9, 1, 1, 5, 9, 2}, 2},
                    CPickCase{"NoWords", 2, {}, std::nullopt}),
    [](const auto& row) { return row.param.name; });

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

INSTANTIATE_TEST_SUITE_P(Rotations, CWheelNotchesTest,
                         testing::Values(CNotchCase{"Wheel", {120, -120, 240}, {1, -1, 2}},
                                         CNotchCase{"TouchPad", {50, 50, 50, 50}, {0, 0, 1, 0}},
                                         CNotchCase{"TurningBackStartsAfresh", {100, -60, -60}, {0, 0, -1}},
                                         CNotchCase{"TowardsTheUser", {-50, -50, -50}, {0, 0, -1}}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
