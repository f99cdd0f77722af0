// SPDX-License-Identifier: MIT
#include "modeldb/transfer/ui/connect_to_server.h"

#include "base/text/lng.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/client/model_server.h"
#include "modeldb/transfer/ui/CIncorrectVersionDlg.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/run_job.h"

namespace {

constexpr char kProtocolVersion[] = "1.5";

bool Open() {
    const CBusyCursor cursor;
    RepaintWindows();
    return OpenModelServer();
}

bool IsVersionAccepted() {
    const CBusyCursor cursor;
    bool isAccepted = false;
    RunJob([&](CJobProgress&) { isAccepted = C3DModelsLoadApi::CheckVersion(kProtocolVersion); });
    return isAccepted;
}

}  // namespace

bool CheckClientVersion(wxWindow* parent) {
    if (IsVersionAccepted()) return true;
    auto* dialog = new CIncorrectVersionDlg(parent);
    dialog->Centre(wxBOTH);
    dialog->ShowModal();
    dialog->Destroy();
    return false;
}

bool ConnectToModelServer(wxWindow* parent, const std::function<void(const std::wstring& reason)>& tell) {
    if (!Open()) {
        if (tell) tell(lng::ConvertFromUTF8(C3DModelsLoadApi::LastError()));
        CUserPrompt::Instance().ShowWarning(lng::Text("Unable to connect to the server."));
        return false;
    }
    if (CheckClientVersion(parent)) return true;
    C3DModelsLoadApi::Close();
    return false;
}
