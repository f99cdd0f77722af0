// SPDX-License-Identifier: MIT
#include <array>
#include <nlohmann/json.hpp>

#include "programs/orbivue_modeldb/model_commands.h"
#include "programs/orbivue_modeldb/store_output.h"
#include "programs/orbivue_modeldb/walk_models.h"

namespace {

std::string RightsOf(const CStoreRights& rights) {
    constexpr std::array<std::pair<EStoreRight, const char*>, 3> kNames{
        {{EStoreRight::Read, "read"}, {EStoreRight::Upload, "upload"}, {EStoreRight::Remove, "remove"}}};
    std::string text;
    for (const auto& [right, name] : kNames)
        if (rights.Has(right)) text += (text.empty() ? "" : ",") + std::string(name);
    return text;
}

std::string JsonOf(const std::vector<CTokenRecord>& tokens) {
    auto list = nlohmann::ordered_json::array();
    for (const CTokenRecord& token : tokens)
        list.push_back(
            {{"name", token.name}, {"rights", RightsOf(token.rights)}, {"created", token.createdSeconds}});
    return list.dump(1) + "\n";
}

}  // namespace

int model_commands::TokenCreate(const CModelDbOptions& options) {
    CResult<CModelStore> store = OpenStore(options, EStoreUse::Create);
    if (!store) return Complain(store.Error(), kStoreFails);
    const CResult<std::string> token = store.Value().CreateToken(options.arguments[0], {options.rights});
    if (!token)
        return Complain(token.Error(),
                        token.Error().code == EErrorCode::Exists ? kPartly : WalkFailureCode(token.Error()));
    if (Print(token.Value() + "\n")) return kDone;
    // Nobody has seen it, so nobody can use it.
    (void)store.Value().RevokeToken(options.arguments[0]);
    return kCannotWrite;
}

int model_commands::TokenList(const CModelDbOptions& options) {
    CResult<CModelStore> store = OpenStore(options, EStoreUse::Read);
    if (!store) return Complain(store.Error(), kStoreFails);
    const CResult<std::vector<CTokenRecord>> tokens = store.Value().Tokens();
    if (!tokens) return Complain(tokens.Error(), kStoreFails);
    std::string text;
    for (const CTokenRecord& token : tokens.Value())
        text += Shown(token.name) + "  " + RightsOf(token.rights) + "\n";
    return Print(options.json ? JsonOf(tokens.Value()) : text) ? kDone : kCannotWrite;
}

int model_commands::TokenRevoke(const CModelDbOptions& options) {
    CResult<CModelStore> store = OpenStore(options, EStoreUse::Write);
    if (!store) return Complain(store.Error(), kStoreFails);
    const CStatus done = store.Value().RevokeToken(options.arguments[0]);
    return done ? kDone : Complain(done.Error(), WalkFailureCode(done.Error()));
}
