// SPDX-License-Identifier: MIT
#include "programs/orbivue_render/script_icon.h"

#include <utility>

#include "files/file_util_ex.h"
#include "picture/decode/image_codec.h"
#include "picture/shrink_image.h"
#include "programs/shared/open_input.h"

std::optional<CImage> IconOf(const std::string& input, std::size_t scene, int sidePx) {
    if (!IsScript(input)) return std::nullopt;
    const CResult<CSceneScript> script = ReadScript(input);
    if (!script || scene >= script.Value().scenes.size()) return std::nullopt;
    const std::wstring& icon = script.Value().scenes[scene].icon;
    if (icon.empty()) return std::nullopt;
    auto decoded = image_codec::ReadImageFile(file_util_ex::ConvertToUTF8(icon));
    if (!decoded) return std::nullopt;
    return ShrinkImage(std::move(decoded.Value().image), sidePx);
}
