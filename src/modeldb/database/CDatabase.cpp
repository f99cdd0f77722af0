// SPDX-License-Identifier: MIT
#include "modeldb/database/CDatabase.h"

#include <chrono>
#include <random>
#include <thread>

CStatus CDatabase::TryOnce(EScope scope, const CWork& work) {
    if (scope == EScope::None) return work();
    CStatus done = Begin(scope);
    if (!done) return done;
    try {
        done = work();
    } catch (...) {
        Rollback();
        throw;
    }
    if (done) done = Commit();
    if (!done) Rollback();
    return done;
}

CStatus CDatabase::Try(EScope scope, const CWork& work) {
    constexpr int kTries = 6;
    CStatus done = TryOnce(scope, work);
    for (int tried = 1; !done && tried < kTries && CanTryAgain(); ++tried) {
        // Those who met one another, threads of one program among them, do not come back in step.
        thread_local std::minstd_rand chance{std::random_device()()};
        std::this_thread::sleep_for(
            std::chrono::milliseconds(tried * tried * (1 + static_cast<int>(chance() % 5))));
        done = TryOnce(scope, work);
    }
    return done;
}
