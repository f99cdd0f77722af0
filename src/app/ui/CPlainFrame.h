// SPDX-License-Identifier: MIT
#pragma once

#include <wx/frame.h>

#include <memory>
#include <string>

#include "view/CKeyDownListener.h"
#include "view/CViewToolState.h"

class CViewer3DSWindowHandler;

/** A window with the 3D view and nothing else, shown as the settings say. */
class CPlainFrame final : public wxFrame, private CKeyDownListener {
  public:
    explicit CPlainFrame(const wxString& title);
    ~CPlainFrame() override;

    /** False when the display gave no OpenGL window; nothing else may be called then. */
    [[nodiscard]] bool HasView() const;
    /** Shows a model, once the window can; the title then tells its path, and whether it failed. */
    void OpenByPath(const std::wstring& path);

  private:
    void ApplySettings();
    void OpenNow(const std::wstring& path);
    void OnViewKeyDown(int keyCode) override;
    void OnViewLeftButtonDown() override {}
    void OnViewRightButtonDown() override {}

    CIdleToolState m_tools;
    std::unique_ptr<CViewer3DSWindowHandler> m_view;
};
