// SPDX-License-Identifier: MIT
#include "model/save/save_scene.h"

#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <array>
#include <atomic>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "base/name_hash.h"
#include "base/text/lng.h"
#include "files/CAtomicFile.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "files/zip_file_util.h"
#include "model/textures/CLib3dsMatUtil.h"
#include "model/textures/texture_name.h"
#include "picture/decode/image_codec.h"
#include "picture/image_writer.h"

namespace {

constexpr int kTextureQuality = 95;

/** A folder of its own inside the program's temporary one; deleted with all in it when this goes. */
class CScratchFolder {
  public:
    CScratchFolder() {
        static std::atomic<unsigned> count{0};
        const std::string parent = std_file_paths::GetTempDir();
        m_path = file_util_ex::MakePath(parent, "zip" + std::to_string(++count));
        m_made = !parent.empty() && file_util_ex::Mkdir(m_path);
    }
    CScratchFolder(const CScratchFolder&) = delete;
    CScratchFolder& operator=(const CScratchFolder&) = delete;
    ~CScratchFolder() {
        if (m_made) file_util_ex::Rmdir(m_path);
    }
    [[nodiscard]] bool IsMade() const { return m_made; }
    [[nodiscard]] std::string File(std::string_view name) const {
        return file_util_ex::MakePath(m_path, name);
    }

  private:
    std::string m_path;
    bool m_made = false;
};

bool IsJpeg(std::span<const std::byte> bytes) {
    return bytes.size() > 3 && bytes[0] == std::byte{0xFF} && bytes[1] == std::byte{0xD8} &&
           bytes[2] == std::byte{0xFF};
}

bool IsTranslucent(const CImage& image) {
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
        if (image.rgba[i] != 255) return true;
    }
    return false;
}

/** Names for pictures in one folder, also on systems that do not tell letter case. */
class CFreeNames {
  public:
    /** A file that is there already. */
    void Reserve(const std::string& name) { m_taken.insert(texture_name::FoldKey(name)); }
    /** name, with the extension (".jpg"), or a name like it that is still free and fits the format of the scene. */
    std::string Take(const std::string& name, const std::string& ending) {
        std::string stem = file_util_ex::GetFileNameWithPath(name);
        if (stem.empty() || stem.size() + ending.size() > kMostBytes) stem = "texture";
        std::string free = stem + ending;
        for (int i = 2; !m_taken.insert(texture_name::FoldKey(free)).second; ++i)
            free = stem + "_" + std::to_string(i) + ending;
        return free;
    }

  private:
    static constexpr std::size_t kMostBytes = sizeof(Lib3dsTextureMap::name) - sizeof "_1000000";
    CNameSet m_taken;
};

/** Gives maps of a scene other picture names, as long as it lives. */
class CRenamedMaps {
  public:
    CRenamedMaps(Lib3dsFile& scene, const CNameMap<std::string>& names) {
        for (Lib3dsMaterial* material = scene.materials; material; material = material->next) {
            for (Lib3dsTextureMap* map : CLib3dsMatUtil::MapsOf(*material)) {
                const auto name =
                    names.find(std::string_view(map->name, strnlen(map->name, sizeof map->name)));
                if (name == names.end()) continue;
                std::memcpy(m_before.emplace_back(map).name.data(), map->name, sizeof map->name);
                std::memcpy(map->name, name->second.c_str(), name->second.size() + 1);
            }
        }
    }
    CRenamedMaps(const CRenamedMaps&) = delete;
    CRenamedMaps& operator=(const CRenamedMaps&) = delete;
    ~CRenamedMaps() {
        for (const CBefore& before : m_before)
            std::memcpy(before.map->name, before.name.data(), sizeof before.map->name);
    }

  private:
    struct CBefore {
        explicit CBefore(Lib3dsTextureMap* m) : map(m) {}
        Lib3dsTextureMap* map;
        std::array<char, sizeof(Lib3dsTextureMap::name)> name{};
    };
    std::vector<CBefore> m_before;
};

/** The files of one picture: a JPEG file, and where that would lose transparent parts a PNG file beside it. */
std::vector<std::string> WriteAsJpeg(std::span<const std::byte> bytes, const CScenePicture& picture,
                                     const std::string& path) {
    if (IsJpeg(bytes)) {
        if (file_util_ex::WriteFileAtomically(path, bytes)) return {path};
        return {};
    }
    const auto image = image_codec::DecodeImage(bytes, picture.hit.foundAt);
    if (!image || !image_codec::WriteJpeg(path, image.Value().image, kTextureQuality)) return {};
    std::vector<std::string> files{path};
    const std::string withAlpha = texture_name::WithAlpha(path);
    if (IsTranslucent(image.Value().image) && image_codec::WritePng(withAlpha, image.Value().image, true))
        files.push_back(withAlpha);
    return files;
}

std::string EndingOf(const CScenePicture& picture, bool asFound) {
    constexpr std::size_t kMostEnding = 5;
    const std::string ext = file_util_ex::GetFileExt(picture.name);
    return asFound && !ext.empty() && ext.size() <= kMostEnding ? "." + ext : ".jpg";
}

/** Appends the files that it writes. Returns the names that the scene's maps must have to find them. */
CNameMap<std::string> WriteTextures(const Lib3dsFile& scene, const CScratchFolder& folder,
                                    const CPacking& packing, std::vector<std::string>& files) {
    CFreeNames names;
    names.Reserve(packing.sceneName);
    names.Reserve(packing.viewName);
    CNameMap<std::string> nameOf;
    for (const CScenePicture& picture : CLib3dsMatUtil::PicturesOf(scene, CTexturesOfScene::Find(&scene))) {
        const auto bytes = ReadTexture(picture.hit, kMostTextureBytes);
        if (!bytes) continue;
        const std::string name = names.Take(picture.name, EndingOf(picture, packing.asFound));
        const std::string path = folder.File(name);
        std::vector<std::string> written;
        if (!packing.asFound) {
            written = WriteAsJpeg(bytes.Value(), picture, path);
        } else if (file_util_ex::WriteFileAtomically(path, bytes.Value())) {
            written = {path};
        }
        if (written.empty()) continue;
        files.insert(files.end(), written.begin(), written.end());
        for (const std::string& reference : picture.references) nameOf.emplace(reference, name);
    }
    return nameOf;
}

}  // namespace

CStatus PackScene(Lib3dsFile* scene, const CSceneWriter& write, const CPacking& packing,
                  CAtomicFile archive) {
    const CScratchFolder folder;
    if (!folder.IsMade())
        return CError{EErrorCode::WriteFailed, lng::Mark("no temporary folder can be made"), {}};
    std::vector<std::string> files{folder.File(packing.sceneName)};
    {
        const CRenamedMaps renamed(*scene, WriteTextures(*scene, folder, packing, files));
        if (CStatus saved = write(files.front()); !saved) return saved;
    }
    const std::string view = folder.File(packing.viewName);
    if (packing.viewWriter && packing.viewWriter(view)) files.push_back(view);
    return zip_file_util::WriteZip(std::move(archive), files, packing.comment);
}

CStatus SaveSceneZip(Lib3dsFile* scene, const CSceneWriter& write, const CImage& picture,
                     std::string_view archivePath) {
    CResult<CAtomicFile> archive = CAtomicFile::CreateOutput(archivePath);
    if (!archive) return archive.Error();
    CPacking packing;
    packing.sceneName = file_util_ex::SetFileExt(file_util_ex::GetFileName(archivePath), "3ds");
    packing.viewName = "preview.png";
    packing.viewWriter = [&](std::string_view path) { return image_codec::WritePng(path, picture, false); };
    return PackScene(scene, write, packing, std::move(archive).Value());
}
