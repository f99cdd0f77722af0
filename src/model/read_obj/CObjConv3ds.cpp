// SPDX-License-Identifier: MIT
#include "model/read_obj/CObjConv3ds.h"

#include <lib3ds/file.h>

#include <exception>
#include <new>

#include "base/text/lng.h"
#include "base/text/utf16_text.h"
#include "files/file_util_ex.h"
#include "model/read_obj/CMtlLibrary.h"
#include "model/read_obj/CObjSceneMaker.h"
#include "model/read_obj/obj_parse.h"
#include "model/scene/CNoteList.h"

namespace {

constexpr std::uint64_t kMaxObj = (std::uint64_t{1} << 31) - 1;

std::string_view TextOf(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

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
        const CMtlLibrary library = CMtlLibrary::OfLines(geometry.Value().libraries, path, list);
        if (libraries) *libraries = library.FilesRead();
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
