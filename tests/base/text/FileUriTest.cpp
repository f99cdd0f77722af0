// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "base/text/file_uri.h"
#include "row_name.h"

namespace {

/** What the desktop's own library gives for every character of ASCII. */
TEST(FileUriTest, EscapesAsTheDesktopDoes) {
    EXPECT_EQ(file_uri::Of("/ !\"#$%&'()*+,-./09:;<=>?@AZ[\\]^_`az{|}~\x7F\t"),
              "file:///%20!%22%23$%25&'()*+,-./09:%3B%3C=%3E%3F@AZ%5B%5C%5D%5E_%60az%7B%7C%7D~%7F%09");
    EXPECT_EQ(file_uri::Of("/m\xC3\xB6/\xFF"), "file:///m%C3%B6/%FF");
}

struct CAddressCase {
    const char* name;
    const char* address;
    const char* path;  ///< null: refused
};
class FileUriAddress : public testing::TestWithParam<CAddressCase> {};

TEST_P(FileUriAddress, NamesAPathOrIsRefused) {
    const CResult<std::string> path = file_uri::PathOfArgument(GetParam().address);
    ASSERT_EQ(path.HasValue(), GetParam().path != nullptr);
    EXPECT_EQ(path ? path.Value() : "", path ? GetParam().path : "");
    EXPECT_TRUE(path || path.Error().code == EErrorCode::BadArgument);
}

const CAddressCase kAddresses[] = {
    {"Path", "a b%20.3ds", "a b%20.3ds"},
    {"PathWithColon", "a:b.3ds", "a:b.3ds"},
    {"Address", "file:///a%20b/%c3%B6%FF.3ds", "/a b/\xC3\xB6\xFF.3ds"},
    {"ThisMachine", "FILE://LocalHost/a", "/a"},
    {"OneSlash", "file:/a", "/a"},
    {"Unescaped", "file:///a b;ö", "/a b;ö"},
    {"OtherMachine", "file://server/a", nullptr},
    {"OtherScheme", "https://server/a.3ds", nullptr},
    {"Relative", "file:a.3ds", nullptr},
    {"NoPath", "file://", nullptr},
    {"Zero", "file:///a%00b", nullptr},
    {"HiddenSlash", "file:///a%2Fb", nullptr},
    {"HalfEscape", "file:///a%4", nullptr},
    {"NoDigits", "file:///a%zz", nullptr},
    {"Query", "file:///a?b", nullptr},
    {"Fragment", "file:///a#b", nullptr},
};
INSTANTIATE_TEST_SUITE_P(Addresses, FileUriAddress, testing::ValuesIn(kAddresses), kRowName);

}  // namespace
