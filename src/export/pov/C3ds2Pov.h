// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "base/CResult.h"
#include "camera/CSeenView.h"

struct CPreparedScene;
struct Lib3dsFile;
class C3ds2PovExportFlow;
class CTextureLocator;

/** What to export: a prepared scene, whose pictures must be loaded, and how it is seen. */
struct CPovSource {
    const CPreparedScene& scene;      ///< not owned
    const CTextureLocator& textures;  ///< where its pictures come from; not owned
    CSeenView seen;
};

/** Writes scenes as files for POV-Ray 3.7 and later, with the pictures of their materials beside them. Needs
 * no display. docs/export-pov.md tells what is written and why.
 *
 * The files get their names when all of them are complete: after a failure no .pov file is half-written, and
 * one that existed before stays, with its pictures. The export fails if the output would overwrite a file of
 * the model (also a material file) or a picture of the scene. */
class C3ds2Pov {
  public:
    /** What COutFormat::mode selects. */
    enum EMode : std::int32_t {
        kSmoothNormals = 1,  ///< without it every triangle is flat
        kViewLook = 2,       ///< as in the view: no shadows, one-sided surfaces not seen from behind
        kHeadlight = 4       ///< one light at the eye instead of the file's lights
    };

    /** The options. Values that are not finite or out of range are replaced by the nearest valid value. */
    struct COutFormat {
        bool radiosity = false;      ///< write a radiosity block
        bool reserved1 = false;      ///< no effect
        bool reserved2 = false;      ///< no effect
        float diffuse = 0.6F;        ///< of the materials; 0.6 gives the view's brightness
        float selfDiffuse = 0.1F;    ///< the same of a material that is self-illuminated
        bool outputTextures = true;  ///< false: plain colours only
        /** A preset ("top_cam", "lft_cam", ...) or a camera of the file. Any other name means the view's
         * first camera. */
        std::string cameraName;
        float bkRed = 0, bkGreen = 0, bkBlue = 0;  ///< 0..1
        /** The rotation of the scene in degrees. With "top_cam" the view's angles about X, Y and Z
         * are (-Y, X, -90 - Z), with any other camera (-X, Y, -Z), where X, Y and Z are these values.
         * See RotationOfAngles. */
        float angleX = 0, angleY = 0, angleZ = 0;
        std::int32_t mode = kSmoothNormals | kViewLook;
    };

    /** Exports what source.seen shows; ignores the camera and the angles of format. output is UTF-8. flow may
     * be null. The status holds the reason of a failure. */
    static CStatus TryExport(const CPovSource& source, const std::string& output, const COutFormat& format,
                             C3ds2PovExportFlow* flow);

    /** Exports a scene in memory at its current frame, seen as format describes. The caller keeps the
     * scene; a CTexturesOfScene for it tells where its pictures are. False on failure and for null. flow
     * may be null. */
    static bool Export(Lib3dsFile* file, const std::wstring& output, const COutFormat& format,
                       C3ds2PovExportFlow* flow);
    /** Opens a model file of any supported kind and exports it. */
    static bool Export(const std::wstring& input, const std::wstring& output, const COutFormat& format,
                       C3ds2PovExportFlow* flow);

    /** As Export, with the reason of a failure; paths are UTF-8. */
    static CStatus TryExport(Lib3dsFile* file, const std::string& output, const COutFormat& format,
                             C3ds2PovExportFlow* flow);
    static CStatus TryExport(const std::string& input, const std::string& output, const COutFormat& format,
                             C3ds2PovExportFlow* flow);
};
