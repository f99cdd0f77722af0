// SPDX-License-Identifier: MIT
#include "model/read_obj/CObjConv3ds.h"

#include <lib3ds/file.h>

#include <exception>
#include <filesystem>
#include <new>
#include <optional>

#include "base/text/lng.h"
#include "base/text/utf16_text.h"
#include "files/file_util_ex.h"
#include "model/read_obj/CMtlLibrary.h"
#include "model/read_obj/CObjSceneMaker.h"
#include "model/read_obj/obj_parse.h"
#include "model/scene/CNoteList.h"
#include "model/textures/CTextureFolders.h"

namespace {

constexpr std::uint64_t kMaxObj = (std::uint64_t{1} << 31) - 1;
constexpr std::uint64_t kMaxMtl = 16'000'000;  // of all material files together
constexpr std::size_t kMaxLibraries = 16;
constexpr std::size_t kMaxLevelsUp = 4;  // as far as textures are looked for

std::string_view TextOf(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/** How many folders above the model's a name begins at: 1 for "../mtl/a.mtl". */
std::size_t LevelsUp(std::string_view name) {
    std::size_t levels = 0;
    for (; name.starts_with("../") || name.starts_with("..\\"); name.remove_prefix(3)) ++levels;
    return levels;
}

/** Reads the MTL files that mtllib lines name: regular files in the model's folder or below, or below one of
 * the few folders above it where the line says so; nothing else. */
class CLibraryFinder {
  public:
    CLibraryFinder(std::string_view modelPath, CNoteList& notes)
        : m_modelPath(modelPath),
          m_modelFolder(std::filesystem::path(m_modelPath).parent_path()),
          m_folders(m_modelFolder),
          m_notes(notes) {}

    CMtlLibrary Read(const std::vector<std::string>& lines) {
        for (const std::string& line : lines) {
            // A line may name several files, or one with blanks in its name.
            if (ReadOne(line)) continue;
            bool any = false;
            for (std::size_t begin = 0; begin < line.size();) {
                const std::size_t end = std::min(line.find_first_of(" \t", begin), line.size());
                any = (end > begin && ReadOne(line.substr(begin, end - begin))) || any;
                begin = end + 1;
            }
            if (!any) m_notes.Missing("Material file not found", CNoteList::Printable(line));
        }
        // Renamed models often still name the old file.
        if (!lines.empty() && m_read.empty()) {
            (void)ReadOne(file_util_ex::SetFileExt(file_util_ex::GetFileName(m_modelPath), "mtl"));
        }
        return std::move(m_library);
    }
    [[nodiscard]] std::vector<std::string> FilesRead() const { return {m_read.begin(), m_read.end()}; }

  private:
    std::optional<std::filesystem::path> Find(const std::string& name) {
        const CTextureQuery query(name);
        const std::size_t levels = LevelsUp(name);
        if (levels > 0 && levels <= kMaxLevelsUp) {
            std::filesystem::path above = m_modelFolder;
            for (std::size_t i = 0; i < levels; ++i) above /= "..";
            if (auto found = CTextureFolders(above).FindBesideModel(query)) return found;
        }
        return m_folders.FindBesideModel(query);
    }

    bool ReadOne(const std::string& name) {
        const auto path = Find(name);
        if (!path || m_read.contains(path->native())) return path.has_value();
        if (m_read.size() == kMaxLibraries) return false;
        auto bytes = file_util_ex::ReadWholeFile(path->native(), kMaxMtl - m_bytesRead);
        if (!bytes) return false;
        m_bytesRead += bytes.Value().size();
        m_read.insert(path->native());
        std::string converted = Utf16ToUtf8(TextOf(bytes.Value()));
        m_library.Add(converted.empty() ? std::string(TextOf(bytes.Value())) : std::move(converted));
        return true;
    }

    std::string m_modelPath;
    std::filesystem::path m_modelFolder;
    CTextureFolders m_folders;
    CNoteList& m_notes;
    CMtlLibrary m_library;
    std::unordered_set<std::string> m_read;
    std::uint64_t m_bytesRead = 0;
};

void NoteWhatIsMissing(const CObjGeometry& geometry, CNoteList& notes) {
    const auto counted = [](std::size_t n) { return std::to_string(n); };
    if (geometry.brokenFaces != 0)
        notes.Repaired("Faces with impossible corners, left out", counted(geometry.brokenFaces));
    if (geometry.brokenElements != 0)
        notes.Repaired("Points and lines with impossible corners, left out",
                       counted(geometry.brokenElements));
    if (geometry.solidPoints != 0)
        notes.Limited("Points, made solid as a scene holds only triangles", counted(geometry.solidPoints));
    if (geometry.solidLines != 0)
        notes.Limited("Pieces of lines, made solid as a scene holds only triangles",
                      counted(geometry.solidLines));
    if (geometry.crowdedOut != 0)
        notes.Limited("Points and lines, left out beside the faces as there are too many",
                      counted(geometry.crowdedOut));
    if (geometry.droppedLines != 0)
        notes.Limited("Lines of text over 1 MB, left out", counted(geometry.droppedLines));
    if (geometry.tooManyNames) notes.Limited("More than 16,384 groups or materials; the rest share one");
}

CResult<CLib3dsFilePtr> MakeScene(const CObjGeometry& geometry, const CMtlLibrary& library,
                                  CNoteList& notes) {
    if (geometry.faceEnds.empty() && geometry.brokenElements == 0)
        return CError{EErrorCode::BadFormat, lng::Mark("The file has no faces, lines or points"), {}};
    NoteWhatIsMissing(geometry, notes);  // first, as the number of notes is bounded
    CLib3dsFilePtr file = CObjSceneMaker(geometry, library, notes).Make();
    if (!file->meshes)
        return CError{EErrorCode::BadFormat, lng::Mark("No face of the file can be drawn"), {}};
    return file;
}

/** Runs a conversion; whatever it throws becomes an error. */
template <class Work>
CResult<CLib3dsFilePtr> Guarded(std::string_view where, std::vector<CSceneNote>& notes, Work work) {
    try {
        CNoteList list;
        CResult<CLib3dsFilePtr> result = work(list);
        if (!result) return CError{result.Error().code, result.Error().message, std::string(where)};
        notes = list.Take();
        return result;
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("There is not enough memory for this scene"),
                      std::string(where)};
    } catch (const std::exception& error) {
        return CError{EErrorCode::Unreadable, error.what(), std::string(where)};
    }
}

}  // namespace

Lib3dsFile* CObjConv3ds::Convert(const wchar_t* path) {
    return Convert(file_util_ex::ConvertToUTF8(path));
}

Lib3dsFile* CObjConv3ds::Convert(std::string_view path) {
    std::vector<CSceneNote> notes;
    CResult<CLib3dsFilePtr> result = ConvertResult(path, notes);
    return result ? result.Value().release() : nullptr;
}

CResult<CLib3dsFilePtr> CObjConv3ds::ConvertResult(std::string_view path, std::vector<CSceneNote>& notes,
                                                   std::vector<std::string>* libraries) {
    return Guarded(path, notes, [&](CNoteList& list) -> CResult<CLib3dsFilePtr> {
        CResult<CObjGeometry> geometry = [&]() -> CResult<CObjGeometry> {
            auto bytes = file_util_ex::ReadWholeFile(path, kMaxObj);
            if (!bytes) return bytes.Error();
            const std::string converted = Utf16ToUtf8(TextOf(bytes.Value()));
            return ParseObj(converted.empty() ? TextOf(bytes.Value()) : converted);
        }();
        if (!geometry) return geometry.Error();
        CLibraryFinder finder(path, list);
        const CMtlLibrary library = finder.Read(geometry.Value().libraries);
        if (libraries) *libraries = finder.FilesRead();
        return MakeScene(geometry.Value(), library, list);
    });
}

CResult<CLib3dsFilePtr> CObjConv3ds::ConvertText(std::string_view obj, std::string_view mtl,
                                                 std::vector<CSceneNote>& notes) {
    return Guarded({}, notes, [&](CNoteList& list) -> CResult<CLib3dsFilePtr> {
        const std::string converted = Utf16ToUtf8(obj);
        const CResult<CObjGeometry> geometry = ParseObj(converted.empty() ? obj : converted);
        if (!geometry) return geometry.Error();
        CMtlLibrary library;
        library.Add(std::string(mtl));
        return MakeScene(geometry.Value(), library, list);
    });
}
