// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/fill_template.h"

#include <gtest/gtest.h>

#include "row_name.h"

namespace {

struct CTemplateCase {
    const char* name;
    const char* text;
    const char* page;  // null: an error
};
class FillTemplateTest : public testing::TestWithParam<CTemplateCase> {};

TEST_P(FillTemplateTest, PutsValuesIn) {
    const CTemplateValues values{
        {"a", "A"}, {"none", ""}, {"evil", "\"><script>'&"}, {"nested", "{{a}}{{/none}}"}};
    const CResult<std::string> page = FillTemplate(GetParam().text, values);
    ASSERT_EQ(page.HasValue(), GetParam().page != nullptr);
    EXPECT_EQ(page ? page.Value() : "", page ? GetParam().page : "");
}

const CTemplateCase kTemplates[] = {
    {"Values", "1{{a}}2{{a}}3", "1A2A3"},
    {"NoMarks", "{ {a} }", "{ {a} }"},
    {"Escaped", "<a href=\"{{evil}}\">", "<a href=\"&quot;&gt;&lt;script&gt;&#39;&amp;\">"},
    {"ValuesAreNoTemplates", "{{nested}}{{a}}", "{{a}}{{/none}}A"},
    {"SectionStays", "x{{?a}}[{{a}}]{{/a}}y", "x[A]y"},
    {"SectionGoes", "x{{?none}}[{{a}}{{unknown}}]{{/none}}y", "xy"},
    {"UnknownName", "{{b}}", nullptr},
    {"MarkWithoutEnd", "a {{a", nullptr},
    {"SectionWithoutEnd", "{{?none}}a", nullptr},
};
INSTANTIATE_TEST_SUITE_P(Templates, FillTemplateTest, testing::ValuesIn(kTemplates), kRowName);

}  // namespace

TEST(FillTemplateTest, AddressesHoldNothingThatMeansSomething) {
    EXPECT_EQ(EscapedForAddress("model/a #1?%&\"\xC3\xA4.zip"), "model/a%20%231%3F%25%26%22%C3%A4.zip");
    EXPECT_EQ(EscapedForAddress("javascript:x"), "javascript%3Ax");
}
