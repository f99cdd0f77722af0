// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "model/open/load_scene.h"
#include "session/CRecentFileList.h"
#include "session/CSceneLook.h"
#include "session/CSceneView.h"
#include "session/CSession.h"
#include "session/CSessionFrame.h"
#include "session/CSessionListener.h"
#include "settings/CLocalRegStore.h"

/** A view without a display. Files whose text is "bad", and such bytes, cannot be opened. */
class CPaperView final : public CSceneView {
  public:
    bool OpenModel(const wchar_t* path) override {
        if (shown == path) return true;
        const std::string file = file_util_ex::ConvertToUTF8(path);
        return Show("file", path, file_util_ex::DoesFileExist(file) && CTestFolder::TextOf(file) != "bad");
    }
    bool OpenModelStruct(Lib3dsFile* scene, const wchar_t* name, const CStructFacts&) override {
        const CLib3dsFilePtr owned(scene);
        return shown == name || Show("struct", name, owned != nullptr);
    }
    bool OpenBufferModel(const char* data, long size, const CImageDataTextVec&,
                         const wchar_t* name) override {
        return Show("buffer", name, std::string(data, static_cast<std::size_t>(size)) != "bad");
    }
    bool OpenLoaded(CLoadedScene, const wchar_t* path) override { return Show("ready", path, true); }
    CStatus Reload(const std::function<void()>& whenRead) override {
        const std::wstring before = shown;
        if (Show("reload", before, CTestFolder::TextOf(file_util_ex::ConvertToUTF8(before)) != "bad")) {
            whenRead();
            return CDone{};
        }
        shown = before;
        return m_error;
    }
    void ShowAgain(float) override { loads.emplace_back("again"); }
    const CPreparedScene* Prepared() const override { return nullptr; }
    void Present(const CSceneLook& how) override { look = how; }
    bool SetCamera(const std::string& name) override {
        camera = name;
        return name == "top";
    }
    void CloseModel() override { shown.clear(); }
    const CError& LastError() const override { return m_error; }
    void WhenShown(std::function<void()> work) override { whenShown = std::move(work); }
    void LoadBeside(const std::function<void(CJobProgress&)>& work) override {
        CJobProgress progress;
        work(progress);
    }
    std::vector<CStatus> ApplyEdits(std::span<const CEdit> edits) override {
        std::vector<CStatus> answers;
        for (const CEdit& edit : edits) {
            const std::string node = NodeOf(edit);
            const bool found = nodes.contains(node);
            if (std::holds_alternative<CDeleteEdit>(edit)) nodes.erase(node);
            if (found) applied.push_back(edit);
            answers.push_back(found ? CStatus(CDone{}) : CStatus(CError{EErrorCode::NotFound, "none", node}));
        }
        return answers;
    }
    bool TakeBackEdits(std::size_t count) override {
        if (count > applied.size()) return false;
        for (; count > 0; --count) {
            nodes.insert(NodeOf(applied.back()));
            applied.pop_back();
        }
        return true;
    }
    CStatus SaveToPath(const std::wstring&) override { return CDone{}; }
    Lib3dsFile* Get3dsFile() override { return nullptr; }
    bool HasAnimation() const override { return true; }
    void SetPlaying(bool playing) override { m_playing = playing; }
    bool IsPlaying() const override { return m_playing; }

    std::wstring shown;              ///< empty: nothing is
    std::vector<std::string> loads;  ///< "file", "struct", "buffer", "ready", "reload", "again"
    std::set<std::string> nodes{"a", "b", "c"};
    std::vector<CEdit> applied;          ///< those that succeeded
    std::function<void()> whileLoading;  ///< once
    std::function<void()> whenShown;
    CSceneLook look;
    std::string camera;

  private:
    static std::string NodeOf(const CEdit& edit) {
        return std::visit(
            [](const auto& one) {
                if constexpr (requires { one.target; })
                    return one.target.node;
                else
                    return one.node;
            },
            edit);
    }
    bool Show(const char* how, const std::wstring& name, bool succeeds) {
        loads.emplace_back(how);
        while (TakeBackEdits(1)) {
        }
        if (const auto work = std::exchange(whileLoading, nullptr)) work();
        m_error = {EErrorCode::BadFormat, "bad", file_util_ex::ConvertToUTF8(name)};
        shown = succeeds ? name : L"";
        return succeeds;
    }

    CError m_error;
    bool m_playing = false;
};

/** A session with files of its own, and all that it told. */
class CSessionStage : private CSessionFrame, private CSessionListener {
  public:
    CSessionStage() {
        CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini"));
        session.AddListener(*this);
    }

    std::wstring Add(const char* name, const char* text = "good") {
        return file_util_ex::ConvertFromUTF8W(folder.Add(name, text));
    }
    EOpened Open(const std::wstring& path) { return session.Open(COpenRequest::OfFile(path)); }
    /** What the event loop does: everything that was asked for later. */
    void ServeEvents() {
        while (m_turnsAsked > 0) {
            --m_turnsAsked;
            session.RunWaiting();
        }
    }
    std::wstring Shown() const { return file_util_ex::GetFileName(view.shown); }

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
    int questions = 0;  ///< whether edits may be lost
    bool mayLoseEdits = true;
    std::function<void()> whileAsking;  ///< once
    bool isFullScreen = false;

  private:
    void ShowTitle(const std::wstring& text) override { title = text; }
    void ShowMessage(const std::wstring& text) override { messages.push_back(text); }
    void Tell(const std::wstring& text) override { boxes.push_back(text); }
    bool MayLoseEdits() override {
        ++questions;
        if (const auto work = std::exchange(whileAsking, nullptr)) work();
        return mayLoseEdits;
    }
    void BeginBusy() override { ++busy; }
    void EndBusy() override { --busy; }
    bool IsFullScreenShown() const override { return isFullScreen; }
    void SetFullScreen(bool fullScreen) override { isFullScreen = fullScreen; }
    void OnOpening() override {}
    void AskForTurn() override { ++m_turnsAsked; }
    void CloseNow() override { ++closings; }
    void OnOpened(const COpenReport& report) override {
        reports.push_back(report);
        if (onOpened) onOpened(report);
    }
    void OnDocumentChanged() override { ++changes; }

    int m_turnsAsked = 0;
};
