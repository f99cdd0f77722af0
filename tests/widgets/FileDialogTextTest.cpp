// SPDX-License-Identifier: MIT
#include "widgets/file_dialog_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace file_dialog_text;

namespace {

constexpr wchar_t kBoth[] = L"3ds and zip files(*.3ds;*.zip)|*.3ds;*.zip||";
constexpr wchar_t kPictures[] = L"JPG file (*.jpg)|*.jpg|PNG file (*.png)|*.png||";

TEST(FileDialogTextTest, WildcardsAreReadInAnyForm) {
    const struct {
        const wchar_t* wildcard;
        const wchar_t* joined;
    } rows[] = {
        {kBoth, L"3ds and zip files(*.3ds;*.zip)|*.3ds;*.zip"},
        {kPictures, L"JPG file (*.jpg)|*.jpg|PNG file (*.png)|*.png"},
        {L"zip files(*.zip)|*.zip||", L"zip files(*.zip)|*.zip"},
        {L"*.pov", L"*.pov|*.pov"},
        {L"a|*.a", L"a|*.a"},
        {L" a | *.a ; *.b |", L"a|*.a;*.b"},
        {L"a|*.a|*.b", L"a|*.a|*.b|*.b"},
        {L"a|;;|b|*.b", L"a|*|b|*.b"},
        {L"", L""},
        {L"||||", L""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(JoinWildcard(ParseWildcard(row.wildcard)), row.joined) << row.wildcard;
}

TEST(FileDialogTextTest, NamesGetAnExtensionWhenTheyHaveNone) {
    const struct {
        const wchar_t* path;
        const wchar_t* wildcard;
        int chosen;
        const wchar_t* standard;
        const wchar_t* expected;
    } rows[] = {
        {L"/a/box", L"*.pov", 0, L"pov", L"/a/box.pov"},
        {L"/a/box", L"*.pov", -1, L"*.pov", L"/a/box.pov"},
        {L"/a/box.inc", L"*.pov", 0, L"pov", L"/a/box.inc"},
        {L"/a.b/box", L"*.html", 0, L".html", L"/a.b/box.html"},
        {L"/a/Room 2.5", L"*.html", 0, L"html", L"/a/Room 2.5.html"},
        {L"/a/box.", L"*.html", 0, L"html", L"/a/box.html"},
        {L"/a/\u6A21\u578B", kBoth, 0, L"*.3ds", L"/a/\u6A21\u578B.3ds"},
        {L"/a/box.ZIP", kBoth, 0, L"*.3ds", L"/a/box.ZIP"},
        {L"/a/box", kBoth, 0, L"*.zip", L"/a/box.zip"},
        {L"/a/box", kPictures, 1, L"*.jpg", L"/a/box.png"},
        {L"/a/box", kPictures, 7, L"*.jpg", L"/a/box.jpg"},
        {L"/a/box", L"All|*.*", 0, L"jpg", L"/a/box.jpg"},
        {L"/a/box", L"All|*", 0, L"", L"/a/box"},
    };
    for (const auto& row : rows) {
        const std::wstring extension = ExtensionFor(ParseWildcard(row.wildcard), row.chosen, row.standard);
        EXPECT_EQ(AddExtension(row.path, extension), row.expected) << row.path << " " << row.wildcard;
    }
}

TEST(FileDialogTextTest, NamesFollowTheChosenKind) {
    const std::vector<CFilter> kinds = ParseWildcard(kPictures);
    EXPECT_EQ(NameForFilter(L"shot.jpg", kinds[1]), L"shot.png");
    EXPECT_EQ(NameForFilter(L"shot.JPG", kinds[0]), L"shot.JPG");
    EXPECT_EQ(NameForFilter(L"shot", kinds[1]), L"shot") << "it gets one when it is accepted";
    EXPECT_EQ(NameForFilter(L"box.zip", ParseWildcard(kBoth)[0]), L"box.zip");
    EXPECT_EQ(NameForFilter(L"box.txt", ParseWildcard(L"All|*")[0]), L"box.txt");
}

}  // namespace
