// SPDX-License-Identifier: MIT
#include "export/webgl/page_text.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "base/text/utf8_text.h"
#include "export/webgl/CPageTexts.h"
#include "export/webgl/server_files.h"
#include "export/webgl/web_assets.h"
#include "files/CTestFolder.h"
#include "row_name.h"

namespace {

struct CText {
    const char* name;
    std::string text;
};
const CText kTexts[] = {
    {"EndOfScript", "</script><script>alert(1)</script>"},
    {"CommentInScript", "<!--<script>"},
    {"EndOfComment", "--> ]]> --!>"},
    {"LineSeparators",
     "a\xE2\x80\xA8"
     "b\xE2\x80\xA9"
     "c\xE2\x80\xA7"},
    {"Quotes", "\"'`\\ onload=\"x"},
    {"Entities", "&lt;&#x3c;&amp"},
    {"InvalidUtf8", "\xFF\xC0\xAF\xED\xA0\x80<"},
    {"CutUtf8", "x\xE2\x80"},
    {"Nul", std::string("a\0</script>", 11)},
    {"RightToLeft", "\xE2\x80\xAEgnp.exe"},
    {"Braces", "{{settings}}{{style}}"},
    {"Controls", "\x01\x1F\x7F\r\n\t"},
};
class PageText : public testing::TestWithParam<CText> {};

TEST_P(PageText, StandsInHtmlAndInAScriptElement) {
    const std::string sound = page_text::Sound(GetParam().text);
    EXPECT_TRUE(utf8_text::Decode(sound));
    EXPECT_EQ(page_text::Html(GetParam().text).find_first_of("<>\"'"), std::string::npos);
    const std::string json = page_text::ScriptJson(nlohmann::json(sound).dump());
    EXPECT_EQ(json.find_first_of("<>&"), std::string::npos);
    EXPECT_EQ(json.find("\xE2\x80\xA8"), std::string::npos);
    EXPECT_EQ(nlohmann::json::parse(json).get<std::string>(), sound) << "and says the same";
}

TEST_P(PageText, IsAnAddressInThisFolder) {
    const std::string link = page_text::Link(GetParam().text);
    EXPECT_TRUE(link.starts_with("./"));
    EXPECT_TRUE(std::regex_match(link.substr(2), std::regex("([A-Za-z0-9._~-]|%[0-9A-F]{2})*"))) << link;
}

TEST_P(PageText, IsOneNameForAServer) {
    const std::array names{GetParam().text};
    const std::string htaccess = MakeHtaccess(names);
    EXPECT_EQ(std::ranges::count(htaccess, '\n'), 5) << htaccess;
    EXPECT_EQ(std::ranges::count(htaccess, '"'), 2) << htaccess;
}
INSTANTIATE_TEST_SUITE_P(PageTextTest, PageText, testing::ValuesIn(kTexts), kRowName);

TEST(PageTextTest, FillsInOnce) {
    EXPECT_EQ(page_text::Fill("a{{x}}b{{y}}{{x}}", {{"x", "{{y}}"}, {"y", "}}1{{"}}), "a{{y}}b}}1{{{{y}}");
}

TEST(PageTextTest, HashesAndEncodesAsBrowsersDo) {
    // The W3C's example in "Content Security Policy Level 3".
    EXPECT_EQ(page_text::PolicyHash("alert('Hello, world.');"),
              "'sha256-qznLcsROx4GACP2dm0UCKCzCG+HiZ1guq6ZZDob/Tng='");
    const std::string text = "four";
    EXPECT_EQ(page_text::Base64(std::as_bytes(std::span(text))), "Zm91cg==");
    EXPECT_EQ(page_text::Base64({}), "");
}

// A page is well-formed only as long as these hold no end of the elements that they stand in.
TEST(WebAssetsTest, HoldNothingThatEndsTheirElements) {
    for (const std::string_view script : {web_assets::Viewer(), web_assets::MinifiedViewer()}) {
        EXPECT_EQ(script.find("</script"), script.npos);
        EXPECT_EQ(script.find("<!--"), script.npos);
    }
    EXPECT_EQ(web_assets::Style().find("</"), std::string_view::npos);
}

TEST(PageTextsTest, AreThoseOfTheViewer) {
    const std::string source = CTestFolder::TextOf(std::string(ORBIVUE_WEB "/src/texts.ts"));
    const std::regex row(R"(\n  (\w+):\s*'([^'\n]*)',)");
    std::size_t count = 0;
    for (std::sregex_iterator at(source.begin(), source.end(), row), end; at != end; ++at, ++count)
        EXPECT_EQ(CPageTexts::English().Of((*at)[1]), (*at)[2]) << (*at)[1];
    EXPECT_EQ(count + 1, CPageTexts::English().texts.size()) << "noScript is the page's own";
}

}  // namespace
