// SPDX-License-Identifier: MIT
// How the view opens, closes, edits and saves scenes; everything else is in CViewer3DSWindowHandler.cpp.
#include <wx/stopwatch.h>

#include <chrono>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <future>
#include <optional>
#include <system_error>
#include <utility>

#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/CGLCanvasI.h"
#include "files/file_util_ex.h"
#include "model/open/CSceneReader.h"
#include "model/open/load_scene.h"
#include "model/save/lib3ds_util.h"
#include "model/save/save_scene.h"
#include "model/scene/CScene.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/ui/run_job.h"

namespace {

std::wstring TextOrNothing(const wchar_t* text) {
    return text ? text : L"";
}

/** Whether a file may hold a scene that is shown coarsely at first. */
bool MayBeLarge(const std::string& path) {
    constexpr std::uintmax_t kLeastBytesOfAFace = 15;
    std::error_code error;
    const std::uintmax_t bytes = std::filesystem::file_size(path, error);
    return !error && bytes >= kCoarseFromFaces * kLeastBytesOfAFace;
}

CResult<CLoadedScene> LoadBytes(const char* data, long size, const CImageDataTextVec& textures,
                                CJobProgress& progress) {
    if (data == nullptr || size <= 0)
        return CError{EErrorCode::BadFormat, lng::Mark("the model is empty"), {}};
    try {
        const auto* bytes = reinterpret_cast<const std::byte*>(data);
        CResult<CScene> read =
            CSceneReader::ReadBytes({bytes, bytes + size}, CTextureLocator::InMemory(textures));
        if (!read) return read.Error();
        return LoadScene(std::move(read).Value(), &progress);
    } catch (const std::exception&) {
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory to open it"), {}};
    }
}

CResult<CLoadedScene> LoadStruct(CLib3dsFilePtr file, const std::string& path, const CStructFacts& facts,
                                 CJobProgress& progress) {
    try {
        CScene scene = CScene::Adopt(std::move(file));
        for (const CSceneNote& note : facts.notes) scene.AddNote(note);
        for (const std::string& source : facts.sourceFiles) scene.AddSourceFile(source);
        scene.SetTextures(CTextureLocator::BesideModel(path));
        return LoadScene(std::move(scene), &progress);
    } catch (const std::exception&) {
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory to show it"), path};
    }
}

}  // namespace

// --- opening ---------------------------------------------------------------------------------------------

bool CViewer3DSWindowHandler::OpenModel(const wchar_t* path) {
    const std::wstring name = TextOrNothing(path);
    return OpenNamed(name, [&] {
        GetEngine().CloseModel();  // first, so that memory never holds two
        return ShowLoaded(LoadFile(name, ELoading::ShowsCoarse));
    });
}

void CViewer3DSWindowHandler::LoadBeside(const std::function<void(CJobProgress&)>& work) {
    const wxStopWatch watch;
    RunJob(work, [&](CJobProgress& progress) {
        if (m_progressListener) m_progressListener(progress, watch.Time());
    });
}

CResult<CLoadedScene> CViewer3DSWindowHandler::LoadFile(const std::wstring& path, ELoading how) {
    std::optional<CResult<CLoadedScene>> loaded;
    const std::string utf8 = file_util_ex::ConvertToUTF8(path);
    std::promise<CCoarseScene> made;
    std::future<CCoarseScene> coarse = made.get_future();
    CCoarseSceneTaker take;
    if (how == ELoading::ShowsCoarse)
        take = [&made](CCoarseScene scene) { made.set_value(std::move(scene)); };
    const auto load = [&](CJobProgress& progress) { loaded.emplace(LoadScene(utf8, &progress, {}, take)); };
    std::optional<CPreparedScene> kinds;  // of what is to come next
    if (take && MayBeLarge(utf8)) kinds = CoarseKind();
    const auto showWhenMade = [&] {
        if (!coarse.valid() || coarse.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
            return false;
        CCoarseScene shown = coarse.get();
        ShowCoarse(std::move(shown.scene));
        kinds = std::move(shown.kinds);
        return true;
    };
    const wxStopWatch watch;
    RunJob(load, [&](CJobProgress& progress) {
        if (m_progressListener) m_progressListener(progress, watch.Time());
        if (!showWhenMade() && kinds && !GetReadyFor(*kinds)) kinds.reset();
    });
    // However soon it was prepared: its first picture takes longer than this one.
    if (*loaded && showWhenMade() && GetCanvas()) GetCanvas()->GetWindow()->Update();
    m_showsCoarse = false;
    return std::move(*loaded);
}

bool CViewer3DSWindowHandler::GetReadyFor(const CPreparedScene& kinds) {
    if (!GetCanvas() || !GetCanvas()->IsReady()) return false;
    BeginWork();
    return GetEngine().GetReadyFor(kinds);
}

/** Until the scene itself is there, which stands where it stands. The engine takes it for a scene; nobody else
 * gets to see it, because input waits. */
void CViewer3DSWindowHandler::ShowCoarse(CPreparedScene scene) {
    if (GetCanvas()) GetCanvas()->SetRotating(false);  // the scene itself will not have been turned, either
    m_showsCoarse = ShowLoaded(CLoadedScene{CScene(), std::move(scene)});
    EndWork();
}

bool CViewer3DSWindowHandler::ShowLoaded(CResult<CLoadedScene> loaded) {
    BeginWork();  // another window's repaint may have changed the current context
    return GetEngine().OpenLoaded(std::move(loaded));
}

CStatus CViewer3DSWindowHandler::Reload(const std::function<void()>& whenRead) {
    if (m_path.empty()) return CError{EErrorCode::NotFound, lng::Mark("no model is open"), {}};
    CResult<CLoadedScene> loaded = LoadFile(m_path, ELoading::KeepsPicture);
    if (!loaded) return loaded.Error();
    const CSeenView seen = SeenView();
    BeginWork();
    const bool opened = GetEngine().OpenLoaded(std::move(loaded));
    if (opened && whenRead) whenRead();
    GetEngine().SetSeenView(seen);
    const bool playing = m_playing;
    AfterSceneChange();
    m_playing = playing;
    EndWork();
    if (!opened) return GetEngine().LastError();
    return CDone{};
}

bool CViewer3DSWindowHandler::OpenModelStruct(Lib3dsFile* scene, const wchar_t* name,
                                              const CStructFacts& facts) {
    CLib3dsFilePtr owned(scene);
    const std::wstring path = TextOrNothing(name);
    return OpenNamed(path, [&] {
        GetEngine().CloseModel();
        if (!owned) return ShowLoaded(CError{EErrorCode::BadArgument, lng::Mark("there is no scene"), {}});
        std::optional<CResult<CLoadedScene>> loaded;
        LoadBeside([&](CJobProgress& progress) {
            loaded.emplace(LoadStruct(std::move(owned), file_util_ex::ConvertToUTF8(path), facts, progress));
        });
        return ShowLoaded(std::move(*loaded));
    });
}

bool CViewer3DSWindowHandler::OpenLoaded(CLoadedScene scene, const wchar_t* path) {
    m_path.clear();
    if (!Open([&] { return ShowLoaded(std::move(scene)); })) return false;
    m_path = TextOrNothing(path);
    return true;
}

bool CViewer3DSWindowHandler::OpenNamed(const std::wstring& name, const std::function<bool()>& open) {
    if (!name.empty() && name == m_path) return true;
    m_path.clear();
    if (name.empty() || !Open(open)) return false;
    m_path = name;
    return true;
}

bool CViewer3DSWindowHandler::OpenBufferModel(const char* data, long size, const CImageDataTextVec& textures,
                                              const wchar_t* name) {
    const auto open = [&] {
        GetEngine().CloseModel();
        std::optional<CResult<CLoadedScene>> loaded;
        LoadBeside(
            [&](CJobProgress& progress) { loaded.emplace(LoadBytes(data, size, textures, progress)); });
        return ShowLoaded(std::move(*loaded));
    };
    if (!Open(open)) return false;
    m_path = TextOrNothing(name);
    return true;
}

bool CViewer3DSWindowHandler::Open(const std::function<bool()>& open) {
    SetPivotOffset(0, 0, 0);
    SetScale(1, 1, 1);
    m_caption.Set({});
    m_gestures.ResetTrackBall();
    BeginWork();
    const bool opened = open();
    AfterSceneChange();
    EndWork();
    return opened;
}

void CViewer3DSWindowHandler::ShowAgain(float frame) {
    (void)Open([&] {
        GetEngine().SetFrame(frame);
        GetEngine().SetPreset(ECameraPreset::Iso);
        GetEngine().SetBackgroundImage({});
        return true;
    });
}

void CViewer3DSWindowHandler::CloseModel() {
    m_path.clear();
    m_caption.Set({});
    m_gestures.ResetTrackBall();
    BeginWork();
    GetEngine().CloseModel();
    AfterSceneChange();
    EndWork();
}

void CViewer3DSWindowHandler::AfterSceneChange() {
    if (!GetCanvas()) return;
    m_playing = true;
    m_hasLevels = false;
    m_motion.Released(std::chrono::steady_clock::now());
    GetCanvas()->SetRotating(m_rotate && GetEngine().Prepared());
    GetCanvas()->OnModelOpened();
}

std::wstring CViewer3DSWindowHandler::GetFileName() const {
    return file_util_ex::GetFileName(m_path);
}

const CError& CViewer3DSWindowHandler::LastError() const {
    return GetEngine().LastError();
}

// --- edits -----------------------------------------------------------------------------------------------

std::vector<CStatus> CViewer3DSWindowHandler::ApplyEdits(std::span<const CEdit> edits) {
    return GetEngine().ApplyEdits(edits);
}

bool CViewer3DSWindowHandler::TakeBackEdits(std::size_t count) {
    return GetEngine().TakeBackEdits(count);
}

bool CViewer3DSWindowHandler::HasAnimation() const {
    return GetEngine().HasAnimation();
}

// --- saving ----------------------------------------------------------------------------------------------

Lib3dsFile* CViewer3DSWindowHandler::Get3dsFile() {
    return GetEngine().Get3dsFile();
}

CStatus CViewer3DSWindowHandler::SaveToPath(const std::wstring& path) {
    Lib3dsFile* scene = GetEngine().Get3dsFile();
    if (!scene) return CError{EErrorCode::NotFound, lng::Mark("no model is open"), {}};
    lib3ds_util::change_textures_ext(scene, "jpg");
    const CSceneWriter write = [this](std::string_view target) -> CStatus {
        if (GetEngine().SaveAs(file_util_ex::ConvertFromUTF8W(target).c_str())) return CDone{};
        return GetEngine().LastError();
    };
    const std::string target = file_util_ex::ConvertToUTF8(path);
    if (file_util_ex::GetFileExt(target) != "zip") return write(target);
    CResult<CImage> picture = TakePicture(EPictureOf::Screen);
    return SaveSceneZip(scene, write, picture ? picture.Value() : CImage{}, target);
}
