// SPDX-License-Identifier: MIT
#include "script/scene_background.h"

#include <utility>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "model/scene/CNoteList.h"
#include "picture/decode/image_codec.h"
#include "script/CSceneScript.h"

std::shared_ptr<const CImage> ReadBackground(const CScriptScene& scene, std::vector<CSceneNote>& notes) {
    if (scene.backgroundImage.empty()) return nullptr;
    const std::string path = file_util_ex::ConvertToUTF8(scene.backgroundImage);
    const auto fail = [&](const CError& error) {
        notes.push_back({CSceneNote::EKind::Limited, lng::Mark("The background picture cannot be read"),
                         CNoteList::Printable(path), error.message});
        return nullptr;
    };
    const auto bytes = file_util_ex::ReadPlainFile(path, image_codec::kMaxFileBytes);
    if (!bytes) return fail(bytes.Error());
    auto decoded = image_codec::DecodeImage(bytes.Value(), path);
    if (!decoded) return fail(decoded.Error());
    return std::make_shared<const CImage>(std::move(decoded.Value().image));
}
