// SPDX-License-Identifier: MIT
#include "settings/language_catalogue.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"

namespace {

// --- plural forms ----------------------------------------------------------------------------------------

TEST(PluralRuleTest, ChoosesTheForm) {
    using CForms = std::vector<std::size_t>;  // for 0, 1, 2, 5, 11, 21, 102
    const std::pair<const char*, CForms> rules[] = {
        {"nplurals=2; plural=(n > 1);", {0, 0, 1, 1, 1, 1, 1}},                                 // French
        {" nplurals=3; plural=(n==1) ? 0 : (n>=2 && n<=4) ? 1 : 2;\n", {2, 0, 1, 2, 2, 2, 2}},  // Czech
        {"nplurals=3; plural=(n%10==1 && n%100!=11 ? 0 : n%10>=2 && n%10<=4 && (n%100<12 || n%100>14) ? 1 : "
         "2);",
         {2, 0, 1, 2, 2, 0, 1}},  // Russian
        {"nplurals=6; plural=(n==0 ? 0 : n==1 ? 1 : n==2 ? 2 : n%100>=3 && n%100<=10 ? 3 : n%100>=11 ? 4 : "
         "5);",
         {0, 1, 2, 3, 4, 4, 5}},                           // Arabic
        {"nplurals=2; plural=n;", {0, 1, 0, 0, 0, 0, 0}},  // a form beyond the last
        {"nplurals=2; plural=1/(n-n);", {0, 0, 0, 0, 0, 0, 0}},
        {"nplurals=4; plural=3-1-!n;", {1, 2, 2, 2, 2, 2, 2}},  // "!" right of "-"
        {"nplurals=2; plural=(n >", {}},
        {"nplurals=0; plural=0;", {}},
        {"nplurals=2; plural=system(n);", {}},
    };
    for (const auto& [text, expected] : rules) {
        const std::optional<CPluralRule> rule = CPluralRule::Read(text);
        ASSERT_EQ(rule.has_value(), !expected.empty()) << text;
        CForms forms;
        for (const std::uint64_t count : {0u, 1u, 2u, 5u, 11u, 21u, 102u})
            if (rule) forms.push_back(rule->FormOf(count));
        EXPECT_EQ(forms, expected) << text;
    }
}

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

TEST(DesktopLanguageTest, IsTheFirstThatIsInstalled) {
    ::unsetenv("LC_MESSAGES");
    for (const auto& [list, all, lang, wanted] : {std::tuple{"", "", "", "en"},
                                                  {"", "", "de_AT.UTF-8", "de"},
                                                  {"", "C.UTF-8", "de_DE.UTF-8", "en"},
                                                  {"xx:de", "", "en_US.UTF-8", "de"},
                                                  {"en_GB:de", "", "de_DE.UTF-8", "en"},
                                                  {"de", "C", "de_DE.UTF-8", "en"},
                                                  {"xx:../de", "", "de_DE.UTF-8", "en"}}) {
        ::setenv("LANGUAGE", list, 1);
        ::setenv("LC_ALL", all, 1);
        ::setenv("LANG", lang, 1);
        EXPECT_EQ(file_util_ex::ConvertToUTF8(lng::DesktopLanguage()), wanted) << list << all << lang;
    }
}

TEST(DesktopLanguageTest, StandsInForItsKin) {
    const std::vector<std::wstring> installed = {L"de", L"en", L"pt_BR", L"zh_CN"};
    EXPECT_EQ(lng::InstalledLanguage("pt_PT.UTF-8", installed), L"pt_BR");
    EXPECT_EQ(lng::InstalledLanguage("zh_SG", installed), L"zh_CN");
    EXPECT_EQ(lng::InstalledLanguage("zh_TW.UTF-8", installed), L"") << "another way of writing";
    EXPECT_EQ(lng::InstalledLanguage("de_DE@euro", installed), L"de");
}

}  // namespace
