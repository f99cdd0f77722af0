// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/upload_texts.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "row_name.h"

namespace {

struct CNameCase {
    const char* name;
    std::string model, title, folder;
};
class UploadNameTest : public testing::TestWithParam<CNameCase> {};

TEST_P(UploadNameTest, IsSound) {
    EXPECT_EQ(TitleOf(GetParam().model), GetParam().title);
    const std::string folder = RemoteFolderName(GetParam().model, 0);
    EXPECT_EQ(folder.substr(0, folder.find(" 19")), GetParam().folder);
}

const CNameCase kNames[] = {
    {"Plain", "orrery.3ds", "orrery", "orrery"},
    {"OtherEnding", "a.b.txt", "a.b.txt", "a.b.txt"},
    {"UpperCase", "CAR.3DS", "CAR", "CAR"},
    {"Option", "--flag.3ds", "--flag", "flag"},
    {"Remote", "a:b/../c.zip", "a:b/../c", "a_b_.._c"},
    {"LineBreak", "a\nb.3ds", "a_b", "a_b"},
    {"Turned", "a\xE2\x80\xAEsd3.exe", "a_sd3.exe", "a_sd3.exe"},
    {"NoText", "\xFF\xFE.3ds", "__", "Model"},
    {"Nothing", "", "Model", "Model"},
    {"Long", std::string(300, 'x'), std::string(300, 'x'), std::string(80, 'x')},
};
INSTANTIATE_TEST_SUITE_P(Names, UploadNameTest, testing::ValuesIn(kNames), kRowName);

struct CSizeCase {
    const char* name;
    std::uint64_t bytes;
    const char* text;
};
class SizeTextTest : public testing::TestWithParam<CSizeCase> {};

TEST_P(SizeTextTest, HasAUnit) {
    EXPECT_EQ(SizeText(GetParam().bytes), GetParam().text);
}

const CSizeCase kSizes[] = {
    {"None", 0, "0 bytes"},
    {"Bytes", 999, "999 bytes"},
    {"Kilo", 1000, "1.0 KB"},
    {"UnderTen", 9949, "9.9 KB"},
    {"Ten", 9999, "10 KB"},
    {"Mega", 999'999, "1.0 MB"},
    {"Many", 12'345'678'901, "12 GB"},
    {"All", ~0ULL, "18446744 TB"},
};
INSTANTIATE_TEST_SUITE_P(Sizes, SizeTextTest, testing::ValuesIn(kSizes), kRowName);

}  // namespace
