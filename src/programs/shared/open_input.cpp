// SPDX-License-Identifier: MIT
#include "programs/shared/open_input.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include "base/text/ascii_text.h"
#include "engine/C3dsDisplayWrap.h"
#include "files/CFileDescriptor.h"
#include "files/file_util_ex.h"
#include "model/open/load_scene.h"
#include "process/confine.h"
#include "script/fit_names.h"

using file_util_ex::ConvertToUTF8;

namespace {

// --- opening ---------------------------------------------------------------------------------------------

CResult<CScriptScene> SceneOf(CSceneScript script, const std::string& path, std::size_t scene) {
    if (scene >= script.scenes.size())
        return CError{EErrorCode::BadArgument,
                      "--scene: the script has only " + std::to_string(script.scenes.size()), path};
    return std::move(script.scenes[scene]);
}

void ApplyEdits(C3dsDisplayWrap& engine, COpenedInput& opened) {
    std::vector<CEdit>& edits = opened.scene->edits;
    FitNames(edits, *engine.Prepared());
    for (const CStatus& answer : engine.ApplyEdits(edits))
        if (!answer)
            opened.notes.push_back({CSceneNote::EKind::Limited, "An edit of the script cannot be made",
                                    answer.Error().where, answer.Error().message});
}

CStatus OpenModel(C3dsDisplayWrap& engine, const std::string& path, const CLoadLimits& limits) {
    if (engine.OpenLoaded(LoadScene(path, nullptr, limits))) return CDone{};
    return engine.LastError();
}

// --- the files that a script names -----------------------------------------------------------------------

constexpr std::size_t kMostBytes = 4 << 20;
constexpr int kPatienceMs = 5000;
constexpr char kModel = 'm', kFile = 'f';

void Put(std::string& to, char kind, const std::string& path) {
    if (!path.empty()) to += kind + path + '\0';
}

std::string NamesIn(const std::string& path, std::size_t scene) {
    std::string names;
    CResult<CSceneScript> script = ReadScript(path);
    if (!script) return names;
    for (const std::string& file : script.Value().files) Put(names, kFile, file);
    const CResult<CScriptScene> found = SceneOf(std::move(script).Value(), path, scene);
    if (!found) return names;
    Put(names, kModel, ConvertToUTF8(found.Value().path));
    Put(names, kFile, ConvertToUTF8(found.Value().backgroundImage));
    Put(names, kFile, ConvertToUTF8(found.Value().icon));
    for (const CEdit& edit : found.Value().edits) {
        if (const auto* texture = std::get_if<CTextureEdit>(&edit)) Put(names, kFile, texture->imagePath);
        if (const auto* replaced = std::get_if<CReplaceEdit>(&edit)) Put(names, kModel, replaced->path);
    }
    return names;
}

/** What the other process does; it never returns. */
[[noreturn]] void TellNames(const std::string& path, std::size_t scene, int to) {
    CConfinement confinement;
    confinement.limits = LimitsForDrawing();
    confinement.limits.processorSeconds = kPatienceMs / 1000;
    confinement.files.readable = {"/"};
    (void)ConfineProcess(confinement);
    const std::string names = NamesIn(path, scene);
    std::size_t sent = 0;
    while (sent < names.size()) {
        const ssize_t put = ::write(to, names.data() + sent, names.size() - sent);
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) ::_exit(1);
        sent += static_cast<std::size_t>(put);
    }
    ::_exit(0);
}

std::string ReadToEnd(int from) {
    std::string all;
    std::array<char, 4096> buffer{};
    pollfd news{from, POLLIN, 0};
    while (all.size() < kMostBytes && ::poll(&news, 1, kPatienceMs) > 0) {
        const ssize_t got = ::read(from, buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        all.append(buffer.data(), static_cast<std::size_t>(got));
    }
    return all;
}

}  // namespace

bool IsScript(const std::string& path) {
    return ascii_text::EqualNoCase(file_util_ex::GetFileExt(path), "orv");
}

CResult<COpenedInput> OpenInput(C3dsDisplayWrap& engine, const std::string& input, const CLoadLimits& limits,
                                std::size_t scene, EOpenFor use) {
    COpenedInput opened;
    engine.SetViewingOnly(use == EOpenFor::Viewing);
    if (!IsScript(input)) {
        const CStatus model = OpenModel(engine, input, limits);
        if (!model) return model.Error();
        return opened;
    }
    CResult<CSceneScript> script = ReadScript(input);
    if (!script) return script.Error();
    opened.notes = script.Value().notes;
    CResult<CScriptScene> found = SceneOf(std::move(script).Value(), input, scene);
    if (!found) return found.Error();
    opened.scene = std::move(found).Value();
    opened.notes.insert(opened.notes.end(), opened.scene->notes.begin(), opened.scene->notes.end());
    const std::string path = ConvertToUTF8(opened.scene->path);
    if (!file_util_ex::DoesFileExist(path))
        return CError{EErrorCode::NotFound, "there is no such file", path};
    engine.SetViewingOnly(use == EOpenFor::Viewing && opened.scene->edits.empty());
    const CStatus model = OpenModel(engine, path, limits);
    if (!model) return model.Error();
    ApplyEdits(engine, opened);
    return opened;
}

CNamedFiles FilesNamedBy(const std::string& script, std::size_t scene) {
    CNamedFiles named;
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return named;
    CFileDescriptor from(ends[0]), to(ends[1]);
    const pid_t pid = ::fork();
    if (pid < 0) return named;
    if (pid == 0) TellNames(script, scene, to.Get());
    (void)to.Close();  // or the end would never be seen
    const std::string all = ReadToEnd(from.Get());
    (void)::kill(pid, SIGKILL);  // of one that has ended already nothing changes
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    for (std::size_t at = 0, end = 0; (end = all.find('\0', at)) != std::string::npos; at = end + 1)
        if (end > at + 1)
            (all[at] == kModel ? named.models : named.files).push_back(all.substr(at + 1, end - at - 1));
    return named;
}
