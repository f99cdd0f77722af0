// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "base/text/file_uri.h"

namespace {

/** What the desktop's own library gives for every character of ASCII. */
TEST(FileUriTest, EscapesAsTheDesktopDoes) {
    EXPECT_EQ(file_uri::Of("/ !\"#$%&'()*+,-./09:;<=>?@AZ[\\]^_`az{|}~\x7F\t"),
              "file:///%20!%22%23$%25&'()*+,-./09:%3B%3C=%3E%3F@AZ%5B%5C%5D%5E_%60az%7B%7C%7D~%7F%09");
    EXPECT_EQ(file_uri::Of("/m\xC3\xB6/\xFF"), "file:///m%C3%B6/%FF");
}

TEST(FileUriTest, AnAddressNamesAPathOrIsRefused) {
    const std::pair<const char*, const char*> addresses[] = {
        {"a b%20.3ds", "a b%20.3ds"},
        {"a:b.3ds", "a:b.3ds"},
        {"file:///a%20b/%c3%B6%FF.3ds", "/a b/\xC3\xB6\xFF.3ds"},
        {"FILE://LocalHost/a", "/a"},
        {"file:/a", "/a"},
        {"file:///a b;ö", "/a b;ö"},
        {"file://server/a", nullptr},
        {"https://server/a.3ds", nullptr},
        {"file:a.3ds", nullptr},
        {"file://", nullptr},
        {"file:///a%00b", nullptr},
        {"file:///a%2Fb", nullptr},
        {"file:///a%4", nullptr},
        {"file:///a%zz", nullptr},
        {"file:///a?b", nullptr},
        {"file:///a#b", nullptr},
    };
    for (const auto& [address, expected] : addresses) {
        const CResult<std::string> path = file_uri::PathOfArgument(address);
        ASSERT_EQ(path.HasValue(), expected != nullptr) << address;
        EXPECT_EQ(path ? path.Value() : "", path ? expected : "");
        EXPECT_TRUE(path || path.Error().code == EErrorCode::BadArgument);
    }
}

}  // namespace
