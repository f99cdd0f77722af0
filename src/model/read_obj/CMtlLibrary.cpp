// SPDX-License-Identifier: MIT
#include "model/read_obj/CMtlLibrary.h"

#include <array>
#include <filesystem>
#include <set>

#include "base/text/utf16_text.h"
#include "files/file_util_ex.h"
#include "model/read_obj/CObjText.h"
#include "model/textures/CTextureFolders.h"

namespace {

constexpr std::size_t kMaxMaterials = 100'000;
constexpr std::size_t kMaxNameLength = 256;
constexpr std::uint64_t kMaxBytes = 16'000'000;  // of all files together
constexpr std::size_t kMaxFiles = 16, kMaxLookUps = 1000;
constexpr std::size_t kMaxLevelsUp = 4;  // as far as textures are looked for

/** How many folders above the model's a name begins at: 1 for "../mtl/a.mtl". */
std::size_t LevelsUp(std::string_view name) {
    std::size_t levels = 0;
    for (; name.starts_with("../") || name.starts_with("..\\"); name.remove_prefix(3)) ++levels;
    return levels;
}

class CLibraryReader {
  public:
    CLibraryReader(std::string_view modelPath, CMtlLibrary& library)
        : m_modelFolder(std::filesystem::path(modelPath).parent_path()), m_library(library) {}

    [[nodiscard]] bool AnyRead() const { return !m_read.empty(); }
    [[nodiscard]] std::vector<std::string> FilesRead() const { return {m_read.begin(), m_read.end()}; }

    /** True where something that the line names is there. */
    bool ReadLine(std::string_view line) {
        if (ReadFile(line)) return true;
        bool any = false;
        for (std::size_t begin = 0; begin < line.size(); ++begin) {
            if (CObjText::IsBlank(line[begin])) continue;
            std::size_t end = EndOfWord(line, begin);
            const std::size_t wordEnd = end;
            while (!ReadFile(line.substr(begin, end - begin)) && end < line.size())
                end = EndOfWord(line, end + 1);
            const bool found = m_found;
            any = any || found;
            begin = found ? end : wordEnd;
        }
        return any;
    }

    bool ReadFile(std::string_view name) {
        m_found = m_lookUps++ < kMaxLookUps && FindAndRead(std::string(name));
        return m_found;
    }

  private:
    static std::size_t EndOfWord(std::string_view line, std::size_t from) {
        return std::min(line.find_first_of(" \t", from), line.size());
    }

    CTextureFolders& FoldersAbove(std::size_t levels) {
        auto& folders = m_folders[levels];
        if (!folders) folders.emplace(m_modelFolder, levels);
        return *folders;
    }

    std::optional<std::filesystem::path> Find(const std::string& name) {
        const CTextureQuery query(name);
        const std::size_t levels = LevelsUp(name);
        if (levels > 0 && levels <= kMaxLevelsUp) {
            if (auto found = FoldersAbove(levels).FindBesideModel(query)) return found;
        }
        return FoldersAbove(0).FindBesideModel(query);
    }

    bool FindAndRead(const std::string& name) {
        const auto path = Find(name);
        if (!path || m_read.contains(path->native())) return path.has_value();
        if (m_read.size() == kMaxFiles) return false;
        auto bytes = file_util_ex::ReadWholeFile(path->native(), kMaxBytes - m_bytesRead);
        if (!bytes) return false;
        m_bytesRead += bytes.Value().size();
        m_read.insert(path->native());
        std::string text(reinterpret_cast<const char*>(bytes.Value().data()), bytes.Value().size());
        std::string converted = Utf16ToUtf8(text);
        m_library.Add(converted.empty() ? std::move(text) : std::move(converted));
        return true;
    }

    std::filesystem::path m_modelFolder;
    CMtlLibrary& m_library;
    std::array<std::optional<CTextureFolders>, kMaxLevelsUp + 1> m_folders;  ///< by levels above the model
    std::set<std::string> m_read;
    std::uint64_t m_bytesRead = 0;
    std::size_t m_lookUps = 0;
    bool m_found = false;
};

}  // namespace

CMtlLibrary CMtlLibrary::OfLines(const std::vector<std::string>& lines, std::string_view modelPath,
                                 CNoteList& notes) {
    CMtlLibrary library;
    CLibraryReader reader(modelPath, library);
    for (const std::string& line : lines) {
        if (!reader.ReadLine(line)) notes.Missing("Material file not found", CNoteList::Printable(line));
    }
    if (!lines.empty() && !reader.AnyRead()) {
        const std::string name = file_util_ex::GetFileName(std::string(modelPath));
        (void)reader.ReadFile(file_util_ex::SetFileExt(name, "mtl"));
    }
    library.m_filesRead = reader.FilesRead();
    return library;
}

void CMtlLibrary::Add(std::string text) {
    std::string_view name;
    const char* begin = nullptr;
    const auto finish = [&](const char* end) {
        if (name.empty() || m_materials.size() == kMaxMaterials) return;
        m_materials.try_emplace(name, std::string_view(begin, static_cast<std::size_t>(end - begin)));
    };
    CObjText words(m_texts.emplace_back(std::move(text)));
    for (; !words.AtEnd(); words.NextLine()) {
        const char* const line = words.Place();
        if (!words.ToWord() || words.Word() != "newmtl") continue;
        const std::string_view next = words.Rest();
        finish(line);
        name = next.substr(0, kMaxNameLength);
        begin = words.Place();
    }
    finish(words.Place());
}

std::optional<std::string_view> CMtlLibrary::TextOf(const std::string& name) const {
    const auto found = m_materials.find(name);
    if (found == m_materials.end()) return std::nullopt;
    return found->second;
}
