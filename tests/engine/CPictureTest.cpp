// SPDX-License-Identifier: MIT
#include "engine/CPictureTest.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "camera/camera_matrices.h"
#include "engine/gl/CGlCurrent.h"
#include "engine/gl/gl_api.h"
#include "picture/decode/image_codec.h"
#include "picture/image_writer.h"

namespace {

constexpr int kWidth = 320, kHeight = 240;
const std::filesystem::path kGolden = std::filesystem::path(ORBIVUE_SOURCE_DIR) / "tests/engine/golden";
const std::filesystem::path kActual = std::filesystem::path(ORBIVUE_BINARY_DIR) / "pictures";

void Save(const CImage& image, const std::string& name) {
    std::filesystem::create_directories(kActual);
    // The assertion that follows fails in any case and says where to look.
    (void)image_codec::WritePng((kActual / name).string(), image, false);
}

}  // namespace

void CPictureTest::SetUp() {
    Context();
    LookFrom({0, 0, 5});
}

void CPictureTest::TearDown() {
    m_renderer.Clear(Gl());
}

COffscreenContext& CPictureTest::Context() {
    static COffscreenContext s_context = [] {
        CResult<COffscreenContext> made = COffscreenContext::Create(kWidth, kHeight);
        if (!made) {
            ADD_FAILURE() << made.Error().Text();
            std::abort();
        }
        return std::move(made).Value();
    }();
    return s_context;
}

CGlCurrent& CPictureTest::Gl() {
    return Context().MakeCurrent();
}

CMatrix4d CameraMatrix(CVec3 eye, CVec3 target, float fovYDeg, float aspect) {
    using namespace camera_matrices;
    const CVec3 up = std::abs(Normalized(eye - target).z) > 0.999f ? CVec3{0, 1, 0} : CVec3{0, 0, 1};
    const CMatrix4d lens = Perspective(static_cast<double>(fovYDeg), static_cast<double>(aspect), 0.1, 100);
    return lens * LookAt(eye, target, up);
}

void CPictureTest::LookFrom(CVec3 eye, CVec3 target) {
    m_projection = CameraMatrix(eye, target, 45, static_cast<float>(kWidth) / kHeight);
}

CImage CPictureTest::Draw(const CDrawOptions& options) {
    m_renderer.Upload(Gl(), m_builder.Scene());
    Place();
    return DrawAgain(options);
}

void CPictureTest::Place() {
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(m_projection.ToFloat().data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(m_turn.ToFloat().data());
    glClearColor(0.2f, 0.2f, 0.2f, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

CImage CPictureTest::DrawAgain(const CDrawOptions& options) {
    m_renderer.Draw(Gl(), m_builder.Scene(), options);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    CResult<CImage> image = Context().ReadPixels();
    EXPECT_TRUE(image);
    return image ? std::move(image).Value() : CImage{};
}

testing::AssertionResult MatchesGolden(const CImage& image, const std::string& name) {
    const std::string file = name + ".png";
    const auto fail = [&](const std::string& why) {
        Save(image, file);
        return testing::AssertionFailure() << why << "; look at " << (kActual / file);
    };
    const auto golden = image_codec::ReadImageFile((kGolden / file).string());
    if (!golden) return fail(golden.Error().Text());
    const CImage& expected = golden.Value().image;
    if (expected.width != image.width || expected.height != image.height) return fail("another size");
    CImage difference = image;
    int largest = 0, count = 0;
    for (std::size_t i = 0; i < image.rgba.size(); ++i) {
        const int d = i % 4 == 3 ? 0 : std::abs(image.rgba[i] - expected.rgba[i]);
        largest = std::max(largest, d);
        count += d != 0;
        difference.rgba[i] = static_cast<std::uint8_t>(i % 4 == 3 ? 255 : std::min(255, d * 8));
    }
    // Another processor's vector instructions round a value otherwise now and then.
    constexpr int kRounding = 1;
    if (largest <= kRounding) return testing::AssertionSuccess();
    Save(difference, name + ".difference.png");
    return fail(std::to_string(count) + " values differ, by up to " + std::to_string(largest));
}

CColor ColorAt(const CImage& image, int x, int y) {
    const std::uint8_t* pixel = image.Pixel(x, y);
    return {pixel[0], pixel[1], pixel[2]};
}

testing::AssertionResult HasColor(const CImage& image, int x, int y, CColor expected, int tolerance) {
    const CColor actual = ColorAt(image, x, y);
    for (std::size_t c = 0; c < 3; ++c) {
        if (std::abs(actual[c] - expected[c]) > tolerance) {
            return testing::AssertionFailure()
                   << "(" << actual[0] << ", " << actual[1] << ", " << actual[2] << ") at " << x << ", " << y
                   << " is not (" << expected[0] << ", " << expected[1] << ", " << expected[2] << ")";
        }
    }
    return testing::AssertionSuccess();
}

int CountDrawn(const CImage& image) {
    int count = 0;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) count += ColorAt(image, x, y) != ColorAt(image, 0, 0);
    }
    return count;
}

std::vector<double> ReadGlState() {
    std::vector<double> state;
    const auto add = [&state](std::initializer_list<GLenum> names) {
        for (const GLenum name : names) {
            std::array<double, 16> values{};
            glGetDoublev(name, values.data());
            state.insert(state.end(), values.begin(), values.end());
        }
    };
    add({GL_CULL_FACE, GL_CULL_FACE_MODE, GL_FRONT_FACE, GL_DEPTH_TEST, GL_DEPTH_FUNC, GL_DEPTH_WRITEMASK});
    add({GL_LINE_WIDTH, GL_POLYGON_MODE, GL_CURRENT_COLOR, GL_CURRENT_PROGRAM, GL_POLYGON_SMOOTH});
    add({GL_BLEND, GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA, GL_BLEND_DST_ALPHA});
    add({GL_ALPHA_TEST, GL_TEXTURE_2D, GL_ACTIVE_TEXTURE, GL_TEXTURE_BINDING_2D, GL_TEXTURE_MATRIX});
    add({GL_ARRAY_BUFFER_BINDING, GL_ELEMENT_ARRAY_BUFFER_BINDING, GL_VERTEX_ARRAY, GL_NORMAL_ARRAY});
    add({GL_TEXTURE_COORD_ARRAY, GL_COLOR_ARRAY, GL_LIGHTING, GL_LIGHT0, GL_LIGHT1, GL_SHADE_MODEL});
    add({GL_LIGHT_MODEL_LOCAL_VIEWER, GL_LIGHT_MODEL_TWO_SIDE, GL_LIGHT_MODEL_COLOR_CONTROL, GL_FOG});
    add({GL_MATRIX_MODE, GL_MODELVIEW_MATRIX, GL_PROJECTION_MATRIX, GL_NORMALIZE, GL_ATTRIB_STACK_DEPTH});
    add({GL_MODELVIEW_STACK_DEPTH, GL_PROJECTION_STACK_DEPTH, GL_CLIENT_ATTRIB_STACK_DEPTH});
    return state;
}
