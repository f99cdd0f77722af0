// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "model/textures/CTextureLocator.h"
#include "modeldb/client/CBlobProgress.h"
#include "widgets/threads/ui/wxGUIThreadEx.h"

/** Sends a model to the library, and posts kUploadEnd however that ended. */
class CUploadModelThread final : public wxGUIThreadEx, private CBlobProgress {
  public:
    /** path: of the scene's file. Bytes and textures stay the caller's, and must live until the thread was waited for. */
    CUploadModelThread(wxEvtHandler* target, wxEventType type, std::wstring path, unsigned char* data,
                       std::uint32_t size, const CImageDataTextVec& textures);

  private:
    void Entry() override;
    void OnProgressStart(std::int64_t total) override;
    void OnProgressStep() override;
    bool DoContinue() override { return wxGUIThread::DoContinue(); }

    std::wstring m_path;
    unsigned char* m_data;
    std::uint32_t m_size;
    const CImageDataTextVec* m_textures;
};
