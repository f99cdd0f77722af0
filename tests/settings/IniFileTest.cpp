// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "settings/CIniFile.h"
#include "settings/CLocalRegStore.h"

using namespace std::string_literals;
using namespace std::string_view_literals;

class IniValueTest : public testing::TestWithParam<std::string> {};

TEST_P(IniValueTest, SurvivesTheWayThroughAFile) {
    CIniFile written;
    ASSERT_TRUE(written.Set("S", "value", GetParam()));
    ASSERT_TRUE(written.Set("S", "after", "2"));
    CIniFile read;
    ASSERT_TRUE(read.Parse(written.Text()));
    EXPECT_EQ(read.Get("S", "value"), GetParam()) << written.Text();
    EXPECT_EQ(read.Get("S", "after"), "2") << written.Text();
}

INSTANTIATE_TEST_SUITE_P(Values, IniValueTest,
                         testing::Values("", " blanks ", "\t", "a;b # c", ";begins like a comment",
                                         "[like a section]", "a=b=c", "\r\n", "\nbefore and after\n", "\"\"",
                                         "\"", "$\"looks escaped\"", "$\"\"", "\"C:\\new\"\n",
                                         "<<<TAG\nx\nTAG\n", "\\", "\\n\n", "\xC3\xA9", "\xFF\xFE",
                                         "\x01\x7F", "END_OF_TEXT\n", "\"half", "trailing\\ "));

TEST(IniFileTest, HandWrittenLinesMeanWhatTheirWriterMeant) {
    const std::pair<std::string, std::optional<std::string>> lines[] = {
        {"k=v", "v"},
        {"  k \t=  a b  ", "a b"},
        {"k=\"C:\\new\\x.3ds\"", "C:\\new\\x.3ds"},
        {"k=/a;b/c.3ds", "/a;b/c.3ds"},
        {"k=$\"a\\qb\\\"", "a\\qb\\"},
        {"k=1\nk=2", "2"},
        {";k=1", std::nullopt},
        {"k", std::nullopt},
        {"=v", std::nullopt},
        {"[S", std::nullopt},
        {"\xEF\xBB\xBF[T]\nk=v", "v"},
        {"[other\nk=v", "v"},
        {"[ ]\nk=v", "v"},
    };
    for (const auto& [line, value] : lines) {
        CIniFile ini;
        ASSERT_TRUE(ini.Parse("\xEF\xBB\xBF; note\r\n[S]\r\n" + line + "\r\n[T]\r\nk=t\r\n"));
        EXPECT_EQ(ini.Get("s", "K"), value) << line;
        EXPECT_EQ(ini.Get("T", "k"), "t") << line;
    }
}

TEST(IniFileTest, RefusesNamesThatCouldNotBeReadBack) {
    CIniFile ini;
    for (const auto section : {""sv, " S"sv, "a]b"sv, "a\nb"sv, "a\0b"sv})
        EXPECT_FALSE(ini.Set(section, "k", "v"));
    for (const auto key : {""sv, "k "sv, "a=b"sv, "[k"sv, ";k"sv, "#k"sv, "a\rb"sv})
        EXPECT_FALSE(ini.Set("S", key, "v"));
    EXPECT_FALSE(ini.Set("S", "k", "a\0b"sv));
    EXPECT_EQ(ini.Text(), "");
}

TEST(IniFileTest, KeepsCommentsAndTheOrderOfSections) {
    CIniFile ini;
    ASSERT_TRUE(ini.Parse("; mine\n\n[Zebra]\n; about k\nk=1\n[Apple]\nb=2\na=1\n"));
    ASSERT_TRUE(ini.Set("Middle", "m", "3"));
    ASSERT_TRUE(ini.Set("Zebra", "k", "9"));
    EXPECT_EQ(ini.Sections(), (std::vector<std::string>{"Zebra", "Apple", "Middle"}));
    EXPECT_NE(ini.Text().find("; about k\nk=9"), std::string::npos) << ini.Text();
    EXPECT_LT(ini.Text().find("b=2"), ini.Text().find("a=1"));
}

TEST(IniFileTest, WhatIsNoSettingsFileLeavesItEmpty) {
    const CTestFolder folder;
    CIniFile ini;
    const auto codeOf = [&](std::string_view text) {
        EXPECT_TRUE(ini.Set("S", "old", "1"));
        const CStatus parsed = ini.Load(folder.Add("file.ini", text));
        EXPECT_TRUE(ini.Sections().empty());
        return parsed ? EErrorCode::BadArgument : parsed.Error().code;
    };
    EXPECT_EQ(codeOf("[S]\nk=\0v\n"sv), EErrorCode::BadFormat);
    EXPECT_EQ(codeOf("[S]\nk=" + std::string(16 << 20, 'x')), EErrorCode::TooLarge);
    EXPECT_EQ(codeOf(std::string(300'000, '\n')), EErrorCode::TooLarge);
    EXPECT_EQ(ini.Load(folder / "none").Error().code, EErrorCode::NotFound);
}

TEST(LocalRegStoreTest, NumbersAreWhatTheTextBeginsWithOrTheDefault) {
    const CIniFilePtr ini(CLocalRegStore::CreateInitFile(true));
    for (const auto& [text, number] : {std::pair{" 12.9 apples", 12}, {"-0", 0}, {"yes", -5}, {"", -5}}) {
        ASSERT_TRUE(CLocalRegStore::WriteString(ini.get(), "S", "k", text));
        EXPECT_EQ(CLocalRegStore::GetInt(ini.get(), L"S", L"k", -5), number);
        EXPECT_EQ(CLocalRegStore::GetBool(ini.get(), "S", "k", true), number != 0);
    }
}

TEST(LocalRegStoreTest, DefaultFileAndExplicitFilesRoundTrip) {
    const CTestFolder folder;
    const CLocalRegStore::CDefaultFileGuard guard;
    const std::string bytes = folder / "made/s\xC3\xA9.ini";
    const std::wstring path = file_util_ex::ConvertFromUTF8W(bytes);
    EXPECT_FALSE(CLocalRegStore::Save()) << "no file is loaded yet";
    EXPECT_FALSE(CLocalRegStore::Load(path));
    EXPECT_EQ(CLocalRegStore::LoadIniFile(bytes), nullptr);
    EXPECT_EQ(CLocalRegStore::GetString("3dsFileDialog", "Path", L"none"), L"none");
    EXPECT_TRUE(CLocalRegStore::WriteString("3dsFileDialog", "Path", L"/m/Modèles; 3D "));
    EXPECT_TRUE(CLocalRegStore::WriteInt(L"Settings", L"Wire", -1));
    ASSERT_TRUE(CLocalRegStore::Save());
    EXPECT_EQ(std::filesystem::status(folder / "made").permissions(), std::filesystem::perms(0700));

    const CIniFilePtr ini(CLocalRegStore::LoadIniFile(bytes));
    ASSERT_NE(ini, nullptr);
    EXPECT_EQ(CLocalRegStore::GetString(ini.get(), L"3dsFileDialog", L"Path", L""), L"/m/Modèles; 3D ");
    EXPECT_EQ(CLocalRegStore::GetInt(ini.get(), "settings", "wire", 0), -1);
    EXPECT_TRUE(CLocalRegStore::WriteBool(ini.get(), "html", "cameras_bar", true));
    ASSERT_TRUE(CLocalRegStore::Save(ini.get(), path));
    EXPECT_TRUE(CLocalRegStore::Load(path));
    EXPECT_EQ(CLocalRegStore::GetInt("html", "cameras_bar", 0), 1);
}
