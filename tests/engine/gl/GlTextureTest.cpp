// SPDX-License-Identifier: MIT
#include "engine/gl/CGlTexture.h"

#include <gtest/gtest.h>

#include "engine/test_scenes.h"

namespace {

TEST(GlTextureTest, ScalingDownAveragesAndKeepsTheMeanColour) {
    const CImage image = test_scenes::MakeImage(5, 3, [](int x, int) -> std::array<std::uint8_t, 4> {
        return {static_cast<std::uint8_t>(x % 2 == 0 ? 200 : 100), 10, 255, 255};
    });
    const CImage half = ResizeForTexture(image, 2, 1), larger = ResizeForTexture(image, 8, 4);
    using CBytes = std::vector<std::uint8_t>;
    EXPECT_EQ(half.rgba, (CBytes{150, 10, 255, 255, 167, 10, 255, 255}));  // columns 0 and 1; 2 to 4
    ASSERT_EQ(larger.rgba.size(), 8u * 4 * 4);
    EXPECT_EQ(larger.Pixel(7, 3)[0], 200);
}

}  // namespace
