// SPDX-License-Identifier: MIT
#include "session/presentation/CPresentation.h"

#include <algorithm>

#include "files/file_util_ex.h"

using file_util_ex::ConvertToUTF8;

CResult<CPresentation> CPresentation::Read(const std::wstring& path) {
    const std::string utf8 = ConvertToUTF8(path);
    CPresentation read;
    read.m_path = path;
    // Taken before, so that a change during the reading is seen later.
    const std::optional<CFileStamp> before = CFileStamp::Of(utf8);
    CResult<CSceneScript> script = ReadScript(utf8);
    if (!script) return script.Error();
    read.m_script = std::make_shared<const CSceneScript>(std::move(script).Value());
    read.m_stamps.emplace_back(utf8, before);
    for (const std::string& file : read.m_script->files)
        read.m_stamps.emplace_back(file, CFileStamp::Of(file));
    return read;
}

bool CPresentation::IsCurrent() const {
    return std::ranges::all_of(m_stamps,
                               [](const auto& file) { return CFileStamp::Of(file.first) == file.second; });
}

void CPresentation::GoTo(std::size_t index) {
    m_index = std::min(index, Count() - 1);
}

void CPresentation::GoToSection(const std::string& section) {
    const auto found = std::ranges::find(m_script->scenes, section, &CScriptScene::section);
    if (found != m_script->scenes.end()) m_index = static_cast<std::size_t>(found - m_script->scenes.begin());
}

std::vector<CSceneNote> CPresentation::Notes() const {
    std::vector<CSceneNote> notes = m_script->notes;
    notes.insert(notes.end(), Scene().notes.begin(), Scene().notes.end());
    return notes;
}
