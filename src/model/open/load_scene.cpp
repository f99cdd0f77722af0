// SPDX-License-Identifier: MIT
#include "model/open/load_scene.h"

#include <chrono>
#include <exception>
#include <string>
#include <utility>

#include "base/text/lng.h"
#include "model/open/CSceneReader.h"
#include "model/prepare/prepare_scene.h"

namespace {

class CStopwatch {
  public:
    [[nodiscard]] double Ms() const {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - m_start).count();
    }

  private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

CError OutOfMemory(std::string_view path) {
    return {EErrorCode::TooLarge, lng::Mark("not enough memory to open it"), std::string(path)};
}

CLoadedScene Prepare(CScene scene, double readMs, CLoadProgress* progress) {
    const CStopwatch watch;
    if (progress) {
        progress->meshCount = static_cast<unsigned>(scene.Meshes().size());
        progress->phase = CLoadProgress::EPhase::Preparing;
    }
    CPrepareOptions options;
    options.meshesDone = progress ? &progress->meshesDone : nullptr;
    CPreparedScene prepared = PrepareScene(scene, options);
    return {std::move(scene), std::move(prepared), readMs, watch.Ms()};
}

}  // namespace

CResult<CLoadedScene> LoadScene(std::string_view path, CLoadProgress* progress) {
    try {
        const CStopwatch watch;
        CResult<CScene> read = CSceneReader::ReadFile(path);
        if (!read) return read.Error();
        return Prepare(std::move(read).Value(), watch.Ms(), progress);
    } catch (const std::exception&) {
        return OutOfMemory(path);
    }
}

CResult<CLoadedScene> LoadScene(CScene scene, CLoadProgress* progress) {
    try {
        return Prepare(std::move(scene), 0, progress);
    } catch (const std::exception&) {
        return OutOfMemory({});
    }
}
