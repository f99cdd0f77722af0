// SPDX-License-Identifier: MIT
#include "script/CScriptFiles.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "files/CTestFolder.h"
#include "row_name.h"

namespace {

namespace fs = std::filesystem;

struct CNameRow {
    const char* name;
    const char* written;
    const char* found;  ///< in the folder; null: nothing
};
class ScriptFilesTest : public testing::TestWithParam<CNameRow> {};
const CNameRow kRows[] = {
    {"Plain", "m.3ds", "show/m.3ds"},
    {"Below", "parts/Wheel.3ds", "show/parts/Wheel.3ds"},
    {"Backslashes", "parts\\wheel.3DS", "show/parts/Wheel.3ds"},
    {"OtherCaseAbove", "..\\SAMPLES\\CAR.3DS", "Samples/car.3ds"},
    {"Quoted", " \"m.3ds\" ", "show/m.3ds"},
    {"OfOtherComputer", "C:\\Program Files\\show\\parts\\wheel.3ds", "show/parts/Wheel.3ds"},
    {"OfOtherHost", "\\\\server\\models\\M.3ds", "show/m.3ds"},
    {"AbsoluteElsewhere", "/home/nobody/models/m.3ds", "show/m.3ds"},
    {"CodePage", "\xEA\xF3\xE1.3ds", "show/\xD0\x9A\xD1\x83\xD0\xB1.3ds"},
    {"ANameWithABackslash", "odd\\name.3ds", "show/odd\\name.3ds"},
    {"Missing", "gone.3ds", nullptr},
    {"Folder", "parts", nullptr},
    {"Nothing", "..", nullptr},
};
TEST_P(ScriptFilesTest, FindsWhatPeopleMean) {
    const CTestFolder folder;
    fs::create_directories(folder / "show/parts");
    fs::create_directories(folder / "Samples");
    for (const CNameRow& row : kRows)
        if (row.found) (void)folder.Add(row.found, "x");
    CScriptFiles files;
    const auto found = files.Find(folder / "show", GetParam().written);
    EXPECT_EQ(found.value_or("nothing"),
              GetParam().found ? folder / GetParam().found : std::string("nothing"));
}
INSTANTIATE_TEST_SUITE_P(All, ScriptFilesTest, testing::ValuesIn(kRows), kRowName);

TEST(ScriptPicturesTest, StayInTheSurroundings) {
    const CTestFolder home;
    for (const char* path : {"Pictures", "models/maps", "shows", "other"})
        fs::create_directories(home / path);
    for (const char* path : {"Pictures/passport.png", "Pictures/m.3ds", "models/maps/Wood.png",
                             "models/m.3ds", "shows/back.png", "other/x.png"})
        (void)home.Add(path, "x");
    const std::string before = ::getenv("HOME") ? ::getenv("HOME") : "";
    ::setenv("HOME", home.Path().c_str(), 1);
    fs::create_symlink(home / "Pictures/passport.png", home / "shows/link.png");
    CScriptFiles files;
    const auto answer = [&](const std::string& written) {
        return files.FindPicture(home / "shows/a.orv", home / "models/m.3ds", written).answer;
    };
    using EPicture = CScriptFiles::EPicture;
    EXPECT_EQ(answer("back.png"), EPicture::Found);
    EXPECT_EQ(answer("MAPS\\wood.png"), EPicture::Found) << "of the model";
    EXPECT_EQ(answer(home / "models/maps/Wood.png"), EPicture::Found);
    EXPECT_EQ(answer("../Pictures/passport.png"), EPicture::Outside);
    EXPECT_EQ(answer(home / "Pictures/passport.png"), EPicture::Outside);
    EXPECT_EQ(answer("link.png"), EPicture::Outside) << "links count by where they lead";
    EXPECT_EQ(answer("../other/x.png"), EPicture::Outside);
    EXPECT_EQ(answer("gone.png"), EPicture::Missing);
    // The script chooses its model, and with it no folder of the user's.
    const auto withModel = [&](const std::string& script, const std::string& model,
                               const std::string& picture) {
        return files.FindPicture(home / script, home / model, home / picture).answer;
    };
    EXPECT_EQ(withModel("shows/a.orv", "Pictures/m.3ds", "Pictures/passport.png"), EPicture::Outside);
    EXPECT_EQ(withModel("Pictures/a.orv", "Pictures/m.3ds", "Pictures/passport.png"), EPicture::Found);
    EXPECT_EQ(withModel("shows/a.orv", "other/gone.3ds", "other/x.png"), EPicture::Outside);
    // Nor does its template, which may lie anywhere.
    files.SetScript(home / "shows/a.orv");
    EXPECT_EQ(withModel("Pictures/t.orv", "models/m.3ds", "Pictures/passport.png"), EPicture::Outside);
    EXPECT_EQ(withModel("Pictures/t.orv", "Pictures/m.3ds", "Pictures/passport.png"), EPicture::Outside);
    EXPECT_EQ(withModel("other/t.orv", "models/m.3ds", "other/x.png"), EPicture::Found);
    files.SetScript(home / "Pictures/a.orv");
    EXPECT_EQ(withModel("Pictures/t.orv", "models/m.3ds", "Pictures/passport.png"), EPicture::Found);
    ::setenv("HOME", before.c_str(), 1);
}

}  // namespace
