// SPDX-License-Identifier: MIT
#include "modeldb/transfer/ui/CLoadModelThread.h"

#include <memory>

#include "modeldb/client/model_server.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/transfer/ui/transfer_events.h"

void CLoadModelThread::Entry() {
    auto model = std::make_unique<CModelData>();
    // After a failure the record has no bytes, which tells enough.
    (void)DownloadServerModel(m_id, model->fileName, model->data, model->size, model->textures, this);
    if (PostEvent(transfer_event::kModel, model.get())) (void)model.release();
}

void CLoadModelThread::OnProgressStart(std::int64_t total) {
    PostEvent(transfer_event::kModelStart, static_cast<std::int32_t>(total));
}

void CLoadModelThread::OnProgressStep() {
    PostEvent(transfer_event::kModelStep);
}
