// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "base/text/utf8_text.h"

using namespace std::string_literals;
using file_util_ex::ConvertFromUTF8W;
using file_util_ex::ConvertToUTF8;

TEST(Utf8TextTest, BytesAreReadAsCharacters) {
    struct CRow {
        std::string bytes;
        std::wstring text;
        bool isSound = false;
    };
    const CRow rows[] = {
        {"a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", L"aé€\U0001F600", true},
        {"a\0b"s, L"a\0b"s, true},
        {"a\x80-", L"a\xFFFD-"},                            // a lone tail
        {"\xE2\x82", L"\xFFFD\xFFFD"},                      // cut short
        {"\xC0\xAF", L"\xFFFD\xFFFD"},                      // overlong
        {"\xE0\x80\xAF", L"\xFFFD\xFFFD\xFFFD"},            // overlong, of three bytes
        {"\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD"},            // a surrogate
        {"\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD\xFFFD"},  // too high
        {"\xE2-", L"\xFFFD-"},
    };
    for (const auto& [bytes, text, isSound] : rows) {
        EXPECT_EQ(ConvertFromUTF8W(bytes), text);
        EXPECT_EQ(utf8_text::Decode(bytes).has_value(), isSound);
        const std::wstring path = file_util_ex::PathFromBytes(bytes);
        EXPECT_EQ(ConvertToUTF8(path), bytes);
        EXPECT_EQ(file_util_ex::ShownText(path), text);
    }
}

TEST(ShownNameTest, ANameKeepsToOneLineAndShowsHowItEnds) {
    EXPECT_EQ(file_util_ex::ShownName(L"a\u202Efdp.3ds"), L"a\uFFFDfdp.3ds");
    EXPECT_EQ(file_util_ex::ShownName(L"a\nb\tc\u2069d\u2028"), L"a\uFFFDb\uFFFDc\uFFFDd\uFFFD");
    EXPECT_EQ(file_util_ex::ShownName(L"نموذج \x200F.3ds"), L"نموذج \x200F.3ds");
}

TEST(ShownNameTest, AValueDoesNotReachBeyondItsPlaceInASentence) {
    const auto sentence = [](std::wstring_view value) { return lng::Text("(%s)", value); };
    EXPECT_EQ(sentence(L"a\u202Eb\u2067c\nd\u2029"), L"(a\uFFFDb\uFFFDc\uFFFDd\uFFFD)");
    EXPECT_EQ(sentence(L"\u2068a\u2069, \u2069b\u2068"), L"(\u2068a\u2069, \uFFFDb\uFFFD)");
}

TEST(Utf8TextTest, WideTextBecomesUtf8WithNothingMalformed) {
    EXPECT_EQ(ConvertToUTF8(L"aé€\U0001F600"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    const std::wstring pair = {wchar_t(0xD83D), wchar_t(0xDE00)};
    EXPECT_EQ(ConvertToUTF8(pair), "\xF0\x9F\x98\x80");
    EXPECT_EQ(ConvertToUTF8(pair.substr(0, 1) + L"x"), "\xEF\xBF\xBDx");
    EXPECT_EQ(ConvertToUTF8(std::wstring(1, wchar_t(0x110000))), "\xEF\xBF\xBD");
}

TEST(Utf8TextTest, IsCutBetweenCharactersAndWhateverItIs) {
    const std::string smile = "\xF0\x9F\x98\x80", noText(9, '\x80');
    EXPECT_EQ(utf8_text::Cut("ab" + smile, 6), "ab" + smile);
    for (const std::size_t most : {2U, 3U, 4U, 5U}) EXPECT_EQ(utf8_text::Cut("ab" + smile, most), "ab");
    EXPECT_EQ(utf8_text::Cut(smile, 3), "");
    EXPECT_EQ(utf8_text::Cut(noText, 7), noText.substr(0, 7));
}

TEST(Utf8Text, APrintableTextHoldsNothingThatATerminalObeys) {
    EXPECT_EQ(utf8_text::Printable("a\x1B[2J\tb\x7F\n", '?'), "a?[2J?b??");
    EXPECT_EQ(utf8_text::Printable("csi \u009B31m, \u00E9, \xFF", ' '), "csi  31m, \u00E9,  ");
    EXPECT_EQ(utf8_text::Printable("a\u202Egnp.3ds\u2066, \u200F", '?'), "a?gnp.3ds?, \u200F");
}

TEST(AsciiTextTest, KnowsTheLettersOfAsciiAndNoOthers) {
    EXPECT_EQ(ascii_text::Lowered("AZ@[\xC3\x84"s), "az@[\xC3\x84");
    EXPECT_EQ(ascii_text::Uppered("az`{\xC3\xA4"s), "AZ`{\xC3\xA4");
    EXPECT_TRUE(ascii_text::EqualNoCase(L"JpG", L"jPg"));
    EXPECT_FALSE(ascii_text::EqualNoCase("@", "`"));
    EXPECT_EQ(ascii_text::Trimmed(" \ta b\r\n"), "a b");
    EXPECT_EQ(ascii_text::Trimmed(" \t"), "");
}
