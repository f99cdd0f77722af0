// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "files/CTestFolder.h"
#include "frame/preview/preview_facts.h"
#include "row_name.h"

using namespace preview_facts;

namespace {

TEST(PreviewFactsTest, OnlyRegularFilesAreDrawn) {
    const CTestFolder folder;
    const std::string model = folder.Add("\u6A21\u578B.3DS", "12345");
    ASSERT_EQ(::mkfifo((folder / "pipe.3ds").c_str(), 0600), 0);
    EXPECT_FALSE(RequestFor(folder / "pipe.3ds", {})) << "opening a pipe would wait for ever";
    EXPECT_FALSE(RequestFor(folder.Path(), {}));
    EXPECT_FALSE(RequestFor(folder / "missing.3ds", {}));
    const auto request = RequestFor(model, {512, {1, 2, 3}});
    ASSERT_TRUE(request);
    EXPECT_EQ(request->modelPath, model);
    EXPECT_EQ(request->bytes, 5u);
    EXPECT_EQ(request->sidePx, 512);
    EXPECT_NE(*request, *RequestFor(model, {512, {1, 2, 4}}));
    folder.Add("\u6A21\u578B.3DS", "123456");
    EXPECT_NE(*request, *RequestFor(model, {512, {1, 2, 3}})) << "a file that has changed";
}

TEST(PreviewFactsTest, ScriptsAreDrawnWhileTheirModelIsThere) {
    const CTestFolder folder;
    const std::string model = folder.Add("box.3ds", "1");
    const auto drawn = [&](const char* name, const std::string& text) {
        const auto request = RequestFor(folder.Add(name, text), {});
        return request ? request->modelPath : "no request";
    };
    EXPECT_EQ(drawn("a.orv", "[Model]\nPath=" + model + "\n"), folder / "a.orv") << "with its edits";
    EXPECT_EQ(drawn("b.ORV", "[Other]\nPath=BOX.3ds\n"), folder / "b.ORV");
    EXPECT_EQ(drawn("c.orv", "[Model]\nPath=missing.3ds\n"), "");
    EXPECT_EQ(drawn("d.orv", "[Other]\n"), "");
    const auto request = RequestFor(folder / "a.orv", {});
    std::filesystem::last_write_time(model, std::filesystem::file_time_type());
    EXPECT_NE(*request, *RequestFor(folder / "a.orv", {})) << "another picture";
}

struct COutcomeRow {
    const char* name;
    int exitCode;
    const char* output;
    const char* errors;
    const char* png;
    const wchar_t* problem;
    int triangles;
    int objects;
};

class PreviewOutcomeTest : public testing::TestWithParam<COutcomeRow> {};

TEST_P(PreviewOutcomeTest, GivesResult) {
    const COutcomeRow& row = GetParam();
    const CTestFolder folder;
    CPreviewRequest request;
    request.modelPath = "/m: n/a.3ds";
    if (*row.png) folder.Add("a.png", row.png);
    const CPreviewResult result = ResultOf(request, {row.exitCode, row.output, row.errors, folder / "a.png"});
    EXPECT_EQ(result.problem, row.problem);
    EXPECT_EQ(result.png.empty(), !result.problem.empty());
    EXPECT_EQ(result.triangles, row.triangles);
    EXPECT_EQ(result.objects, row.objects);
}

constexpr wchar_t kPlainProblem[] = L"No preview can be drawn of this file.";
const COutcomeRow kOutcomes[] = {
    {"Drawn", 0, R"({"triangles":12,"nodes":2})", "", "png", L"", 12, 2},
    {"Odd", 0, R"({"triangles":-3,"nodes":"x"})", "a warning", "png", L"", -1, -1},
    {"NoObject", 0, "[1,2]", "", "png", L"", -1, -1},
    {"CutOff", 0, R"({"triangles":12,)", "", "png", L"", -1, -1},
    {"Empty", 0, R"({"triangles":0,"nodes":1})", "", "png", L"There is nothing to see in this file.", 0, 1},
    {"NoPicture", 0, "{}", "", "", kPlainProblem, -1, -1},
    {"Broken", 2, "", "orbivue-render: /m: n/a.3ds: Too \xFFshort\nmore", "png", L"Too \uFFFDshort", -1, -1},
    {"OtherPlace", 2, "", "orbivue-render: /tmp/x: No", "", L"/tmp/x: No", -1, -1},
    {"Crashed", -1, "{}", "", "png", kPlainProblem, -1, -1},
};
INSTANTIATE_TEST_SUITE_P(Rows, PreviewOutcomeTest, testing::ValuesIn(kOutcomes), kRowName);

TEST(PreviewFactsTest, TextsArePlain) {
    EXPECT_EQ(ResultOf({}, {2, "", std::string(100'000, 'x'), ""}).problem.size(), 301u) << "no wall of text";
}

}  // namespace
