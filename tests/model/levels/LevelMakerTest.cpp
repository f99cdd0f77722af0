// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <thread>

#include "model/levels/CLevelMaker.h"
#include "wavy_mesh.h"

namespace {

CPreparedMesh Stamped(std::uint64_t stamp) {
    CPreparedMesh mesh = WavyMesh({});
    mesh.stamp = stamp;
    return mesh;
}

CLevelMaker::CMade WaitForOne(CLevelMaker& maker) {
    while (true) {
        if (std::optional<CLevelMaker::CMade> made = maker.Take()) return std::move(*made);
        std::this_thread::yield();
    }
}

TEST(LevelMakerTest, MakesOneMeshAfterTheOther) {
    CLevelMaker maker;
    for (std::uint64_t i = 0; i < 4; ++i) maker.Give(i, Stamped(i + 10));
    for (std::uint64_t i = 0; i < 4; ++i) {
        EXPECT_EQ(maker.Pending(), 4 - i);
        const CLevelMaker::CMade made = WaitForOne(maker);
        EXPECT_EQ(made.mesh, i);
        EXPECT_EQ(made.stamp, i + 10);
        EXPECT_GE(made.levels.levels.size(), 3u);
    }
    EXPECT_EQ(maker.Pending(), 0u);
    EXPECT_FALSE(maker.Take());
}

TEST(LevelMakerTest, WhatWasForgottenIsNotHandedOut) {
    CLevelMaker maker;
    for (std::uint64_t round = 0; round < 20; ++round) {
        for (std::uint64_t i = 0; i < 3; ++i) maker.Give(i, Stamped(round));
        if (round % 3 == 1) std::this_thread::yield();
        maker.Forget();
        EXPECT_EQ(maker.Pending(), 0u);
    }
    maker.Give(7, Stamped(99));
    const CLevelMaker::CMade made = WaitForOne(maker);
    EXPECT_EQ(made.mesh, 7u);
    EXPECT_EQ(made.stamp, 99u);
    EXPECT_GE(made.levels.levels.size(), 3u);
}

TEST(LevelMakerTest, NothingIsBegunWhilePaused) {
    CLevelMaker maker;
    maker.SetPaused(true);
    maker.Give(1, Stamped(1));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(maker.Take());
    maker.SetPaused(false);
    EXPECT_EQ(WaitForOne(maker).mesh, 1u);
}

TEST(LevelMakerTest, EndsInTheMiddleOfItsWork) {
    for (int i = 0; i < 10; ++i) {
        CLevelMaker maker;
        maker.Give(0, Stamped(1));
        maker.Give(1, Stamped(2));
    }
}

}  // namespace
