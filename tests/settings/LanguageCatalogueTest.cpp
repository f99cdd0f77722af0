// SPDX-License-Identifier: MIT
#include "settings/language_catalogue.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "row_name.h"

namespace {

// --- plural forms ----------------------------------------------------------------------------------------

struct CRuleRow {
    const char* name;
    const char* rule;
    std::vector<std::size_t> formsOf;  ///< for 0, 1, 2, 5, 11, 21, 102
};
class PluralRuleTest : public testing::TestWithParam<CRuleRow> {};

TEST_P(PluralRuleTest, ChoosesTheForm) {
    const std::optional<CPluralRule> rule = CPluralRule::Read(GetParam().rule);
    ASSERT_EQ(rule.has_value(), !GetParam().formsOf.empty());
    std::vector<std::size_t> forms;
    for (const std::uint64_t count : {0U, 1U, 2U, 5U, 11U, 21U, 102U})
        if (rule) forms.push_back(rule->FormOf(count));
    EXPECT_EQ(forms, GetParam().formsOf);
}

const CRuleRow kRules[] = {
    {"French", "nplurals=2; plural=(n > 1);", {0, 0, 1, 1, 1, 1, 1}},
    {"Czech", " nplurals=3; plural=(n==1) ? 0 : (n>=2 && n<=4) ? 1 : 2;\n", {2, 0, 1, 2, 2, 2, 2}},
    {"Russian",
     "nplurals=3; plural=(n%10==1 && n%100!=11 ? 0 : n%10>=2 && n%10<=4 && (n%100<12 || n%100>14) ? 1 : 2);",
     {2, 0, 1, 2, 2, 0, 1}},
    {"Arabic",
     "nplurals=6; plural=(n==0 ? 0 : n==1 ? 1 : n==2 ? 2 : n%100>=3 && n%100<=10 ? 3 : n%100>=11 ? 4 : 5);",
     {0, 1, 2, 3, 4, 4, 5}},
    {"FormBeyondTheLast", "nplurals=2; plural=n;", {0, 1, 0, 0, 0, 0, 0}},
    {"DivisionByZero", "nplurals=2; plural=1/(n-n);", {0, 0, 0, 0, 0, 0, 0}},
    {"NotRightOfMinus", "nplurals=4; plural=3-1-!n;", {1, 2, 2, 2, 2, 2, 2}},
    {"CutShort", "nplurals=2; plural=(n >", {}},
    {"NoForms", "nplurals=0; plural=0;", {}},
    {"Words", "nplurals=2; plural=system(n);", {}},
};
INSTANTIATE_TEST_SUITE_P(Rows, PluralRuleTest, testing::ValuesIn(kRules), kRowName);

TEST(PluralRuleTest, DeepRulesEnd) {
    EXPECT_FALSE(CPluralRule::Read("nplurals=2; plural=" + std::string(900, '(') + "n"));
    EXPECT_FALSE(CPluralRule::Read("nplurals=2; plural=" + std::string(900, '!') + "n"));
}

// --- files -----------------------------------------------------------------------------------------------

TEST(CatalogueTest, NoDamageDoesHarm) {
    const auto file = file_util_ex::ReadWholeFile(std_file_paths::GetDataPath("languages/de/viewer.mo"));
    ASSERT_TRUE(file);
    const std::vector<std::byte>& sound = file.Value();
    ASSERT_TRUE(CCatalogue::Read(sound));
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        std::vector<std::byte> bytes = sound;
        if (round % 5 == 0) bytes.resize(random() % bytes.size());
        // Half of the changes are to the head and the tables, which hold the places of all else.
        for (int i = 0; i < 4 && !bytes.empty(); ++i)
            bytes[random() % (round % 2 == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 9000))] =
                static_cast<std::byte>(random());
        const CResult<CCatalogue> read = CCatalogue::Read(std::move(bytes));
        if (!read) continue;
        (void)read.Value().Find("Settings");
        (void)read.Value().Find("%s byte", random());
    }
    EXPECT_FALSE(CCatalogue::Read({sound.begin(), sound.end() - 1})) << "the last text has no end";
}

// --- the language of the environment ---------------------------------------------------------------------

struct CEnvironmentRow {
    const char* name;
    const char* list;  ///< LANGUAGE
    const char* all;   ///< LC_ALL
    const char* lang;  ///< LANG
    std::string_view wanted;
};
class DesktopLanguageTest : public testing::TestWithParam<CEnvironmentRow> {};

TEST_P(DesktopLanguageTest, IsTheFirstThatIsInstalled) {
    const auto& [name, list, all, lang, wanted] = GetParam();
    ::unsetenv("LC_MESSAGES");
    ::setenv("LANGUAGE", list, 1);
    ::setenv("LC_ALL", all, 1);
    ::setenv("LANG", lang, 1);
    EXPECT_EQ(file_util_ex::ConvertToUTF8(lng::DesktopLanguage()), wanted);
}

const CEnvironmentRow kEnvironments[] = {
    {"Nothing", "", "", "", "en"},
    {"Locale", "", "", "de_AT.UTF-8", "de"},
    {"AllCountsMore", "", "C.UTF-8", "de_DE.UTF-8", "en"},
    {"ListCountsMore", "xx:de", "", "en_US.UTF-8", "de"},
    {"EnglishFirst", "en_GB:de", "", "de_DE.UTF-8", "en"},
    {"PlainLocale", "de", "C", "de_DE.UTF-8", "en"},
    {"NoneInstalled", "xx:../de", "", "de_DE.UTF-8", "en"},
};
INSTANTIATE_TEST_SUITE_P(Rows, DesktopLanguageTest, testing::ValuesIn(kEnvironments), kRowName);

TEST(DesktopLanguageTest, StandsInForItsKin) {
    const std::vector<std::wstring> installed = {L"de", L"en", L"pt_BR", L"zh_CN"};
    EXPECT_EQ(lng::InstalledLanguage("pt_PT.UTF-8", installed), L"pt_BR");
    EXPECT_EQ(lng::InstalledLanguage("zh_SG", installed), L"zh_CN");
    EXPECT_EQ(lng::InstalledLanguage("zh_TW.UTF-8", installed), L"") << "another way of writing";
    EXPECT_EQ(lng::InstalledLanguage("de_DE@euro", installed), L"de");
}

}  // namespace
