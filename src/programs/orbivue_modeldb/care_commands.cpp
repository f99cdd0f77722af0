// SPDX-License-Identifier: MIT
#include "modeldb/bytes/calc_crc.h"
#include "programs/orbivue_modeldb/model_commands.h"
#include "programs/orbivue_modeldb/store_output.h"
#include "programs/orbivue_modeldb/walk_models.h"

int model_commands::Remove(const CModelDbOptions& options) {
    CResult<CModelStore> store = OpenStore(options, EStoreUse::Write);
    if (!store) return Complain(store.Error(), kStoreFails);
    std::size_t removed = 0;
    CStatus done = WalkModels(store.Value(), options, [&](std::uint32_t key) -> CStatus {
        CStatus gone = store.Value().RemoveModel(key);
        if (gone) ++removed;
        return gone;
    });
    if (done && !options.group.empty()) done = store.Value().RemoveGroup(options.group);
    const bool printed = Print(std::to_string(removed) + " removed\n");
    if (!done) return Complain(done.Error(), WalkFailureCode(done.Error()));
    return printed ? kDone : kCannotWrite;
}

int model_commands::Check(const CModelDbOptions& options) {
    CResult<CModelStore> store = OpenStore(options, EStoreUse::Read);
    if (!store) return Complain(store.Error(), kStoreFails);
    const CResult<CCheckReport> checked =
        store.Value().Check(options.full ? CModelStore::ECheck::Full : CModelStore::ECheck::Quick);
    if (!checked) return Complain(checked.Error(), kStoreFails);
    const CCheckReport& report = checked.Value();
    for (const std::string& fault : report.faults) (void)Complain(fault, kPartly);  // told by the code below
    const bool printed =
        Print(std::to_string(report.groups) + " groups, " + std::to_string(report.models) + " models, " +
              std::to_string(report.blobs) + " files of " + std::to_string(report.storedBytes) + " bytes, " +
              std::to_string(report.faultCount) + " faults\n");
    if (report.faultCount > 0) return kPartly;
    return printed ? kDone : kCannotWrite;
}

int model_commands::Backup(const CModelDbOptions& options) {
    CResult<CModelStore> store = OpenStore(options, EStoreUse::Read);
    if (!store) return Complain(store.Error(), kStoreFails);
    const CStatus done = store.Value().Backup(options.arguments[0]);
    return done ? kDone : Complain(done.Error(), kCannotWrite);
}

int model_commands::Restore(const CModelDbOptions& options) {
    using enum CModelStore::ETokens;
    const CStatus done =
        CModelStore::Restore(options.arguments[0], StoreOf(options), options.forgetsTokens ? Forget : Keep);
    return done ? kDone : Complain(done.Error(), kStoreFails);
}

int model_commands::Upgrade(const CModelDbOptions& options) {
    const CResult<CModelStore> store = OpenStore(options, EStoreUse::Write);
    return store ? kDone : Complain(store.Error(), kStoreFails);
}
