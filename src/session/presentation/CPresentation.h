// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/CResult.h"
#include "script/CSceneScript.h"
#include "session/ahead/CFileStamp.h"

/** A scene script that is open, and the scene of it that is shown. A presentation has several. */
class CPresentation {
  public:
    /** Reads a script; its first scene is the current one. path is wide and absolute. Any thread may call it. */
    [[nodiscard]] static CResult<CPresentation> Read(const std::wstring& path);

    [[nodiscard]] const std::wstring& Path() const { return m_path; }
    /** False once the script or a template was changed, replaced or deleted. */
    [[nodiscard]] bool IsCurrent() const;

    [[nodiscard]] std::size_t Count() const { return m_script->scenes.size(); }
    [[nodiscard]] std::size_t Index() const { return m_index; }
    /** Makes a scene the current one; of a number that is too large, the last one. */
    void GoTo(std::size_t index);
    /** Makes the scene of that section the current one, if there is one. */
    void GoToSection(const std::string& section);
    /** The numbers of the scenes before and after the current one, in a circle. */
    [[nodiscard]] std::size_t Previous() const { return (m_index + Count() - 1) % Count(); }
    [[nodiscard]] std::size_t Next() const { return (m_index + 1) % Count(); }
    [[nodiscard]] const CScriptScene& Scene() const { return m_script->scenes[m_index]; }
    [[nodiscard]] const CScriptScene& SceneAt(std::size_t index) const { return m_script->scenes[index]; }
    /** What of the script as a whole and of the current scene could not be used. */
    [[nodiscard]] std::vector<CSceneNote> Notes() const;

  private:
    std::wstring m_path;
    /** Shared by copies, as it never changes: a copy waits until its opening has succeeded. */
    std::shared_ptr<const CSceneScript> m_script;
    std::vector<std::pair<std::string, std::optional<CFileStamp>>> m_stamps;
    std::size_t m_index = 0;
};
