// SPDX-License-Identifier: MIT
#include "engine/plan/triangle_order.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <vector>

namespace {

template <class TIndex>
class TriangleOrderTest : public testing::Test {};
using CIndexTypes = testing::Types<std::uint16_t, std::uint32_t>;
TYPED_TEST_SUITE(TriangleOrderTest, CIndexTypes);

TYPED_TEST(TriangleOrderTest, KeepsEveryTriangleAndOrdersThemFromBackToFront) {
    using TIndex = TypeParam;
    std::mt19937 random(3);
    std::uniform_real_distribution<float> number(-5, 5);
    std::vector<CPreparedVertex> vertices(300);
    for (CPreparedVertex& vertex : vertices) {
        for (float& value : vertex.position) value = number(random);
    }
    std::vector<TIndex> indices, ordered;
    for (int i = 0; i < 3000; ++i) indices.push_back(static_cast<TIndex>(random() % vertices.size()));
    const std::array<double, 4> row{0.5, -2, 1, 7};
    const CDepthSpan range = OrderBackToFront<TIndex>(vertices, indices, row, ordered);
    ASSERT_EQ(ordered.size(), indices.size());
    const double step = (range.max - range.min) / 65535.0 + 1e-4;
    double before = range.max;
    std::multiset<std::array<TIndex, 3>> given, found;
    for (std::size_t i = 0; i < ordered.size(); i += 3) {
        double depth = 0;
        for (std::size_t k = i; k < i + 3; ++k) {
            const CVec3 p = vertices[ordered[k]].Position();
            depth += (row[0] * p.x + row[1] * p.y + row[2] * p.z + row[3]) / 3;
        }
        EXPECT_LE(depth, before + step);
        before = depth;
        given.insert({indices[i], indices[i + 1], indices[i + 2]});
        found.insert({ordered[i], ordered[i + 1], ordered[i + 2]});
    }
    EXPECT_NEAR(before, range.min, step);
    EXPECT_EQ(found, given);
}

TYPED_TEST(TriangleOrderTest, EqualDepthsKeepTheirOrderAndNoneIsFine) {
    const std::vector<CPreparedVertex> vertices(3);
    for (const std::vector<TypeParam>& indices : {{0, 1, 2, 2, 1, 0, 1, 2, 0}, std::vector<TypeParam>{}}) {
        std::vector<TypeParam> ordered{9};
        OrderBackToFront<TypeParam>(vertices, indices, {1, 2, 3, 4}, ordered);
        EXPECT_EQ(ordered, indices);
    }
}

}  // namespace
