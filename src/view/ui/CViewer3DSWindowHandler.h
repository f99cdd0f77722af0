// SPDX-License-Identifier: MIT
#pragma once

#include <wx/event.h>
#include <wx/timer.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/CResult.h"
#include "engine/C3DSWindowHandler.h"
#include "engine/C3dsDisplayWrap.h"
#include "model/textures/CTextureLocator.h"
#include "picture/CImage.h"
#include "session/CSceneView.h"
#include "session/CShowState.h"
#include "view/CGestureTarget.h"
#include "view/CViewGestures.h"
#include "view/ui/CTrackBall.h"

class CJobProgress;
class CKeyDownListener;
class wxWindow;
struct CLoadedScene;
struct Lib3dsFile;

/** See CViewer3DSWindowHandler::SetProgressListener. */
using CProgressListener = std::function<void(const CJobProgress& progress, long elapsedMs)>;

/** The 3D view of the main window: owns the display engine and the OpenGL canvas, draws every frame, and
 * passes what the mouse does to CViewGestures.
 *
 * Mouse positions are pixels of the framebuffer, origin top left. Must be deleted before the window that the
 * canvas was made in. All calls come from the thread of the windows. */
class CViewer3DSWindowHandler final : public wxEvtHandler,
                                      public C3DSWindowHandler,
                                      public CSceneView,
                                      private CGestureTarget {
  public:
    /** Makes the canvas as a child of parent. tools may be null and must outlive the view. */
    CViewer3DSWindowHandler(wxWindow* parent, CViewToolState* tools);
    ~CViewer3DSWindowHandler() override;

    /** Who hears of keys and buttons; null for nobody. */
    void SetOwner(CKeyDownListener* owner) { m_owner = owner; }

    /** Runs work as soon as scenes can be opened: now, or after the window's first paint. Only the last work
     * given before that is run. */
    void WhenReady(std::function<void()> work);

    // --- opening -----------------------------------------------------------------------------------------
    [[nodiscard]] bool OpenModel(const wchar_t* path) override;
    [[nodiscard]] bool OpenModelStruct(Lib3dsFile* scene, const wchar_t* name,
                                       const CStructFacts& facts = {}) override;
    /** After a failure the current path stays. */
    [[nodiscard]] bool OpenBufferModel(const char* data, long size, const CImageDataTextVec& textures,
                                       const wchar_t* name) override;
    [[nodiscard]] bool OpenLoaded(CLoadedScene scene, const wchar_t* path) override;
    [[nodiscard]] CStatus Reload() override;
    void CloseModel() override;
    [[nodiscard]] const CError& LastError() const override;
    void LoadBeside(const std::function<void(CJobProgress&)>& work) override;
    /** Hears how far an opening has come, with the milliseconds since it began, as long as it takes. */
    void SetProgressListener(CProgressListener listener) { m_progressListener = std::move(listener); }
    /** The file name part of the current path; empty when there is none. */
    [[nodiscard]] std::wstring GetFileName() const;
    [[nodiscard]] const std::wstring& GetPath() const { return m_path; }

    // --- edits -------------------------------------------------------------------------------------------
    [[nodiscard]] std::vector<CStatus> ApplyEdits(std::span<const CEdit> edits) override;
    [[nodiscard]] bool TakeBackEdits(std::size_t count) override;
    /** Who takes a node out on a long press; until somebody does, the view does it itself. */
    void SetNodeDeleter(std::function<void(const char*)> deleter) { m_nodeDeleter = std::move(deleter); }

    // --- saving ------------------------------------------------------------------------------------------
    /** Writes the scene with all edits: as a zip archive with its textures and a picture of the view where
     * the path ends in ".zip" (in lower case), otherwise as 3DS. From then on the scene refers to its
     * textures as JPEG files, whatever they were. */
    [[nodiscard]] CStatus SaveToPath(const std::wstring& path) override;
    [[nodiscard]] Lib3dsFile* Get3dsFile() override;
    /** What is seen, in the size of the view; with overlays the trackball's ball and the zoom box, too. */
    [[nodiscard]] CResult<CImage> TakePicture(EPictureOf what);

    // --- how it is shown ---------------------------------------------------------------------------------
    /** All of it, the trackball's turn included; as it is until something changes. */
    [[nodiscard]] const CSeenView& SeenView();
    /** What a show may change for itself: taken over, and told. Whoever wants it to stay for the next start
     * writes the settings, too. */
    void Show(const CShowState& show);
    [[nodiscard]] CShowState Shown() const;
    /** Takes the trackball's rotation back; pivot offset and scale stay. */
    void SetPreset(ECameraPreset preset);
    void SetTopCamera() { SetPreset(ECameraPreset::Top); }
    void SetLeftCamera() { SetPreset(ECameraPreset::Left); }
    void SetRightCamera() { SetPreset(ECameraPreset::Right); }
    void SetFrontCamera() { SetPreset(ECameraPreset::Front); }
    void SetBackCamera() { SetPreset(ECameraPreset::Back); }
    void SetIsoCamera() { SetPreset(ECameraPreset::Iso); }
    /** Looks through a camera of the file. False when there is none so named. */
    bool SetFileCamera(const std::string& name);
    /** Takes the trackball's rotation back, nothing else. */
    void ResetView();
    void SetWireframe(bool wireframe);
    /** What the model turns about, as seen from the look-at point. Numbers that are not
     * finite change nothing, here and below. */
    void SetPivotOffset(double x, double y, double z);
    void SetScale(double x, double y, double z);
    /** The model turns by itself while one is shown. */
    void SetRotate(bool rotate);
    [[nodiscard]] bool IsRotating() const { return m_rotate; }
    /** Plays the scene's animation, or holds it. On at every opening. */
    void SetPlaying(bool playing) override;
    [[nodiscard]] bool IsPlaying() const override { return m_playing; }
    [[nodiscard]] bool HasAnimation() const override;
    /** Shown in the middle while no model is; an empty one shows nothing. Sizes are framebuffer pixels. */
    void SetHint(CImage hint);
    /** Called after every frame of the animation that was played. */
    void SetFrameListener(std::function<void()> listener) { m_frameListener = std::move(listener); }
    /** Has the canvas repainted, after a change of the engine that draws differently. */
    void Redraw();

    /** The name of the node seen at a point, owned by the engine; null for none. */
    [[nodiscard]] const char* PickNode(int x, int y) override;
    [[nodiscard]] const CTrackBall& GetTrackBall() const { return m_trackBall; }
    [[nodiscard]] EDragState GetDragState() const { return m_gestures.DragState(); }

    // --- slots of the canvas -----------------------------------------------------------------------------
    void OnPaint() override;
    void OnLeftDown(int x, int y) override;
    void OnMouseMove(int x, int y, const bool& leftDown) override;
    void OnLeftUp(int x, int y) override;
    void OnRightDown(int x, int y) override;
    void OnWheel(int rotation) override;
    void OnKeyDown(int keyCode) override;
    bool OnAnimationTick() override;

  private:
    [[nodiscard]] int ViewHeight() const override;
    void ZoomModel(int step) override;
    void ZoomModel(const C2DRect& box) override;
    void DeleteNode(const char* name) override;
    void StartLongPress(int periodMs) override;
    void StopLongPress() override;
    void ShowCursor(EToolCursor cursor) override;
    void TellLeftButtonDown() override;
    void BeginWork() override;
    void EndWork() override;

    [[nodiscard]] bool OpenNamed(const std::wstring& name, const std::function<bool()>& open);
    [[nodiscard]] bool Open(const std::function<bool()>& open);
    [[nodiscard]] CResult<CLoadedScene> LoadFile(const std::wstring& path);
    [[nodiscard]] bool ShowLoaded(CResult<CLoadedScene> loaded);
    void AfterSceneChange();
    void OnLongPress();

    void DrawFrame(int renderMode, int x, int y);
    void StartTrackBall(CPixel point);
    void DrawOverlays();

    CKeyDownListener* m_owner = nullptr;
    std::wstring m_path;
    bool m_rotate = false;
    CTrackBall m_trackBall{true};
    CViewGestures m_gestures;
    std::function<void()> m_whenReady;
    std::function<void()> m_frameListener;
    CProgressListener m_progressListener;
    std::function<void(const char*)> m_nodeDeleter;
    bool m_playing = true;
    CImage m_hint;
    EToolCursor m_cursor = EToolCursor::Standard;
    wxTimer m_longPressTimer;
};
