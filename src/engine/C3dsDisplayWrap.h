// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "base/math/C2DRect.h"
#include "camera/CSeenView.h"
#include "engine/overlay/overlays.h"
#include "model/edit/CEdit.h"
#include "model/textures/CTextureLocator.h"
#include "picture/CImage.h"

struct Lib3dsFile;
class CScene;
struct CLoadedScene;
struct CPreparedScene;

/** The wide string class used across the application's interfaces. */
template <class T>
using CStdStr = std::basic_string<T>;

/** What a picture shows in front of the background. Overlays are those of C3dsDisplayWrap::SetOverlays and
 * what the caller draws over the scene. */
enum class EPictureOf {
    Model,
    ModelAndOverlays,
    Screen,  ///< the same, and as the current framebuffer shows it: with its samples, and with what is dimmed
};

/** The display engine: holds one 3DS scene at a time, draws it with OpenGL into the current context, and
 * edits it.
 *
 * The caller must make the canvas's context current before every operation that draws, and before it opens or
 * closes a scene if one has been drawn; cameras, getters and edits need no context. The first drawing creates
 * buffers and textures. Opening and editing return false on failure; LastError() then holds the reason. After
 * a failed opening no scene is open; a failed edit changes nothing. Names are UTF-8 or the file's bytes; null
 * counts as an empty name. Not thread-safe: only one thread at a time may call it.
 *
 * Edits change the scene in memory at once and show at the next drawing. Edits find nodes and materials by
 * the names that they had when the scene was opened. Values that were computed at opening and that no edit
 * names stay; so preset cameras frame the scene as it was before the first edit. */
class C3dsDisplayWrap {
  public:
    C3dsDisplayWrap();
    C3dsDisplayWrap(const C3dsDisplayWrap&) = delete;
    C3dsDisplayWrap& operator=(const C3dsDisplayWrap&) = delete;
    /** If a scene has been drawn, its context must be current. */
    virtual ~C3dsDisplayWrap();
    /** The engine calls this after every zoom. The base class does nothing. */
    virtual void UpdateModelOnZoom();

    // --- scene life -------------------------------------------------------------------------------------
    /** Reads a model file and shows it in place of the scene before. */
    [[nodiscard]] bool OpenModel(const wchar_t* path);
    /** Opens a scene in memory. Takes ownership of file, also when it fails. textures finds its pictures. */
    [[nodiscard]] bool OpenModelStruct(Lib3dsFile* file, CTextureLocator textures = {});
    /** Opens the bytes of a 3DS file, with its textures. Keeps no pointer to data. */
    [[nodiscard]] bool OpenBufferModel(const char* data, long size, const CImageDataTextVec& textures);
    /** Opens the result of LoadScene, which may have run on another thread. An error in it counts as a
     * failed opening. */
    [[nodiscard]] bool OpenLoaded(CResult<CLoadedScene> loaded);
    /** Frees the scene and what was uploaded of it. Harmless when none is open. */
    void CloseModel();
    /** Writes the scene with all edits as a 3DS file. */
    [[nodiscard]] bool SaveAs(const wchar_t* path);
    /** The scene with all edits, owned by the engine; null when none is open. Valid until the next open,
     * close or edit. */
    [[nodiscard]] Lib3dsFile* Get3dsFile();
    /** The scene as it is drawn; null when none is open. Valid until the next open, close or edit. */
    [[nodiscard]] const CPreparedScene* Prepared() const;
    /** What Prepared() was made of, with all edits; null when none is open. Valid as long. */
    [[nodiscard]] const CScene* GetScene() const;
    /** Finds the pictures of the open scene; finds nothing when none is open. Valid until the next open,
     * close or edit. */
    [[nodiscard]] const CTextureLocator& GetTextures() const;
    /** Why the last failed operation failed. */
    [[nodiscard]] const CError& LastError() const;

    /** For programs that only draw; set it before opening. The engine then frees the memory that only edits,
     * picking, saving and other frames of the animation need. Edits, SaveAs, Get3dsFile and picking fail or
     * find nothing, and the frame must be chosen before the first drawing. */
    void SetViewingOnly(bool viewingOnly);
    /** How long the last successful open took, in milliseconds: reading, and preparing to draw. */
    [[nodiscard]] double GetReadMs() const;
    [[nodiscard]] double GetPrepareMs() const;

    // --- drawing ----------------------------------------------------------------------------------------
    /** Sets the viewport, clears, and leaves the perspective projection as the current matrix. In GL_SELECT
     * the projection is restricted to the 5 x 5 pixels round (x, y), origin top left. Without a scene it only
     * clears and returns false. */
    [[nodiscard]] bool InitDrawings(int renderMode, int x, int y);
    /** Draws the nodes with the current matrices and polygon mode, turned by the rotation angles about the
     * origin point. GL_RENDER also draws the overlays; GL_SELECT gives each node its index in Prepared() as
     * its name. If the caller's model-view matrix moves the scene out of the depth range, this call widens
     * the range. */
    void DrawModel(int renderMode);
    /** Draws the whole picture as SeenView() describes it. Leaves projection times camera in the projection
     * matrix and the identity in the model-view matrix. */
    void PaintModel();
    /** Moves the animation to its next frame, and from the last frame to the first. Draws nothing: the
     * caller, who knows how the view is turned, must repaint when this returns true. False when nothing
     * is animated. */
    bool DrawAnimations();
    /** Draws the open scene as seen describes it into a picture in memory. The picture has the view size
     * of seen's camera and, unless it is of the screen, four samples a pixel where the context supports them. drawOver, which may be
     * empty, is called after PaintModel and draws the caller's overlays. Does not change the window's
     * picture or SeenView(). */
    [[nodiscard]] CResult<CImage> TakePicture(const CSeenView& seen, EPictureOf what,
                                              const std::function<void()>& drawOver = {});
    /** The viewport in pixels; its width and height are the size of the view. */
    void SetPreviewSize(const C2DRect& rect);
    [[nodiscard]] const C2DRect& GetPreviewSize() const;
    /** Turns by dx degrees more about the scene's vertical (Z) and by dy about its horizontal (X) axis, see
     * RotationOfAngles. Opening a scene and choosing a camera set all angles to 0. */
    void UpdateRotAngles(float dx, float dy);
    /** See CViewCamera::Zoom and CSeenView::ZoomTo. */
    void ZoomModel(int step);
    void ZoomModel(const C2DRect& rect);
    /** See CSeenView for both. Every camera and every opening takes back what they did. */
    void ZoomModelAt(int step, double x, double y);
    void PanModel(double dx, double dy);
    /** Brings the point of the model that is seen at (x, y) to the middle of the view: see CSeenView::CenterOn.
     * False, and nothing changes, where none is seen. */
    bool CenterModelAt(double x, double y);
    /** Each 0..1. */
    void SetBkColors(float r, float g, float b);
    /** 0 trilinear with anisotropy, 1 bilinear, 2 nearest, 3 no textures; others are as 0. */
    void SetTextureRenderMode(int mode);
    /** False: the lights of the file are not used, only a headlight at the eye. */
    void SetUseFileLights(bool use);

    // --- keeping up while something moves ---------------------------------------------------------------
    /** To be called when something begins to move (a drag, turning by itself, an animation), and when all is
     * at rest again. While true, and where OpenGL is drawn in software, DrawModel keeps a budget of time a
     * frame, which it measures as it goes: it draws coarser levels of meshes, in large windows fewer pixels, and leaves out
     * what does not fit. Opening a scene does not change it. */
    void SetMoving(bool moving);
    /** While true, edits of materials follow the user's hand, one after another, in a view that stands still. Where OpenGL is
     * drawn in software, DrawModel then draws once what such an edit leaves as it is, and only the rest for each picture.
     * IsLastFrameWhole is false then, as colours may differ by one from those of the full picture. */
    void SetFollowing(bool following);
    /** False when the last DrawModel for GL_RENDER drew less than the full picture: coarser levels, parts left
     * out, or an interrupted drawing. The caller then draws again once all is at rest. */
    [[nodiscard]] bool IsLastFrameWhole() const;
    /** How the last picture was drawn: 0 as asked for. Where OpenGL is drawn in software and surfaces lie on one
     * another in such numbers that a picture would take many times as long as usual, it is drawn with one sample a pixel,
     * which gives 1, or smaller and blown up, which gives the number (2, 4, 8 ...) that its sides were divided by. TakePicture
     * does so, too, and so are moving pictures drawn whose pixels alone take too long. */
    [[nodiscard]] int GetLastReduction() const;
    /** To be called in idle time and at rest with the context current: takes over some of what the level
     * maker has finished. True while more is to come; then call again in some milliseconds. The first call
     * after a whole picture that took long starts the maker, a thread of low priority. */
    bool WorkOnLevels();
    /** To be called while a scene is being loaded, with the context current, as often as it returns true: makes the programs
     * ready that kinds, a scene with an example of each kind of surface, needs; one each time, as that takes up to a tenth of
     * a second. Only where OpenGL is drawn in software. */
    bool GetReadyFor(const CPreparedScene& kinds);
    /** Asked between the portions of a full picture, some milliseconds apart; true ends the drawing. The
     * picture is then not whole and must not be shown. Empty: never. Not asked while moving, nor for
     * TakePicture, nor on hardware. The function must not call the engine. */
    void SetInterrupt(std::function<bool()> wanted);
    /** For measurements: what tells the time, in milliseconds, by which a moving frame keeps its budget. Empty: a
     * clock. */
    void SetFrameClock(std::function<double()> nowMs);

    /** All nodes but these (by their names in Prepared()) are drawn as ghosts, so that these stand out, also inside of
     * others; an empty list leaves ghosts only. Nothing: all are drawn as they are, as after every opening. Picking,
     * exports and pictures take no notice, except those of the screen. */
    void SetEmphasis(std::optional<std::vector<std::string>> nodes);
    /** DrawModel draws them after the scene in GL_RENDER. */
    void SetOverlays(const COverlays& overlays);
    [[nodiscard]] const COverlays& Overlays() const;

    // --- what is seen -----------------------------------------------------------------------------------
    [[nodiscard]] const CSeenView& SeenView() const;
    /** seen must belong to the open scene. The size of the view stays that of SetPreviewSize. */
    void SetSeenView(const CSeenView& seen);
    /** Each sets one part of the seen view. Opening a scene resets pivot, scale, turn and the background's picture.
     * Numbers that are not finite change nothing. */
    void SetPivotOffset(CVec3d offset);
    void SetScale(CVec3d scale);
    void SetTurn(const CRotation& turn, double orbit);
    void SetWireframe(bool wire);
    void SetBackgroundImage(std::shared_ptr<const CImage> image);

    // --- camera -----------------------------------------------------------------------------------------
    void SetPreset(ECameraPreset preset);
    void SetTopCameraModel() { SetPreset(ECameraPreset::Top); }
    void SetLeftCameraModel() { SetPreset(ECameraPreset::Left); }
    void SetRightCameraModel() { SetPreset(ECameraPreset::Right); }
    void SetFrontCameraModel() { SetPreset(ECameraPreset::Front); }
    void SetBackCameraModel() { SetPreset(ECameraPreset::Back); }
    void SetIsoCameraModel() { SetPreset(ECameraPreset::Iso); }
    /** Looks through the camera of the file with this name, with its roll and field of view. False when there
     * is no such camera. */
    [[nodiscard]] bool SetFileCameraModel(const std::string& name);
    /** Looks through the camera of the file with this name; or else a preset (see PresetOfName); or else the camera of the
     * file whose name differs in letter case or code page. False, and nothing changes, when there is none. */
    [[nodiscard]] bool SetCameraOfName(const std::string& name);
    [[nodiscard]] std::vector<std::string> GetFileCameraNames() const;
    [[nodiscard]] float GetXOrg() const;
    [[nodiscard]] float GetYOrg() const;
    [[nodiscard]] float GetZOrg() const;
    [[nodiscard]] float GetEyeX() const;
    [[nodiscard]] float GetEyeY() const;
    [[nodiscard]] float GetEyeZ() const;
    [[nodiscard]] float GetUpX() const;
    [[nodiscard]] float GetUpY() const;
    [[nodiscard]] float GetUpZ() const;
    /** Vertical field of view in degrees. */
    [[nodiscard]] float GetFovY() const;
    [[nodiscard]] float GetRadius() const;
    [[nodiscard]] std::string GetCameraName() const;
    [[nodiscard]] float GetRotAngleX() const;
    [[nodiscard]] float GetRotAngleY() const;
    [[nodiscard]] float GetRotAngleZ() const;
    /** The background colour of the view, 0..1. */
    [[nodiscard]] float GetBKRValue() const;
    [[nodiscard]] float GetBKGValue() const;
    [[nodiscard]] float GetBKBValue() const;
    /** The background colour that the file sets, 0..1. */
    [[nodiscard]] float GetFileBKRValue() const;
    [[nodiscard]] float GetFileBKGValue() const;
    [[nodiscard]] float GetFileBKBValue() const;

    // --- animation --------------------------------------------------------------------------------------
    /** True when the file's keyframes change something. */
    [[nodiscard]] bool HasAnimation() const;
    [[nodiscard]] float GetFrame() const;
    /** Shows the scene at a frame of its animation, limited to the file's range. Does nothing without a scene
     * or for a value that is not finite. */
    void SetFrame(float frame);

    // --- edits: see CEdit -------------------------------------------------------------------------------
    /** Applies edits in order and returns one status for each. An edit that fails changes nothing; the edits
     * after it are still applied. One batch costs little more than its most expensive edit. */
    [[nodiscard]] std::vector<CStatus> ApplyEdits(std::span<const CEdit> edits);
    /** Takes back the last count edits that succeeded. False, and nothing changes, when there are fewer. To
     * redo an edit, apply it again. */
    [[nodiscard]] bool TakeBackEdits(std::size_t count);
    /** The names that the materials of a node have in the file, each once, even where edits split a material.
     * An empty name stands for parts without a material; as an edit's target an empty name means all
     * materials of the node. */
    [[nodiscard]] std::vector<std::string> GetMaterialNamesOfNode(const std::string& node) const;
    [[nodiscard]] const char* GetNodeNameById(int id) const;
    /** Each of these applies one edit. They fail for values that are not finite and for a node without
     * a name. */
    [[nodiscard]] bool DeleteNode(const char* node);
    [[nodiscard]] bool ReplaceNode(const char* node, const wchar_t* file, const char* newNode);
    [[nodiscard]] bool MoveNode(const char* node, float x, float y, float z);
    [[nodiscard]] bool RotateNode(const char* node, float x, float y, float z);
    [[nodiscard]] bool SetNodeMaterialColor(const char* node, const char* material, float r, float g,
                                            float b);
    [[nodiscard]] bool SetNodeMaterialShininess(const char* node, const char* material, float value);
    [[nodiscard]] bool SetNodeMaterialTransparency(const char* node, const char* material, float value);
    [[nodiscard]] bool SetNodeMaterialTexture(const char* node, const char* material,
                                              const CStdStr<wchar_t>& imagePath);
    [[nodiscard]] bool SetMaterialColor(const char* material, float r, float g, float b);
    [[nodiscard]] bool SetMaterialShininess(const char* material, float value);
    [[nodiscard]] bool SetMaterialTransparency(const char* material, float value);
    [[nodiscard]] bool SetMaterialTexture(const char* material, const CStdStr<wchar_t>& imagePath);

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
