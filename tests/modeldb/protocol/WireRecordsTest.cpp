// SPDX-License-Identifier: MIT
#include "modeldb/protocol/wire_records.h"

#include <functional>

#include "error_code_of.h"
#include "modeldb/protocol/wire_errors.h"
#include "modeldb/protocol/wire_limits.h"
#include "row_name.h"

namespace {

const std::string kHex = CBlobHash::Of({}).ToHex();
constexpr const char* kOddText = "a/../b\\ \"'; --\n\x01\x7f \xc3\xb6\xf0\x9f\x98\x80";

std::string Repeated(std::string_view item, std::size_t count) {
    std::string out;
    for (std::size_t i = 0; i < count; ++i) out += (i ? "," : "") + std::string(item);
    return out;
}

CStoredBlob BlobOf(std::uint64_t size, std::uint64_t stored, EBlobCodec codec) {
    return {CBlobHash::Of({}), size, stored, codec};
}

// What is written is read back: the same text arises again from what was read.
TEST(WireRecordsTest, EveryRecordComesBackAsItWas) {
    using namespace wire_records;
    const CModelRecord model{0xFFFFFFFF,
                             "Cars",
                             kOddText,
                             "",
                             std::string(4000, '"'),
                             INT64_MAX,
                             BlobOf(1 << 30, 5, EBlobCodec::Zstd),
                             BlobOf(9, 9, EBlobCodec::Plain),
                             {{kOddText, BlobOf(0, 0, EBlobCodec::Plain)}}};
    const std::string written = WriteModel(model);
    EXPECT_EQ(WriteModel(ReadModel(written).Value()), written);
    EXPECT_EQ(ReadModel(written).Value().name, kOddText);
    CModelRecord bare = model;
    bare.preview.reset();
    bare.textures.clear();
    EXPECT_FALSE(ReadModel(WriteModel(bare)).Value().preview);

    const CVersionAnswer version{false, {"1.5", "2.0"}, "Orbivue 1.9.5", true, UINT64_MAX, 2000};
    EXPECT_EQ(WriteVersion(ReadVersion(WriteVersion(version)).Value()), WriteVersion(version));

    const std::vector<CGroupRecord> groups{{INT64_MAX, "A", UINT64_MAX, 1}, {1, kOddText, 0, UINT64_MAX}};
    EXPECT_EQ(WriteGroups(ReadGroups(WriteGroups(groups)).Value()), WriteGroups(groups));
    EXPECT_EQ(WriteGroup(ReadGroup(WriteGroup(groups[1])).Value()), WriteGroup(groups[1]));

    const std::vector<CModelSummary> models{{"A", 0}, {"A", 1}, {"\xc3\xb6", 0}, {"\xf0\x9f\x98\x80", 0}};
    EXPECT_EQ(WriteModels(ReadModels(WriteModels(models, true)).Value().models, true),
              WriteModels(models, true));

    const std::vector<CFoundModel> found{{"g", kOddText, 7}};
    EXPECT_EQ(WriteFound(ReadFound(WriteFound(found, false)).Value().models, false),
              WriteFound(found, false));

    for (const EAdded how : {EAdded::Added, EAdded::SameIsThere})
        EXPECT_EQ(ReadUploaded(WriteUploaded({5, how})).Value().how, how);

    const CUploadHead head{
        kOddText, "Upload", "c", "n", {5, CBlobHash::Of({})}, {{"t.png", {0, CBlobHash::Of({})}}}};
    EXPECT_EQ(WriteUploadHead(ReadUploadHead(WriteUploadHead(head), 1).Value()), WriteUploadHead(head));
}

TEST(WireRecordsTest, TakesListsAsLongAsTheirLimits) {
    using namespace wire_records;
    const auto nameOf = [](std::size_t number) { return std::to_string(1'000'000 + number); };
    std::vector<CGroupRecord> groups;
    for (std::size_t i = 0; i < wire_limits::kGroups; ++i) groups.push_back({1, nameOf(i), 1, 1});
    EXPECT_TRUE(ReadGroups(WriteGroups(groups)));
    std::vector<CModelSummary> models;
    for (std::size_t i = 0; i < store_limits::kPageModels; ++i) models.push_back({nameOf(i), 1});
    EXPECT_TRUE(ReadModels(WriteModels(models, true)));
    EXPECT_TRUE(ReadFound(WriteFound(std::vector<CFoundModel>(wire_limits::kFound, {"g", "n", 1}), true)));
    CModelRecord model{1, "g", "n", "", "", 1, BlobOf(1, 1, EBlobCodec::Plain), {}, {}};
    model.textures.assign(store_limits::kTextures, {"t", BlobOf(1, 1, EBlobCodec::Plain)});
    EXPECT_TRUE(ReadModel(WriteModel(model)));
}

using CReader = std::function<std::optional<EErrorCode>(std::string_view)>;
template <class Read>
CReader Reading(Read read) {
    return [read](std::string_view json) { return CodeOf(read(json)); };
}
const CReader kGroups = Reading(wire_records::ReadGroups), kModels = Reading(wire_records::ReadModels),
              kModel = Reading(wire_records::ReadModel), kVersion = Reading(wire_records::ReadVersion),
              kFound = Reading(wire_records::ReadFound), kUploaded = Reading(wire_records::ReadUploaded),
              kHead = Reading([](std::string_view json) { return wire_records::ReadUploadHead(json, 3); });

std::string GroupsOf(const std::string& items) {
    return R"({"groups":[)" + items + "]}";
}
std::string ModelsOf(const std::string& items, const char* more = "false") {
    return R"({"models":[)" + items + R"(],"more":)" + more + "}";
}
std::string BlobText(const std::string& rest) {
    return R"({"sha256":")" + kHex + "\"," + rest + "}";
}
std::string ModelWith(const std::string& file, const std::string& preview = "null",
                      const std::string& textures = "[]") {
    return R"({"key":"00000001","group":"g","name":"n","code":"","note":"","created":1,"file":)" + file +
           R"(,"preview":)" + preview + R"(,"textures":)" + textures + "}";
}
std::string HeadWith(const std::string& texts, const std::string& textures = "[]") {
    return "{" + texts + R"(,"file":{"size":1,"sha256":")" + kHex + R"("},"textures":)" + textures + "}";
}
const std::string kGoodBlob = BlobText(R"("size":1,"stored":1,"codec":"plain")");
const std::string kTexts = R"("name":"n","group":"g","code":"","note":"")";

struct CAnswerRow {
    const char* name;
    CReader read;
    std::string json;
    std::optional<EErrorCode> code;  ///< nothing: it is read
};
class StrangersAnswerTest : public testing::TestWithParam<CAnswerRow> {};
constexpr auto kBad = EErrorCode::BadFormat, kLarge = EErrorCode::TooLarge;
const CAnswerRow kStrangersAnswerTestRows[] = {
    {"UnknownMembersAreIgnored",
     kGroups,
     R"({"x":[{}],"groups":[{"id":1,"name":"a","models":0,"version":0,"y":null}]})",
     {}},
    {"Nothing", kGroups, "", kBad},
    {"BytesBehind", kGroups, GroupsOf("") + "x", kBad},
    {"Deep", kGroups, std::string(100'000, '['), kLarge},
    {"DeepInMember", kModels, R"({"x":[[[[[[[[0]]]]]]]],"models":[],"more":false})", kLarge},
    {"BracketsInTextAreNotDeep", kModels, ModelsOf(R"(["[[[[[[[[[[\"[[{{{{{,,,","00000001"])"), {}},
    {"ManyValues", kModels, "[" + Repeated("0", 40'000) + "]", kLarge},
    {"ManyModels", kModels, ModelsOf(Repeated(R"(["a","00000001"])", 10'001)), kLarge},
    {"ManyBytes", kGroups, std::string((32 << 20) + 1, ' '), kLarge},
    {"OtherType", kGroups, R"({"groups":{}})", kBad},
    {"Missing", kGroups, GroupsOf(R"({"id":1,"name":"a","models":0})"), kBad},
    {"GroupTooLarge", kGroups, GroupsOf(R"({"id":9223372036854775808,"name":"a","models":0,"version":0})"),
     kBad},
    {"GroupZero", kGroups, GroupsOf(R"({"id":0,"name":"a","models":0,"version":0})"), kBad},
    {"Negative", kGroups, GroupsOf(R"({"id":1,"name":"a","models":-1,"version":0})"), kBad},
    {"Fraction", kGroups, GroupsOf(R"({"id":1,"name":"a","models":1.5,"version":0})"), kBad},
    {"SameGroupTwice", kGroups, GroupsOf(Repeated(R"({"id":1,"name":"a","models":0,"version":0})", 2)), kBad},
    {"EmptyName", kModels, ModelsOf(R"(["","00000001"])"), kBad},
    {"ZeroByte", kModels, ModelsOf(R"(["a\u0000b","00000001"])"), kBad},
    {"NoUtf8", kModels, ModelsOf("[\"\xff\",\"00000001\"]"), kBad},
    {"LoneSurrogate", kModels, ModelsOf(R"(["\ud800","00000001"])"), kBad},
    {"LongName", kModels, ModelsOf("[\"" + std::string(401, 'a') + "\",\"00000001\"]"), kBad},
    {"KeyAsNumber", kModels, ModelsOf(R"(["a",1])"), kBad},
    {"KeyTooLong", kModels, ModelsOf(R"(["a","000000001"])"), kBad},
    {"OutOfOrder", kModels, ModelsOf(R"(["b","00000001"],["a","00000002"])"), kBad},
    {"SameModelTwice", kModels, ModelsOf(R"(["a","00000001"],["a","00000001"])"), kBad},
    {"EmptyPageWithMore", kModels, ModelsOf("", "true"), kBad},
    {"MoreAsNumber", kFound, R"({"models":[],"more":0})", kBad},
    {"GoodModel", kModel, ModelWith(kGoodBlob, kGoodBlob), {}},
    {"HugeFile", kModel, ModelWith(BlobText(R"("size":1073741825,"stored":1,"codec":"zstd")")), kBad},
    {"HugeStored", kModel, ModelWith(BlobText(R"("size":1,"stored":18446744073709551615,"codec":"zstd")")),
     kBad},
    {"HugePreview", kModel,
     ModelWith(kGoodBlob, BlobText(R"("size":5000000,"stored":5000000,"codec":"plain")")), kBad},
    {"UnknownCodec", kModel, ModelWith(BlobText(R"("size":1,"stored":1,"codec":"br")")), kBad},
    {"PlainOfOtherSize", kModel, ModelWith(BlobText(R"("size":1,"stored":2,"codec":"plain")")), kBad},
    {"ManyTextures", kModel, ModelWith(kGoodBlob, "null", "[" + Repeated("0", 2001) + "]"), kLarge},
    {"TextureWithoutName", kModel, ModelWith(kGoodBlob, "null", "[" + kGoodBlob + "]"), kBad},
    {"VersionWithoutLimits", kVersion, R"({"accepted":true,"protocols":[],"server":"","private":false})",
     kBad},
    {"AcceptedAsText", kVersion,
     R"({"accepted":"true","protocols":[],"server":"","private":false,"limits":{"upload_bytes":1,"textures":1}})",
     kBad},
    {"UnknownHow", kUploaded, R"({"key":"00000001","how":"lost"})", kBad},
    {"GoodHead", kHead, HeadWith(kTexts), {}},
    {"HeadWithoutName", kHead, HeadWith(R"("name":"","group":"g","code":"","note":"")"), kBad},
    {"HeadWithLongNote", kHead,
     HeadWith(R"("name":"n","group":"g","code":"","note":")" + std::string(4001, 'a') + "\""), kBad},
    {"HeadWithManyTextures", kHead, HeadWith(kTexts, "[0,0,0,0]"), kLarge},
};
INSTANTIATE_TEST_SUITE_P(, StrangersAnswerTest, testing::ValuesIn(kStrangersAnswerTestRows), kRowName);

TEST_P(StrangersAnswerTest, IsReadOrRefused) {
    EXPECT_EQ(GetParam().read(GetParam().json), GetParam().code);
}

TEST(WireErrorsTest, BecomeOneLine) {
    struct CRow {
        int status;
        std::string body;
        EErrorCode code;
        std::string message = {};  ///< empty: that of the table
    };
    const CRow rows[] = {
        {422, wire_errors::Write(422, "a chunk ends\ntoo early"), kBad, "a chunk ends?too early"},
        {422, wire_errors::Write(422, std::string(2000, 'a')), kBad, std::string(1000, 'a')},
        {409, wire_errors::Write(409, "x"), EErrorCode::Exists},  // known already, in the reader's language
        {502, "<html>", EErrorCode::Busy},
        {422, R"({"error":"x"})", kBad},
        {400, R"({"error":{"message":[]}})", EErrorCode::BadArgument},
        {418, "", EErrorCode::BadArgument},
        {999, "", EErrorCode::Unreadable},
    };
    for (const CRow& row : rows) {
        const CError error = wire_errors::Read(row.status, row.body);
        EXPECT_EQ(error.code, row.code) << row.status << row.body;
        EXPECT_EQ(error.message, row.message.empty() ? wire_errors::KindOf(row.status).message : row.message);
    }
}

}  // namespace
