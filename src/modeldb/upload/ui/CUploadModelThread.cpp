// SPDX-License-Identifier: MIT
#include "modeldb/upload/ui/CUploadModelThread.h"

#include <utility>

#include "files/file_util_ex.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/transfer/ui/transfer_events.h"

namespace {

constexpr char kGroup[] = "Upload";

}  // namespace

CUploadModelThread::CUploadModelThread(wxEvtHandler* target, wxEventType type, std::wstring path,
                                       unsigned char* data, std::uint32_t size,
                                       const CImageDataTextVec& textures)
    : wxGUIThreadEx(target, type),
      m_path(std::move(path)),
      m_data(data),
      m_size(size),
      m_textures(&textures) {}

void CUploadModelThread::Entry() {
    // Names in the library are text, and a path may hold any bytes.
    const std::wstring name = file_util_ex::ShownName(file_util_ex::GetFileName(m_path));
    CBlobData file(m_data, m_size);
    // How it ended is for those who ask LastError.
    (void)C3DModelsLoadApi::UploadModel(file_util_ex::ConvertToUTF8(name), kGroup, file, *m_textures, this);
    (void)file.Release();
    PostEvent(transfer_event::kUploadEnd);
}

void CUploadModelThread::OnProgressStart(std::int64_t total) {
    PostEvent(transfer_event::kUploadStart, static_cast<std::int32_t>(total));
}

void CUploadModelThread::OnProgressStep() {
    PostEvent(transfer_event::kUploadStep);
}
