// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
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

/** What a picture shows beside the background: overlays are those of C3dsDisplayWrap::SetOverlays, and what
 * the caller draws over the model. */
enum class EPictureOf { Model, ModelAndOverlays };

/** The display engine: one 3DS scene at a time, drawn with OpenGL into the current context, and edited.
 *
 * Every operation that draws needs the canvas's context to be current (its caller sees to that), and so does
 * opening or closing when a scene has been drawn before; cameras, getters and edits do not. Buffers and
 * textures are made by the first drawing. Loading and editing report failure by their bool; LastError() then
 * says why. Names are UTF-8 or the file's bytes; null stands for an empty one. Not thread-safe: one thread at
 * a time calls it.
 *
 * Edits change the scene in memory at once, and show at the next drawing. Nodes and materials go on answering
 * to the names they had when the scene was opened; everything else that an edit does not name stays as it was
 * decided then, and preset cameras frame the scene as it was before the first edit. */
class C3dsDisplayWrap {
  public:
    C3dsDisplayWrap();
    C3dsDisplayWrap(const C3dsDisplayWrap&) = delete;
    C3dsDisplayWrap& operator=(const C3dsDisplayWrap&) = delete;
    /** The context that scenes were drawn in must be current, or none. */
    virtual ~C3dsDisplayWrap();
    /** Called by the engine itself after every zoom; does nothing here. */
    virtual void UpdateModelOnZoom();

    // --- scene life -------------------------------------------------------------------------------------
    [[nodiscard]] bool OpenModel(const wchar_t* path);
    /** Takes ownership of the scene, also when it fails. */
    [[nodiscard]] bool OpenModelStruct(Lib3dsFile* file, CTextureLocator textures = {});
    [[nodiscard]] bool OpenBufferModel(const char* data, long size, const CImageDataTextVec& textures);
    /** Shows what LoadScene gave, on another thread perhaps; a failure is a failed open. */
    [[nodiscard]] bool OpenLoaded(CResult<CLoadedScene> loaded);
    void CloseModel();
    [[nodiscard]] bool SaveAs(const wchar_t* path);
    /** The scene with all edits, owned by the engine; null when none is open. Valid as it is until the next
     * edit. */
    [[nodiscard]] Lib3dsFile* Get3dsFile();
    /** The scene as it is drawn; null when none is open. Valid until the next open, close or edit. */
    [[nodiscard]] const CPreparedScene* Prepared() const;
    /** Where the pictures of the open scene come from; finds nothing when none is open. As long valid. */
    [[nodiscard]] const CTextureLocator& GetTextures() const;
    [[nodiscard]] const CError& LastError() const;

    /** For programs that only draw, set before opening: what only edits, picking, saving and other frames
     * need is given back as soon as it can be. Edits, SaveAs, Get3dsFile and picking then fail or find
     * nothing, and the frame is chosen before the first drawing. */
    void SetViewingOnly(bool viewingOnly);
    /** How long the last successful open took, in milliseconds: reading, and preparing to draw. */
    [[nodiscard]] double GetReadMs() const;
    [[nodiscard]] double GetPrepareMs() const;

    // --- drawing ----------------------------------------------------------------------------------------
    /** Sets the viewport, clears, and leaves the perspective projection as the current matrix.
     * GL_SELECT restricts it to the 5 x 5 pixels round (x, y), origin top left. False without a scene:
     * then it only clears. */
    [[nodiscard]] bool InitDrawings(int renderMode, int x, int y);
    /** Draws with the current matrices and polygon mode: turns by the rotation angles about the origin point,
     * then the nodes; in GL_RENDER the overlays too, in GL_SELECT each node under its identifier, its index
     * in Prepared(). Where the caller's model-view matrix carries the scene out of the depth range, the range
     * is widened for this call. */
    void DrawModel(int renderMode);
    /** A whole frame as SeenView has it. Leaves the projection with the camera on it, and the model-view
     * matrix as the identity. */
    void PaintModel();
    /** Goes one frame on, from the last one back to the first. Draws nothing itself, as only the caller knows
     * how the view is turned: who gets true repaints. False when nothing is animated. */
    bool DrawAnimations();
    /** The open scene as seen has it, as a picture in memory of that camera's view size, with four samples a
     * pixel where the context has them. drawOver, which may be empty, adds overlays of the caller's after
     * PaintModel. The window's own picture and what is seen in it stay. */
    [[nodiscard]] CResult<CImage> TakePicture(const CSeenView& seen, EPictureOf what,
                                              const std::function<void()>& drawOver = {});
    void SetPreviewSize(const C2DRect& rect);
    [[nodiscard]] const C2DRect& GetPreviewSize() const;
    /** Turns by dx degrees more about the scene's vertical (Z) and by dy about its horizontal (X) axis, see
     * RotationOfAngles. Opening a scene and choosing a camera set all angles to 0. */
    void UpdateRotAngles(float dx, float dy);
    /** See CViewCamera::Zoom for both. */
    void ZoomModel(int step);
    void ZoomModel(const C2DRect& rect);
    void SetBkColors(float r, float g, float b);
    /** 0 trilinear with anisotropy, 1 bilinear, 2 nearest, 3 no textures; others are as 0. */
    void SetTextureRenderMode(int mode);
    /** False: the lights of the file are not used, only a headlight at the eye. */
    void SetUseFileLights(bool use);

    /** Drawn by DrawModel in render mode, after the scene. */
    void SetOverlays(const COverlays& overlays);
    [[nodiscard]] const COverlays& Overlays() const;

    // --- what is seen -----------------------------------------------------------------------------------
    [[nodiscard]] const CSeenView& SeenView() const;
    /** For the same scene; the size of the view stays the preview's. */
    void SetSeenView(const CSeenView& seen);
    /** Parts of it. Opening a scene takes pivot, scale and turn back. Numbers that are not finite
     * change nothing. */
    void SetPivotOffset(CVec3d offset);
    void SetScale(CVec3d scale);
    void SetTurn(const CRotation& turn, double orbit);
    void SetWireframe(bool wire);

    // --- camera -----------------------------------------------------------------------------------------
    void SetPreset(ECameraPreset preset);
    void SetTopCameraModel() { SetPreset(ECameraPreset::Top); }
    void SetLeftCameraModel() { SetPreset(ECameraPreset::Left); }
    void SetRightCameraModel() { SetPreset(ECameraPreset::Right); }
    void SetFrontCameraModel() { SetPreset(ECameraPreset::Front); }
    void SetBackCameraModel() { SetPreset(ECameraPreset::Back); }
    void SetIsoCameraModel() { SetPreset(ECameraPreset::Iso); }
    /** Looks through a camera of the file, with its roll and field of view. False when there
     * is none so named. */
    [[nodiscard]] bool SetFileCameraModel(const std::string& name);
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
    /** The background that the view clears to, 0..1. */
    [[nodiscard]] float GetBKRValue() const;
    [[nodiscard]] float GetBKGValue() const;
    [[nodiscard]] float GetBKBValue() const;
    /** The one that the file asks for, 0..1. */
    [[nodiscard]] float GetFileBKRValue() const;
    [[nodiscard]] float GetFileBKGValue() const;
    [[nodiscard]] float GetFileBKBValue() const;

    // --- animation --------------------------------------------------------------------------------------
    /** True when the file's keyframes change something. */
    [[nodiscard]] bool HasAnimation() const;
    [[nodiscard]] float GetFrame() const;
    /** Shows the scene at a frame of its animation. */
    void SetFrame(float frame);

    // --- edits: see CEdit -------------------------------------------------------------------------------
    /** Applies edits in their order; one answer for each. One that fails changes nothing; those after it are
     * applied all the same. A batch costs hardly more than its dearest edit. */
    [[nodiscard]] std::vector<CStatus> ApplyEdits(std::span<const CEdit> edits);
    /** Takes back the last edits that succeeded, exactly; false when there are not so many. To have one again,
     * apply it again. */
    [[nodiscard]] bool TakeBackEdits(std::size_t count);
    /** What the materials of a node's parts are called in the file, however often they were split. An empty
     * name stands for parts without a material; as a target it means all of the node. */
    [[nodiscard]] std::vector<std::string> GetMaterialNamesOfNode(const std::string& node) const;
    [[nodiscard]] const char* GetNodeNameById(int id) const;
    /** Each of these is one edit. Values that are not finite are refused, and so is a node without a name. */
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
