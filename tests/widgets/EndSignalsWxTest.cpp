// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include "widgets/ui/end_signals.h"

namespace {

// Each in a process of its own, as it changes what signals do, and ends it.
class EndSignalsWxTest : public testing::Test {
  protected:
    EndSignalsWxTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(EndSignalsWxTest, ASecondEndsAProcessThatIsTooBusyToHear) {
    const auto insist = [] {
        WatchEndSignals([](int) {});
        (void)std::raise(SIGINT);
        (void)std::raise(SIGINT);
        std::_Exit(1);
    };
    EXPECT_EXIT(insist(), testing::KilledBySignal(SIGINT), "");
}

TEST_F(EndSignalsWxTest, WhatTheStarterHasIgnoredStaysIgnored) {
    const auto ignore = [] {
        (void)std::signal(SIGHUP, SIG_IGN);
        WatchEndSignals([](int) { std::_Exit(1); });
        (void)std::raise(SIGHUP);
        (void)std::raise(SIGHUP);
        std::_Exit(42);
    };
    EXPECT_EXIT(ignore(), testing::ExitedWithCode(42), "");
}

}  // namespace
