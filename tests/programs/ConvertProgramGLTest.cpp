// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "model/open/load_scene.h"
#include "picture/decode/image_codec.h"
#include "picture/image_writer.h"
#include "programs/CProgramRun.h"
#include "row_name.h"
#include "sanitized.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"
#include "words.h"

namespace {

CProgramRun Convert(const CTestFolder& folder, const std::string& arguments, const std::string& before = "") {
    return CProgramRun::Of(ORBIVUE_CONVERT, folder, arguments, before);
}

/** A model of each kind that opens, with a picture, and one that does not open. */
class CModels {
  public:
    CModels() {
        CSceneBuilder builder;
        CMaterialValues red;
        red.texture = "skin.png";
        builder.AddMaterial("Red", red);
        builder.AddPart("Box", shapes::Box({10, 10, 10}).Material("Red"), nullptr, {});
        builder.Save(folder / "box.3ds");
        EXPECT_TRUE(image_codec::WritePng(folder / "skin.png", {1, 1, {255, 0, 0, 255}}, false));
        folder.Add("tri.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
        folder.Add("show.orv", "[One]\nPath=box.3ds\n[None]\nPath=box.3ds\nDeleteNode=Box;\n");
        folder.Add("broken.3ds", "MM and then nothing");
        folder.Add("old.glb", "old");
        std::filesystem::create_directory(folder / "out");
    }
    [[nodiscard]] bool Has(const std::string& name) const { return std::filesystem::exists(folder / name); }

    CTestFolder folder;
};

class ConvertProgramTest : public testing::Test {
  protected:
    void SetUp() override {
        if (kSanitized) GTEST_SKIP() << "the sanitizer needs more memory than the confinement allows";
    }
    const CModels models;
};

struct CConvertCase {
    const char* name;
    const char* arguments;
    const char* made;  ///< files
    int code = 0;
    std::string told = {};  ///< among the error lines, parted by "|"; none: nothing is told
    const char* before = "";
};

class ConvertProgram : public ConvertProgramTest, public testing::WithParamInterface<CConvertCase> {};

TEST_P(ConvertProgram, MakesItsFilesAndNoOthers) {
    const std::size_t before = models.folder.Count();
    const CProgramRun run = Convert(models.folder, GetParam().arguments, GetParam().before);
    EXPECT_EQ(run.code, GetParam().code) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.empty(), GetParam().told.empty()) << run.err;
    std::istringstream told(GetParam().told);
    for (std::string one; std::getline(told, one, '|');)
        EXPECT_NE(run.err.find(one), std::string::npos) << run.err;
    std::size_t outside = 0;
    for (const std::string& name : Words(GetParam().made)) {
        EXPECT_TRUE(models.Has(name)) << name;
        outside += name.find('/') == std::string::npos && name != "old.glb";
    }
    EXPECT_EQ(models.folder.Count(), before + outside + 1) << "with the error text";
    const bool replaces = GetParam().made == std::string("old.glb");
    EXPECT_EQ(CTestFolder::TextOf(models.folder / "old.glb") == "old", !replaces);
}

constexpr char kFullDisk[] = "trap '' XFSZ; ulimit -f 1; ";
const CConvertCase kCases[] = {
    {"Glb", "box.3ds new.glb", "new.glb"},
    {"Replaces", "box.3ds old.glb", "old.glb"},
    {"Pov", "tri.obj new.pov", "new.pov"},
    {"Page", "box.3ds new.html --no-cameras-bar --double-sided", "new.html"},
    {"PageWithoutItsScript", "box.3ds new.html --javascript none.js", "", 1, "none.js"},
    {"SplitPage", "box.3ds out/new.html --split --download-link --size 40x30 --language de --angles 10,20,30",
     "out/new.html out/box.3ds.zip"},
    {"PackedPage", "box.3ds out/new.html --gzip", "out/new.html out/new.html.gz out/.htaccess"},
    {"BigEnding", "tri.obj new.PNG --size 40x30", "new.PNG"},
    {"Archive", "show.orv out/new.zip --size 40x30", "out/new.zip"},
    {"CopiesPictures", "box.3ds out/new.3ds", "out/new.3ds out/skin.png"},
    {"Dashes", "-- box.3ds -new.glb", "-new.glb"},
    {"ManyWithABadOne", "--to glb --folder out/deep box.3ds broken.3ds none.3ds tri.obj",
     "out/deep/box.glb out/deep/tri.glb", 1, "broken.3ds: |none.3ds: |not converted: 2 of 4 files"},
    {"OneNameTwice", "--to jpg --size 8x8 --folder out box.3ds ./box.3ds", "out/box.jpg", 1,
     "./box.3ds: out/box.jpg is written from box.3ds already"},
    {"KeepsWhatIsThere", "--to glb --folder . box.3ds old.3ds", "box.glb", 1, "old.glb exists already"},
    {"OverAPictureOfTheModel", "box.3ds skin.png", "", 1, "skin.png: is a file of the model"},
    {"OverTheModelOfAScript", "show.orv box.3ds", "", 1, "box.3ds: is a file of the model"},
    {"OverItself", "box.3ds ./box.3ds", "", 1, "stays as it is"},
    {"Broken", "broken.3ds old.glb", "", 1, "broken.3ds: "},
    {"NameWithEscapes", "'a\x1B[31m\nb.3ds' new.glb", "", 1, "a [31m b.3ds"},
    {"NoScene", "--scene 3 show.orv new.glb", "", 1, "--scene"},
    {"NoCamera", "--camera Nobody box.3ds new.png", "", 1, "Nobody"},
    {"NoFolder", "box.3ds no/such/new.glb", "", 1, "no/such/new.glb"},
    {"FolderIsAFile", "--to glb --folder box.3ds tri.obj", "", 1, "the folder cannot be made"},
    {"FullDisk", "box.3ds old.glb", "", 1, "old.glb", kFullDisk},
    {"FullDiskForAPicture", "box.3ds new.png --size 900x900", "", 1, "new.png", kFullDisk},
    {"WrongUsage", "box.3ds new.fbx", "", 2, "must end in one of"},
    {"Verbose", "--verbose box.3ds new.glb", "new.glb", 0, "box.3ds: new.glb is written"},
};
INSTANTIATE_TEST_SUITE_P(Runs, ConvertProgram, testing::ValuesIn(kCases), kRowName);

/** What has the name of the output, by shell commands in "out" beside the folder "real", for the ending $1. */
struct CNamed {
    const char *what, *made;
    int code;
    const char* told;  ///< after a failure
    bool all = false;  ///< tried with all endings; one stands for the others
};
const CNamed kNamed[] = {
    {"link to a file", "ln -s ../real/old.$1 x.$1", 0, "", true},
    {"link to a new file", "ln -s ../real/new.$1 x.$1", 0, ""},
    {"links through a folder", "ln -s ../real dir; ln -s dir/old.$1 y.$1; ln -s y.$1 x.$1", 0, ""},
    {"link to another spelling", "ln -s ../real/new.GLB x.$1; ln -s new.GLB ../real/new.$1", 0, ""},
    {"link to another kind", "ln -s ../real/secret x.$1", 1, "link to a file of another kind", true},
    {"link of a stranger", "ln -s ../real/old.$1 x.$1; chown -h 4321 x.$1", 1, "no permission"},
    {"link into nowhere", "ln -s ../none/new.$1 x.$1", 1, "no such file or folder"},
    {"ring of links", "ln -s x.$1 x.$1", 1, "too many links"},
    {"pipe", "mkfifo x.$1", 1, "no file that can be replaced", true},
    {"folder", "mkdir x.$1", 1, "a folder"},
};

class ConvertOver : public ConvertProgramTest, public testing::WithParamInterface<const char*> {};

TEST_P(ConvertOver, ALinkIsFollowedAndNothingElseIsLost) {
    const std::string ending = GetParam();
    for (const CNamed& named : kNamed) {
        if (!named.all && ending != "glb") continue;
        if (std::string_view(named.made).find("chown") != std::string_view::npos && ::geteuid() != 0)
            continue;
        const CModels models;
        const std::string before =
            "set -- " + ending +
            "; mkdir -p real out; echo secret >real/secret; echo old >real/old.$1; (cd out; " + named.made +
            "); ";
        const CProgramRun run = Convert(models.folder, "box.3ds out/x." + ending, before);
        EXPECT_EQ(run.code, named.code) << named.what << ": " << run.err;
        EXPECT_NE(run.err.find(named.told), std::string::npos) << named.what << ": " << run.err;
        const bool isNew = std::filesystem::exists(models.folder / ("real/new." + ending));
        const bool isOld = CTestFolder::TextOf(models.folder / ("real/old." + ending)) == "old\n";
        EXPECT_EQ(isNew || !isOld, named.code == 0) << named.what;
        EXPECT_EQ(CTestFolder::TextOf(models.folder / "real/secret"), "secret\n") << named.what;
        const auto there = std::filesystem::symlink_status(models.folder / ("out/x." + ending)).type();
        EXPECT_NE(there, std::filesystem::file_type::regular) << named.what << " is as it was";
    }
}
INSTANTIATE_TEST_SUITE_P(Endings, ConvertOver,
                         testing::Values("png", "jpg", "3ds", "zip", "glb", "html", "pov"),
                         [](const auto& row) { return std::string("Over_") + row.param; });

TEST_F(ConvertProgramTest, TellsWhatAModelLacks) {
    std::filesystem::remove(models.folder / "skin.png");
    EXPECT_NE(Convert(models.folder, "box.3ds new.glb").err.find("1 thing is missing"), std::string::npos);
    EXPECT_NE(Convert(models.folder, "--verbose box.3ds new.glb").err.find("skin.png"), std::string::npos);
    EXPECT_EQ(Convert(models.folder, "--quiet box.3ds new.glb").err, "");
}

TEST_F(ConvertProgramTest, GoesByTheOptions) {
    const auto middle = [&](const std::string& options) {
        const CProgramRun run = Convert(models.folder, options + " a.png --size 64x48");
        EXPECT_EQ(run.code, 0) << run.err;
        auto read = image_codec::ReadImageFile(models.folder / "a.png");
        EXPECT_TRUE(read && read.Value().image.width == 64 && read.Value().image.height == 48);
        const std::uint8_t* pixel = read.Value().image.Pixel(32, 24);
        return std::vector<int>{pixel[0], pixel[1], pixel[2]};
    };
    EXPECT_EQ(middle("--background 0,0,255 --scene 2 show.orv"), (std::vector<int>{0, 0, 255}));
    EXPECT_NE(middle("show.orv"), middle("--no-textures show.orv"));
}

/** What was written opens again with the same triangles. */
TEST_F(ConvertProgramTest, ModelsGoRound) {
    for (const char* arguments :
         {"box.3ds out/a.3ds", "out/a.3ds out/b.zip --size 40x30", "out/b.zip out/c.3ds"})
        ASSERT_EQ(Convert(models.folder, arguments).code, 0) << arguments;
    for (const char* name : {"a.3ds", "b.zip", "c.3ds"}) {
        const auto loaded = LoadScene(models.folder / (std::string("out/") + name));
        ASSERT_TRUE(loaded) << name;
        EXPECT_EQ(loaded.Value().prepared.triangleCount, 12u) << name;
        ASSERT_EQ(loaded.Value().prepared.textures.size(), 1u) << name;
        EXPECT_FALSE(loaded.Value().prepared.textures[0].image.IsEmpty()) << name;
    }
}

}  // namespace
