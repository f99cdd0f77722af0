// SPDX-License-Identifier: MIT
#include "session/CSessionStage.h"

#include <utility>

bool CPaperView::Show(const char* how, const std::wstring& name, bool succeeds) {
    loads.emplace_back(how);
    if (const auto work = std::exchange(whileLoading, nullptr)) work();
    m_error = {EErrorCode::BadFormat, "bad", file_util_ex::ConvertToUTF8(name)};
    shown = succeeds ? name : L"";
    return succeeds;
}

bool CPaperView::OpenModel(const wchar_t* path) {
    if (shown == path) return true;
    const std::string file = file_util_ex::ConvertToUTF8(path);
    return Show("file", path, file_util_ex::DoesFileExist(file) && CTestFolder::TextOf(file) != "bad");
}

bool CPaperView::OpenModelStruct(Lib3dsFile* scene, const wchar_t* name, const CStructFacts&) {
    const CLib3dsFilePtr owned(scene);
    return shown == name || Show("struct", name, owned != nullptr);
}

bool CPaperView::OpenBufferModel(const char* data, long size, const CImageDataTextVec&, const wchar_t* name) {
    return Show("buffer", name, std::string(data, static_cast<std::size_t>(size)) != "bad");
}

bool CPaperView::OpenLoaded(CLoadedScene, const wchar_t* path) {
    return Show("ready", path, true);
}

CStatus CPaperView::Reload() {
    const std::wstring before = shown;
    if (Show("reload", before, CTestFolder::TextOf(file_util_ex::ConvertToUTF8(before)) != "bad"))
        return CDone{};
    shown = before;
    return m_error;
}

void CPaperView::LoadBeside(const std::function<void(CJobProgress&)>& work) {
    CJobProgress progress;
    work(progress);
}

std::vector<CStatus> CPaperView::ApplyEdits(std::span<const CEdit> edits) {
    std::vector<CStatus> answers;
    for (const CEdit& edit : edits) {
        const std::string& node = std::get<CDeleteEdit>(edit).node;
        const bool found = nodes.erase(node) == 1;
        if (found) m_deleted.push_back(node);
        answers.push_back(found ? CStatus(CDone{}) : CStatus(CError{EErrorCode::NotFound, "none", node}));
    }
    return answers;
}

bool CPaperView::TakeBackEdits(std::size_t count) {
    if (count > m_deleted.size()) return false;
    for (; count > 0; --count) {
        nodes.insert(m_deleted.back());
        m_deleted.pop_back();
    }
    return true;
}

CSessionStage::CSessionStage() {
    CLocalRegStore::Load(file_util_ex::ConvertFromUTF8W(folder / "settings.ini"));
    session.AddListener(*this);
}

void CSessionStage::ServeEvents() {
    while (m_turnsAsked > 0) {
        --m_turnsAsked;
        session.RunWaiting();
    }
}

void CSessionStage::OnOpened(const COpenReport& report) {
    reports.push_back(report);
    if (onOpened) onOpened(report);
}
