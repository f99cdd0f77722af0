// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"

class CViewer3DSWindowHandler;
class wxWindow;

/** Exports what the view shows as a web page: asks for its path, writes it with its archive, and opens it in the browser,
 * as CHtmlSettings says. modelPath: the model that is shown; modelFileName: the file name that the page tells. Does
 * nothing without a model. The page's path; empty where the user cancels. The view's model must not change during the call.
 *
 * A failure is shown to nobody: the caller gets its reason. Where the page itself fails, everything is as
 * before, no archive is made and no browser is started. */
[[nodiscard]] CResult<std::wstring> RunHtmlExport(const std::wstring& modelPath,
                                                  const std::wstring& modelFileName,
                                                  CViewer3DSWindowHandler& view, wxWindow& parent);

/** Makes the download archive beside a page that was just exported of what the view shows (download_archive::Make).
 * modelFileName: as the page's format has it. */
[[nodiscard]] CStatus MakeArchiveOf(CViewer3DSWindowHandler& view, const std::string& page,
                                    const std::string& modelFileName);
