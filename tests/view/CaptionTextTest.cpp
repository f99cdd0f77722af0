// SPDX-License-Identifier: MIT
#include "view/caption_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "row_name.h"

namespace {

struct CTextCase {
    const char* name;
    std::wstring given, expected;
};

const CTextCase kTexts[] = {
    {"StaysAsItIs", L"A chess board", L"A chess board"},
    {"LinesStay",
     L"one\r\ntwo\rthree\nfour\x2028"
     L"five",
     L"one\ntwo\nthree\nfour\nfive"},
    {"BlanksAreJoined", L"  a \t b  \n  c ", L"a b\nc"},
    {"OneEmptyLineInARow", L"\n\na\n \n\n\nb\n\n", L"a\n\nb"},
    {"ControlsAreBlanks",
     std::wstring(L"a\0b\x1B[2Jc\x9F"
                  L"d",
                  10),
     L"a b [2Jc d"},
    {"DirectionIsNotTurned", L"evil\x202Egnp.exe\x2066\xE0041", L"evilgnp.exe"},
    {"HebrewStays", L"\x05E9\x05DC\x05D5\x05DD", L"\x05E9\x05DC\x05D5\x05DD"},
    {"MarksDoNotPileUp", L"a" + std::wstring(5000, L'\x0301') + L"b\x0301",
     L"a\x0301\x0301\x0301\x0301"
     L"b\x0301"},
    {"NoCharacters", L"a\xD800\xFFFF", L"a\xFFFD\xFFFD"},
    {"NothingButBlanks", L" \n\t\n", L""},
    {"LongOneEndsInDots", std::wstring(5'000'000, L'x'), std::wstring(700, L'x') + L"\x2026"},
};

class CaptionTextTest : public testing::TestWithParam<CTextCase> {};

TEST_P(CaptionTextTest, ShowsWhatAPersonCanRead) {
    EXPECT_EQ(CaptionText(GetParam().given), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(, CaptionTextTest, testing::ValuesIn(kTexts), kRowName);

struct CLinesCase {
    const char* name;
    std::wstring text;
    std::size_t width, most;
    std::vector<std::wstring> expected;
};

const CLinesCase kLines[] = {
    {"Fits", L"a b c", 5, 3, {L"a b c"}},
    {"BreaksAtBlanks", L"the quick brown fox", 9, 3, {L"the quick", L"brown fox"}},
    {"BreaksInsideOfALongWord", L"a abcdefghij k", 4, 9, {L"a", L"abcd", L"efgh", L"ij k"}},
    {"NotBeforeAMark",
     L"abcd\x0301\x0301"
     L"ef",
     4,
     9,
     {L"abc",
      L"d\x0301\x0301"
      L"e",
      L"f"}},
    {"DotsWhereMoreFollows", L"one two three four", 5, 2, {L"one", L"two\x2026"}},
    {"DotsTakeTheLastLettersPlace", L"abcde fghij klmno", 5, 2, {L"abcde", L"fghi\x2026"}},
    {"EmptyLineStays", L"a\n\nb", 5, 9, {L"a", L"", L"b"}},
    {"NotEvenOneFits", L"ab c", 0, 9, {L"a", L"b", L"c"}},
    {"NoLines", L"a", 5, 0, {}},
};

class CaptionLinesTest : public testing::TestWithParam<CLinesCase> {};

TEST_P(CaptionLinesTest, AreBrokenWhereTheyAreTooWide) {
    const CLinesCase& row = GetParam();
    const auto fits = [&row](const std::wstring& line) { return line.size() <= row.width; };
    EXPECT_EQ(CaptionLines(row.text, row.most, fits), row.expected);
}

INSTANTIATE_TEST_SUITE_P(, CaptionLinesTest, testing::ValuesIn(kLines), kRowName);

}  // namespace
