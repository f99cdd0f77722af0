// SPDX-License-Identifier: MIT
#pragma once

#include <wx/dialog.h>

#include <cstdint>
#include <memory>
#include <string>

#include "model/textures/CTextureLocator.h"

class CProgCtrl;
class CUploadModelThread;
class wxGUIThreadEvent;
class wxStaticText;

/** Shows the progress of an upload, which starts with the dialog's appearance and ends it. */
class CUploadDialog final : public wxDialog {
  public:
    /** path: of the scene's file. Bytes and textures stay the caller's, and must outlive the dialog. */
    CUploadDialog(wxWindow* parent, const std::wstring& path, unsigned char* data, std::uint32_t size,
                  const CImageDataTextVec& textures);
    ~CUploadDialog() override;

    bool Show(bool show = true) override;

  private:
    void MakeControls(const std::wstring& path);
    void OnThread(wxGUIThreadEvent& event);
    void Cancel();
    void End();

    CProgCtrl* m_gauge = nullptr;
    wxStaticText* m_status = nullptr;
    std::unique_ptr<CUploadModelThread> m_thread;
    bool m_hasStarted = false;
    bool m_isCancelling = false;
};
