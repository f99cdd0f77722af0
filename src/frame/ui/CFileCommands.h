// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

class CSceneView;
class CSession;
class wxWindow;

/** The questions and dialogs of the file commands; what follows from the answers is the session's. Failures,
 * but for those of opening, are told by a message box. */
class CFileCommands {
  public:
    /** Shows a command pressed; 0: none is. */
    using CShowRunning = std::function<void(int command)>;

    /** All must outlive it. */
    CFileCommands(wxWindow& parent, CSceneView& view, CSession& session, CShowRunning showRunning);

    void Open();
    void SaveAs();
    void CompressToZip();
    void DeleteFile();
    /** Does something with the model that is shown, which stays until the work has ended: no other one can be
     * opened meanwhile. The command is shown pressed. Nothing when the session is busy. */
    void HoldModel(int command, const std::function<void()>& work);

  private:
    struct CSaveDialog {
        int command;
        const char* title;
        const char* filter;
        const wchar_t* extension;
    };
    void AskAndSave(const CSaveDialog& dialog);
    [[nodiscard]] std::wstring AskForTarget(const CSaveDialog& dialog);
    void Save(const std::wstring& path);
    void OfferPictures(const std::wstring& path);
    void ShowRunning(int command) { m_showRunning(command); }

    wxWindow& m_parent;
    CSceneView& m_view;
    CSession& m_session;
    CShowRunning m_showRunning;
};
