// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"
#include "camera/CSeenView.h"
#include "export/webgl/CPageTexts.h"

struct CPreparedScene;
struct Lib3dsFile;
class CJobProgress;
class CScene;
class CTextureLocator;

/** What to export: a prepared scene, whose pictures must be loaded, and how it is seen. */
struct CWebGLSource {
    const CPreparedScene& scene;      ///< not owned
    const CTextureLocator& textures;  ///< where its pictures come from; not owned
    CSeenView seen;
    CPageTexts texts = CPageTexts::English();
    /** What the prepared scene was made of, not owned. Without it, meshes that change their shape keep the one that they
     * have. */
    const CScene* model = nullptr;
};

/** Writes scenes as web pages that show them by WebGL, with everything in them or beside them: a page needs no network.
 * docs/web-page.md tells what is written. Needs no display.
 *
 * All files get their names together when they are complete; after a failure everything is as it was before. What is
 * written beside the page follows CFilesBeside: nothing that another wrote is replaced, and no link is followed. The
 * export fails if the page would overwrite a file of the model or a picture of it. */
class C3ds2WebGL {
  public:
    struct COutFormat {
        bool minify = false;   ///< the viewer's script in its short form; else the one that people can read
        bool combine = false;  ///< one file holds everything; else script and scene lie beside the page
        /** Copies packed by gzip beside the page, for servers that hand those out, and a .htaccess that makes others
         * pack. Where a .htaccess of somebody else is, it stays. */
        bool gzip = false;
        /** Polygons as lines: what the view's render mode is, so that the page opens as the view looked. The page's
         * user can change it there. */
        bool displayFlag = false;
        bool downloadLink = false;  ///< to the archive of MakeDownloadArchive; the caller makes that
        bool camerasBar = false;    ///< buttons for the preset cameras and those of the file
        bool doubleSided = false;   ///< every material is seen from both sides
        float bkRed = 0, bkGreen = 0, bkBlue = 0;  ///< 0..1; what is no such number becomes the nearest
        /** A preset ("top_cam", ...) or a camera of the file, any other name the view's first camera: of the scene that
         * Export is given. Where a seen view is given, it holds the camera. */
        std::string cameraName;
        std::string modelFileName;  ///< UTF-8; the page's title and the archive's name come from it
        std::string version;        ///< of this program
        std::string javaScript;     ///< UTF-8; runs in the page behind the viewer's script. Empty: none
    };

    /** Exports a scene in memory at its current frame, seen by format's camera. The caller keeps the scene; a
     * CTexturesOfScene for it tells where its pictures are. False on failure and for null. */
    static bool Export(Lib3dsFile* file, const std::wstring& output, const COutFormat& format);

    /** Exports what source.seen shows, at its frame, in front of format's colour. output is UTF-8. The status holds the
     * reason of a failure. progress may be null; it cancels. Any thread. */
    [[nodiscard]] static CStatus TryExport(const CWebGLSource& source, const std::string& output,
                                           const COutFormat& format, CJobProgress* progress = nullptr);
    /** The page with everything in it (whatever format.combine says), as text: no file is read or written. */
    [[nodiscard]] static CResult<std::string> CombinedPage(const CWebGLSource& source,
                                                           const COutFormat& format,
                                                           CJobProgress* progress = nullptr);
    /** The content security policy of such a page without a script of the user's: what a server may send with it, so
     * that it holds whatever is in the page. */
    [[nodiscard]] static std::string CombinedPagePolicy(bool minify);
    /** As Export, with the reason of a failure. */
    [[nodiscard]] static CStatus TryExport(Lib3dsFile* file, const std::string& output,
                                           const COutFormat& format);
};
