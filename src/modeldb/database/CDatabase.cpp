// SPDX-License-Identifier: MIT
#include "modeldb/database/CDatabase.h"

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
    CStatus done = TryOnce(scope, work);
    if (done || !CanTryAgain()) return done;
    return TryOnce(scope, work);
}
