// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/CRenderOptions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "row_name.h"
#include "words.h"

namespace {

CResult<CRenderOptions> Parse(const std::vector<std::string>& arguments) {
    return ParseRenderOptions(arguments);
}

struct CRefusedCase {
    const char* name;
    const char* arguments;
    const char* message;
};

class CRenderOptionsRefused : public testing::TestWithParam<CRefusedCase> {};

TEST_P(CRenderOptionsRefused, SaysWhatIsWrong) {
    const auto parsed = Parse(Words(GetParam().arguments));
    ASSERT_FALSE(parsed);
    EXPECT_EQ(parsed.Error().code, EErrorCode::BadArgument);
    EXPECT_EQ(parsed.Error().message, GetParam().message);
}

constexpr const char* kSizeForm = "--size needs WIDTHxHEIGHT in pixels";
constexpr const char* kSizeRange = "--size each side must be from 1 to 16384 pixels";
constexpr const char* kColor = "--background needs R,G,B, each from 0 to 255";

const CRefusedCase kRefused[] = {
    {"Nothing", "", "no input file given"},
    {"ThreeFiles", "a b c", "too many files given"},
    {"EmptyInput", "''", "the name of the input file is empty"},
    {"EmptyOutput", "a ''", "the name of the output file is empty"},
    {"Unknown", "a --sice 3x3", "unknown option '--sice'"},
    {"NoValue", "a --size", "--size needs a value"},
    {"BatchWithoutFolder", "--batch a", "--batch needs --into FOLDER"},
    {"ValueForFlag", "a --stats=1", "--stats takes no value"},
    {"SizeOne", "a --size 640", kSizeForm},
    {"SizeText", "a --size 640x48o", kSizeForm},
    {"SizeHuge", "a --size 99999999999x1", kSizeForm},
    {"SizeZero", "a --size 0x480", kSizeRange},
    {"SizeNegative", "a --size 640x-1", kSizeRange},
    {"SizeOver", "a --size 16385x1", kSizeRange},
    {"ColorOver", "a --background 1,2,256", kColor},
    {"ColorLong", "a --background 1,2,3,4", kColor},
    {"FrameNan", "a --frame nan", "--frame needs a number"},
    {"Samples", "a --samples 0", "--samples needs a number from 1 to 32"},
    {"Overlay", "a --overlay bounds,grid", "--overlay needs a list of bounds, cameras, lights and axes"},
    {"TextureMode", "a --texture-mode 4", "--texture-mode needs a number from 0 to 3"},
    {"Camera", "a --camera=", "--camera needs a name"},
};
INSTANTIATE_TEST_SUITE_P(Arguments, CRenderOptionsRefused, testing::ValuesIn(kRefused), kRowName);

TEST(CRenderOptionsTest, ReadsEverythingInAnyOrder) {
    const auto parsed = Parse({"--wire", "in.3ds", "--size=16384x1", "--camera", "Camera 1", "--frame",
                               "-2.5", "--background", "255,0,51", "out.png", "--samples", "8", "--overlay",
                               "axes,bounds", "--texture-mode", "2", "--no-file-lights", "--stats"});
    ASSERT_TRUE(parsed);
    const CRenderOptions& o = parsed.Value();
    EXPECT_EQ(o.input, "in.3ds");
    EXPECT_EQ(o.output, "out.png");
    EXPECT_EQ(o.width, 16384);
    EXPECT_EQ(o.camera, "Camera 1");
    EXPECT_EQ(o.frame, -2.5f);
    EXPECT_EQ(o.background, (CVec3{1, 0, 0.2f}));
    EXPECT_EQ(o.samples, 8);
    EXPECT_EQ(o.textureMode, 2);
    EXPECT_TRUE(o.wire && o.stats && !o.fileLights);
    EXPECT_TRUE(o.overlays.axes && o.overlays.bounds && !o.overlays.lights && !o.overlays.cameras);
}

TEST(CRenderOptionsTest, OutputIsNamedAfterTheInputUnlessOnlyStatsAreWanted) {
    EXPECT_EQ(Parse({"/models/my car.v2.3ds"}).Value().output, "my car.v2.png");
    EXPECT_EQ(Parse({"--stats", "car.3ds"}).Value().output, "");
    EXPECT_EQ(Parse({"--", "--odd.3ds"}).Value().input, "--odd.3ds");
}

TEST(CRenderOptionsTest, HelpAndVersionNeedNoFile) {
    EXPECT_EQ(Parse({"-h"}).Value().action, CRenderOptions::EAction::Help);
    EXPECT_EQ(Parse({"--version"}).Value().action, CRenderOptions::EAction::Version);
}

}  // namespace
