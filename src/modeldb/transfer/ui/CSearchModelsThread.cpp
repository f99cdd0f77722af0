// SPDX-License-Identifier: MIT
#include "modeldb/transfer/ui/CSearchModelsThread.h"

#include <memory>
#include <utility>

#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/transfer/ui/transfer_events.h"

CSearchModelsThread::CSearchModelsThread(wxEvtHandler* target, wxEventType type, std::string text)
    : wxGUIThreadEx(target, type), m_text(std::move(text)) {}

void CSearchModelsThread::Entry() {
    auto data = std::make_unique<CFoundData>();
    data->text = m_text;
    data->hasSucceeded = C3DModelsLoadApi::SearchModels(m_text, data->models, this);
    if (PostEvent(transfer_event::kFound, data.get())) (void)data.release();
}
