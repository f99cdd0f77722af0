// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

class CViewer3DSWindowHandler;
class wxWindow;

/** Sends the model that the view shows to the library, in the group "Upload", and shows the progress. False when it came to
 * no upload: there is no model, the library has this very file (the user was told), or the user does not want pictures from
 * outside the model's folder to go with it. True when it was tried, however it ended. key: the model's in the library, set when it
 * is known. reason: why the model is not there now, as far as it failed; one line, for people. Afterwards the scene refers to
 * all its textures as JPEG files. The view's model must not change during the call. */
[[nodiscard]] bool UploadCurrentModel(CViewer3DSWindowHandler& view, wxWindow& parent, std::uint32_t& key,
                                      std::wstring& reason);
