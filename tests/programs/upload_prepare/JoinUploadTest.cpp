// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/join_upload.h"

#include <gtest/gtest.h>

#include "export/drive/upload_notes.h"
#include "files/CTestFolder.h"
#include "programs/upload_prepare/landing_page.h"
#include "row_name.h"

namespace fs = std::filesystem;

namespace {

class JoinUploadTest : public testing::Test {
  protected:
    JoinUploadTest() {
        (void)model.Add("index.html", "<!DOCTYPE html>\n<html lang=\"de\"><title>page</title>");
        (void)model.Add("screenshot.jpg", "picture");
        (void)model.Add("a 1.3ds.zip", std::string(2500, 'z'));
        EXPECT_TRUE(WriteUploadNotes(model.Path(), {{"/else/x.png"}}));
    }
    CResult<CUploadContent> Join(const std::string& name) {
        return JoinUpload({model.Path(), ORBIVUE_UPLOAD_TEMPLATE, upload.Path(), name});
    }
    [[nodiscard]] std::string Landing() const { return CTestFolder::TextOf(upload / "index.html"); }
    [[nodiscard]] bool LandingHas(std::string_view text) const {
        return Landing().find(text) != std::string::npos;
    }

    const CTestFolder model, upload;
};

struct CLanguageCase {
    const char* name;
    const char* html;
    const char* language;
};
class PageLanguageTest : public testing::TestWithParam<CLanguageCase> {};

TEST_P(PageLanguageTest, IsThatOfItsFirstTag) {
    EXPECT_EQ(LanguageOfPage(GetParam().html), GetParam().language);
}

const CLanguageCase kLanguages[] = {
    {"German", "<!DOCTYPE html><html lang=\"de\">", "de"},
    {"Region", "<html lang=\"pt-BR\" x>", "pt-BR"},
    {"None", "<html>", "en"},
    {"Empty", "<html lang=\"\">", "en"},
    {"NoLanguage", "<html lang=\"../x\">", "en"},
    {"CutShort", "<html lang=\"d", "d"},
};
INSTANTIATE_TEST_SUITE_P(Languages, PageLanguageTest, testing::ValuesIn(kLanguages), kRowName);

}  // namespace

TEST_F(JoinUploadTest, PutsALandingPageBeforeThePage) {
    const CResult<CUploadContent> joined = Join("chess.3ds");
    ASSERT_TRUE(joined) << joined.Error().Text();
    std::string names;
    for (const CUploadContent::CFile& file : joined.Value().files) names += file.name + "; ";
    EXPECT_EQ(names, "index.html; model/a 1.3ds.zip; model/index.html; model/screenshot.jpg; ");
    EXPECT_EQ(CTestFolder::TextOf(upload / "model/screenshot.jpg"), "picture");
    EXPECT_EQ(joined.Value().bytes, Landing().size() + 2500 + 7 + fs::file_size(model / "index.html"));
    EXPECT_EQ(joined.Value().outside.value().front(), "/else/x.png");
    for (const char* text :
         {"<html lang=\"de\">", "<title>chess</title>", "src=\"model/screenshot.jpg\"",
          "href=\"model/index.html\"", "href=\"model/a%201.3ds.zip\"", "herunterladen (2,5 KB)"})
        EXPECT_TRUE(LandingHas(text)) << text;
}

TEST_F(JoinUploadTest, LeavesOutWhatThereIsNot) {
    for (const char* file : {"screenshot.jpg", "a 1.3ds.zip", kUploadNotesFile}) fs::remove(model / file);
    (void)model.Add("index.html", "<html>");
    const CResult<CUploadContent> joined = Join("chess.3ds");
    ASSERT_TRUE(joined);
    EXPECT_FALSE(joined.Value().outside);  // nobody knows
    EXPECT_FALSE(LandingHas("<img") || LandingHas("Download"));
    EXPECT_TRUE(LandingHas("<html lang=\"en\">"));
}

TEST_F(JoinUploadTest, LetsNoNameBreakOut) {
    ASSERT_TRUE(Join("</title><script>alert(1)</script>\" onload='x'{{page}}.3ds"));
    EXPECT_FALSE(LandingHas("<script") || LandingHas("\" onload"));
    EXPECT_TRUE(
        LandingHas("<title>&lt;/title&gt;&lt;script&gt;alert(1)&lt;/script&gt;&quot; "
                   "onload=&#39;x&#39;{{page}}</title>"));
}

TEST_F(JoinUploadTest, FollowsNoLink) {
    const CTestFolder elsewhere;
    (void)elsewhere.Add("secret", "secret");
    fs::create_symlink(elsewhere / "secret", model / "link");
    fs::create_directory_symlink(elsewhere.Path(), model / "folder");
    ASSERT_TRUE(Join("chess.3ds"));
    EXPECT_FALSE(fs::exists(upload / "model/link") || fs::exists(upload / "model/folder"));
}

TEST_F(JoinUploadTest, TakesNothingAlongThatLiesInTheUploadFolder) {
    const CTestFolder elsewhere;
    fs::create_directory_symlink(elsewhere.Path(), upload / "model");
    EXPECT_EQ(Join("chess.3ds").Error().code, EErrorCode::Exists);
    EXPECT_EQ(elsewhere.Count(), 0U);
}

TEST_F(JoinUploadTest, FailsWithoutAPage) {
    fs::remove(model / "index.html");
    EXPECT_EQ(Join("chess.3ds").Error().code, EErrorCode::NotFound);
}

TEST_F(JoinUploadTest, TakesFourArgumentsWhateverTheyLookLike) {
    const std::vector<std::string> arguments{model.Path(), ORBIVUE_UPLOAD_TEMPLATE, upload.Path(), "--help"};
    const CResult<CUploadArguments> read = ReadUploadArguments(arguments);
    ASSERT_TRUE(read);
    EXPECT_EQ(read.Value().modelName, "--help");
    EXPECT_FALSE(ReadUploadArguments(std::span(arguments).first(3)));
    EXPECT_FALSE(ReadUploadArguments(std::vector<std::string>{"relative", "/", "/", "a"}));
}
