// SPDX-License-Identifier: MIT
#include "base/jobs/CJob.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace {

constexpr std::chrono::milliseconds kNoTime(0);
constexpr std::chrono::seconds kLong(60);

void WorkUntilCancelled(CJobProgress& progress) {
    progress.SetPhase("waiting");
    progress.SetShare(2);
    while (!progress.IsCancelled()) std::this_thread::yield();
}

}  // namespace

TEST(CJobTest, TellsHowFarItIsAndEndsWhenItIsCancelled) {
    CJob job(WorkUntilCancelled);
    while (job.Progress().Share() < 1) std::this_thread::yield();
    EXPECT_STREQ(job.Progress().Phase(), "waiting");
    EXPECT_FALSE(job.HasEndedWithin(kNoTime));
    job.Progress().Cancel();
    EXPECT_TRUE(job.HasEndedWithin(kLong));
    EXPECT_NO_THROW(job.Finish());
}

TEST(CJobTest, IsCancelledAndAwaitedWhenNobodyWantsItAnyMore) {
    bool ended = false;
    {
        const CJob job([&](CJobProgress& progress) {
            WorkUntilCancelled(progress);
            ended = true;
        });
    }
    EXPECT_TRUE(ended);
}

TEST(CJobTest, HandsOnWhatTheWorkThrows) {
    CJob job([](CJobProgress&) { throw std::runtime_error("enough"); });
    EXPECT_TRUE(job.HasEndedWithin(kLong));
    EXPECT_THROW(job.Finish(), std::runtime_error);
    EXPECT_TRUE(job.HasEndedWithin(kNoTime));
}
