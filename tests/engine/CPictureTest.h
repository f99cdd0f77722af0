// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "base/math/CMatrix.h"
#include "engine/draw/CSceneRenderer.h"
#include "engine/gl/COffscreenContext.h"
#include "engine/test_scenes.h"
#include "picture/CImage.h"

using CColor = std::array<int, 3>;

/** A test that draws with a context of 320x240 pixels, shared by the tests of one program. A machine without
 * OpenGL fails these tests: skipping them would leave drawing untested without anybody noticing. */
class CPictureTest : public testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    /** The camera of the next Draw: stands at the eye, 45 degrees high, +Z up (+Y where it looks along Z). */
    void LookFrom(CVec3 eye, CVec3 target = {});
    /** Sets the matrices, clears to dark grey and draws the builder's scene. */
    CImage Draw(const CDrawOptions& options = {});
    /** Sets the matrices and clears. */
    void Place();
    /** Like Draw without clearing, uploading or setting matrices. */
    CImage DrawAgain(const CDrawOptions& options = {});

    CGlCurrent& Gl();
    static COffscreenContext& Context();

    test_scenes::CBuilder m_builder;
    CSceneRenderer m_renderer;
    CMatrix4d m_projection, m_turn;
};

/** The picture equals tests/engine/golden/NAME.png in every pixel, but for rounding. Otherwise what was
 * drawn, and where it differs, is saved for a person to look at; a picture that is right is then copied to
 * the golden ones. */
[[nodiscard]] testing::AssertionResult MatchesGolden(const CImage& image, const std::string& name);
/** The pixel's red, green and blue are each within tolerance of those expected. */
[[nodiscard]] testing::AssertionResult HasColor(const CImage& image, int x, int y, CColor expected,
                                                int tolerance = 1);
[[nodiscard]] CColor ColorAt(const CImage& image, int x, int y);
/** How many pixels differ from the top left one. */
[[nodiscard]] int CountDrawn(const CImage& image);
/** The state that drawing touches and must leave as it was, as one list to compare. */
[[nodiscard]] std::vector<double> ReadGlState();
/** Projection times camera, as gluPerspective and gluLookAt would make them. */
[[nodiscard]] CMatrix4d CameraMatrix(CVec3 eye, CVec3 target, float fovYDeg, float aspect);
