// SPDX-License-Identifier: MIT
#include "update/plain_text.h"

#include <gtest/gtest.h>

#include "row_name.h"

namespace {

struct CRow {
    const char* name;
    const char* html;
    const wchar_t* shown;
};
class PlainNotesTest : public testing::TestWithParam<CRow> {};

TEST_P(PlainNotesTest, SaysWhatTheTextSays) {
    EXPECT_EQ(PlainNotes(GetParam().html), GetParam().shown);
}

const CRow kRows[] = {
    {"LinesStay", "One & two < 3\r\n  four \n\n\n\nfive", L"One & two < 3\nfour\n\nfive"},
    {"MarkedUp",
     "<h2>New</h2><ul><li>a <b>b</b></li>\n<li><p>c</p></li></ul>d<br/>e &amp;&nbsp;f &mdash; &#65;&#x42;",
     L"New\n\n• a b\n• c\n\nd\ne & f — AB"},
    {"ScriptsAreNoText", "a<script>if (x<y) alert('</b>')</SCRIPT >b<style>p{}</style><!-- <b> -->c", L"abc"},
    {"UnendedScript", "a<b>b</b><script>alert(1)", L"ab"},
    {"UnendedTag", "a<br>b <i", L"a\nb <i"},
    {"EndOfTagInQuotes", "<a title='>' href=\"x>\">y</a>", L"y"},
    {"QuoteWithoutEnd", "<a title=\">x</a>", L"x"},
    {"EntityGivesNoTag", "<p>&lt;script&gt;&amp;lt;</p>", L"<script>&lt;"},
    {"UnknownEntityStays", "<p>&foo; &; &#xD800; &#1114112; &#8238;&#0;x&</p>", L"&foo; &; &#1114112; x&"},
    {"DirectionAndControls",
     "a\u202Eb\u2066c\u200Fd\x01"
     "e\x7F\u0085f\uFEFFg\U000E0041",
     L"abcde fg"},
    {"BrokenUtf8", "a\xC3(\xFF", L"a\uFFFD(\uFFFD"},
};
INSTANTIATE_TEST_SUITE_P(Texts, PlainNotesTest, testing::ValuesIn(kRows), kRowName);

TEST(PlainTextTest, IsBounded) {
    std::string html = "<p>";
    for (int i = 0; i < 300'000; ++i) html += "<a\"";
    const std::wstring notes = PlainNotes(html);
    EXPECT_EQ(notes.size(), 20'000U);
    EXPECT_EQ(notes.back(), L'…');
    EXPECT_EQ(PlainLine("a\n b  c", 64), L"a b c");
    // What the toolkit would break for minutes.
    const std::wstring word = PlainNotes(std::string(1'000, 'W')), line = PlainNotes([] {
                                                                       std::string text;
                                                                       for (int i = 0; i < 2'000; ++i)
                                                                           text += "ab ";
                                                                       return text;
                                                                   }());
    EXPECT_EQ(word.find(L'\n'), 200U);
    EXPECT_EQ(PlainNotes(std::string(200, 'W') + "<p>a").substr(200), L"\n\na") << "a break and a paragraph";
    EXPECT_LT(line.find(L'\n'), 2'010U);
    EXPECT_EQ(PlainLine("abcdef", 4), L"abc…");
}

}  // namespace
