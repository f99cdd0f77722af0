// SPDX-License-Identifier: MIT
#include "modeldb/protocol/wire_address.h"

#include "error_code_of.h"
#include "row_name.h"

namespace {

const CBlobHash kHash = CBlobHash::Of({});

/** An address, and how it looks on the wire. */
struct CWrittenRow {
    const char* name;
    CWireAddress address;
    std::string target;
};
class WireAddressTest : public testing::TestWithParam<CWrittenRow> {};
const CWrittenRow kWireAddressTestRows[] = {
    {"Version", CVersionAddress{"1.5"}, "/api/version?client=1.5"},
    {"Groups", CGroupsAddress{}, "/api/groups"},
    {"Group", CGroupAddress{"a/../b?c=1&d#"}, "/api/group?name=a%2F..%2Fb%3Fc%3D1%26d%23"},
    {"GroupWithSql", CGroupAddress{"x'; DROP TABLE models; --"},
     "/api/group?name=x%27%3B%20DROP%20TABLE%20models%3B%20--"},
    {"GroupBeyondAscii", CGroupAddress{"Möbel+100%\n"}, "/api/group?name=M%C3%B6bel%2B100%25%0A"},
    {"Models", CModelsAddress{7, {}, 1000}, "/api/groups/7/models?limit=1000"},
    {"ModelsAfter", CModelsAddress{INT64_MAX, CPagePlace{"a b", 0x0012ABCD}, 1},
     "/api/groups/9223372036854775807/models?limit=1&after_name=a%20b&after_key=0012abcd"},
    {"Upload", CUploadAddress{}, "/api/models"},
    {"Model", CModelAddress{0xFFFFFFFF}, "/api/models/ffffffff"},
    {"SearchGroup", CSearchAddress{"a", 3, 1000}, "/api/search?text=a&group=3&limit=1000"},
    {"Search", CSearchAddress{"%_", 0, 5}, "/api/search?text=%25_&limit=5"},
    {"Blob", CBlobAddress{kHash, EBlobForm::Plain}, "/b/" + kHash.ToHex()},
    {"StoredBlob", CBlobAddress{kHash, EBlobForm::Stored}, "/b/" + kHash.ToHex() + ".zst"},
    {"GroupPage", CGroupPage{1, CPagePlace{"n", 1}}, "/g/1?after_name=n&after_key=00000001"},
    {"ModelView", CModelView{1}, "/m/00000001/view"},
    {"SearchPage", CSearchPage{}, "/search"},
    {"SiteFile", CSiteFile{"page-1.min.css"}, "/site/page-1.min.css"},
};
INSTANTIATE_TEST_SUITE_P(, WireAddressTest, testing::ValuesIn(kWireAddressTestRows), kRowName);

TEST_P(WireAddressTest, IsWrittenAndReadBack) {
    EXPECT_EQ(wire_address::Write(GetParam().address), GetParam().target);
    const auto read = wire_address::Read(GetParam().target);
    ASSERT_TRUE(read) << read.Error().Text();
    EXPECT_EQ(read.Value().index(), GetParam().address.index());
    EXPECT_EQ(wire_address::Write(read.Value()), GetParam().target);
}

struct CRefusedRow {
    const char* name;
    std::string target;
    EErrorCode code;
};
class RefusedAddressTest : public testing::TestWithParam<CRefusedRow> {};
constexpr auto kBad = EErrorCode::BadArgument, kNone = EErrorCode::NotFound;
INSTANTIATE_TEST_SUITE_P(
    , RefusedAddressTest,
    testing::Values(
        CRefusedRow{"Empty", "", kBad}, CRefusedRow{"WholeUrl", "http://a/api/groups", kBad},
        CRefusedRow{"Blank", "/api/group?name=a b", kBad}, CRefusedRow{"Fragment", "/api/groups#a", kBad},
        CRefusedRow{"HighByte", "/api/group?name=\xc3\xb6", kBad},
        CRefusedRow{"TooLong", "/search?text=" + std::string(4096, 'a'), kBad},
        CRefusedRow{"UpAndDown", "/api/../api/groups", kNone},
        CRefusedRow{"TwoSlashes", "//api/groups", kNone}, CRefusedRow{"EscapedPath", "/api/%67roups", kNone},
        CRefusedRow{"GroupZero", "/g/0", kNone}, CRefusedRow{"LeadingZero", "/api/groups/07/models", kNone},
        CRefusedRow{"GroupTooLarge", "/g/9223372036854775808", kNone},
        CRefusedRow{"GroupWithoutNumber", "/api/groups/models", kNone},
        CRefusedRow{"OtherPathOfAGroup", "/api/groups/1/views", kNone},
        CRefusedRow{"ShortKey", "/api/models/12abcd", kNone}, CRefusedRow{"LongKey", "/m/000012abcd", kNone},
        CRefusedRow{"KeyWithSign", "/m/-0012abc", kNone},
        CRefusedRow{"OtherEnding", "/b/" + kHash.ToHex() + ".gz", kNone},
        CRefusedRow{"HashInUpperCase", "/b/" + std::string(64, 'A'), kNone},
        CRefusedRow{"SiteFileAbove", "/site/../secret", kNone},
        CRefusedRow{"SiteFileHidden", "/site/.htaccess", kNone},
        CRefusedRow{"NameEmpty", "/api/group?name=", kBad},
        CRefusedRow{"NameTwice", "/api/group?name=a&name=b", kBad},
        CRefusedRow{"UnknownParameter", "/api/group?name=a&x=1", kBad},
        CRefusedRow{"UnknownParameterOfBytes", "/b/" + kHash.ToHex() + "?x", kBad},
        CRefusedRow{"NameTooLong", "/api/group?name=" + std::string(201, 'a'), kBad},
        CRefusedRow{"ZeroByte", "/api/group?name=a%00", kBad},
        CRefusedRow{"NoUtf8", "/api/group?name=%ff", kBad},
        CRefusedRow{"Surrogate", "/api/group?name=%ED%A0%80", kBad},
        CRefusedRow{"CutEscape", "/api/group?name=a%4", kBad},
        CRefusedRow{"BadEscape", "/api/group?name=%g1", kBad},
        CRefusedRow{"EscapeWithSign", "/api/group?name=%+1", kBad},
        CRefusedRow{"LimitZero", "/api/groups/1/models?limit=0", kBad},
        CRefusedRow{"LimitTooLarge", "/api/groups/1/models?limit=10001", kBad},
        CRefusedRow{"NameMissing", "/api/group", kBad},
        CRefusedRow{"LimitNoNumber", "/api/search?text=a&limit=1e3", kBad},
        CRefusedRow{"LimitEmpty", "/api/search?text=a&limit=", kBad},
        CRefusedRow{"PlaceWithoutKey", "/api/groups/1/models?after_name=a", kBad},
        CRefusedRow{"PlaceWithoutName", "/g/1?after_key=00000001", kBad},
        CRefusedRow{"SearchForNothing", "/api/search?text=", kBad}),
    kRowName);

TEST_P(RefusedAddressTest, IsRefused) {
    EXPECT_EQ(CodeOf(wire_address::Read(GetParam().target)), GetParam().code);
}

TEST(WireAddressFormsTest, AcceptsWhatFormsAndForeignLinksSend) {
    const auto form = wire_address::Read("/search?text=old+chair%21&utm_source=mail");
    EXPECT_EQ(std::get<CSearchPage>(form.Value()).text, "old chair!");
    EXPECT_TRUE(wire_address::Read("/api/version?client=1.6&extras=2"));
    EXPECT_EQ(std::get<CModelsAddress>(wire_address::Read("/api/groups/1/models").Value()).limit, 1000u);
}

TEST(ServerAddressTest, IsCheckedAndCut) {
    for (const auto& [given, kept] : {std::pair{"http://models.example", "http://models.example"},
                                      {"HTTPS://h:8443/a/b//", "https://h:8443/a/b"},
                                      {"http://[::1]:8095", "http://[::1]:8095"}})
        EXPECT_EQ(wire_address::CheckServer(given).Value(), kept);
    for (const char* refused :
         {"models.example", "ftp://h", "http:///a", "http://u:p@h", "http://h/?a", "http://h#a",
          "http://h:65536", "http://h:", "http://:80", "http://[::1", "http://h/a b", "http://h\r\nX: y"})
        EXPECT_FALSE(wire_address::CheckServer(refused)) << refused;
}

}  // namespace
