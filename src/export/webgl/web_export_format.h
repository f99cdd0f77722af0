// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "export/webgl/C3ds2WebGL.h"

class CHtmlSettings;

namespace web_export_format {

/** The options of a page: the settings' flags and script, what is seen (camera, background colour, render mode), and the
 * file name of the model that is shown (file_util_ex::GetFileName of its path). */
[[nodiscard]] C3ds2WebGL::COutFormat Make(const CHtmlSettings& settings, const CSeenView& seen,
                                          const std::wstring& modelFileName);

/** The view that format alone describes: its camera, not zoomed, its background and render mode, the frame of the scene. */
[[nodiscard]] CSeenView SeenViewOf(const CPreparedScene& scene, const C3ds2WebGL::COutFormat& format);

}  // namespace web_export_format
