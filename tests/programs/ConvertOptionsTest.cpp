// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "files/CTestFolder.h"
#include "programs/orbivue_convert/CConversionPlan.h"
#include "programs/orbivue_convert/CConvertOptions.h"
#include "row_name.h"
#include "words.h"

namespace {

struct CRefusedCase {
    const char* name;
    const char *arguments, *message;
};

class ConvertOptionsRefused : public testing::TestWithParam<CRefusedCase> {};

TEST_P(ConvertOptionsRefused, SaysWhatIsWrong) {
    const auto parsed = ParseConvertOptions(Words(GetParam().arguments));
    ASSERT_FALSE(parsed);
    EXPECT_EQ(parsed.Error().code, EErrorCode::BadArgument);
    EXPECT_TRUE(parsed.Error().message.starts_with(GetParam().message)) << parsed.Error().message;
}

const CRefusedCase kRefused[] = {
    {"Nothing", "", "no input file given"},
    {"NoOutput", "a.3ds", "no output file given; or use --to"},
    {"ThreeFiles", "a.3ds b.3ds c.glb", "too many files given"},
    {"EmptyName", "'' c.glb", "the name of a file is empty"},
    {"UnknownEnding", "a.3ds b.fbx", "the name of the output file must end in one of glb"},
    {"NoEnding", "a.3ds b", "the name of the output file must end"},
    {"FolderAlone", "--folder d a.3ds b.glb", "--folder needs --to ENDING"},
    {"UnknownTo", "--to fbx a.3ds", "--to needs one of glb"},
    {"NoInputs", "--to glb", "no input file given"},
    {"SizeOfAScene", "--size 3x4 a.3ds b.glb", "--size means nothing"},
    {"CompressedPicture", "--compress --to png a.3ds", "--compress means nothing"},
    {"PageOption", "--gzip a.3ds b.glb", "--gzip means nothing"},
};
INSTANTIATE_TEST_SUITE_P(Arguments, ConvertOptionsRefused, testing::ValuesIn(kRefused), kRowName);

/** The outputs of inputs in a folder, with "refused" behind some. */
std::string Plan(const CTestFolder& folder, const std::string& arguments) {
    std::filesystem::current_path(folder.Path());
    const auto options = ParseConvertOptions(Words(arguments));
    EXPECT_TRUE(options) << options.Error().message;
    CConversionPlan plan(options.Value());
    std::string outputs;
    for (const std::string& input : options.Value().inputs) {
        const CConversion conversion = plan.Begin(input);
        outputs += (outputs.empty() ? "" : ", ") + conversion.output + (conversion.refusal ? " refused" : "");
        if (conversion.refusal) continue;
        if (!std::filesystem::exists(conversion.output)) folder.Add(conversion.output, "made");
        plan.Written(conversion);
    }
    std::filesystem::current_path("/");
    return outputs;
}

struct CPlanCase {
    const char* name;
    const char *arguments, *outputs;
};
class ConversionPlan : public testing::TestWithParam<CPlanCase> {};

TEST_P(ConversionPlan, LosesNothing) {
    const CTestFolder folder;
    std::filesystem::create_directories(folder / "sub");
    std::filesystem::create_directories(folder / "out");
    for (const char* name : {"a.3ds", "a.obj", "b.3DS", "sub/a.3ds", "out/old.glb", "x.y.zip", "old.3ds"})
        folder.Add(name, "model");
    std::filesystem::create_symlink("../a.3ds", folder / "out/link.glb");
    std::filesystem::create_hard_link(folder / "out/old.glb", folder / "out/OLD.glb");
    folder.Add("link.3ds", "model");
    EXPECT_EQ(Plan(folder, GetParam().arguments), GetParam().outputs);
}

const CPlanCase kPlans[] = {
    {"Named", "a.3ds out/old.glb", "out/old.glb"},
    {"OverItself", "a.3ds ./sub/../a.3ds", "./sub/../a.3ds refused"},
    {"OverItselfByALink", "a.3ds out/link.glb", "out/link.glb refused"},
    {"Beside", "--to .GLB a.3ds sub/a.3ds x.y.zip", "a.GLB, sub/a.GLB, x.y.GLB"},
    {"OneNameTwice", "--to glb --folder out a.3ds sub/a.3ds a.obj b.3DS",
     "out/a.glb, out/a.glb refused, out/a.glb refused, out/b.glb"},
    {"OtherWaysToTheFolder", "--to glb --folder sub/../out a.3ds ./a.3ds",
     "sub/../out/a.glb, sub/../out/a.glb refused"},
    {"Existing", "--to glb --folder out old.3ds a.3ds", "out/old.glb refused, out/a.glb"},
    {"Forced", "--to glb --folder out --force old.3ds", "out/old.glb"},
    {"ForcedOverAnInput", "--to glb --folder out --force link.3ds a.3ds", "out/link.glb refused, out/a.glb"},
    {"SameKind", "--to 3ds a.3ds a.obj", "a.3ds refused, a.3ds refused"},
};
INSTANTIATE_TEST_SUITE_P(Names, ConversionPlan, testing::ValuesIn(kPlans), kRowName);

/** As on a file system where letter case does not count. */
TEST(ConversionPlan, TakesTwoNamesOfOneFileForOne) {
    const CTestFolder folder;
    folder.Add("a.glb", "old");
    std::filesystem::create_hard_link(folder / "a.glb", folder / "A.glb");
    EXPECT_EQ(Plan(folder, "--to glb --force a.3ds A.3ds"), "a.glb, A.glb refused");
}

}  // namespace
