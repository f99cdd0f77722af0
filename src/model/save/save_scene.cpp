// SPDX-License-Identifier: MIT
#include "model/save/save_scene.h"

#include <atomic>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "files/zip_file_util.h"
#include "model/textures/CLib3dsMatUtil.h"
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

bool WriteAsJpeg(const CImageDataText& texture, const std::string& path) {
    if (IsJpeg(texture.data)) return file_util_ex::WriteFileAtomically(path, texture.data).HasValue();
    const auto image = image_codec::DecodeImage(texture.data, texture.name);
    return image && image_codec::WriteJpeg(path, image.Value().image, kTextureQuality).HasValue();
}

void WriteTextures(Lib3dsFile* scene, const CScratchFolder& folder, std::vector<std::string>& files) {
    CImageDataTextVec textures;
    CLib3dsMatUtil::GetMatTextures(scene, textures);
    std::set<std::string> written;
    for (const CImageDataText& texture : textures) {
        const std::string name = file_util_ex::SetFileExt(file_util_ex::GetFileName(texture.name), "jpg");
        if (!written.insert(name).second) continue;
        if (WriteAsJpeg(texture, folder.File(name))) files.push_back(folder.File(name));
    }
}

}  // namespace

CStatus SaveSceneZip(Lib3dsFile* scene, const CSceneWriter& write, const CImage& picture,
                     std::string_view archivePath) {
    const CScratchFolder folder;
    if (!folder.IsMade())
        return CError{EErrorCode::WriteFailed, lng::Mark("no temporary folder can be made"), {}};
    std::vector<std::string> files{
        folder.File(file_util_ex::SetFileExt(file_util_ex::GetFileName(archivePath), "3ds"))};
    if (CStatus saved = write(files.front()); !saved) return saved;
    WriteTextures(scene, folder, files);
    const std::string view = folder.File("preview.png");
    if (image_codec::WritePng(view, picture, false)) files.push_back(view);
    return zip_file_util::WriteZip(archivePath, files);
}
