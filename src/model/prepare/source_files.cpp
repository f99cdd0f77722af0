// SPDX-License-Identifier: MIT
#include "model/prepare/source_files.h"

#include <algorithm>
#include <filesystem>

#include "base/text/lng.h"
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

CStatus CheckOutput(const CPreparedScene& scene, const std::string& path) {
    if (path.empty()) return CError{EErrorCode::BadArgument, lng::Mark("there is no name to write to"), {}};
    switch (SourceAt(scene, path)) {
        case ESource::None:
            break;
        case ESource::Model:
            return CError{EErrorCode::BadArgument,
                          lng::Mark("a file that the model was read from would be overwritten"), path};
        case ESource::Picture:
            return CError{EErrorCode::BadArgument, lng::Mark("a picture of the model would be overwritten"),
                          path};
    }
    return CDone{};
}
