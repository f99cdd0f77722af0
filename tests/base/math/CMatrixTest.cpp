// SPDX-License-Identifier: MIT
#include "base/math/CMatrix.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "row_name.h"

TEST(CMatrixTest, InverseUndoesAndSingularSaysSo) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> number(-3, 3);
    CMatrix4d matrix;
    for (double& value : matrix.m) value = number(random);
    matrix.m[0] = 0;  // needs a pivot
    bool ok = false;
    const CMatrix4d product = matrix * matrix.Inverse(&ok);
    EXPECT_TRUE(ok);
    for (std::size_t i = 0; i < 16; ++i) EXPECT_NEAR(product.m[i], i % 5 == 0 ? 1 : 0, 1e-12);
    matrix.m[4] = matrix.m[5] = matrix.m[6] = matrix.m[7] = 0;
    EXPECT_EQ(matrix.Inverse(&ok), CMatrix4d{});
    EXPECT_FALSE(ok);
}

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

struct CAffineCase {
    const char* name;
    CVec3 scale, move;
    bool isInvertible;
};
class CAffineInverseTest : public testing::TestWithParam<CAffineCase> {};

// To the bit: what stands far from the origin must not tremble, nor an upright box lean.
TEST_P(CAffineInverseTest, OfScaleAndMoveIsExactOrNone) {
    const CAffineCase& c = GetParam();
    bool ok = !c.isInvertible;
    const CMat4 inverse = (CMat4::Translation(c.move) * CMat4::Scale(c.scale)).AffineInverse(&ok);
    EXPECT_EQ(ok, c.isInvertible);
    const CVec3 back{1 / c.scale.x, 1 / c.scale.y, 1 / c.scale.z};
    EXPECT_EQ(inverse, c.isInvertible ? CMat4::Scale(back) * CMat4::Translation(-c.move) : CMat4{});
}

const CAffineCase kAffine[] = {
    {"Plain", {1, 1, 1}, {}, true},
    {"MirroredFarAway", {-2, 0.5f, 4}, {1e6f, -3e7f, 5}, true},
    {"Tiny", {0x1p-40f, 0x1p-40f, 0x1p-40f}, {1, 2, 3}, true},
    {"Flat", {1, 1, 0}, {}, false},
    {"AllButFlat", {1, 1, 1e-13f}, {}, false},
    {"Nan", {1, kNan, 1}, {}, false},
    {"NanMove", {1, 1, 1}, {0, 0, kNan}, false},
};
INSTANTIATE_TEST_SUITE_P(Matrices, CAffineInverseTest, testing::ValuesIn(kAffine), kRowName);

}  // namespace
