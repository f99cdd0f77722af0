// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "model/read_3ds/C3dsBytes.h"
#include "picture/decode/image_codec.h"
#include "picture/image_writer.h"
#include "programs/CProgramRun.h"
#include "sanitized.h"

namespace {

using nlohmann::json;

class RenderBatchGLTest : public testing::Test {
  protected:
    void SetUp() override {
        if (kSanitized) GTEST_SKIP() << "the sanitizer needs more memory than the confinement allows";
        folder.Add("box.3ds", Scene(Material("Red") + Cube("Box"), {}));
        folder.Add("broken.3ds", "MM and then nothing");
        std::filesystem::create_directories(folder / "other");
        folder.Add("other/b\xC3\xB6x.3ds", Scene(Material("Red") + Cube("Box"), {}));
        std::filesystem::create_directories(folder / "out");
    }
    /** Runs a script of bash in the folder, where $BATCH is the program's batch form, and reads the lines that it prints. */
    std::vector<json> Run(const std::string& script) {
        folder.Add("script", "BATCH=\"'" ORBIVUE_RENDER "' --batch --size 64x48 --into out\"\n" + script);
        const CProgramRun run = CProgramRun::Of("bash", folder, "script");
        code = run.code;
        std::vector<json> lines;
        std::istringstream all(run.out);
        for (std::string line; std::getline(all, line);) lines.push_back(json::parse(line, nullptr, false));
        return lines;
    }

    CTestFolder folder;
    int code = -1;
};

TEST_F(RenderBatchGLTest, AnswersEachInputInItsOrder) {
    ASSERT_EQ(::mkfifo((folder / "pipe.3ds").c_str(), 0600), 0);
    const auto lines = Run(
        "eval $BATCH box.3ds broken.3ds none.3ds pipe.3ds http://host/a.3ds file://$PWD/other/b%C3%B6x.3ds");
    ASSERT_EQ(lines.size(), 6u) << CTestFolder::TextOf(folder / "err.txt");
    EXPECT_EQ(code, 0);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i]["number"], i + 1);
        EXPECT_EQ(lines[i].contains("output"), i == 0 || i == 5) << lines[i];
        EXPECT_EQ(lines[i].contains("error"), i != 0 && i != 5) << lines[i];
    }
    EXPECT_EQ(lines[0]["triangles"], 12);
    EXPECT_EQ(lines[4]["error"], "http://host/a.3ds: only files on this machine (file://) can be read");
    const auto image = image_codec::ReadImageFile(folder / "out/6.png");
    ASSERT_TRUE(image);
    EXPECT_EQ(image.Value().image.width, 64);
    EXPECT_FALSE(std::filesystem::exists(folder / "out/2.png"));
}

TEST_F(RenderBatchGLTest, ReadsNamesFromItsInput) {
    folder.Add("two\nlines.3ds", Scene(Material("Red") + Cube("Box"), {}));
    EXPECT_EQ(Run("printf 'box.3ds\\n\\nother/b\xC3\xB6x.3ds' | eval $BATCH").size(), 2u);
    const auto lines = Run("printf 'two\\nlines.3ds\\0box.3ds\\0' | eval $BATCH --null");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0]["input"], "two\nlines.3ds");
    EXPECT_TRUE(lines[0].contains("output")) << lines[0];
    EXPECT_TRUE(Run("eval $BATCH </dev/null").empty());
    EXPECT_EQ(code, 0);
}

/** The process that draws is stopped before a file and killed at it. */
TEST_F(RenderBatchGLTest, LosesOnlyTheFileThatEndsItsProcess) {
    const auto lines = Run(R"(mkfifo in out.txt
eval $BATCH --into $PWD/out <in >out.txt &
exec 3>in 4<out.txt
echo box.3ds >&3; read -r line <&4; echo "$line"
child=$(pgrep -n -f "^[^ ]*orbivue-render.*--into $PWD/out")
kill -STOP $child; exec 5<in; echo box.3ds >&3
while read -t 0 -u 5; do sleep 0.01; done  # until the name has been taken
sleep 0.2; kill -SEGV $child; kill -CONT $child; echo box.3ds >&3
read -r line <&4; echo "$line"; read -r line <&4; echo "$line"
exec 3>&-; wait)");
    ASSERT_EQ(lines.size(), 3u) << CTestFolder::TextOf(folder / "err.txt");
    EXPECT_TRUE(lines[0].contains("output"));
    EXPECT_EQ(lines[1]["error"], "drawing it ended the program");
    EXPECT_TRUE(lines[2].contains("output")) << lines[2];
}

TEST_F(RenderBatchGLTest, ShowsTheIconOfAScript) {
    const CImage wide{4, 2, std::vector<std::uint8_t>(32, 99)};
    ASSERT_TRUE(image_codec::WritePng(folder / "icon.png", wide, true));
    folder.Add("icon.orv", "[Model]\nPath=box.3ds\nIcon=icon.png\n");
    folder.Add("none.orv", "[Model]\nPath=box.3ds\nIcon=nowhere.png\n");
    const auto lines =
        Run("eval $BATCH icon.orv none.orv; '" ORBIVUE_RENDER "' --thumbnail 2 icon.orv t.png");
    ASSERT_EQ(lines.size(), 2u) << CTestFolder::TextOf(folder / "err.txt");
    EXPECT_FALSE(lines[0].contains("triangles"));
    EXPECT_EQ(image_codec::ReadImageFile(folder / "out/1.png").Value().image.rgba, wide.rgba);
    EXPECT_EQ(lines[1]["triangles"], 12) << "the model stands for it";
    EXPECT_EQ(image_codec::ReadImageFile(folder / "t.png").Value().image.width, 2);
}

TEST_F(RenderBatchGLTest, SaysThatItsFolderIsMissing) {
    EXPECT_TRUE(Run("eval $BATCH --into nowhere box.3ds").empty());
    EXPECT_EQ(code, 3);
    EXPECT_TRUE(Run("eval $BATCH --stats box.3ds").empty());
    EXPECT_EQ(code, 1);
    const auto lines = Run("mkdir locked; eval $BATCH box.3ds >/dev/full");
    EXPECT_EQ(code, 3);
}

}  // namespace
