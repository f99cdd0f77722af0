// SPDX-License-Identifier: MIT
#include "script/CSceneScript.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "base/text/ascii_text.h"
#include "base/text/character_kind.h"
#include "base/text/lng.h"
#include "base/text/number_text.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"
#include "model/scene/CNoteList.h"
#include "script/CScriptFiles.h"
#include "script/CScriptSection.h"
#include "script/edit_lists.h"
#include "script/resolve_edits.h"
#include "script/script_numbers.h"
#include "script/script_text.h"

namespace {

using file_util_ex::ConvertToUTF8;
using file_util_ex::PathFromBytes;

constexpr std::size_t kMostTextBytes = 4000, kMostCameraBytes = 200;
constexpr std::size_t kMostNameBytes = 1000;
constexpr double kFarthestPivot = 1e9, kLeastScale = 1e-3, kMostScale = 1e3;

/** What the scenes of a script cost together: a template's values are read for each section that has it. */
class CEffort {
  public:
    void SpendOn(std::string_view value) {
        const auto entries = static_cast<std::size_t>(std::ranges::count(value, ';'));
        m_bytes += value.size() + kEntryBytes * std::min(entries, edit_lists::kMostEntries);
    }
    /** The first scene may cost what it likes: its lists are bounded, too. */
    [[nodiscard]] bool IsSpent() const { return m_bytes > kMostBytes; }

  private:
    static constexpr std::size_t kEntryBytes = 100, kMostBytes = 24 << 20;
    std::size_t m_bytes = 0;
};

/** What the rows of the table read a scene from, and into. */
struct CReading {
    const CScriptSection& section;
    CScriptFiles& files;
    CEffort& effort;
    CNoteList& notes;
    CScriptScene& scene;
    std::string_view key;  ///< of the row

    [[nodiscard]] std::optional<CScriptSection::CValue> Value(std::string_view name) const {
        auto value = section.Get(name);
        if (value) effort.SpendOn(value->text);
        return value;
    }
    [[nodiscard]] int Int(std::string_view name, int absent) const {
        const auto value = Value(name);
        return value ? number_text::ParseLeadingInt(value->text).value_or(absent) : absent;
    }
    void NotUsed(const char* what) const { notes.Limited(what, std::string(key)); }
};

// --- files -----------------------------------------------------------------------------------------------

void ReadPath(CReading& r) {
    const auto value = r.Value(r.key);
    if (!value || ascii_text::Trimmed(value->text).empty()) return;
    const std::string folder = file_util_ex::GetFilePath(*value->file);
    const auto found = r.files.Find(folder, value->text);
    r.scene.path = PathFromBytes(found ? *found : r.files.Unfound(folder, value->text));
}

template <std::wstring CScriptScene::*picture>
void ReadPicture(CReading& r) {
    const auto value = r.Value(r.key);
    if (!value || ascii_text::Trimmed(value->text).empty()) return;
    const CScriptFiles::CPicture found =
        r.files.FindPicture(*value->file, ConvertToUTF8(r.scene.path), value->text);
    NotePicture(found, value->text, r.notes);
    r.scene.*picture = PathFromBytes(found.path);
}

// --- numbers ---------------------------------------------------------------------------------------------

constexpr int kLeave = 2;

template <std::optional<bool> CScriptScene::*state>
void ReadSwitch(CReading& r) {
    const int value = r.Int(r.key, kLeave);
    if (value != kLeave) r.scene.*state = value != 0;
}

void ReadRenderMode(CReading& r) {
    r.scene.renderMode = r.Int(r.key, 0);
}

void ReadBackground(CReading& r) {
    constexpr int kAbsent = -1;
    const std::array<int, 3> rgb{r.Int("BkColorR", kAbsent), r.Int("BkColorG", kAbsent),
                                 r.Int("BkColorB", kAbsent)};
    if (std::find(rgb.begin(), rgb.end(), kAbsent) != rgb.end()) return;
    const auto channel = [](int value) {
        return static_cast<float>(std::clamp(value, 0, 255) * 0.00392156862745098);
    };
    r.scene.background = CVec3{channel(rgb[0]), channel(rgb[1]), channel(rgb[2])};
}

void ReadTime(CReading& r) {
    const auto value = r.Value(r.key);
    if (!value) return;
    const double seconds = script_numbers::ReadNumber(value->text);
    r.scene.timeMs = script_numbers::Milliseconds(seconds);
    if (!(std::abs(seconds * 1000) <= std::numeric_limits<int>::max()))
        r.NotUsed(lng::Mark("A number of the script is limited to what can be used"));
}

void ReadLoop(CReading& r) {
    const auto value = r.Value(r.key);
    const long long count = value ? script_numbers::ReadInteger(value->text) : 0;
    r.scene.loop =
        count < 1 ? 0 : static_cast<int>(std::min<long long>(count, std::numeric_limits<int>::max()) - 1);
}

/** The three values, where all are there. */
std::optional<CVec3d> ReadVector(const CReading& r, const std::array<std::string_view, 3>& names) {
    std::array<double, 3> numbers{};
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto value = r.Value(names[i]);
        if (!value) return std::nullopt;
        numbers[i] = script_numbers::ReadNumber(value->text);
    }
    return CVec3d{numbers[0], numbers[1], numbers[2]};
}

void ReadPivot(CReading& r) {
    const auto pivot = ReadVector(r, {"PosX", "PosY", "PosZ"});
    if (!pivot) return;
    const auto isUsable = [](double v) { return std::abs(v) <= kFarthestPivot; };
    if (isUsable(pivot->x) && isUsable(pivot->y) && isUsable(pivot->z))
        r.scene.pivot = pivot;
    else
        r.NotUsed(lng::Mark("A number of the script cannot be used"));
}

void ReadScale(CReading& r) {
    const auto scale = ReadVector(r, {"ScaleX", "ScaleY", "ScaleZ"});
    if (!scale) return;
    // A scale of 0 would leave nothing to see, as would one that is no number.
    const auto isUsable = [](double v) { return std::abs(v) >= kLeastScale && std::abs(v) <= kMostScale; };
    if (isUsable(scale->x) && isUsable(scale->y) && isUsable(scale->z))
        r.scene.scale = scale;
    else
        r.NotUsed(lng::Mark("A number of the script cannot be used"));
}

// --- texts and edits -------------------------------------------------------------------------------------

template <std::wstring CScriptScene::*text, std::size_t mostBytes>
void ReadText(CReading& r) {
    const auto value = r.Value(r.key);
    if (!value) return;
    const std::string shown = script_text::ForPeople(std::string_view(value->text).substr(0, 2 * mostBytes));
    const std::string_view cut = utf8_text::Cut(shown, mostBytes);
    if (cut.size() < value->text.size() && value->text.size() > mostBytes)
        r.NotUsed(lng::Mark("A text of the script is cut"));
    r.scene.*text = file_util_ex::ConvertFromUTF8W(cut);
    std::erase_if(r.scene.*text, [](wchar_t c) {
        return c == L'\r' || character_kind::Of(c) == character_kind::EKind::Control;
    });
}

/** All lists at once, as they are applied in an order of their own. */
void ReadEdits(CReading& r) {
    for (std::size_t key = 0; key < edit_lists::kKeys.size(); ++key) {
        const auto value = r.Value(edit_lists::kKeys[key]);
        if (!value) continue;
        edit_lists::CLists lists;
        lists[key] = value->text;
        for (CEdit& edit : edit_lists::EditsOf(lists, r.notes)) {
            if (ResolveEdit(edit, {*value->file, ConvertToUTF8(r.scene.path)}, r.files, r.notes))
                r.scene.edits.push_back(std::move(edit));
        }
    }
}

// --- the table -------------------------------------------------------------------------------------------

struct CRow {
    std::string_view key;
    void (*read)(CReading&);  ///< null: read with another row
};

constexpr std::array<CRow, 29> kRows{{{"Path", ReadPath},
                                      {"BkGrImage", ReadPicture<&CScriptScene::backgroundImage>},
                                      {"Icon", ReadPicture<&CScriptScene::icon>},
                                      {"Template", nullptr},
                                      {"Wire", ReadSwitch<&CScriptScene::wire>},
                                      {"Rotate", ReadSwitch<&CScriptScene::rotate>},
                                      {"FullScreen", ReadSwitch<&CScriptScene::fullScreen>},
                                      {"RenderMode", ReadRenderMode},
                                      {"BkColorR", ReadBackground},
                                      {"BkColorG", nullptr},
                                      {"BkColorB", nullptr},
                                      {"Time", ReadTime},
                                      {"Loop", ReadLoop},
                                      {"Camera", ReadText<&CScriptScene::camera, kMostCameraBytes>},
                                      {"Text", ReadText<&CScriptScene::text, kMostTextBytes>},
                                      {"PosX", ReadPivot},
                                      {"PosY", nullptr},
                                      {"PosZ", nullptr},
                                      {"ScaleX", ReadScale},
                                      {"ScaleY", nullptr},
                                      {"ScaleZ", nullptr},
                                      {"Texture", ReadEdits},
                                      {"Transparency", nullptr},
                                      {"Shininess", nullptr},
                                      {"Color", nullptr},
                                      {"MoveNode", nullptr},
                                      {"RotateNode", nullptr},
                                      {"ReplaceNode", nullptr},
                                      {"DeleteNode", nullptr}}};

CScriptScene ReadScene(const std::string& name, const CScriptSection& section, CScriptFiles& files,
                       CEffort& effort) {
    CScriptScene scene;
    scene.section = name;
    CNoteList notes;
    CReading reading{section, files, effort, notes, scene, {}};
    for (const CRow& row : kRows) {
        reading.key = row.key;
        if (row.read) row.read(reading);
    }
    scene.notes = notes.Take();
    return scene;
}

/** Loads a script and visits its sections in their order, until one answers false. */
template <class Visit>
CStatus ForEachSection(CScriptLoader& loader, std::string_view path, Visit visit) {
    CStatus loaded = loader.Load(path);
    if (!loaded) return loaded;
    for (const std::string& name : loader.Script().ini.Sections())
        if (name.size() <= kMostNameBytes && !visit(name, loader.Section(name))) break;
    return loaded;
}

CError NamesNoModel(std::string_view path) {
    return {EErrorCode::BadFormat, lng::Mark("the script names no model"), std::string(path)};
}

}  // namespace

CResult<CSceneScript> ReadScript(std::string_view path) {
    CScriptFiles files;
    CNoteList notes;
    CScriptLoader loader(files, notes);
    CEffort effort;
    CSceneScript script;
    const CStatus loaded =
        ForEachSection(loader, path, [&](const std::string& name, const CScriptSection& section) {
            const auto model = section.Get("Path");
            if (!model || ascii_text::Trimmed(model->text).empty()) return true;
            if (script.scenes.size() == kMostScriptScenes || effort.IsSpent()) {
                notes.Limited(lng::Mark("Sections of the script beyond the limit are not shown"));
                return false;
            }
            script.scenes.push_back(ReadScene(name, section, files, effort));
            return true;
        });
    if (!loaded) return loaded.Error();
    if (script.scenes.empty()) return NamesNoModel(path);
    script.notes = notes.Take();
    script.files = loader.Files();
    return script;
}

CResult<std::string> FirstModelOf(std::string_view path) {
    CScriptFiles files;
    CNoteList notes;
    CScriptLoader loader(files, notes);
    CEffort effort;
    CScriptScene scene;
    const CStatus loaded =
        ForEachSection(loader, path, [&](const std::string&, const CScriptSection& section) {
            CReading reading{section, files, effort, notes, scene, "Path"};
            ReadPath(reading);
            return scene.path.empty();
        });
    if (!loaded) return loaded.Error();
    if (scene.path.empty()) return NamesNoModel(path);
    return ConvertToUTF8(scene.path);
}

std::vector<std::string_view> ScriptKeys() {
    std::vector<std::string_view> keys;
    keys.reserve(std::size(kRows));
    for (const CRow& row : kRows) keys.push_back(row.key);
    return keys;
}
