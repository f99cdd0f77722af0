// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "model/edit/CEdit.h"
#include "model/scene/CSceneNote.h"
#include "model/textures/CTextureLocator.h"

class CJobProgress;
struct CLoadedScene;
struct CPreparedScene;
struct CSceneLook;
struct Lib3dsFile;

/** Facts about a scene in memory that the scene itself does not hold. */
struct CStructFacts {
    std::vector<CSceneNote> notes;
    std::vector<std::string> sourceFiles;  ///< UTF-8 paths of the files that it was made of
};

/** The 3D view as the session sees it: it shows one scene or none. All calls come from the thread of
 * the windows. */
class CSceneView {
  public:
    virtual ~CSceneView() = default;

    /** Opens a file. True, and nothing happens, if the view already shows this path. After a failure nothing
     * is shown and LastError tells why. Windows repaint during the call, and input waits. */
    [[nodiscard]] virtual bool OpenModel(const wchar_t* path) = 0;
    /** As OpenModel, for a scene in memory. Takes ownership of scene, also when it fails. */
    [[nodiscard]] virtual bool OpenModelStruct(Lib3dsFile* scene, const wchar_t* name,
                                               const CStructFacts& facts = {}) = 0;
    /** Opens the bytes of a file, also when the view already shows a scene of this name. Keeps no pointer
     * to data. */
    [[nodiscard]] virtual bool OpenBufferModel(const char* data, long size, const CImageDataTextVec& textures,
                                               const wchar_t* name) = 0;
    /** Shows a scene that was loaded from path, also when the view already shows this path. */
    [[nodiscard]] virtual bool OpenLoaded(CLoadedScene scene, const wchar_t* path) = 0;
    /** Reads the shown file again; camera, rotation and frame stay. On failure nothing changes. whenRead, which may be
     * empty, is called when the new scene is there, at the frame that an opening shows. */
    [[nodiscard]] virtual CStatus Reload(const std::function<void()>& whenRead) = 0;
    /** Shows the open scene at a frame, with camera, rotation and all else as after an opening. */
    virtual void ShowAgain(float frame) = 0;
    /** Shows nothing and forgets the path. Harmless when nothing is shown. */
    virtual void CloseModel() = 0;
    /** Why the last opening failed; valid until the next opening. */
    [[nodiscard]] virtual const CError& LastError() const = 0;
    /** Calls work once, soon after a picture of the scene (none of a stand-in) has been painted from now on. A later call
     * replaces it; an empty work takes it back. */
    virtual void WhenShown(std::function<void()> work) = 0;
    /** Runs work on another thread and returns when it has ended. Meanwhile windows repaint and show its
     * progress; input waits. */
    virtual void LoadBeside(const std::function<void(CJobProgress&)>& work) = 0;

    /** The scene with all edits as it is drawn; null when none is open. Valid until the next change. */
    [[nodiscard]] virtual const CPreparedScene* Prepared() const = 0;
    /** Shows the scene so; camera and frame stay. */
    virtual void Present(const CSceneLook& look) = 0;
    /** Looks through a camera of the file of this name, or else a preset (see PresetOfName). False, and nothing changes,
     * when there is none. */
    [[nodiscard]] virtual bool SetCamera(const std::string& name) = 0;

    /** Applies edits in order and returns one status for each. The caller repaints. */
    [[nodiscard]] virtual std::vector<CStatus> ApplyEdits(std::span<const CEdit> edits) = 0;
    /** Takes back the last count edits that succeeded. False, and nothing changes, when it cannot. */
    [[nodiscard]] virtual bool TakeBackEdits(std::size_t count) = 0;

    /** Writes the scene with all edits: as a zip archive if the path ends in "zip" in lower case, else
     * as 3DS. */
    [[nodiscard]] virtual CStatus SaveToPath(const std::wstring& path) = 0;
    /** The scene with all edits, owned by the view; null when none is open. */
    [[nodiscard]] virtual Lib3dsFile* Get3dsFile() = 0;

    [[nodiscard]] virtual bool HasAnimation() const = 0;
    virtual void SetPlaying(bool playing) = 0;
    [[nodiscard]] virtual bool IsPlaying() const = 0;
};
