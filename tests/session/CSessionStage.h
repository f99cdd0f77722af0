// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "model/open/load_scene.h"
#include "session/CRecentFileList.h"
#include "session/CSceneView.h"
#include "session/CSession.h"
#include "session/CSessionFrame.h"
#include "session/CSessionListener.h"
#include "settings/CLocalRegStore.h"

/** A view without a display. Files whose text is "bad", and such bytes, cannot be opened. */
class CPaperView final : public CSceneView {
  public:
    [[nodiscard]] bool OpenModel(const wchar_t* path) override;
    [[nodiscard]] bool OpenModelStruct(Lib3dsFile* scene, const wchar_t* name,
                                       const CStructFacts& facts) override;
    [[nodiscard]] bool OpenBufferModel(const char* data, long size, const CImageDataTextVec& textures,
                                       const wchar_t* name) override;
    [[nodiscard]] bool OpenLoaded(CLoadedScene scene, const wchar_t* path) override;
    [[nodiscard]] CStatus Reload() override;
    void CloseModel() override { shown.clear(); }
    [[nodiscard]] const CError& LastError() const override { return m_error; }
    void LoadBeside(const std::function<void(CJobProgress&)>& work) override;
    [[nodiscard]] std::vector<CStatus> ApplyEdits(std::span<const CEdit> edits) override;
    [[nodiscard]] bool TakeBackEdits(std::size_t count) override;
    [[nodiscard]] CStatus SaveToPath(const std::wstring&) override { return CDone{}; }
    [[nodiscard]] Lib3dsFile* Get3dsFile() override { return nullptr; }
    [[nodiscard]] bool HasAnimation() const override { return true; }
    void SetPlaying(bool playing) override { m_playing = playing; }
    [[nodiscard]] bool IsPlaying() const override { return m_playing; }

    std::wstring shown;              ///< empty: nothing is
    std::vector<std::string> loads;  ///< "file", "struct", "buffer", "ready", "reload": each that read anew
    std::set<std::string> nodes{"a", "b", "c"};
    std::function<void()> whileLoading;  ///< once

  private:
    [[nodiscard]] bool Show(const char* how, const std::wstring& name, bool succeeds);

    CError m_error;
    std::vector<std::string> m_deleted;
    bool m_playing = false;
};

/** A session with files of its own, and all that it told. */
class CSessionStage : private CSessionFrame, private CSessionListener {
  public:
    CSessionStage();

    [[nodiscard]] std::wstring Add(const char* name, const char* text = "good") {
        return file_util_ex::ConvertFromUTF8W(folder.Add(name, text));
    }
    EOpened Open(const std::wstring& path) { return session.Open(COpenRequest::OfFile(path)); }
    /** What the event loop does: everything that was asked for later. */
    void ServeEvents();
    [[nodiscard]] std::wstring Shown() const { return file_util_ex::GetFileName(view.shown); }

    CTestFolder folder;
    CLocalRegStore::CDefaultFileGuard store;
    CRecentFileList recent;
    CPaperView view;
    CSession session{view, *this, recent};

    std::wstring title = L"Orbivue";
    std::vector<std::wstring> messages;
    std::vector<std::wstring> boxes;
    std::vector<COpenReport> reports;
    std::function<void(const COpenReport&)> onOpened;
    int changes = 0;
    int busy = 0;
    int closings = 0;

  private:
    void ShowTitle(const std::wstring& text) override { title = text; }
    void ShowMessage(const std::wstring& text) override { messages.push_back(text); }
    void Tell(const std::wstring& text) override { boxes.push_back(text); }
    void BeginBusy() override { ++busy; }
    void EndBusy() override { --busy; }
    void OnOpening() override {}
    void AskForTurn() override { ++m_turnsAsked; }
    void CloseNow() override { ++closings; }
    void OnOpened(const COpenReport& report) override;
    void OnDocumentChanged() override { ++changes; }

    int m_turnsAsked = 0;
};
