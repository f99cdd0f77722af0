// SPDX-License-Identifier: MIT
#include "script/save_edits.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "model/scene/CNoteList.h"
#include "script/CScriptFiles.h"
#include "script/CScriptSection.h"
#include "script/edit_lists.h"
#include "script/fold_edits.h"
#include "script/resolve_edits.h"
#include "script/script_lines.h"
#include "script/script_text.h"
#include "settings/CIniFile.h"

namespace fs = std::filesystem;

namespace {

using edit_lists::CLists;
using edit_lists::kKeys;

/** Relative for a file below the folder, whatever links lead there. */
std::string PathFor(const std::string& scriptFolder, const std::string& path) {
    std::error_code error;
    const fs::path folder = fs::canonical(scriptFolder.empty() ? "." : scriptFolder, error);
    if (error) return path;
    const fs::path file = fs::canonical(path, error);
    if (error) return path;
    const fs::path relative = file.lexically_relative(folder);
    const bool isBelow = !relative.empty() && *relative.begin() != "..";
    return isBelow ? relative.native() : path;
}

void WriteRelative(std::vector<CEdit>& edits, const std::string& folder) {
    for (CEdit& edit : edits) {
        if (auto* texture = std::get_if<CTextureEdit>(&edit); texture && !texture->imagePath.empty())
            texture->imagePath = PathFor(folder, texture->imagePath);
        if (auto* replaced = std::get_if<CReplaceEdit>(&edit))
            replaced->path = PathFor(folder, replaced->path);
    }
}

/** The lists of a section as they were, and what else of it counts. */
struct COldSection {
    std::string text;  ///< of the whole file
    CLists unused;     ///< entries that a reader passes over: a picture may be there again tomorrow
    std::array<bool, kKeys.size()> isInTemplate{};
    bool hasModel = false;
};

void KeepUnused(std::size_t key, std::string_view list, const CEditsOrigin& origin, CScriptFiles& files,
                std::string& unused) {
    CNoteList notes;
    while (const auto entry = edit_lists::NextEntry(list)) {
        CResult<CEdit> edit = edit_lists::EditOf(key, *entry);
        if (edit && ResolveEdit(edit.Value(), origin, files, notes)) continue;
        unused += std::string(*entry) + ";";
    }
}

CResult<COldSection> ReadOld(const std::string& path, const std::string& name) {
    COldSection old;
    if (!fs::exists(fs::symlink_status(path))) return old;
    CResult<std::string> text = script_text::Load(path);
    if (!text) return text.Error();
    old.text = std::move(text).Value();
    CScriptFiles files;
    CNoteList notes;
    CScriptLoader loader(files, notes);
    const CStatus loaded = loader.Load(path);
    if (!loaded) return loaded.Error();
    const CScriptSection section = loader.Section(name);
    const auto model = section.Get("Path");
    old.hasModel = model && !ascii_text::Trimmed(model->text).empty();
    std::string modelPath;
    if (old.hasModel)
        modelPath = files.Find(file_util_ex::GetFilePath(*model->file), model->text).value_or(std::string());
    for (std::size_t key = 0; key < kKeys.size(); ++key) {
        const auto own = section.GetOwn(kKeys[key]);
        if (own) KeepUnused(key, *own, {loader.Script().path, modelPath}, files, old.unused[key]);
        old.isInTemplate[key] = section.GetFromTemplate(kKeys[key]).has_value();
    }
    return old;
}

std::vector<script_lines::CChange> ChangesFor(const COldSection& old, const CLists& lists) {
    std::vector<script_lines::CChange> changes;
    for (std::size_t key = 0; key < kKeys.size(); ++key) {
        std::string list = lists[key] + old.unused[key];
        // A key that is there, though empty, hides the template's.
        const bool isWanted = !list.empty() || old.isInTemplate[key];
        changes.push_back({kKeys[key], isWanted ? std::optional(std::move(list)) : std::nullopt});
    }
    return changes;
}

/** What was made of the text has to say what was meant. */
bool Says(const std::string& text, const std::string& section,
          std::span<const script_lines::CChange> changes) {
    CIniFile ini;
    if (!ini.Parse(text)) return false;
    for (const script_lines::CChange& change : changes)
        if (ini.Get(section, change.key) != change.value) return false;
    return true;
}

/** A script comes from anywhere, and so does a link in its place: what is written goes where it leads. */
bool MayWriteTo(const std::string& path) {
    std::error_code error;
    if (!fs::is_symlink(fs::symlink_status(path, error))) return true;
    const fs::path target = fs::canonical(path, error);
    return !error && ascii_text::EqualNoCase(file_util_ex::GetFileExt(target.native()), "orv");
}

}  // namespace

CStatus SaveEdits(std::string_view scriptPath, std::string_view section, std::span<const CEdit> edits,
                  std::string_view modelPath) {
    const std::string path(scriptPath), name(section), folder = file_util_ex::GetFilePath(path);
    if (!MayWriteTo(path)) return CError{EErrorCode::BadFormat, lng::Mark("this is no scene script"), path};
    CResult<std::vector<CEdit>> folded = FoldEdits(edits);
    if (!folded) return folded.Error();
    WriteRelative(folded.Value(), folder);
    const CResult<CLists> lists = edit_lists::ListsOf(folded.Value());
    if (!lists) return lists.Error();
    const CResult<COldSection> old = ReadOld(path, name);
    if (!old) return old.Error();
    std::vector<script_lines::CChange> changes = ChangesFor(old.Value(), lists.Value());
    if (!old.Value().hasModel && !modelPath.empty())
        changes.insert(changes.begin(), {"Path", PathFor(folder, std::string(modelPath))});
    const std::string text = script_lines::Changed(old.Value().text, section, changes);
    if (!Says(text, name, changes))
        return CError{EErrorCode::BadArgument, lng::Mark("a scene script cannot hold these edits"), path};
    return file_util_ex::WriteFileAtomically(path, text);
}
