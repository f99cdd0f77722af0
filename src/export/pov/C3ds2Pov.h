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

/** A prepared scene, whose pictures are loaded, as somebody sees it. */
struct CPovSource {
    const CPreparedScene& scene;      ///< not owned
    const CTextureLocator& textures;  ///< where its pictures come from; not owned
    CSeenView seen;
};

/** Writes scenes as POV-Ray files (3.7 and later), with the pictures of their materials beside them. Needs no
 * display. See docs/export-pov.md for what is written and why.
 *
 * The files get their names when all of them are complete: whatever fails, no .pov file is left
 * half-written and one that was there stays, with its pictures. An output that is a file of the model that is
 * read (material files, too) or a picture of the scene is refused. */
class C3ds2Pov {
  public:
    /** What COutFormat::mode selects. */
    enum EMode : std::int32_t {
        kSmoothNormals = 1,  ///< without it every triangle is flat
        kViewLook = 2,       ///< as the view shows it: no shadows, one-sided surfaces not seen from behind
        kHeadlight = 4       ///< one light at the eye instead of the file's lights
    };

    /** The options. Values that are not finite or out of range count as the nearest that makes sense. */
    struct COutFormat {
        bool radiosity = false;      ///< write a radiosity block
        bool reserved1 = false;      ///< no effect
        bool reserved2 = false;      ///< no effect
        float diffuse = 0.6F;        ///< of the materials; 0.6 gives the view's brightness
        float selfDiffuse = 0.1F;    ///< the same of a material that is self-illuminated
        bool outputTextures = true;  ///< false: plain colours only
        /** A preset ("top_cam", "lft_cam", ...) or a camera of the file; any other is the
         * view's first one. */
        std::string cameraName;
        float bkRed = 0, bkGreen = 0, bkBlue = 0;  ///< 0..1
        /** How the user turned the model, degrees. With "top_cam" the view's angles about X, Y and Z are (-Y,
         * X, -90 - Z), with any other camera (-X, Y, -Z); see RotationOfAngles for their meaning. */
        float angleX = 0, angleY = 0, angleZ = 0;
        std::int32_t mode = kSmoothNormals | kViewLook;
    };

    /** Exports what is seen; the camera and the angles of format are not looked at. Paths are UTF-8, and the
     * reason of a failure is told. */
    static CStatus TryExport(const CPovSource& source, const std::string& output, const COutFormat& format,
                             C3ds2PovExportFlow* flow);

    /** Exports a scene in memory, at its current frame, seen as format says; the scene stays the caller's. Its pictures are found
     * where a CTexturesOfScene says. False on failure, or for null. flow may be null. */
    static bool Export(Lib3dsFile* file, const std::wstring& output, const COutFormat& format,
                       C3ds2PovExportFlow* flow);
    /** Reads a model of any kind that the program opens, and exports it. */
    static bool Export(const std::wstring& input, const std::wstring& output, const COutFormat& format,
                       C3ds2PovExportFlow* flow);

    /** The same with the reason of a failure; paths are UTF-8. */
    static CStatus TryExport(Lib3dsFile* file, const std::string& output, const COutFormat& format,
                             C3ds2PovExportFlow* flow);
    static CStatus TryExport(const std::string& input, const std::string& output, const COutFormat& format,
                             C3ds2PovExportFlow* flow);
};
