// SPDX-License-Identifier: MIT
#include "programs/orbivue_modeldb/walk_models.h"

#include "base/text/lng.h"
#include "modeldb/bytes/calc_crc.h"

namespace {

CStatus WalkKeys(const std::vector<std::string>& texts, const std::function<CStatus(std::uint32_t)>& body) {
    for (const std::string& text : texts)
        if (!model_key::FromText(text))
            return CError{EErrorCode::BadArgument, lng::Mark("no key: it needs eight hexadecimal digits"),
                          text};
    for (const std::string& text : texts) {
        const CStatus done = body(*model_key::FromText(text));
        if (!done && done.Error().where.empty()) return CError{done.Error().code, done.Error().message, text};
        if (!done) return done;
    }
    return CDone{};
}

}  // namespace

CStatus WalkGroup(CModelStore& store, std::int64_t groupId,
                  const std::function<CStatus(const CModelSummary&)>& body) {
    constexpr std::size_t kPage = 1000;
    std::optional<CPagePlace> place;
    for (;;) {
        const CResult<std::vector<CModelSummary>> page = store.Models(groupId, place, kPage);
        if (!page) return page.Error();
        for (const CModelSummary& model : page.Value())
            if (CStatus done = body(model); !done) return done;
        if (page.Value().size() < kPage) return CDone{};
        place = CPagePlace{page.Value().back().name, page.Value().back().key};
    }
}

CStatus WalkModels(CModelStore& store, const CModelDbOptions& options,
                   const std::function<CStatus(std::uint32_t)>& body) {
    if (!options.arguments.empty()) return WalkKeys(options.arguments, body);
    std::vector<CGroupRecord> groups;
    if (options.group.empty()) {
        CResult<std::vector<CGroupRecord>> all = store.Groups();
        if (!all) return all.Error();
        groups = std::move(all).Value();
    } else {
        CResult<CGroupRecord> group = store.Group(options.group);
        if (!group) return CError{group.Error().code, group.Error().message, options.group};
        groups.push_back(std::move(group).Value());
    }
    for (const CGroupRecord& group : groups) {
        CStatus walked =
            WalkGroup(store, group.id, [&](const CModelSummary& model) { return body(model.key); });
        if (!walked) return walked;
    }
    return CDone{};
}

EModelDbExit WalkFailureCode(const CError& error) {
    switch (error.code) {
        case EErrorCode::BadArgument:
            return kUsage;
        case EErrorCode::NotFound:
            return kPartly;
        case EErrorCode::WriteFailed:
            return kCannotWrite;
        default:
            return kStoreFails;
    }
}
