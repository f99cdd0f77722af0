// SPDX-License-Identifier: MIT
#include "engine/gl/COffscreenContext.h"

#include <gtest/gtest.h>

#include <thread>

#include "engine/CPictureTest.h"
#include "engine/gl/CGlCurrent.h"
#include "engine/gl/gl_api.h"

namespace {

void FillTopHalf(int width, int height) {
    glDisable(GL_SCISSOR_TEST);
    glClearColor(0, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, height / 2, width, height - height / 2);
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
}

class OffscreenContextGLTest : public testing::TestWithParam<int> {};

// What covers half of a pixel is seen in it where there are several samples, and only there.
TEST_P(OffscreenContextGLTest, ReadsRowsFromTheTopAndMixesSamples) {
    CResult<COffscreenContext> made = COffscreenContext::Create(37, 22, GetParam());
    ASSERT_TRUE(made) << made.Error().Text();
    made.Value().MakeCurrent();
    FillTopHalf(37, 22);
    glBegin(GL_TRIANGLES);  // white
    glVertex2f(-1, -1);
    glVertex2f(1, -0.8f);
    glVertex2f(-0.7f, 1);
    glEnd();
    const CImage image = made.Value().ReadPixels().Value();
    ASSERT_EQ(image.rgba.size(), 37u * 22 * 4);
    EXPECT_TRUE(HasColor(image, 36, 0, {255, 0, 0}, 0));
    EXPECT_TRUE(HasColor(image, 36, 20, {0, 0, 255}, 0));
    int mixed = 0;
    for (std::size_t i = 0; i < image.rgba.size(); i += 4)
        mixed += image.rgba[i + 1] > 10 && image.rgba[i + 1] < 245;
    EXPECT_EQ(mixed > 5, GetParam() > 1) << mixed;
    EXPECT_EQ(made.Value().Samples() > 1, GetParam() > 1);
}

INSTANTIATE_TEST_SUITE_P(Samples, OffscreenContextGLTest, testing::Values(0, 4, 1000));

TEST(OffscreenContextGLTest, RefusesSizesThatCannotBeDrawnAndKeepsItsPicture) {
    EXPECT_EQ(COffscreenContext::Create(0, 10).Error().code, EErrorCode::BadArgument);
    EXPECT_EQ(COffscreenContext::Create(10, 10'000'000).Error().code, EErrorCode::TooLarge);
    CResult<COffscreenContext> made = COffscreenContext::Create(20, 20);
    ASSERT_TRUE(made);
    EXPECT_FALSE(made.Value().Resize(-1, 5, 0));
    EXPECT_EQ(made.Value().Width(), 20);
    ASSERT_TRUE(made.Value().Resize(64, 48, 4));
    EXPECT_EQ(made.Value().ReadPixels().Value().rgba.size(), 64u * 48 * 4);
}

TEST(OffscreenContextGLTest, TwoContextsAndThreadsDoNotMeet) {
    CResult<COffscreenContext> first = COffscreenContext::Create(8, 8),
                               second = COffscreenContext::Create(8, 8);
    ASSERT_TRUE(first && second);
    first.Value().MakeCurrent();
    FillTopHalf(8, 8);
    second.Value().MakeCurrent();
    glClearColor(0, 1, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    std::thread([] {
        CResult<COffscreenContext> third = COffscreenContext::Create(8, 8);
        EXPECT_TRUE(third);
    }).join();
    EXPECT_TRUE(HasColor(first.Value().ReadPixels().Value(), 0, 0, {255, 0, 0}, 0));
    EXPECT_TRUE(HasColor(second.Value().ReadPixels().Value(), 0, 0, {0, 255, 0}, 0));
}

}  // namespace
