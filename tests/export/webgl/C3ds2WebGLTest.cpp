// SPDX-License-Identifier: MIT
#include "export/webgl/C3ds2WebGL.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <nlohmann/json.hpp>
#include <set>

#include "engine/test_scenes.h"
#include "export/webgl/web_export_format.h"
#include "files/CTestFolder.h"
#include "model/textures/CTextureLocator.h"
#include "row_name.h"

using namespace test_scenes;

namespace {

namespace fs = std::filesystem;
using CNames = std::set<std::string>;

C3ds2WebGL::COutFormat Format(bool combine, bool gzip, std::string script = {}) {
    C3ds2WebGL::COutFormat format;
    format.minify = true;
    format.combine = combine;
    format.gzip = gzip;
    format.modelFileName = "cube.3ds";
    format.javaScript = std::move(script);
    return format;
}

/** A cube, exported into a folder of its own. */
class C3ds2WebGLTest : public testing::Test {
  protected:
    C3ds2WebGLTest() { m_builder.Add(MakeCube(), Plain({1, 0, 0})); }
    CStatus Export(const C3ds2WebGL::COutFormat& format, const std::string& name = "index.html") {
        const CPreparedScene& scene = m_builder.Scene();
        const CSeenView seen = web_export_format::SeenViewOf(scene, format);
        return C3ds2WebGL::TryExport({scene, CTextureLocator(), seen}, m_folder / name, format);
    }
    CNames Names() const {
        CNames names;
        for (const auto& entry : fs::directory_iterator(m_folder.Path()))
            names.insert(entry.path().filename());
        return names;
    }
    std::string Page(const std::string& name = "index.html") const {
        return CTestFolder::TextOf(m_folder / name);
    }
    nlohmann::json Settings() const {
        const std::string page = Page(), begin = R"(id="settings">)";
        const std::size_t from = page.find(begin) + begin.size();
        return nlohmann::json::parse(page.substr(from, page.find("</script>", from) - from));
    }
    CTestFolder m_folder;
    CBuilder m_builder;
};

struct COptionCase {
    const char* name;
    C3ds2WebGL::COutFormat format;
    CNames files;
};
class PageFiles : public C3ds2WebGLTest, public testing::WithParamInterface<COptionCase> {};

// And nothing stays of a page with all options that stood there.
TEST_P(PageFiles, AreThoseThatTheOptionsNeed) {
    ASSERT_TRUE(Export(Format(false, true, "1")));
    EXPECT_EQ(Names().size(), 9u);
    const CStatus status = Export(GetParam().format);
    ASSERT_TRUE(status) << status.Error().Text();
    EXPECT_EQ(Names(), GetParam().files);
    const std::string page = Page();
    ASSERT_TRUE(Export(GetParam().format));
    EXPECT_EQ(Page(), page) << "the same page again";
    EXPECT_EQ(Names(), GetParam().files);
}
INSTANTIATE_TEST_SUITE_P(
    C3ds2WebGLTest, PageFiles,
    testing::ValuesIn({
        COptionCase{"Combined", Format(true, false), {"index.html"}},
        COptionCase{"CombinedPacked", Format(true, true), {"index.html", "index.html.gz", ".htaccess"}},
        COptionCase{"Split", Format(false, false), {"index.html", "viewer.js", "scene.bin", "scene.bin.js"}},
        COptionCase{"SplitWithScript",
                    Format(false, false, "1"),
                    {"index.html", "viewer.js", "scene.bin", "scene.bin.js", "user.js"}},
        COptionCase{"CombinedWithScript", Format(true, false, "1"), {"index.html"}},
    }),
    kRowName);

TEST_F(C3ds2WebGLTest, TellsTheViewer) {
    C3ds2WebGL::COutFormat format = Format(false, false);
    format.bkRed = 0.25f;
    format.bkGreen = -1;
    format.bkBlue = NAN;
    format.displayFlag = format.downloadLink = true;
    format.cameraName = "top_cam";
    ASSERT_TRUE(Export(format));
    const nlohmann::json settings = Settings();
    EXPECT_EQ(settings["background"], nlohmann::json::parse("[0.25, 0.0, 0.0]"));
    EXPECT_EQ(settings["wire"], true);
    EXPECT_EQ(settings["title"], "cube");
    EXPECT_EQ(settings["view"]["camera"], "top_cam");
    EXPECT_EQ(settings["view"]["preset"], true);
    EXPECT_GT(settings["view"]["eye"][2], 2.0);
    EXPECT_EQ(settings["download"], "./cube.3ds.zip");
    EXPECT_EQ(settings["files"]["script"], "./scene.bin.js");
}

TEST_F(C3ds2WebGLTest, OnlyCodeOfTheUsersLiftsThePolicy) {
    for (const bool combine : {true, false}) {
        ASSERT_TRUE(Export(Format(combine, false)));
        EXPECT_NE(Page().find("Content-Security-Policy"), std::string::npos);
        EXPECT_EQ(Page().find("unsafe-inline"), std::string::npos);
        ASSERT_TRUE(Export(Format(combine, false, "</script><!--\xE2\x80\xA8")));
        EXPECT_EQ(Page().find("Content-Security-Policy"), std::string::npos);
        EXPECT_EQ(Page().find("</script><!--"), std::string::npos);
    }
}

TEST_F(C3ds2WebGLTest, OthersFilesStayAndTheirNamesAreAvoided) {
    for (const char* name :
         {"viewer.js.gz", "scene.bin", "user.js", ".htaccess", "index.html.gz", "cube.3ds.zip"})
        (void)m_folder.Add(name, "mine");
    fs::create_symlink("victim", m_folder / "viewer0.js");
    C3ds2WebGL::COutFormat format = Format(false, true, "1");
    format.downloadLink = true;
    ASSERT_TRUE(Export(format));
    ASSERT_TRUE(Export(format));
    for (const char* name :
         {"viewer.js.gz", "scene.bin", "user.js", ".htaccess", "index.html.gz", "cube.3ds.zip"})
        EXPECT_EQ(CTestFolder::TextOf(m_folder / name), "mine") << name;
    EXPECT_FALSE(fs::exists(m_folder / "victim"));
    EXPECT_NE(Page().find(R"(src="./viewer1.js")"), std::string::npos);
    EXPECT_NE(Page().find(R"(src="./user0.js")"), std::string::npos);
    EXPECT_EQ(Settings()["files"]["scene"], "./scene0.bin");
    EXPECT_EQ(Settings()["download"], "./cube.3ds-2.zip");
}

TEST_F(C3ds2WebGLTest, TwoPagesInAFolderKeepTheirFiles) {
    ASSERT_TRUE(Export(Format(false, true), "a.html"));
    ASSERT_TRUE(Export(Format(false, true), "b.html"));
    const std::size_t count = Names().size();
    ASSERT_TRUE(Export(Format(true, false), "b.html"));
    EXPECT_LT(Names().size(), count);
    EXPECT_TRUE(Names().contains("viewer.js") && Names().contains(".htaccess")) << "the other page's";
}

// Whoever wrote the page that was there may have written anything into its record.
TEST_F(C3ds2WebGLTest, DeletesNothingThatAForgedRecordNames) {
    (void)m_folder.Add("letter.txt", "");
    (void)m_folder.Add("index.html",
                       "orbivue-file: letter.txt 0 cbf29ce484222325\n"
                       "orbivue-file: ../viewer.js 0 cbf29ce484222325\n");
    ASSERT_TRUE(Export(Format(true, false)));
    EXPECT_EQ(Names(), (CNames{"index.html", "letter.txt"}));
}

TEST_F(C3ds2WebGLTest, NeverWritesOverTheModel) {
    m_builder.Scene().sourceFiles = {m_folder.Add("model.html", "model")};
    fs::create_symlink("model.html", m_folder / "link.html");
    for (const char* name : {"model.html", "link.html"}) EXPECT_FALSE(Export(Format(true, false), name));
    EXPECT_EQ(Page("model.html"), "model");
    fs::create_symlink("elsewhere", m_folder / "other.html");
    EXPECT_FALSE(Export(Format(true, false), "other.html"));
    EXPECT_FALSE(fs::exists(m_folder / "elsewhere"));
}

TEST_F(C3ds2WebGLTest, ThroughALinkItsFilesLieBesideTheLinkAndAreItsOwnNextTime) {
    fs::create_directory(m_folder / "real");
    fs::create_symlink("real/page.html", m_folder / "link.html");
    ASSERT_TRUE(Export(Format(false, false), "link.html"));
    const CNames names = Names();
    ASSERT_TRUE(Export(Format(false, false), "link.html"));
    EXPECT_EQ(Names(), names) << "no further viewer0.js";
    EXPECT_TRUE(fs::is_symlink(m_folder / "link.html"));
    EXPECT_EQ(Page("real/page.html"), Page("link.html"));
}

TEST_F(C3ds2WebGLTest, AFullDiskLeavesWhatWasThere) {
    ASSERT_TRUE(Export(Format(false, true)));
    const std::string before = Page();
    const CNames names = Names();
    (void)::signal(SIGXFSZ, SIG_IGN);
    rlimit all{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &all), 0);
    const rlimit little{600, all.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &little), 0);
    const CStatus status = Export(Format(false, true, "alert('another page')"));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &all), 0);
    ASSERT_FALSE(status);
    EXPECT_EQ(status.Error().code, EErrorCode::WriteFailed);
    EXPECT_EQ(Page(), before);
    EXPECT_EQ(Names(), names);
    EXPECT_FALSE(Export(Format(true, false), "no/such/folder.html"));
    EXPECT_FALSE(C3ds2WebGL::Export(nullptr, L"index.html", {}));
}

}  // namespace
