// SPDX-License-Identifier: MIT
// The user's own store, made when it is missing.
#include <gtest/gtest.h>
#include <chrono>
#include <thread>

#include "../store/CTestStore.h"
#include "child_process.h"
#include "files/std_file_paths.h"
#include "modeldb/client/make_user_store.h"

namespace {

class UserStoreTest : public testing::Test {
  protected:
    [[nodiscard]] bool Make() const { return MakeUserStore(m_path, m_samples).HasValue(); }
    [[nodiscard]] CModelStore Open() const {
        return std::move(CModelStore::Open(CStoreAddress::Parse(m_path), EStoreUse::Write)).Value();
    }
    [[nodiscard]] std::uint64_t Count() const {
        CModelStore store = Open();
        EXPECT_EQ(FaultOf(store), "");
        return store.Check(CModelStore::ECheck::Quick).Value().models;
    }
    /** A process that makes the store. */
    [[nodiscard]] CChildProcess Start() const {
        return CChildProcess([this] { return Make(); });
    }

    CTestFolder m_folder;
    std::string m_path = m_folder / "data/orbivue/models.sqlite";
    std::string m_samples = std_file_paths::GetDataPath("samples");
};

TEST_F(UserStoreTest, ProcessesThatStartAtOnceFillItOnce) {
    std::vector<CChildProcess> makers;
    for (int i = 0; i < 4; ++i) makers.push_back(Start());
    for (CChildProcess& maker : makers) EXPECT_TRUE(maker.EndsWell());
    EXPECT_EQ(Count(), 5U);
    EXPECT_EQ(Open().Groups().Value().size(), 3U);
}

TEST_F(UserStoreTest, WhatTheUserRemovedStaysAway) {
    ASSERT_TRUE(Make());
    const std::uint32_t key = Open().Search("chess", 0, 10).Value().at(0).key;
    const CModelRecord chess = Open().Model(key).Value();
    EXPECT_EQ(chess.name, "Chess");
    EXPECT_FALSE(chess.textures.empty());
    EXPECT_TRUE(chess.preview);
    ASSERT_TRUE(Open().RemoveModel(key));
    ASSERT_TRUE(Make());
    EXPECT_EQ(Count(), 4U);
}

TEST_F(UserStoreTest, AKilledProcessLeavesNothingHalf) {
    for (int ms = 1; ms < 400 && !std::filesystem::exists(m_path); ms += 20) {
        CChildProcess maker = Start();
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
        maker.Kill();
        EXPECT_TRUE(!std::filesystem::exists(m_path) || Count() == 5);
    }
    EXPECT_TRUE(Make());
    EXPECT_EQ(Count(), 5U);
    EXPECT_FALSE(std::filesystem::exists(m_path + ".new"));
}

TEST_F(UserStoreTest, ALogOfADeletedStoreIsNotTakenForThisOnes) {
    ASSERT_TRUE(Make());
    {
        const CModelStore open = Open();
        CModelStore other = Open();
        ASSERT_TRUE(other.CreateToken("x", {}));
        std::filesystem::copy(m_path + "-wal", m_folder / "log");
    }
    std::filesystem::remove(m_path);
    std::filesystem::rename(m_folder / "log", m_path + "-wal");
    ASSERT_TRUE(Make());
    EXPECT_EQ(Count(), 5U);
    EXPECT_TRUE(Open().Tokens().Value().empty());
}

TEST_F(UserStoreTest, SamplesThatComeLaterFillItOnce) {
    for (int i = 0; i < 2; ++i) ASSERT_TRUE(MakeUserStore(m_path, m_folder / "none"));
    EXPECT_EQ(Count(), 0U);
    std::vector<CChildProcess> makers;
    for (int i = 0; i < 4; ++i) makers.push_back(Start());
    for (CChildProcess& maker : makers) EXPECT_TRUE(maker.EndsWell());
    EXPECT_EQ(Count(), 5U);
    ASSERT_TRUE(Open().RemoveModel(Open().Search("chess", 0, 10).Value().at(0).key));
    ASSERT_TRUE(Make());
    EXPECT_EQ(Count(), 4U);
    // Another one in its place, which has them from its beginning.
    std::filesystem::remove(m_path);
    ASSERT_TRUE(Make());
    EXPECT_EQ(Count(), 5U);
}

}  // namespace
