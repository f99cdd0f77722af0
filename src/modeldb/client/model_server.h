// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "model/textures/CTextureLocator.h"
#include "modeldb/client/CBlobProgress.h"

// What the program does with the library of models that its settings name.

/** Connects to the server of the settings ("ModelServer"), else to the one that the program was built with
 * (ORBIVUE_MODEL_SERVER), else to the user's own store; with the token of the settings ("ModelServerToken"). False when
 * it cannot be reached. Main thread only, as it reads the settings. */
[[nodiscard]] bool OpenModelServer();

[[nodiscard]] bool ModelExistsOnServer(std::uint32_t id);

/** Downloads a model into memory. fileName: the model's name with ".3ds" behind it, whatever it ends in. data, size: the
 * bytes of its file, which the caller frees by delete[]. After a failure all outputs are as they were. */
[[nodiscard]] bool DownloadServerModel(std::uint32_t id, std::wstring& fileName, unsigned char*& data,
                                       std::uint32_t& size, CImageDataTextVec& textures,
                                       CBlobProgress* progress);
