// SPDX-License-Identifier: MIT
#include "modeldb/protocol/wire_address.h"

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
INSTANTIATE_TEST_SUITE_P(
    , WireAddressTest,
    testing::Values(
        CWrittenRow{"Version", CVersionAddress{"1.5"}, "/api/version?client=1.5"},
        CWrittenRow{"Groups", CGroupsAddress{}, "/api/groups"},
        CWrittenRow{"Group", CGroupAddress{"a/../b?c=1&d#"}, "/api/group?name=a%2F..%2Fb%3Fc%3D1%26d%23"},
        CWrittenRow{"GroupWithSql", CGroupAddress{"x'; DROP TABLE models; --"},
                    "/api/group?name=x%27%3B%20DROP%20TABLE%20models%3B%20--"},
        CWrittenRow{"GroupBeyondAscii", CGroupAddress{"Möbel+100%\n"},
                    "/api/group?name=M%C3%B6bel%2B100%25%0A"},
        CWrittenRow{"Models", CModelsAddress{7, {}, 1000}, "/api/groups/7/models?limit=1000"},
        CWrittenRow{"ModelsAfter", CModelsAddress{INT64_MAX, CPagePlace{"a b", 0x0012ABCD}, 1},
                    "/api/groups/9223372036854775807/models?limit=1&after_name=a%20b&after_key=0012abcd"},
        CWrittenRow{"Upload", CUploadAddress{}, "/api/models"},
        CWrittenRow{"Model", CModelAddress{0xFFFFFFFF}, "/api/models/ffffffff"},
        CWrittenRow{"Search", CSearchAddress{"%_", 0, 5}, "/api/search?text=%25_&limit=5"},
        CWrittenRow{"SearchGroup", CSearchAddress{"a", 3, 1000}, "/api/search?text=a&group=3&limit=1000"},
        CWrittenRow{"Blob", CBlobAddress{kHash, EBlobForm::Plain}, "/b/" + kHash.ToHex()},
        CWrittenRow{"StoredBlob", CBlobAddress{kHash, EBlobForm::Stored}, "/b/" + kHash.ToHex() + ".zst"},
        CWrittenRow{"GroupPage", CGroupPage{1, CPagePlace{"n", 1}}, "/g/1?after_name=n&after_key=00000001"},
        CWrittenRow{"ModelView", CModelView{1}, "/m/00000001/view"},
        CWrittenRow{"SearchPage", CSearchPage{}, "/search"},
        CWrittenRow{"SiteFile", CSiteFile{"page-1.min.css"}, "/site/page-1.min.css"}),
    kRowName);

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
        CRefusedRow{"OtherPath", "/api/group/", kNone}, CRefusedRow{"UpAndDown", "/api/../api/groups", kNone},
        CRefusedRow{"TwoSlashes", "//api/groups", kNone}, CRefusedRow{"EscapedPath", "/api/%67roups", kNone},
        CRefusedRow{"OtherCase", "/API/groups", kNone}, CRefusedRow{"GroupZero", "/g/0", kNone},
        CRefusedRow{"NegativeGroup", "/g/-1", kNone},
        CRefusedRow{"LeadingZero", "/api/groups/07/models", kNone},
        CRefusedRow{"GroupTooLarge", "/g/9223372036854775808", kNone},
        CRefusedRow{"GroupWithoutNumber", "/api/groups/models", kNone},
        CRefusedRow{"ShortKey", "/api/models/12abcd", kNone}, CRefusedRow{"LongKey", "/m/000012abcd", kNone},
        CRefusedRow{"KeyWithSign", "/m/-0012abc", kNone},
        CRefusedRow{"KeyWithPath", "/m/0012abcd/view/x", kNone}, CRefusedRow{"ShortHash", "/b/ab", kNone},
        CRefusedRow{"OtherEnding", "/b/" + kHash.ToHex() + ".gz", kNone},
        CRefusedRow{"HashInUpperCase", "/b/" + std::string(64, 'A'), kNone},
        CRefusedRow{"SiteFileAbove", "/site/../secret", kNone},
        CRefusedRow{"SiteFileHidden", "/site/.htaccess", kNone},
        CRefusedRow{"SiteFileInFolder", "/site/a/b", kNone}, CRefusedRow{"NameMissing", "/api/group", kBad},
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
        CRefusedRow{"LimitNoNumber", "/api/search?text=a&limit=1e3", kBad},
        CRefusedRow{"LimitEmpty", "/api/search?text=a&limit=", kBad},
        CRefusedRow{"PlaceWithoutKey", "/api/groups/1/models?after_name=a", kBad},
        CRefusedRow{"PlaceWithoutName", "/g/1?after_key=00000001", kBad},
        CRefusedRow{"SearchForNothing", "/api/search?text=", kBad}),
    kRowName);

TEST_P(RefusedAddressTest, IsRefused) {
    const auto read = wire_address::Read(GetParam().target);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.Error().code, GetParam().code) << read.Error().Text();
}

TEST(WireAddressFormsTest, AcceptsWhatFormsAndForeignLinksSend) {
    const auto form = wire_address::Read("/search?text=old+chair%21&utm_source=mail");
    EXPECT_EQ(std::get<CSearchPage>(form.Value()).text, "old chair!");
    EXPECT_TRUE(wire_address::Read("/api/version?client=1.6&extras=2"));
    EXPECT_EQ(std::get<CModelsAddress>(wire_address::Read("/api/groups/1/models").Value()).limit, 1000u);
}

struct CServerRow {
    const char* name;
    std::string given, kept;  ///< kept: empty where it is refused
};
class ServerAddressTest : public testing::TestWithParam<CServerRow> {};
INSTANTIATE_TEST_SUITE_P(
    , ServerAddressTest,
    testing::Values(CServerRow{"Plain", "http://models.example", "http://models.example"},
                    CServerRow{"PathAndSlashes", "HTTPS://h:8443/a/b//", "https://h:8443/a/b"},
                    CServerRow{"NumbersOfSix", "http://[::1]:8095", "http://[::1]:8095"},
                    CServerRow{"NoScheme", "models.example", ""}, CServerRow{"OtherScheme", "ftp://h", ""},
                    CServerRow{"File", "file:///etc/passwd", ""}, CServerRow{"NoHost", "http:///a", ""},
                    CServerRow{"PortAlone", "http://:80", ""}, CServerRow{"User", "http://u:p@h", ""},
                    CServerRow{"Query", "http://h/?a", ""}, CServerRow{"Fragment", "http://h#a", ""},
                    CServerRow{"PortTooLarge", "http://h:65536", ""},
                    CServerRow{"PortEmpty", "http://h:", ""}, CServerRow{"OpenBracket", "http://[::1", ""},
                    CServerRow{"Blank", "http://h/a b", ""}, CServerRow{"LineEnd", "http://h\r\nX: y", ""}),
    kRowName);

TEST_P(ServerAddressTest, IsCheckedAndCut) {
    const auto checked = wire_address::CheckServer(GetParam().given);
    EXPECT_EQ(checked ? checked.Value() : "", GetParam().kept);
}

}  // namespace
