// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "files/CTestFolder.h"
#include "model/read_3ds/C3dsBytes.h"
#include "picture/decode/image_codec.h"
#include "picture/image_writer.h"
#include "programs/CProgramRun.h"
#include "row_name.h"
#include "sanitized.h"

namespace {

using CRun = CProgramRun;

CRun Render(const CTestFolder& folder, const std::string& arguments, const std::string& before = "") {
    return CRun::Of(ORBIVUE_RENDER, folder, arguments, before);
}

void AddScene(const CTestFolder& folder) {
    const CBytes camera = Chunk(0x4000, Text("Cam 1") + Chunk(0x4700, Floats({0, -8, 0, 0, 0, 0, 0, 45})));
    const CBytes moving = Track(0xB020, 2, Key(0, {0, 0, 0}) + Key(10, {0, 0, 50}));
    folder.Add("box.3ds",
               Scene(Material("Red") + camera + Cube("Box"), Keyframer(ObjectNode(0, "Box", 65535, moving))));
}

TEST(RenderProgramGLTest, WritesAPictureOfTheSizeAndBackground) {
    const CTestFolder folder;
    AddScene(folder);
    const CRun run = Render(folder, "box.3ds --size 120x80 --background 255,0,0");
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out + run.err, "");
    const auto image = image_codec::ReadImageFile(folder / "box.png");
    ASSERT_TRUE(image);
    EXPECT_EQ(image.Value().image.width, 120);
    EXPECT_EQ(image.Value().image.height, 80);
    EXPECT_EQ(image.Value().image.Pixel(0, 0)[0], 255);
    EXPECT_NE(image.Value().image.Pixel(60, 40)[2], 0);  // the box is grey
}

TEST(RenderProgramGLTest, StatsTellTheSceneTheCameraAndTheFrame) {
    const CTestFolder folder;
    AddScene(folder);
    const CRun run = Render(folder, "--stats box.3ds --camera 'Cam 1' --size 160x120");
    ASSERT_EQ(run.code, 0) << run.err;
    const auto stats = nlohmann::json::parse(run.out);
    EXPECT_EQ(stats["triangles"], 12);
    EXPECT_EQ(stats["vertices"], 8);
    EXPECT_EQ(stats["nodes"], 1);
    EXPECT_EQ(stats["animated"], true);
    EXPECT_EQ(stats["camera"]["eye"], nlohmann::json::array({0.0, -8.0, 0.0}));
    EXPECT_NEAR(stats["model"]["radius"].get<double>(), 1.7320508, 1e-5);
    EXPECT_GT(stats["peakMemoryMb"].get<double>(), 1);
    EXPECT_GT(stats["milliseconds"]["draw"].get<double>(), 0);
    EXPECT_FALSE(std::ifstream(folder / "box.png").good());
    const auto moved = nlohmann::json::parse(Render(folder, "--stats box.3ds --frame 10").out);
    EXPECT_NEAR(moved["model"]["center"][2].get<double>(), 50, 1e-3);
    EXPECT_NEAR(moved["camera"]["target"][2].get<double>(), 50, 1e-3);
}

TEST(RenderProgramGLTest, ConfinedItDrawsTheSamePicture) {
    if (kSanitized) GTEST_SKIP() << "the sanitizer needs more memory than the confinement allows";
    const CTestFolder folder;
    std::filesystem::create_directories(folder / "models");
    std::filesystem::create_directories(folder / "textures");
    const CImage red{1, 1, {255, 0, 0, 255}};
    ASSERT_TRUE(image_codec::WritePng(folder / "textures/skin.png", red, false));
    folder.Add("models/box.3ds",
               Scene(Material("Red", Chunk(0xA200, Chunk(0xA300, Text("skin.png")))) + Cube("Box")));
    const CRun run = Render(folder, "models/box.3ds free.png --size 60x40");
    ASSERT_EQ(run.code, 0) << run.err;
    const CRun confined = Render(folder, "--confined --stats models/box.3ds held.png --size 60x40");
    ASSERT_EQ(confined.code, 0) << confined.err;
    EXPECT_EQ(CTestFolder::TextOf(folder / "held.png"), CTestFolder::TextOf(folder / "free.png"));
    const auto stats = nlohmann::json::parse(confined.out);
    EXPECT_EQ(stats["textures"]["found"].size(), 1u);
    EXPECT_EQ(stats["confined"]["limits"], true);
    EXPECT_FALSE(nlohmann::json::parse(Render(folder, "--stats models/box.3ds").out).contains("confined"));
}

struct CExitCase {
    const char* name;
    const char* arguments;
    int code;
    const char* message;
    const char* before = "";
};

/** The colour in the middle of a drawn scene. */
std::array<int, 3> MiddleOf(const CTestFolder& folder, const std::string& arguments) {
    const CRun run = Render(folder, arguments + " --size 64x64 --samples 1 --no-file-lights", "");
    EXPECT_EQ(run.code, 0) << arguments << run.err;
    const auto image = image_codec::ReadImageFile(folder / "out.png");
    if (!image) return {};
    const auto pixel = image.Value().image.Pixel(32, 32);
    return {pixel[0], pixel[1], pixel[2]};
}

TEST(RenderProgramGLTest, DrawsScenesOfScripts) {
    const CTestFolder folder, elsewhere;
    AddScene(folder);
    EXPECT_TRUE(image_codec::WritePng(elsewhere / "blue.png", {1, 1, {0, 0, 255, 255}}, false));
    (void)elsewhere.Add("base.orv", "[Model]\nBkGrImage=blue.png\n");
    const std::string model = "Path=" + folder.Path() + "/box.3ds\n", script = elsewhere / "s.orv";
    (void)elsewhere.Add("s.orv", "[Green]\nCamera=Cam 1\n" + model + "Color=Box>|0|255|0;\n[Gone]\n" + model +
                                     "DeleteNode=Box;Cup;\nTemplate=base.orv\n");
    for (const std::string how : {"", "--confined "}) {
        if (kSanitized && !how.empty())
            continue;  // the sanitizer needs more memory than the confinement allows
        const auto green = MiddleOf(folder, how + script + " out.png");
        EXPECT_TRUE(green[1] > 100 && green[0] < 50 && green[2] < 50) << how;
        EXPECT_EQ(MiddleOf(folder, how + "--scene 2 " + script + " out.png"), (std::array<int, 3>{0, 0, 255}))
            << how;
    }
    EXPECT_EQ(Render(folder, "--scene 3 " + script + " out.png").code, 2);
    const CRun stats = Render(folder, "--stats --scene 2 " + script);
    EXPECT_EQ(nlohmann::json::parse(stats.out)["notes"].size(), 1u) << "there is no cup";
}

class RenderProgramExit : public testing::TestWithParam<CExitCase> {};

TEST_P(RenderProgramExit, HasItsCodeAndOneLineAndLeavesNoFile) {
    const CTestFolder folder;
    AddScene(folder);
    folder.Add("broken.3ds", "MM and then nothing");
    folder.Add("old.png", "old");
    const CRun run = Render(folder, GetParam().arguments, GetParam().before);
    EXPECT_EQ(run.code, GetParam().code);
    EXPECT_TRUE(run.err.starts_with("orbivue-render: ")) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1);
    EXPECT_NE(run.err.find(GetParam().message), std::string::npos) << run.err;
    EXPECT_EQ(CTestFolder::TextOf(folder / "old.png"), "old");
    EXPECT_EQ(folder.Count(), 4u);  // with the error text
}

const CExitCase kExits[] = {
    {"Usage", "box.3ds --size 0x0", 1, "--size"},
    {"UnknownCamera", "box.3ds old.png --camera Nobody", 1, "no camera 'Nobody'"},
    {"Missing", "none.3ds old.png", 2, "none.3ds"},
    {"NameWithEscapes", "'a\x1B[31m\nb.3ds' old.png", 2, "a [31m b.3ds"},
    {"Broken", "broken.3ds old.png", 2, "broken.3ds"},
    {"Folder", "/tmp old.png", 2, "/tmp"},
    {"NoFolder", "box.3ds no/such/folder/a.png", 3, "no/such/folder/a.png"},
    {"StatsToFullDisk", "box.3ds --stats >/dev/full", 3, "statistics"},
    // Files of 512 bytes at most, and no signal for more.
    {"FullDisk", "box.3ds old.png --overlay axes --size 600x500", 3, "old.png",
     "trap '' XFSZ; ulimit -f 1; "},
};
INSTANTIATE_TEST_SUITE_P(Failures, RenderProgramExit, testing::ValuesIn(kExits), kRowName);

}  // namespace
