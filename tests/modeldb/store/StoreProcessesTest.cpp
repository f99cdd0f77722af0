// SPDX-License-Identifier: MIT
// What other processes do to a store, and what ends them.
#include <chrono>
#include <random>
#include <thread>

#include "CTestStore.h"
#include "child_process.h"

namespace {

class StoreProcessesTest : public testing::TestWithParam<CEngineRow> {};
INSTANTIATE_TEST_SUITE_P(, StoreProcessesTest, testing::ValuesIn(Engines()), kRowName);

/** The n-th model of a series: most small, some with textures that others have, and some so large that they are staged. */
CNewModel Made(CModelStore& store, std::uint64_t series, std::uint64_t n) {
    const std::string text = std::to_string(series) + "/" + std::to_string(n);
    CNewModel model = ModelOf("group " + std::to_string(n % 3), text, text);
    if (n % 3 == 0)
        model.textures.push_back({"shared.png", BlobOf(&store, "picture " + std::to_string(n % 5))});
    if (n % 11 == 10) model.file = BlobOf(&store, text + NoiseOf(CBlobWriter::kHeldBytes + 70'000, n));
    return model;
}

/** Adds models until it is killed, one at a time and in batches, and tells the key of each that the store took. */
bool AddForEver(const CStoreAddress& address, std::uint64_t series, const CPipe& acknowledged) {
    CResult<CModelStore> store = CModelStore::Open(address, EStoreUse::Write);
    for (std::uint64_t n = 0; store; ++n) {
        std::vector<CNewModel> batch;
        for (std::uint64_t i = 0; i < (n % 4 == 0 ? 5 : 1); ++i)
            batch.push_back(Made(store.Value(), series, n * 8 + i));
        const auto results = store.Value().AddModels(batch);
        if (!results) return false;
        for (const auto& result : results.Value())
            if (!result || !acknowledged.Tell(result.Value().key)) return false;
    }
    return false;
}

TEST_P(StoreProcessesTest, KillingAWriterLosesNoAcknowledgedModelAndLeavesNoHalfOne) {
    const char* wanted = std::getenv("ORBIVUE_KILLS");
    const int kills = wanted ? std::atoi(wanted) : 6;
    std::mt19937 random(20);  // NOLINT(cert-msc51-cpp): the moments are random anyhow
    std::size_t acknowledgedAtAll = 0;
    std::unique_ptr<CTestPlace> place;
    std::set<std::uint32_t> acknowledged;
    for (int i = 0; i < kills; ++i) {
        if (i % 20 == 0) {
            place = std::make_unique<CTestPlace>(GetParam());
            (void)place->Open();
            acknowledged.clear();
        }
        CPipe told;
        CChildProcess writer(
            [&] { return AddForEver(place->Address(), static_cast<std::uint64_t>(i), told); });
        (void)told.write.Close();
        std::this_thread::sleep_for(
            std::chrono::milliseconds(std::uniform_int_distribution<>(10, 250)(random)));
        EXPECT_TRUE(writer.Kill()) << "it ended by itself";
        for (std::uint32_t key = 0; told.Hear(key); ++acknowledgedAtAll) acknowledged.insert(key);
        CModelStore store = place->Open(EStoreUse::Write);
        ASSERT_EQ(LostOf(store, acknowledged), 0u) << "of " << acknowledged.size() << " at kill " << i;
    }
    EXPECT_GT(acknowledgedAtAll, 0u);
    std::printf("%d kills, %zu models acknowledged, none lost\n", kills, acknowledgedAtAll);
}

/** A process that began before anybody here opened a store, and so shares nothing with this one. */
class CStranger {
  public:
    explicit CStranger(const CStoreAddress& address)
        : m_process([&] {
              std::uint32_t key = 0;
              if (!m_asked.Hear(key)) return false;
              CResult<CModelStore> store = CModelStore::Open(address, EStoreUse::Write);
              return store && store.Value().HasModel(key).Value();
          }) {}
    /** Opens the store, looks, closes it and ends. */
    bool Sees(std::uint32_t key) { return m_asked.Tell(key) && m_process.EndsWell(); }

  private:
    CPipe m_asked;
    CChildProcess m_process;
};

// A process with several connections, as a server is one, loses none of its locks when it opens a further one: otherwise
// another process that ends would take the log with it.
TEST_P(StoreProcessesTest, WhoeverComesAndGoesTakesNothingFromTheOthers) {
    const CTestPlace place(GetParam());
    CStranger strangers[] = {CStranger(place.Address()), CStranger(place.Address())};
    CModelStore first = place.Open();
    const auto add = [&](const char* text) { return first.AddModel(ModelOf("g", text, text)).Value().key; };
    const std::uint32_t one = add("one");
    CModelStore second = place.Open();
    EXPECT_TRUE(strangers[0].Sees(one));
    EXPECT_TRUE(strangers[1].Sees(add("two")));
    EXPECT_EQ(second.Groups().Value().front().modelCount, 2u);
}

// What a connection keeps of a group is gone at once when another one changes it, also when the log begins anew.
TEST_P(StoreProcessesTest, WhatOneChangesAllOthersSeeAtOnce) {
    const CTestPlace place(GetParam());
    CModelStore writer = place.Open();
    CModelStore readers[] = {place.Open(), place.Open(EStoreUse::Read)};
    const auto countIn = [](CModelStore& store, std::int64_t group) {
        return store.GroupById(group).Value().modelCount;
    };
    for (std::uint64_t i = 1; i <= 150; ++i) {
        const std::string bytes =
            std::to_string(i) + std::string(20'000, 'x');  // the log begins anew some times
        ASSERT_TRUE(writer.AddModel(ModelOf("g", "m", bytes)));
        const std::int64_t group = writer.Group("g").Value().id;
        for (CModelStore& reader : readers) {
            ASSERT_EQ(countIn(reader, group), i);
            ASSERT_EQ(countIn(reader, group), i) << "kept";
        }
    }
}

TEST_P(StoreProcessesTest, SeveralWritersAtOnceAddAllThatTheyHave) {
    constexpr std::uint64_t kModels = 60, kShared = 20, kWriters = 3;
    const CTestPlace place(GetParam());
    const auto write = [&](std::uint64_t series) {
        CResult<CModelStore> store =
            CModelStore::Open(place.Address(), EStoreUse::Create);  // all make it at once
        for (std::uint64_t n = 0; store && n < kModels; ++n)
            if (!store.Value().AddModel(Made(store.Value(), n < kShared ? 99 : series, n))) return false;
        return store.HasValue();
    };
    std::vector<CChildProcess> writers;
    for (std::uint64_t series = 0; series < kWriters; ++series)
        writers.emplace_back([&] { return write(series); });
    for (CChildProcess& writer : writers) EXPECT_TRUE(writer.EndsWell());
    CModelStore store = place.Open(EStoreUse::Read);
    EXPECT_EQ(store.Check(CModelStore::ECheck::Quick).Value().models,
              kShared + kWriters * (kModels - kShared));
    EXPECT_EQ(FaultOf(store), "");
}

TEST_P(StoreProcessesTest, ABackupOfAStoreInUseIsWhole) {
    const CTestPlace place(GetParam());
    (void)place.Open();
    CPipe told;
    const CChildProcess writer([&] { return AddForEver(place.Address(), 7, told); });
    (void)told.write.Close();
    CModelStore store = place.Open(EStoreUse::Read);
    for (int i = 0; i < 4; ++i) {
        std::uint32_t key = 0;
        ASSERT_TRUE(told.Hear(key));
        const std::string path = place.folder / ("backup" + std::to_string(i));
        const CStatus done = store.Backup(path);
        ASSERT_TRUE(done) << done.Error().Text();
        CResult<CModelStore> backup = CModelStore::Open(CStoreAddress::Parse(path), EStoreUse::Read);
        ASSERT_TRUE(backup) << backup.Error().Text();
        EXPECT_EQ(LostOf(backup.Value(), {key}), 0u);
    }
}

}  // namespace
