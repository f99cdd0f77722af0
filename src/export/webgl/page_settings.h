// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "export/webgl/C3ds2WebGL.h"

/** Where a page finds what lies beside it: relative addresses, empty for none. */
struct CPageLinks {
    std::string download;
    std::string scene;        ///< the scene's bytes
    std::string sceneScript;  ///< the same as a script, for pages that are read from a disk
};

/** The settings that the viewer reads, as JSON; docs/web-page.md lists them. Values that the viewer has anyway are left
 * out. */
[[nodiscard]] std::string PageSettings(const CWebGLSource& source, const C3ds2WebGL::COutFormat& format,
                                       const CPageLinks& links);

/** What a page is called: the model's name without its ending. */
[[nodiscard]] std::string PageTitle(const C3ds2WebGL::COutFormat& format);
