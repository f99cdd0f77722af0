// SPDX-License-Identifier: MIT
// The library of models in the main window: its browser, uploads, what was downloaded.
#include <wx/aui/dockart.h>

#include <algorithm>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "engine/CGLCanvasI.h"
#include "frame/model_list/ui/CModelListControl.h"
#include "frame/ui/CAViewerFrame.h"
#include "frame/ui/CFileCommands.h"
#include "frame/ui/CSceneStatusBar.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/transfer/ui/connect_to_server.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/ui/CModelsDlg.h"
#include "modeldb/upload/ui/upload_command.h"
#include "session/CSession.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CUserPrompt.h"

namespace {

/** A name of the library's as the name of a document: it leads into no folder and has one line. */
std::wstring DocumentName(std::wstring name) {
    std::ranges::replace_if(
        name, [](wchar_t c) { return c == L'/' || c < L' ' || c == L'\x7F'; }, L'_');
    return name;
}

}  // namespace

void CAViewerFrame::ToggleBrowser() {
    if (!m_browser) return MakeBrowser();
    m_state.isBrowserShown = !m_state.isBrowserShown;
    ShowPanes();
    if (m_state.isBrowserShown) m_browser->TakeFocus();
}

void CAViewerFrame::MakeBrowser() {
    {
        const CTurns::CHold hold(m_session->Turns());
        const auto tell = [this](const std::wstring& reason) { TellOfTransfer(reason); };
        if (!ConnectToModelServer(this, tell)) return;  // the command stays unchecked
    }
    m_browser = new CModelsDlg(this, static_cast<CModelsDlgHost&>(*this));
    const int charWidth = GetCharWidth();
    const wxSize least = m_browser->GetBestSize();
    const wxSize best(std::max({m_browser->GetSize().x, least.x, 32 * charWidth}), -1);
    // Its caption, as high as the text is.
    m_aui.GetArtProvider()->SetMetric(
        wxAUI_DOCKART_CAPTION_SIZE, std::max(GetCharHeight() + FromDIP(2),
                                             m_aui.GetArtProvider()->GetMetric(wxAUI_DOCKART_CAPTION_SIZE)));
    m_aui.SetDockSizeConstraint(0.45, 1.0 / 3);  // large texts need more than the usual third of the width
    m_aui.AddPane(m_browser, wxAuiPaneInfo()
                                 .Name(kBrowserPane)
                                 .Caption(lng::Text("3ds Files Download"))
                                 .Left()
                                 .Layer(1)
                                 .Position(1)
                                 .Dockable(false)
                                 .LeftDockable(true)
                                 .CloseButton(true)
                                 .MaximizeButton(true)
                                 .MinSize(wxSize(24 * charWidth, 12 * GetCharHeight()))
                                 .BestSize(best));
    m_aui.Update();
    CheckBrowserCommand(true);
    m_browser->TakeFocus();
}

bool CAViewerFrame::RestoreBrowser() {
    if (!m_browser || !m_aui.GetPane(m_browser).IsMaximized()) return false;
    m_aui.RestoreMaximizedPane();
    return true;
}

void CAViewerFrame::UploadModel() {
    m_files->HoldModel(kCmdUpload, [this] {
        std::uint32_t key = 0;
        std::wstring reason;
        const bool wasTried = UploadCurrentModel(*m_view, *this, key, reason);
        m_statusBar->EndProgress();
        if (!reason.empty())
            TellOfTransfer(lng::Text("The model was not uploaded:") + L" " + reason);
        else if (wasTried)
            TellOfTransfer(lng::Text("The model was uploaded into the group %s.", L"Upload"));
        if (!wasTried || !m_browser) return;
        const CBusyCursor cursor;
        m_browser->ShowModel(key);
    });
}

void CAViewerFrame::ClearCache() {
    {
        const CBusyCursor cursor;
        C3DModelsLoadApi::ClearCache();
    }
    TellOfTransfer(lng::Text("The cache of downloaded models is empty."));
}

// --- what the browser tells ---------------------------------------------------------------------------------

/** It may have to wait for its turn, so the request gets bytes of its own. */
void CAViewerFrame::OpenDownloaded(CModelData& model) {
    if (m_closed) return;
    CModelInMemory memory;
    const auto* bytes = reinterpret_cast<const char*>(model.data);
    memory.data.assign(bytes, bytes + model.size);
    memory.textures = std::move(model.textures);
    m_session->Open(
        COpenRequest::OfMemory(EOrigin::Download, DocumentName(model.fileName), std::move(memory)));
}

/** In full screen the panes are hidden, which is no wish of the user's. */
void CAViewerFrame::CheckBrowserCommand(bool isShown) {
    if (m_closed || m_state.isFullScreen || m_state.isBrowserShown == isShown) return;
    m_state.isBrowserShown = isShown;
    if (!isShown) m_view->GetCanvas()->GetWindow()->SetFocus();
    ShowCommandStates();
}

void CAViewerFrame::TellOfTransfer(const std::wstring& text) {
    if (!m_closed) ShowMessage(file_util_ex::ShownText(text));
}

void CAViewerFrame::LeaveBrowser() {
    m_view->GetCanvas()->GetWindow()->SetFocus();
}
