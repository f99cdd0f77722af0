// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "engine/C3dsDisplayWrap.h"
#include "engine/CPictureTest.h"
#include "engine/gl/gl_api.h"
#include "model/read_3ds/C3dsBytes.h"

/** A test with an engine before a blue background, in a context of its size. */
template <int kWidth, int kHeight>
class CEngineTest : public testing::Test {
  protected:
    static COffscreenContext& Context() {
        static CResult<COffscreenContext> context = COffscreenContext::Create(kWidth, kHeight);
        return context.Value();
    }
    void SetUp() override {
        (void)Context().MakeCurrent();
        m_engine.SetPreviewSize(C2DRect(0, 0, kWidth, kHeight));
        m_engine.SetBkColors(0, 0, 1);
    }
    void TearDown() override { EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)); }

    [[nodiscard]] bool Open(const CBytes& file) {
        return m_engine.OpenBufferModel(reinterpret_cast<const char*>(file.data()),
                                        static_cast<long>(file.size()), {});
    }
    CImage Paint() {
        m_engine.PaintModel();
        return Context().ReadPixels().Value();
    }
    /** Two cubes, one above the other. */
    static CBytes Tower() {
        return Scene(Mesh("Low", CubePoints(0, 0, -3) + CubeFaces()) +
                     Mesh("High", CubePoints(0, 0, 3) + CubeFaces()));
    }

    C3dsDisplayWrap m_engine;
};
