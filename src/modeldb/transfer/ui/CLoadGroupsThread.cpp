// SPDX-License-Identifier: MIT
#include "modeldb/transfer/ui/CLoadGroupsThread.h"

#include <memory>

#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/transfer/ui/transfer_events.h"

void CLoadGroupsThread::Entry() {
    auto data = std::make_unique<CGroupsData>();
    std::vector<std::string> names;
    C3DModelsLoadApi::GetGroups(names, this);
    for (std::string& name : names) {
        if (!wxGUIThread::DoContinue()) break;
        const std::uint64_t count = C3DModelsLoadApi::GetGroupModelsCount(name);
        data->groups.emplace_back(std::move(name), count);
    }
    if (PostEvent(transfer_event::kGroups, data.get())) (void)data.release();
}

void CLoadGroupsThread::OnProgressStart(std::int64_t total) {
    PostEvent(transfer_event::kGroupsStart, static_cast<std::int32_t>(total));
}

void CLoadGroupsThread::OnProgressStep() {
    PostEvent(transfer_event::kGroupsStep);
}
