// SPDX-License-Identifier: MIT
#include "model/save/write_scene.h"

#include <lib3ds/file.h>
#include <lib3ds/mesh.h>

#include <new>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "model/save/morph_tracks.h"
#include "model/scene/CScene.h"
#include "model/scene/lib3ds_memory_io.h"

namespace {

constexpr Lib3dsDword kMaxCount = 65535;  // counts are 16-bit in the file

}  // namespace

CResult<std::vector<std::byte>> SceneTo3ds(CScene& scene) {
    try {
        Lib3dsFile* file = scene.File();
        for (const Lib3dsMesh* mesh = file->meshes; mesh != nullptr; mesh = mesh->next) {
            if (mesh->points <= kMaxCount && mesh->faces <= kMaxCount) continue;
            return CError{EErrorCode::Unsupported, lng::Mark("a 3DS file cannot hold an object this large"),
                          mesh->name};
        }
        CLib3dsMemoryWriter writer;
        if (!lib3ds_file_write(file, writer.Io())) {
            return CError{EErrorCode::WriteFailed, lng::Mark("the scene cannot be written as 3DS"), {}};
        }
        std::vector<std::byte> bytes = writer.Bytes();
        WriteMorphTracks(*file, bytes);
        return bytes;
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory to write the scene"), {}};
    }
}

CStatus WriteScene(CScene& scene, std::string_view path) {
    const CResult<std::vector<std::byte>> bytes = SceneTo3ds(scene);
    if (!bytes) return bytes.Error();
    return file_util_ex::WriteOutput(path, bytes.Value());
}
