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
struct Lib3dsFile;

/** What is known of a scene in memory beside what it holds itself. */
struct CStructFacts {
    std::vector<CSceneNote> notes;
    std::vector<std::string> sourceFiles;  ///< UTF-8 paths of the files that it was made of
};

/** The 3D view as the session sees it: it shows one scene or none. */
class CSceneView {
  public:
    virtual ~CSceneView() = default;

    /** Opening what is shown under that path already is a success that does nothing. After a failure nothing
     * is shown; LastError tells why. Windows repaint meanwhile, and input waits. */
    [[nodiscard]] virtual bool OpenModel(const wchar_t* path) = 0;
    /** As OpenModel, with a scene in memory, which it takes whatever the outcome. */
    [[nodiscard]] virtual bool OpenModelStruct(Lib3dsFile* scene, const wchar_t* name,
                                               const CStructFacts& facts = {}) = 0;
    /** Opens the bytes of a file whatever is shown. */
    [[nodiscard]] virtual bool OpenBufferModel(const char* data, long size, const CImageDataTextVec& textures,
                                               const wchar_t* name) = 0;
    /** Shows a scene that was loaded from that path, whatever is shown. */
    [[nodiscard]] virtual bool OpenLoaded(CLoadedScene scene, const wchar_t* path) = 0;
    /** Reads the file that is shown again; camera, rotation and frame stay. On failure all stays as it is. */
    [[nodiscard]] virtual CStatus Reload() = 0;
    /** Shows nothing and forgets the path. Harmless when nothing is shown. */
    virtual void CloseModel() = 0;
    /** Why the last opening failed. */
    [[nodiscard]] virtual const CError& LastError() const = 0;
    /** Does work on another thread while windows repaint, input waits, and how far it is gets shown. */
    virtual void LoadBeside(const std::function<void(CJobProgress&)>& work) = 0;

    /** Applies edits in order; one answer for each. Has nothing repainted. */
    [[nodiscard]] virtual std::vector<CStatus> ApplyEdits(std::span<const CEdit> edits) = 0;
    /** Takes the last count edits back that succeeded. False when it cannot; then nothing has changed. */
    [[nodiscard]] virtual bool TakeBackEdits(std::size_t count) = 0;

    /** Writes the scene with all edits: a zip archive for the ending "zip" in small letters, 3DS for any other. */
    [[nodiscard]] virtual CStatus SaveToPath(const std::wstring& path) = 0;
    /** The scene with all edits, the view's own; null for none. */
    [[nodiscard]] virtual Lib3dsFile* Get3dsFile() = 0;

    [[nodiscard]] virtual bool HasAnimation() const = 0;
    virtual void SetPlaying(bool playing) = 0;
    [[nodiscard]] virtual bool IsPlaying() const = 0;
};
