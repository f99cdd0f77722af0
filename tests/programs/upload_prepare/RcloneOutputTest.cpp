// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/rclone_output.h"

#include <gtest/gtest.h>

#include "row_name.h"

namespace {

using CNames = std::vector<std::string>;

struct CLineCase {
    const char* name;
    const char* line;
    const char* error;
    std::uint64_t bytes = 0, totalBytes = 0;  // totalBytes 0: no progress
};
class RcloneLineTest : public testing::TestWithParam<CLineCase> {};

TEST_P(RcloneLineTest, IsRead) {
    const rclone_output::CLine line = rclone_output::ReadLine(GetParam().line);
    EXPECT_EQ(line.error, GetParam().error);
    const auto progress = line.progress.value_or(rclone_output::CProgress{});
    EXPECT_EQ(progress.bytes, GetParam().bytes);
    EXPECT_EQ(progress.totalBytes, GetParam().totalBytes);
}

const CLineCase kLines[] = {
    {"Progress", R"({"level":"error","msg":"x","stats":{"bytes":10,"totalBytes":40,"transfers":1}})", "", 10,
     40},
    {"Error", R"({"level":"error","msg":"a.zip: storage quota is full"})", "a.zip: storage quota is full"},
    {"Warning", R"({"level":"warning","msg":"slow"})", ""},
    {"GivesUpInPlainText", "2026/11/22 09:20:49 Failed to copy: no", "Failed to copy: no"},
    {"OddNumbers", R"({"stats":{"bytes":-5,"totalBytes":1e300,"transfers":"x"}})", "", 0,
     9'000'000'000'000'000'000ULL},
    {"OddKinds", R"({"level":7,"msg":[],"stats":[1]})", ""},
    {"ControlCharacters", "a\x1b[31mb\xE2\x80\xAE\xFF", "a [31mb  "},
    {"Token",
     R"({"level":"critical","msg":"bad token ya29.a0AfB_byC-0123456789012345678901234567890123456789 end"})",
     "bad token ... end"},
    {"DeepGarbage", "[[[[[[[[[[[[[[[[", "[[[[[[[[[[[[[[[["},
    {"MoreThanAll", R"({"stats":{"bytes":1e30,"totalBytes":7,"transfers":9,"totalTransfers":1}})", "", 7, 7},
    {"Markup", R"({"level":"error","msg":"<a href=x>&File\t\u0007</a>"})", "<a href=x>&File  </a>"},
};
INSTANTIATE_TEST_SUITE_P(Lines, RcloneLineTest, testing::ValuesIn(kLines), kRowName);

}  // namespace

TEST(RcloneOutputTest, FindsTheRemotesOfOneType) {
    const char* text =
        "My Drive:   drive\nother:      dropbox\n-bad:       drive\na/b: drive\nnot a line\n"
        ": drive\ncrypt:      drives\r\nlast_1.x@y: drive";
    EXPECT_EQ(rclone_output::RemotesOf(text, "drive"), (CNames{"My Drive", "last_1.x@y"}));
    EXPECT_EQ(rclone_output::RemotesOf("", "drive"), CNames{});
}

TEST(RcloneOutputTest, TakesAddressesOfTheDriveAlone) {
    EXPECT_EQ(rclone_output::AddressIn("https://drive.google.com/open?id=1\nmore"),
              "https://drive.google.com/open?id=1");
    for (const char* text :
         {"", "file:///etc/passwd", "https://drive.google.com/a b", "javascript:alert(1)//https://", "-x",
          "https://drive.google.com.evil.org/x", "https://drive.google.com@evil.org/",
          "https://drive.google.com\\@evil.org/", "https://drive.google.com/\xE2\x80\xAE"})
        EXPECT_EQ(rclone_output::AddressIn(text), "") << text;
}

TEST(RcloneOutputTest, FindsTheFolderByItsName) {
    const char* json = R"([1,{"Name":"b","ID":"no"},{"Name":"a","ID":"1x_-Z"},{"Name":"c","ID":"../x"}])";
    const std::string endless = R"([{"Name":"d","ID":")" + std::string(1 << 20, 'x') + R"("}])";
    EXPECT_EQ(rclone_output::FolderAddressIn(endless, "d"), "");
    EXPECT_EQ(rclone_output::FolderAddressIn(json, "a"), "https://drive.google.com/drive/folders/1x_-Z");
    for (const char* name : {"c", "d"}) EXPECT_EQ(rclone_output::FolderAddressIn(json, name), "") << name;
    EXPECT_EQ(rclone_output::FolderAddressIn("{", "a"), "");
}
