// SPDX-License-Identifier: MIT
#include "model/prepare/source_files.h"

#include <algorithm>
#include <filesystem>

#include "model/prepare/CPreparedScene.h"

ESource SourceAt(const CPreparedScene& scene, const std::string& path) {
    const auto isThat = [&path](const std::string& source) {
        std::error_code ignored;
        return !source.empty() && (source == path || std::filesystem::equivalent(source, path, ignored));
    };
    if (std::any_of(scene.sourceFiles.begin(), scene.sourceFiles.end(), isThat)) return ESource::Model;
    const bool isPicture =
        std::any_of(scene.textures.begin(), scene.textures.end(),
                    [&](const CPreparedTexture& texture) { return isThat(texture.foundAt); });
    return isPicture ? ESource::Picture : ESource::None;
}
