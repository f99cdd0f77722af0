// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/CTextureLocator.h"
#include "platform/C2DRect.h"
#include "platform/CResult.h"

struct Lib3dsFile;
class CScene;
struct CPreparedScene;

/** The wide string class used across the application's interfaces. */
template <class T>
using CStdStr = std::basic_string<T>;

/**
 * The display engine: one 3DS scene at a time, drawn with OpenGL into the current context, and edited.
 *
 * Every operation that draws, opens or closes needs the canvas's context to be current (its caller sees to that);
 * cameras, getters and edits do not. Loading and editing report failure by their bool; LastError() then says why.
 * Not thread-safe: one thread calls it.
 */
class C3dsDisplayWrap {
  public:
    C3dsDisplayWrap();
    C3dsDisplayWrap(const C3dsDisplayWrap&) = delete;
    C3dsDisplayWrap& operator=(const C3dsDisplayWrap&) = delete;
    /** The context that the scene was opened in must be current, or the scene closed before. */
    virtual ~C3dsDisplayWrap();
    /** Called by the engine itself after every zoom; does nothing here. */
    virtual void UpdateModelOnZoom();

    // --- scene life -------------------------------------------------------------------------------------
    [[nodiscard]] bool OpenModel(const wchar_t* path);
    /** Takes ownership of the scene, also when it fails. */
    [[nodiscard]] bool OpenModelStruct(Lib3dsFile* file);
    [[nodiscard]] bool OpenBufferModel(const char* data, long size, const CImageDataTextVec& textures);
    void CloseModel();
    [[nodiscard]] bool SaveAs(const wchar_t* path);
    /** The scene with all edits, owned by the engine; null when none is open. */
    [[nodiscard]] Lib3dsFile* Get3dsFile();
    /** The scene as it is drawn; null when none is open. Valid until the next open, close or edit. */
    [[nodiscard]] const CPreparedScene* Prepared() const;
    [[nodiscard]] const CError& LastError() const;

    // --- drawing ----------------------------------------------------------------------------------------
    [[nodiscard]] bool InitDrawings(int renderMode, int x, int y);
    void DrawModel(int renderMode);
    void PaintModel();
    bool DrawAnimations();
    void SetPreviewSize(const C2DRect& rect);
    [[nodiscard]] const C2DRect& GetPreviewSize() const;
    void UpdateRotAngles(float dx, float dy);
    void ZoomModel(int step);
    void ZoomModel(const C2DRect& rect);
    void SetBkColors(float r, float g, float b);
    void SetTextureRenderMode(int mode);

    // --- overlays (drawn by DrawModel in render mode, after the scene) -------------------------------------
    void SetShowBounds(bool show);
    void SetShowCameras(bool show);
    void SetShowLights(bool show);
    void SetShowAxis(bool show);

    // --- camera -----------------------------------------------------------------------------------------
    void SetTopCameraModel();
    void SetLeftCameraModel();
    void SetRightCameraModel();
    void SetFrontCameraModel();
    void SetBackCameraModel();
    void SetIsoCameraModel();
    /** Looks through a camera of the file, with its roll and field of view. False when there is none so named. */
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
    [[nodiscard]] float GetFileBKRValue() const;
    [[nodiscard]] float GetFileBKGValue() const;
    [[nodiscard]] float GetFileBKBValue() const;

    // --- animation --------------------------------------------------------------------------------------
    /** True when the file's keyframes change something. */
    [[nodiscard]] bool HasAnimation() const;
    [[nodiscard]] float GetFrame() const;
    /** Shows the scene at a frame of its animation. */
    void SetFrame(float frame);

    // --- edits ------------------------------------------------------------------------------------------
    [[nodiscard]] const char* GetNodeNameById(int id) const;
    [[nodiscard]] bool DeleteNode(const char* node);
    [[nodiscard]] bool ReplaceNode(const char* node, const wchar_t* file, const char* newNode);
    [[nodiscard]] bool MoveNode(const char* node, float x, float y, float z);
    [[nodiscard]] bool RotateNode(const char* node, float x, float y, float z);
    [[nodiscard]] bool SetNodeMaterialColor(const char* node, const char* material, float r, float g, float b);
    [[nodiscard]] bool SetNodeMaterialShininess(const char* node, const char* material, float value);
    [[nodiscard]] bool SetNodeMaterialTransparency(const char* node, const char* material, float value);
    [[nodiscard]] bool SetNodeMaterialTexture(const char* node, const char* material, const CStdStr<wchar_t>& imagePath);
    [[nodiscard]] bool SetMaterialColor(const char* material, float r, float g, float b);
    [[nodiscard]] bool SetMaterialShininess(const char* material, float value);
    [[nodiscard]] bool SetMaterialTransparency(const char* material, float value);
    [[nodiscard]] bool SetMaterialTexture(const char* material, const CStdStr<wchar_t>& imagePath);

  private:
    struct CState;
    std::unique_ptr<CState> m_state;
};
