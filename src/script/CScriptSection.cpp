// SPDX-License-Identifier: MIT
#include "script/CScriptSection.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "model/scene/CNoteList.h"
#include "script/CScriptFiles.h"
#include "script/script_text.h"

namespace {

constexpr std::size_t kMostTemplateFiles = 64;
// Of all templates together. A line costs memory of its own.
constexpr std::size_t kMostTemplateBytes = 4 << 20, kLineBytes = 80;
constexpr std::string_view kTemplateKey = "Template", kNoTemplate = "<NOTSET>", kModelSection = "Model";

std::size_t CostOf(std::string_view text) {
    const auto lines = std::ranges::count(text, '\n') + std::ranges::count(text, '\r');
    return text.size() + static_cast<std::size_t>(lines) * kLineBytes;
}

/** left: what it may cost; 0 after one that costs more. */
CResult<std::shared_ptr<const CScriptFile>> LoadFile(std::string_view path, std::size_t& left) {
    const CResult<std::string> text = script_text::Load(path);
    if (!text) return text.Error();
    const std::size_t cost = CostOf(text.Value());
    const bool isTooLarge = cost > left;
    left = isTooLarge ? 0 : left - cost;
    if (isTooLarge)
        return CError{EErrorCode::TooLarge, lng::Mark("the script is too large"), std::string(path)};
    auto file = std::make_shared<CScriptFile>();
    const CStatus parsed = file->ini.Parse(text.Value());
    if (!parsed) {
        const bool isLarge = parsed.Error().code == EErrorCode::TooLarge;
        return CError{parsed.Error().code,
                      isLarge ? lng::Mark("the script is too large") : lng::Mark("this is no scene script"),
                      std::string(path)};
    }
    std::error_code error;
    file->path = std::filesystem::canonical(std::filesystem::path(path), error).native();
    if (error) file->path = std::string(path);
    for (const std::string& section : file->ini.Sections())
        file->sections.insert(ascii_text::Lowered(section));
    return std::shared_ptr<const CScriptFile>(std::move(file));
}

}  // namespace

std::optional<CScriptSection::CValue> CScriptSection::GetFrom(std::size_t first, std::string_view key) const {
    for (std::size_t i = first; i < m_layers.size(); ++i) {
        const CLayer& layer = m_layers[i];
        if (auto text = layer.file->ini.Get(layer.section, key))
            return CValue{std::move(*text), &layer.file->path};
    }
    return std::nullopt;
}

std::optional<std::string> CScriptSection::GetOwn(std::string_view key) const {
    return m_layers.front().file->ini.Get(m_layers.front().section, key);
}

CScriptLoader::CScriptLoader(CScriptFiles& files, CNoteList& notes)
    : m_files(files), m_notes(notes), m_templateBytesLeft(kMostTemplateBytes) {}

CStatus CScriptLoader::Load(std::string_view path) {
    auto left = std::numeric_limits<std::size_t>::max();  // its own limits count
    auto loaded = LoadFile(path, left);
    if (!loaded) return loaded.Error();
    m_script = std::move(loaded).Value();
    m_files.SetScript(m_script->path);
    return CDone{};
}

std::vector<std::string> CScriptLoader::Files() const {
    std::vector<std::string> files{m_script->path};
    for (const auto& [path, file] : m_templates)
        if (file) files.push_back(file->path);
    return files;
}

CScriptSection CScriptLoader::Section(const std::string& name) {
    CScriptSection section;
    section.m_layers.push_back({m_script, name});
    while (auto next = Template(section)) {
        const bool hasSame = next->sections.contains(ascii_text::Lowered(name));
        section.m_layers.push_back({std::move(next), hasSame ? name : std::string(kModelSection)});
    }
    return section;
}

/** The template of a section's last layer; null at the end of the chain. */
std::shared_ptr<const CScriptFile> CScriptLoader::Template(const CScriptSection& section) {
    const CScriptSection::CLayer& last = section.m_layers.back();
    const std::string written = last.file->ini.Get(last.section, kTemplateKey).value_or(std::string());
    if (ascii_text::Trimmed(written).empty() || written == kNoTemplate) return nullptr;
    const std::string shown = CNoteList::Printable(written);
    if (section.m_layers.size() > kMostTemplates) {
        m_notes.Limited(lng::Mark("Too many templates of templates"), shown);
        return nullptr;
    }
    const auto found = m_files.Find(file_util_ex::GetFilePath(last.file->path), written);
    if (!found) {
        m_notes.Missing(lng::Mark("Template not found"), shown);
        return nullptr;
    }
    auto next = LoadTemplate(*found);
    const auto isNext = [&next](const CScriptSection::CLayer& layer) {
        return next->path == layer.file->path;
    };
    if (next && std::any_of(section.m_layers.begin(), section.m_layers.end(), isNext)) {
        m_notes.Limited(lng::Mark("The templates go round in a circle"), shown);
        return nullptr;
    }
    return next;
}

std::shared_ptr<const CScriptFile> CScriptLoader::LoadTemplate(const std::string& path) {
    const auto known = m_templates.find(path);
    if (known != m_templates.end()) return known->second;
    if (m_templates.size() == kMostTemplateFiles || m_templateBytesLeft == 0) {
        m_notes.Limited(lng::Mark("Too many templates"));
        return nullptr;
    }
    auto loaded = LoadFile(path, m_templateBytesLeft);
    if (!loaded)
        m_notes.Limited(lng::Mark("The template cannot be read"), CNoteList::Printable(path),
                        loaded.Error().message);
    return m_templates.emplace(path, loaded ? std::move(loaded).Value() : nullptr).first->second;
}
