// SPDX-License-Identifier: MIT
// Scene scripts: any bytes are read or refused, whatever they name nothing but the folder's own files is found, and edits
// that a script can say come back as they were saved.
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

#include "files/file_util_ex.h"
#include "model/scene/scene_budget.h"
#include "script/CSceneScript.h"
#include "script/edit_lists.h"
#include "script/save_edits.h"

namespace {

namespace fs = std::filesystem;

void Require(bool holds) {
    if (!holds) std::abort();
}

/** A folder with a model and a picture in it, for this process. */
class CFolder {
  public:
    CFolder()
        : m_path((fs::temp_directory_path() / ("orbivue-fuzz-" + std::to_string(::getpid()))).native()) {
        fs::create_directories(m_path + "/maps");
        for (const char* name : {"/m.3ds", "/maps/p.png", "/t.orv"})
            Require(file_util_ex::WriteFileAtomically(m_path + name, "[Model]\nTemplate=t.orv\n").HasValue());
    }
    ~CFolder() { (void)file_util_ex::Rmdir(m_path); }
    [[nodiscard]] const std::string& Path() const { return m_path; }

  private:
    std::string m_path;
};

const std::string& Folder() {
    static const CFolder folder;
    return folder.Path();
}

bool IsInside(const std::wstring& path) {
    return path.empty() || file_util_ex::ConvertToUTF8(path).starts_with(Folder() + "/");
}

void CheckScene(const CScriptScene& scene) {
    Require(!scene.path.empty() && scene.loop >= 0 && scene.notes.size() <= scene_budget::kNotes + 1);
    Require(IsInside(scene.backgroundImage) && IsInside(scene.icon));
    for (const auto& v : {scene.pivot, scene.scale}) Require(!v || IsFinite<double>(*v));
    std::size_t last = 0;
    for (const CEdit& edit : scene.edits) {
        Require(edit_lists::KeyOf(edit) >= last);
        last = edit_lists::KeyOf(edit);
        if (const auto* texture = std::get_if<CTextureEdit>(&edit))
            Require(texture->imagePath.empty() || texture->imagePath.starts_with(Folder() + "/"));
        if (const auto* move = std::get_if<CMoveEdit>(&edit)) Require(IsFinite(move->offset));
    }
}

/** Saved edits are read back, and saving them again changes nothing. */
void CheckSaving(const std::string& path, const CScriptScene& scene) {
    if (scene.edits.size() > 100 || !SaveEdits(path, scene.section, scene.edits)) return;
    const auto again = ReadScript(path);
    Require(again.HasValue());
    for (const CScriptScene& other : again.Value().scenes) {
        if (other.section != scene.section) continue;
        Require(other.edits.size() == scene.edits.size() && other.path == scene.path &&
                other.text == scene.text);
        const auto text = file_util_ex::ReadWholeFile(path);
        Require(SaveEdits(path, scene.section, other.edits).HasValue());
        Require(file_util_ex::ReadWholeFile(path).Value() == text.Value());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = Folder() + "/s.orv";
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Require(file_util_ex::WriteFileAtomically(path, text).HasValue());
    const auto script = ReadScript(path);
    if (!script) return 0;
    Require(!script.Value().scenes.empty());
    for (const CScriptScene& scene : script.Value().scenes) CheckScene(scene);
    CheckSaving(path, script.Value().scenes.front());
    return 0;
}
