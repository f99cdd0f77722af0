// SPDX-License-Identifier: MIT
#include "export/drive/drive_export.h"

#include <gtest/gtest.h>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

/** An installed helper, and an export that notes what it does. */
class DriveExportTest : public testing::Test {
  protected:
    DriveExportTest() {
        fs::create_directories(app / "scripts/template");
        (void)app.Add("scripts/OrbivueUploadPrepare.exe", "");
        steps.writeScreenshot = [this](const std::string& path) { Note("screenshot.jpg", path); };
        steps.writePage = [this](const std::string& path) -> CStatus {
            Note("index.html", path);
            if (!pageFails) return CDone{};
            return CError{EErrorCode::WriteFailed, "no page", path};
        };
        steps.writeArchive = [this](const std::string& path) { Note("index.html", path); };
        steps.makeNotes = [] { return CUploadNotes{{"/elsewhere/a.png"}}; };
        steps.runHelper = [this](const std::wstring& line) {
            done += "helper ";
            commandLine = file_util_ex::ConvertToUTF8(line);
            isUploadFolderEmpty = fs::is_empty(UploadFolder());
        };
    }
    void Note(const std::string& name, const std::string& path) {
        done += name + ' ';
        modelFolder = file_util_ex::GetFilePath(path);
        EXPECT_EQ(path, modelFolder + "/" + name);
        EXPECT_TRUE(fs::is_directory(modelFolder));
    }
    [[nodiscard]] std::string UploadFolder() const {
        std::string folder = modelFolder;
        return folder.replace(folder.rfind("model_"), 5, "upload");
    }
    CStatus Export(std::chrono::hours later = 0h) {
        return ExportToDrive({app.Path(), cache.Path(), L"a \"b\".3ds"}, steps,
                             CDriveWorkArea::CTime::clock::now() + later);
    }

    const CTestFolder app, cache;
    CDriveExportSteps steps;
    bool pageFails = false, isUploadFolderEmpty = false;
    std::string done, modelFolder, commandLine;
};

}  // namespace

TEST_F(DriveExportTest, MakesThePageReadyAndHandsItOver) {
    ASSERT_TRUE(Export());
    EXPECT_EQ(done, "screenshot.jpg index.html index.html helper ");
    EXPECT_EQ(commandLine, '"' + (app / "scripts/OrbivueUploadPrepare.exe") + "\" \"" + modelFolder +
                               "\" \"" + (app / "scripts/template") + "\" \"" + UploadFolder() +
                               R"(" "a \"b\".3ds")");
    EXPECT_TRUE(isUploadFolderEmpty);
    EXPECT_EQ(ReadUploadNotes(modelFolder).Value().outside, std::vector<std::string>{"/elsewhere/a.png"});
}

TEST_F(DriveExportTest, MakesNothingWithoutHelperOrTemplate) {
    fs::remove(app / "scripts/template");
    EXPECT_FALSE(Export());
    fs::create_directory(app / "scripts/template");
    fs::remove(app / "scripts/OrbivueUploadPrepare.exe");
    EXPECT_FALSE(Export());
    EXPECT_EQ(done, "");
    EXPECT_EQ(cache.Count(), 0u);
}

TEST_F(DriveExportTest, StopsWhenThereIsNoPage) {
    pageFails = true;
    EXPECT_EQ(Export().Error().message, "no page");
    EXPECT_EQ(done, "screenshot.jpg index.html ");
    EXPECT_FALSE(fs::exists(modelFolder + "/" + kUploadNotesFile));
}

TEST_F(DriveExportTest, RemovesEarlierExportsOfYesterday) {
    ASSERT_TRUE(Export());
    const std::string first = modelFolder;
    ASSERT_TRUE(Export(23h));
    EXPECT_TRUE(fs::exists(first));
    const std::string second = modelFolder;
    steps.writeArchive = nullptr;
    ASSERT_TRUE(Export(25h));  // both were made just now
    EXPECT_FALSE(fs::exists(first) || fs::exists(second));
    EXPECT_TRUE(fs::exists(modelFolder));
}
