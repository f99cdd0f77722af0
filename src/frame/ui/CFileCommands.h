// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

class CSceneView;
class CSession;
class wxWindow;

/** The questions and dialogs of the file commands; the session does the work. A message box reports failures,
 * except those of opening. */
class CFileCommands {
  public:
    /** Shows the tool of a command pressed; 0 for none. */
    using CShowRunning = std::function<void(int command)>;

    /** All must outlive it. */
    CFileCommands(wxWindow& parent, CSceneView& view, CSession& session, CShowRunning showRunning);

    void Open();
    void SaveAs();
    void CompressToZip();
    void DeleteFile();
    /** Runs work that needs the shown model and shows the command pressed. No other model can be opened until
     * work has ended. Does nothing when the session is busy. */
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
