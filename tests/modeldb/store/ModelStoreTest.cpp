// SPDX-License-Identifier: MIT
#include "modeldb/store/CModelStore.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <limits>

#include "CTestStore.h"
#include "error_code_of.h"
#include "modeldb/bytes/calc_crc.h"

namespace {

class ModelStoreTest : public testing::TestWithParam<CEngineRow> {
  protected:
    CTestPlace place{GetParam()};
    CModelStore store = place.Open();

    EAdded Add(CNewModel model) {
        const CResult<CAddedModel> added = store.AddModel(std::move(model));
        EXPECT_TRUE(added) << added.Error().Text();
        return added.Value().how;
    }
    std::uint64_t BlobCount() { return store.Check(CModelStore::ECheck::Quick).Value().blobs; }
};
INSTANTIATE_TEST_SUITE_P(, ModelStoreTest, testing::ValuesIn(Engines()), kRowName);

TEST_P(ModelStoreTest, GivesBackAllThatAModelHas) {
    CNewModel model = ModelOf("Cars", "chair", std::string(300'000, 'x') + "end");
    model.note = "Upload";
    model.preview = BlobOf(&store, "\x89PNG preview");
    model.textures.push_back({"wood.jpg", BlobOf(&store, "\xFF\xD8\xFF wood")});
    model.textures.push_back({"empty.png", BlobOf(&store, "")});
    const std::uint32_t key = model.file.crc;
    EXPECT_EQ(Add(std::move(model)), EAdded::Added);

    CModelStore other = place.Open(EStoreUse::Read);
    const CResult<CModelRecord> found = other.Model(key);
    ASSERT_TRUE(found) << found.Error().Text();
    const CModelRecord& record = found.Value();
    EXPECT_EQ(record.name + "/" + record.code + "/" + record.note, "chair/chair/Upload");
    EXPECT_EQ(ContentOf(other, record.file.hash), std::string(300'000, 'x') + "end");
    EXPECT_EQ(record.file.codec, EBlobCodec::Zstd);
    EXPECT_EQ(ContentOf(other, record.preview->hash), "\x89PNG preview");
    ASSERT_EQ(record.textures.size(), 2u);
    EXPECT_EQ(record.textures[0].name, "wood.jpg");
    EXPECT_EQ(record.textures[0].blob.codec, EBlobCodec::Plain);
    EXPECT_EQ(ContentOf(other, record.textures[1].blob.hash), "");
    EXPECT_EQ(other.GroupOf(key).Value(), "Cars");
    EXPECT_EQ(FaultOf(store), "");
}

TEST_P(ModelStoreTest, CountsModelsAndMovesTheVersionWithEachChange) {
    EXPECT_EQ(Add(ModelOf("b", "one", "1")), EAdded::Added);
    EXPECT_EQ(Add(ModelOf("b", "two", "2")), EAdded::Added);
    EXPECT_EQ(Add(ModelOf("a", "three", "3")), EAdded::Added);
    const std::vector<CGroupRecord> groups = store.Groups().Value();
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].name, "a");
    EXPECT_EQ(groups[1].modelCount, 2u);

    const std::uint64_t before = store.Group("b").Value().version;
    EXPECT_TRUE(store.SetPreview(CalcCrc(BytesOf("1")), BlobOf(nullptr, "picture")));
    const std::uint64_t between = store.Group("b").Value().version;
    EXPECT_GT(between, before);
    EXPECT_TRUE(store.RemoveModel(CalcCrc(BytesOf("1"))));
    EXPECT_GT(store.Group("b").Value().version, between);
    EXPECT_EQ(store.Group("b").Value().modelCount, 1u);
    EXPECT_EQ(FaultOf(store), "");
}

TEST_P(ModelStoreTest, TakesTheSameFileTwiceAndRefusesAnotherOneOfItsKey) {
    // Both have the CRC-32 0x4DDB0C25.
    const std::string plumless = "plumless", buckeroo = "buckeroo";
    ASSERT_EQ(CalcCrc(BytesOf(plumless)), CalcCrc(BytesOf(buckeroo)));
    EXPECT_EQ(Add(ModelOf("a", "first", plumless)), EAdded::Added);
    EXPECT_EQ(Add(ModelOf("b", "again", plumless)), EAdded::SameIsThere);
    EXPECT_EQ(CodeOf(store.AddModel(ModelOf("a", "other", buckeroo))), EErrorCode::Exists);
    EXPECT_EQ(store.Model(CalcCrc(BytesOf(plumless))).Value().name, "first");
    EXPECT_EQ(BlobCount(), 1u);
    EXPECT_EQ(store.Groups().Value().size(), 1u);
}

TEST_P(ModelStoreTest, OneOfABatchFailsAloneAndAllTogether) {
    std::vector<CNewModel> batch;
    batch.push_back(ModelOf("g", "sound", "plumless"));
    batch.push_back(ModelOf("g", "another of its key", "buckeroo"));
    batch.push_back(ModelOf("g", "", "no name"));
    batch.push_back(ModelOf("g", "also sound", "4"));
    const auto results = store.AddModels(batch);
    ASSERT_TRUE(results);
    std::string outcome;
    for (const auto& result : results.Value()) outcome += result ? '+' : '-';
    EXPECT_EQ(outcome, "+--+");
    EXPECT_EQ(store.Group("g").Value().modelCount, 2u);
}

TEST_P(ModelStoreTest, KeepsEqualBytesOnceAndRemovesThemWithTheLastThatHasThem) {
    const auto withTexture = [&](const char* file) {
        CNewModel model = ModelOf("g", file, file);
        model.textures.push_back({"wood.png", BlobOf(&store, "the same picture")});
        model.textures.push_back({"again.png", BlobOf(&store, "the same picture")});
        return model;
    };
    (void)Add(withTexture("one"));
    (void)Add(withTexture("two"));
    EXPECT_EQ(BlobCount(), 3u);
    EXPECT_TRUE(store.RemoveModel(CalcCrc(BytesOf("one"))));
    EXPECT_EQ(BlobCount(), 2u);
    EXPECT_TRUE(store.RemoveModel(CalcCrc(BytesOf("two"))));
    EXPECT_EQ(BlobCount(), 0u);
    EXPECT_EQ(store.RemoveModel(CalcCrc(BytesOf("two"))).Error().code, EErrorCode::NotFound);
    EXPECT_EQ(FaultOf(store), "");
}

TEST_P(ModelStoreTest, StagesLargeBytesAndGivesAnyPartOfThem) {
    const std::string large = NoiseOf(CBlobWriter::kHeldBytes + 3 * store_limits::kPartBytes + 5, 1);
    CNewModel model = ModelOf("g", "large", "x");
    model.file = BlobOf(&store, large);
    ASSERT_NE(model.file.stagedId, 0);
    EXPECT_TRUE(model.file.parts.empty());
    const CBlobHash hash = model.file.facts.hash;
    EXPECT_EQ(store.Blob(hash).Error().code, EErrorCode::NotFound) << "not before a model has it";
    EXPECT_EQ(Add(std::move(model)), EAdded::Added);
    EXPECT_EQ(ContentOf(store, hash), large);
    const std::uint64_t part = store_limits::kPartBytes;
    for (const auto& [offset, length] : {std::pair<std::uint64_t, std::uint64_t>{0, 1},
                                         {part - 1, 2},
                                         {part, part},
                                         {3 * part + 7, 2 * part},
                                         {large.size() - 1, 100},
                                         {large.size(), 1},
                                         {large.size() + 9, 1},
                                         {5, std::numeric_limits<std::uint64_t>::max()}}) {
        CMemorySink sink(64 << 20);
        EXPECT_TRUE(store.ReadStored(hash, offset, length, sink));
        EXPECT_EQ(CTestFolder::TextOf(sink.bytes), offset < large.size() ? large.substr(offset, length) : "")
            << offset;
    }
}

TEST_P(ModelStoreTest, LeavesNoStagedBytesOfWhatIsRefusedDroppedOrThereAlready) {
    const std::string large = NoiseOf(CBlobWriter::kHeldBytes + 5, 2);
    for (const char* name : {"first", "the same again"}) {
        CNewModel model = ModelOf("g", name, "x");
        model.file = BlobOf(&store, large);
        (void)Add(std::move(model));
    }
    {
        CBlobWriter writer(&store);
        EXPECT_TRUE(writer.Take(BytesOf(NoiseOf(2 * CBlobWriter::kHeldBytes, 3))));
    }
    const auto rows = [database = place.Raw(CDatabase::EAccess::Read)](const std::string& table) {
        std::int64_t count = 0;
        EXPECT_TRUE(database->Run("SELECT count(*) FROM " + table, {}, [&](const CDbRow& row) -> CStatus {
            count = row.Int(0);
            return CDone{};
        }));
        return count;
    };
    EXPECT_EQ(rows("blobs"), 1);
    EXPECT_EQ(rows("blob_parts"), 17);
}

TEST_P(ModelStoreTest, PagesGoOnBehindAnyPlaceAndSplitNoEqualNames) {
    std::vector<CNewModel> batch;
    batch.reserve(25);
    for (int i = 0; i < 25; ++i)
        batch.push_back(ModelOf("g", i % 2 ? "same" : "same as well", std::to_string(i)));
    ASSERT_TRUE(store.AddModels(batch));
    const std::int64_t group = store.Group("g").Value().id;
    const std::vector<CModelSummary> all = store.Models(group, std::nullopt, 1000).Value();
    ASSERT_EQ(all.size(), 25u);
    EXPECT_TRUE(std::ranges::is_sorted(
        all, {}, [](const CModelSummary& model) { return std::pair(model.name, model.key); }));
    std::vector<std::uint32_t> paged, whole;
    std::optional<CPagePlace> place;
    for (std::vector<CModelSummary> page; page = store.Models(group, place, 4).Value(), !page.empty();) {
        for (const CModelSummary& model : page) paged.push_back(model.key);
        place = CPagePlace{page.back().name, page.back().key};
    }
    for (const CModelSummary& model : all) whole.push_back(model.key);
    EXPECT_EQ(paged, whole);
}

struct CNameRow {
    std::string name, text;
    bool isName = true;
};
class StoreNameTest : public testing::TestWithParam<std::tuple<CEngineRow, CNameRow>> {};

TEST_P(StoreNameTest, IsTextAndNothingElse) {
    const auto& [engine, row] = GetParam();
    const CTestPlace place(engine);
    CModelStore store = place.Open();
    (void)store.AddModel(ModelOf("other", "other", "other"));
    CNewModel model = ModelOf(row.text, row.text, "file");
    model.textures.push_back({row.text, BlobOf(nullptr, "picture")});
    const CResult<CAddedModel> added = store.AddModel(std::move(model));
    ASSERT_EQ(added.HasValue(), row.isName);
    if (!row.isName) {
        EXPECT_EQ(added.Error().code, EErrorCode::BadArgument);
        EXPECT_EQ(store.Group(row.text).Error().code, EErrorCode::BadArgument);
        EXPECT_EQ(store.Groups().Value().size(), 1u);
        return;
    }
    const CModelRecord found = store.Model(added.Value().key).Value();
    EXPECT_EQ(found.name, row.text);
    EXPECT_EQ(found.textures.at(0).name, row.text);
    EXPECT_EQ(store.Group(row.text).Value().modelCount, 1u);
    EXPECT_EQ(store.Search(row.text, 0, 10).Value().at(0).key, found.key);
    EXPECT_TRUE(store.CreateToken(row.text.substr(0, row.text.size() > 100 ? 0 : row.text.npos) + "t", {}));
    EXPECT_EQ(FaultOf(store), "");
}

INSTANTIATE_TEST_SUITE_P(
    , StoreNameTest,
    testing::Combine(
        testing::ValuesIn(Engines()),
        testing::Values(
            CNameRow{"Quotes", "'; DROP TABLE models; -- \"b\" OR \"c"}, CNameRow{"PatternAlone", "%"},
            CNameRow{"Parameter", "$1 ?2 :x @y 100%_!"}, CNameRow{"SearchSyntax", "name:x* NEAR(a b) NOT ^"},
            CNameRow{"Path", "../../etc/passwd C:\\x\\"}, CNameRow{"LineEnds", "a\r\nb\tc\x1b[31m"},
            CNameRow{"Longest", std::string(200, 'n')}, CNameRow{"Blanks", "  "},
            CNameRow{"BeyondAscii", "\xC3\x84PFEL \xD0\x96 \xF0\x9F\xAA\x91"}, CNameRow{"Empty", "", false},
            CNameRow{"TooLong", std::string(201, 'n'), false},
            CNameRow{"Zero", std::string("a\0b", 3), false}, CNameRow{"HalfACharacter", "a\xC3", false})),
    [](const auto& row) { return std::get<0>(row.param).name + std::get<1>(row.param).name; });

TEST_P(ModelStoreTest, SearchesPartsOfNamesWhateverTheirCase) {
    std::vector<CNewModel> batch;
    for (const char* name : {"Old Chair", "ARMCHAIR", "table", "\xC3\x84pfel", "50% off"})
        batch.push_back(ModelOf("g", name, name));
    batch.push_back(ModelOf("h", "chairs", "chairs"));
    ASSERT_TRUE(store.AddModels(batch));
    const auto found = [&](std::string_view text, std::int64_t group) {
        std::vector<std::string> names;
        const std::vector<CFoundModel> models = store.Search(text, group, 10).Value();
        std::ranges::transform(models, std::back_inserter(names), &CFoundModel::name);
        std::ranges::sort(names);
        return names;
    };
    using CNames = std::vector<std::string>;
    EXPECT_EQ(found("cHaIr", 0), (CNames{"ARMCHAIR", "Old Chair", "chairs"}));
    EXPECT_EQ(found("chair", store.Group("h").Value().id), CNames{"chairs"});
    EXPECT_EQ(found("ai", 0), (CNames{"ARMCHAIR", "Old Chair", "chairs"})) << "too short for an index";
    EXPECT_EQ(found("\xC3\xA4PF", 0), CNames{"\xC3\x84pfel"});
    EXPECT_EQ(found("0%", 0), CNames{"50% off"});
    EXPECT_EQ(store.Search("a", 0, 2).Value().size(), 2u);
    EXPECT_TRUE(store.RemoveModel(CalcCrc(BytesOf("ARMCHAIR"))));
    EXPECT_EQ(found("chair", store.Group("g").Value().id), CNames{"Old Chair"});
}

TEST_P(ModelStoreTest, ATokenIsKnownByItsSecretAloneUntilItIsRevoked) {
    const std::string token = store.CreateToken("anna", {3}).Value();
    EXPECT_EQ(store.CreateToken("anna", {1}).Error().code, EErrorCode::Exists);
    const std::optional<CTokenRecord> found = store.FindToken(token).Value();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "anna");
    EXPECT_TRUE(found->rights.Has(EStoreRight::Upload));
    EXPECT_FALSE(found->rights.Has(EStoreRight::Remove));
    std::string wrong = token;
    wrong.back() = wrong.back() == '0' ? '1' : '0';
    const std::string secret = token.substr(token.rfind('_'));
    for (const std::string& other :
         {wrong, std::string(), token + "0", token.substr(1), "orbivue_99" + secret, "orbivue_-1" + secret,
          "orbivue_" + secret, "orbivue_9999999999999999999999" + secret})
        EXPECT_FALSE(store.FindToken(other).Value()) << other;
    EXPECT_TRUE(store.RevokeToken("anna"));
    EXPECT_FALSE(store.FindToken(token).Value());
    EXPECT_EQ(store.RevokeToken("anna").Error().code, EErrorCode::NotFound);
    if (!GetParam().isPostgres) {
        EXPECT_EQ(CTestFolder::TextOf(place.Address().text).find(secret.substr(1)), std::string::npos);
    }
}

TEST_P(ModelStoreTest, AGroupGoesOnlyWhenItIsEmptyAndItsNumberNeverComesAgain) {
    (void)Add(ModelOf("g", "one", "1"));
    const std::int64_t id = store.Group("g").Value().id;
    EXPECT_EQ(store.RemoveGroup("g").Error().code, EErrorCode::Exists);
    EXPECT_TRUE(store.RemoveModel(CalcCrc(BytesOf("1"))));
    EXPECT_TRUE(store.RemoveGroup("g"));
    EXPECT_EQ(store.RemoveGroup("g").Error().code, EErrorCode::NotFound);
    (void)Add(ModelOf("g", "one", "1"));
    EXPECT_NE(store.Group("g").Value().id, id);
}

TEST_P(ModelStoreTest, ABackupHoldsAllAndFillsAStoreOfEitherEngine) {
    CNewModel model = ModelOf("Cars", "chair", std::string(700'000, 'c'));
    model.preview = BlobOf(&store, "picture");
    model.textures.push_back({"wood.png", BlobOf(&store, NoiseOf(600'000, 4))});
    const std::uint32_t key = model.file.crc;
    (void)Add(std::move(model));
    (void)Add(ModelOf("Empty", "x", "x"));
    EXPECT_TRUE(store.RemoveModel(CalcCrc(BytesOf("x"))));
    const std::string token = store.CreateToken("anna", {3}).Value();
    const std::uint64_t version = store.Group("Cars").Value().version;

    const std::string backup = place.folder / "backup.sqlite";
    ASSERT_EQ(Complaint(store.Backup(backup)), "");
    EXPECT_EQ(store.Backup(backup).Error().code, EErrorCode::Exists);
    const CTestPlace other(GetParam());
    const CStatus restored = CModelStore::Restore(backup, other.Address());
    ASSERT_TRUE(restored) << restored.Error().Text();
    EXPECT_EQ(CModelStore::Restore(backup, other.Address()).Error().code, EErrorCode::Exists);

    CModelStore copy = other.Open(EStoreUse::Write);
    const CModelRecord record = copy.Model(key).Value();
    EXPECT_EQ(ContentOf(copy, record.file.hash), std::string(700'000, 'c'));
    EXPECT_EQ(ContentOf(copy, record.textures.at(0).blob.hash), NoiseOf(600'000, 4));
    EXPECT_EQ(copy.Groups().Value().size(), 2u);
    EXPECT_GT(copy.Group("Cars").Value().version, version)
        << "what was seen of the lost store is not taken for this one";
    EXPECT_TRUE(copy.FindToken(token).Value());
    EXPECT_EQ(copy.Search("chai", 0, 9).Value().size(), 1u);
    EXPECT_EQ(copy.AddModel(ModelOf("New", "y", "y")).Value().how, EAdded::Added)
        << "its numbers are new ones";
    EXPECT_TRUE(copy.CreateToken("berta", {}));
    EXPECT_EQ(FaultOf(copy), "");

    const CTestPlace third(GetParam());
    ASSERT_EQ(Complaint(CModelStore::Restore(backup, third.Address(), CModelStore::ETokens::Forget)), "");
    CModelStore tokenless = third.Open(EStoreUse::Read);
    EXPECT_TRUE(tokenless.Tokens().Value().empty());
    EXPECT_EQ(ContentOf(tokenless, record.file.hash).size(), 700'000u);
    for (const auto& left : std::filesystem::directory_iterator(place.folder / ""))
        EXPECT_FALSE(left.path().filename().string().starts_with("backup.sqlite.")) << left;
}

}  // namespace
