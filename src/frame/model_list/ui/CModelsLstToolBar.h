// SPDX-License-Identifier: MIT
#pragma once

#include <wx/panel.h>

#include "frame/model_list/ui/CModelStrip.h"

class CScrollButton;

/** The bar with the models of the folder: their pictures and names, between two buttons that scroll them. */
class CModelsLstToolBar final : public wxPanel {
  public:
    struct CActions {
        std::function<void()> leave;               ///< see CModelStrip::CActions
        std::function<bool(int keyCode)> viewKey;  ///< likewise
    };
    /** manager must outlive it. */
    CModelsLstToolBar(wxWindow* parent, CListToolBarMgr& manager, CActions actions);

    [[nodiscard]] CModelStrip& Strip() { return *m_strip; }

  private:
    CScrollButton* MakeButton(CListToolBarMgr& manager, bool towardsEnd);
    void ShowWhatIsUseful();

    CModelStrip* m_strip = nullptr;
    CScrollButton* m_back = nullptr;
    CScrollButton* m_on = nullptr;
};
