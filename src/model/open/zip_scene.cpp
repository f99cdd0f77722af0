// SPDX-License-Identifier: MIT
#include "model/open/zip_scene.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <algorithm>
#include <array>
#include <string>

#include "base/name_hash.h"
#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "files/CZipReader.h"
#include "files/file_util_ex.h"
#include "model/read_3ds/C3dsParser.h"
#include "model/scene/CNoteList.h"
#include "model/scene/scene_budget.h"
#include "model/textures/CLib3dsMatUtil.h"
#include "model/textures/texture_name.h"

namespace {
std::string ExtensionOf(std::string_view name) {
    return ascii_text::Lowered(file_util_ex::GetFileExt(name));
}

std::string StemOf(std::string_view path) {
    return ascii_text::Lowered(file_util_ex::GetFileNameWithPath(file_util_ex::GetFileName(path)));
}

bool IsPicture(std::string_view name) {
    return texture_name::IsPictureExtension(ExtensionOf(name));
}

/** Archives made on a Mac hold a file of notes for each of theirs, under the same name
 * with "._" before it. */
bool IsModel(const CZipEntry& entry) {
    return ExtensionOf(entry.name) == "3ds" && !StemOf(entry.name).starts_with("._");
}

const CZipEntry* ChooseModel(const std::vector<CZipEntry>& entries, std::string_view archiveName) {
    const std::string wanted = StemOf(archiveName);
    const CZipEntry* best = nullptr;
    std::array<long, 2> bestRank{};
    for (const CZipEntry& entry : entries) {
        if (!IsModel(entry)) continue;
        const std::array<long, 2> rank{
            StemOf(entry.name) == wanted ? 0L : 1L,
            static_cast<long>(std::count(entry.name.begin(), entry.name.end(), '/'))};
        if (best && !(rank < bestRank)) continue;
        best = &entry;
        bestRank = rank;
    }
    return best;
}

/** The names of those entries that the scene's materials refer to. */
CNameSet NamesOfPictures(const std::vector<CZipEntry>& entries, const Lib3dsFile& scene,
                         std::string_view model) {
    CImageDataTextVec names;
    for (const CZipEntry& entry : entries) {
        if (IsPicture(entry.name)) names.push_back({entry.name, {}});
    }
    CNameSet wanted;
    if (names.empty()) return wanted;
    const CTextureLocator all = CTextureLocator::InMemory(std::move(names), model);
    CNameSet asked;
    for (Lib3dsMaterial* material = scene.materials; material; material = material->next) {
        for (const Lib3dsTextureMap* map : CLib3dsMatUtil::MapsOf(*material)) {
            if (map->name[0] == 0 || !asked.emplace(map->name).second) continue;
            if (const auto hit = all.Find(map->name)) wanted.insert(hit->foundAt);
        }
    }
    return wanted;
}

std::uint64_t ClaimedBytes(const std::vector<CZipEntry>& entries, const CNameSet& wanted) {
    std::uint64_t bytes = 0;
    for (const CZipEntry& entry : entries) {
        constexpr std::uint64_t kEnough = CZipReader::kMaxUnpackedBytes;
        if (wanted.contains(entry.name)) bytes += std::min(entry.size, kEnough);
    }
    return bytes;
}

CImageDataTextVec ReadPictures(CZipReader& archive, const CNameSet& wanted, CNoteList& notes) {
    CImageDataTextVec pictures;
    std::uint64_t left = scene_budget::kArchivedPictureBytes;
    for (const CZipEntry& entry : archive.Entries()) {
        if (!IsPicture(entry.name)) continue;
        if (!wanted.contains(entry.name)) {
            pictures.push_back({entry.name, {}});  // which one a name means depends on those beside it
            continue;
        }
        CResult<std::vector<std::byte>> data = archive.Read(entry, left);
        if (!data) {
            notes.Limited("A picture of the archive is not read", CNoteList::Printable(entry.name),
                          data.Error().message);
            continue;
        }
        left -= std::min<std::uint64_t>(left, data.Value().size());
        pictures.push_back({entry.name, std::move(data).Value()});
    }
    return pictures;
}
}  // namespace

CResult<CScene> ReadZipScene(std::vector<std::byte> bytes, std::string_view archiveName,
                             std::uint64_t maxBytes) {
    CResult<CZipReader> opened = CZipReader::Open(std::move(bytes));
    if (!opened) return opened.Error();
    CZipReader archive = std::move(opened).Value();
    const std::vector<CZipEntry>& entries = archive.Entries();
    const CZipEntry* model = ChooseModel(entries, archiveName);
    if (!model) return CError{EErrorCode::NotFound, lng::Mark("The archive holds no .3ds model"), ""};
    CResult<std::vector<std::byte>> data =
        archive.Read(*model, std::min(maxBytes, CZipReader::kMaxUnpackedBytes));
    if (!data) return data.Error();
    const std::uint64_t bytesLeft = maxBytes - data.Value().size();
    CResult<CScene> scene = C3dsParser::Parse(std::move(data).Value());
    if (!scene) return CError{scene.Error().code, scene.Error().message, model->name};

    CNoteList notes;
    if (std::count_if(entries.begin(), entries.end(), IsModel) > 1) {
        notes.Limited("The archive holds several models; this one is shown",
                      CNoteList::Printable(model->name));
    }
    const CNameSet wanted = NamesOfPictures(entries, *scene.Value().Header(), model->name);
    if (ClaimedBytes(entries, wanted) > bytesLeft)
        return CError{EErrorCode::TooLarge, lng::Mark("the file is too large"), {}};
    scene.Value().SetTextures(CTextureLocator::InMemory(ReadPictures(archive, wanted, notes), model->name));
    for (CSceneNote& note : notes.Take()) scene.Value().AddNote(std::move(note));
    return scene;
}
