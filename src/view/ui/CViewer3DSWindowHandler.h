// SPDX-License-Identifier: MIT
#pragma once

#include <wx/event.h>
#include <wx/timer.h>

#include <chrono>
#include <functional>
#include <span>
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
#include "view/CMotion.h"
#include "view/CViewGestures.h"
#include "view/ui/CTrackBall.h"
#include "view/ui/view_caption.h"

class CJobProgress;
class CKeyDownListener;
class wxWindow;
struct CLoadedScene;
struct CPreparedScene;
struct Lib3dsFile;

/** See CViewer3DSWindowHandler::SetProgressListener. */
using CProgressListener = std::function<void(const CJobProgress& progress, long elapsedMs)>;

/** The 3D view of the main window: owns the display engine and the OpenGL canvas, repaints the view, and
 * passes mouse events to CViewGestures.
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

    /** Sets the object that receives keys and button presses; not owned, null for none. */
    void SetOwner(CKeyDownListener* owner) { m_owner = owner; }

    /** Runs work as soon as scenes can be opened: now, or after the window's first paint. Until then only the
     * last work given is kept. */
    void WhenReady(std::function<void()> work);

    // --- opening -----------------------------------------------------------------------------------------
    [[nodiscard]] bool OpenModel(const wchar_t* path) override;
    [[nodiscard]] bool OpenModelStruct(Lib3dsFile* scene, const wchar_t* name,
                                       const CStructFacts& facts = {}) override;
    /** After a failure the current path stays. */
    [[nodiscard]] bool OpenBufferModel(const char* data, long size, const CImageDataTextVec& textures,
                                       const wchar_t* name) override;
    [[nodiscard]] bool OpenLoaded(CLoadedScene scene, const wchar_t* path) override;
    [[nodiscard]] CStatus Reload(const std::function<void()>& whenRead = {}) override;
    void ShowAgain(float frame) override;
    [[nodiscard]] const CPreparedScene* Prepared() const override { return GetEngine().Prepared(); }
    void Present(const CSceneLook& look) override;
    [[nodiscard]] bool SetCamera(const std::string& name) override;
    void CloseModel() override;
    [[nodiscard]] const CError& LastError() const override;
    void WhenShown(std::function<void()> work) override { m_whenShown = std::move(work); }
    void LoadBeside(const std::function<void(CJobProgress&)>& work) override;
    /** Sets the function that is called repeatedly during an opening, with its progress and the milliseconds
     * since it began. */
    void SetProgressListener(CProgressListener listener) { m_progressListener = std::move(listener); }
    /** The file name part of the current path; empty when there is none. */
    [[nodiscard]] std::wstring GetFileName() const;
    [[nodiscard]] const std::wstring& GetPath() const { return m_path; }

    // --- edits -------------------------------------------------------------------------------------------
    [[nodiscard]] std::vector<CStatus> ApplyEdits(std::span<const CEdit> edits) override;
    [[nodiscard]] bool TakeBackEdits(std::size_t count) override;
    /** Sets the function that deletes a node on a long press. Without one the engine deletes it. */
    void SetNodeDeleter(std::function<void(const char*)> deleter) { m_nodeDeleter = std::move(deleter); }

    // --- saving ------------------------------------------------------------------------------------------
    /** Writes the scene with all edits: as a zip archive with its textures and a picture of the view if the
     * path ends in ".zip" (in lower case), otherwise as 3DS. Afterwards the scene refers to all its textures
     * as JPEG files. */
    [[nodiscard]] CStatus SaveToPath(const std::wstring& path) override;
    [[nodiscard]] Lib3dsFile* Get3dsFile() override;
    /** The picture that the view shows, in its size. With overlays and of the screen it includes the caption; only with
     * overlays the trackball's ball and the zoom box; never the hint. */
    [[nodiscard]] CResult<CImage> TakePicture(EPictureOf what);
    /** Writes TakePicture(EPictureOf::Screen) into a file, by CBitmapConverter as its name ends. The status tells why the
     * file was not written; a file that was there then stays. */
    [[nodiscard]] CStatus TrySaveScreenshot(const std::wstring& path);
    [[nodiscard]] bool SaveScreenshot(const std::wstring& path) { return TrySaveScreenshot(path).HasValue(); }

    // --- how it is shown ---------------------------------------------------------------------------------
    /** Everything that is seen, including the trackball's turn. The reference shows later changes. */
    [[nodiscard]] const CSeenView& SeenView();
    /** Show applies a state, and Shown returns the current one. Neither touches the settings: a caller who
     * wants the state at the next start writes it there. */
    void Show(const CShowState& show);
    [[nodiscard]] CShowState Shown() const;
    /** Looks through a preset camera and resets the trackball's rotation; pivot offset and scale stay. */
    void SetPreset(ECameraPreset preset);
    void SetTopCamera() { SetPreset(ECameraPreset::Top); }
    void SetLeftCamera() { SetPreset(ECameraPreset::Left); }
    void SetRightCamera() { SetPreset(ECameraPreset::Right); }
    void SetFrontCamera() { SetPreset(ECameraPreset::Front); }
    void SetBackCamera() { SetPreset(ECameraPreset::Back); }
    void SetIsoCamera() { SetPreset(ECameraPreset::Iso); }
    /** Looks through the camera of the file with this name. False when there is no such camera. */
    bool SetFileCamera(const std::string& name);
    /** Resets the trackball's rotation and nothing else. */
    void ResetView();
    void SetWireframe(bool wireframe);
    /** Sets the point that the model turns about, relative to the look-at point. Numbers that are not finite
     * change nothing; the same holds for SetScale. */
    void SetPivotOffset(double x, double y, double z);
    void SetScale(double x, double y, double z);
    /** Turns the automatic rotation on or off. */
    void SetRotate(bool rotate);
    [[nodiscard]] bool IsRotating() const { return m_rotate; }
    /** Plays or pauses the scene's animation. Every opening starts it. */
    void SetPlaying(bool playing) override;
    [[nodiscard]] bool IsPlaying() const override { return m_playing; }
    [[nodiscard]] bool HasAnimation() const override;
    /** Sets the picture that is drawn in the middle while no model is shown; an empty one draws nothing. Its
     * size is in framebuffer pixels. */
    void SetHint(CImage hint);
    /** For how long the picture that was drawn last stays on the screen. */
    enum class EKeeping {
        No,
        UntilNext,  ///< until another scene can be drawn: an opening shows no empty or coarse one in between
        UntilTold,  ///< whatever happens
    };
    void KeepPicture(EKeeping how);
    /** Shows a text at the bottom of the view, over the model, in as many lines as it needs and as the view has room for;
     * any text, also a stranger's. Empty: none, as after every opening but a reload. TakePicture includes it with the
     * overlays. */
    void SetCaption(std::wstring text);
    /** As it is shown; empty for none. */
    [[nodiscard]] const std::wstring& GetCaption() const { return m_caption.Text(); }
    /** Sets the function that is called after each frame of a playing animation. */
    void SetFrameListener(std::function<void()> listener) { m_frameListener = std::move(listener); }
    /** Repaints the canvas; call it after changing the engine. */
    void Redraw();
    /** The same for changes that follow the user's hand, one after another: pictures come as quickly as while the
     * model is turned, and the full one when the changes end. */
    void RedrawQuickly();
    /** Shows the pointer of the tool that is in use now, without waiting for the mouse to move. */
    void UpdateCursor();

    /** The name of the node seen at a point, owned by the engine and valid until the scene is edited; null
     * for none. */
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
    void OnPanDown(int x, int y) override;
    bool OnPanUp() override;
    void OnDoubleClick(int x, int y) override;
    void OnWheelAt(int x, int y, int rotation) override;
    void OnPinch(int x, int y, double factor) override;
    bool OnModelKey(int keyCode, bool shiftDown) override;
    bool OnPanKey(int keyCode, bool shiftDown) override;
    [[nodiscard]] bool IsPictureComplete() const override { return !m_isInterrupted; }
    [[nodiscard]] int RestMs() const override;

  private:
    bool ActOnKey(std::span<const CModelKey> keys, int keyCode, bool shiftDown);
    [[nodiscard]] int ViewHeight() const override;
    void ZoomModel(int step) override;
    void ZoomModel(const C2DRect& box) override;
    void ZoomModelAt(int step, int x, int y) override;
    void PanModel(int dx, int dy) override;
    void TurnModel(double rightDeg, double upDeg) override;
    [[nodiscard]] bool CenterModelAt(int x, int y) override;
    void DeleteNode(const char* name) override;
    void StartLongPress(int periodMs) override;
    void StopLongPress() override;
    void ShowCursor(EToolCursor cursor) override;
    void TellLeftButtonDown() override;
    void BeginWork() override;
    void EndWork() override;

    [[nodiscard]] bool OpenNamed(const std::wstring& name, const std::function<bool()>& open);
    [[nodiscard]] bool Open(const std::function<bool()>& open);
    enum class ELoading { KeepsPicture, ShowsCoarse };
    [[nodiscard]] CResult<CLoadedScene> LoadFile(const std::wstring& path, ELoading how);
    void ShowCoarse(CPreparedScene scene);
    /** One step of getting ready for what is being loaded; true while more is to come. */
    [[nodiscard]] bool GetReadyFor(const CPreparedScene& kinds);
    [[nodiscard]] bool ShowLoaded(CResult<CLoadedScene> loaded);
    void AfterSceneChange();
    void OnLongPress();

    // --- keeping up while something moves ------------------------------------------------------------------
    /** Something moves what is seen; the caller repaints. */
    void Moved();
    /** Draws the full picture in good time after the last movement. */
    void AwaitRest();
    /** The time of AwaitRest is over, or idle work is to be continued. */
    void OnRest();
    [[nodiscard]] bool IsInterrupted();
    [[nodiscard]] bool DrawsQuickly();
    /** Or a picture of such a movement is still to come. */
    [[nodiscard]] bool IsMovedByHand() const;
    void SetRunning();
    void TellThatItIsShown();
    void DrawFrame(int renderMode, int x, int y);
    void StartTrackBall(CPixel point);
    void DrawOverlays();
    void DrawHandOverlays();
    void DrawCaption();

    CKeyDownListener* m_owner = nullptr;
    std::wstring m_path;
    bool m_rotate = false;
    CTrackBall m_trackBall{true};
    CViewToolState* m_tools;
    CViewGestures m_gestures;
    std::function<void()> m_whenReady, m_whenShown;
    std::function<void()> m_frameListener;
    CProgressListener m_progressListener;
    std::function<void(const char*)> m_nodeDeleter;
    bool m_playing = true;
    bool m_isReady = false;      ///< what most scenes need has been made in idle time
    bool m_showsCoarse = false;  ///< the engine's scene is a stand-in
    CImage m_hint;
    CViewCaption m_caption;
    EKeeping m_keeping = EKeeping::No;
    EToolCursor m_cursor = EToolCursor::Standard;
    wxTimer m_longPressTimer;
    CMotion m_motion;
    bool m_follows = false;  ///< what moves last were values of materials
    wxTimer m_restTimer;
    bool m_hasLevels = false;                          ///< the engine has no idle work to do for the scene
    std::chrono::steady_clock::duration m_fullTook{};  ///< of the last frame drawn in full
    bool m_isInterrupted = false;                      ///< the picture that was drawn last
};
