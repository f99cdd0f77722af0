// SPDX-License-Identifier: MIT
#include "modeldb/transfer/ui/CLoadModelsThread.h"

#include <memory>
#include <utility>

#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/transfer/ui/transfer_events.h"

CLoadModelsThread::CLoadModelsThread(wxEvtHandler* target, std::string group, wxEventType type,
                                     const wxTreeItemId& item)
    : wxGUIThreadEx(target, type), m_group(std::move(group)), m_item(item) {}

void CLoadModelsThread::Entry() {
    auto data = std::make_unique<CModelsData>();
    data->item = m_item;
    data->group = m_group;
    C3DModelsLoadApi::GetGroupModels(m_group, data->models, this);
    if (PostEvent(transfer_event::kModels, data.get())) (void)data.release();
}

void CLoadModelsThread::OnProgressStart(std::int64_t total) {
    PostEvent(transfer_event::kModelsStart, static_cast<std::int32_t>(total));
}

void CLoadModelsThread::OnProgressStep() {
    PostEvent(transfer_event::kModelsStep);
}
