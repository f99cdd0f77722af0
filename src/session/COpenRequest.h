// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "base/text/ascii_text.h"
#include "files/file_util_ex.h"
#include "model/textures/CTextureLocator.h"
#include "session/CDocument.h"
#include "session/ahead/CReadyScene.h"

struct CScriptScene;

/** The bytes of a 3DS file in memory, and its textures. */
struct CModelInMemory {
    std::vector<char> data;
    CImageDataTextVec textures;
};

/** A request to open a model. It may have to wait for its turn, so it holds all data that opening needs. */
struct COpenRequest {
    EOrigin origin = EOrigin::File;
    std::wstring path;       ///< see CDocument
    std::wstring modelPath;  ///< likewise
    /** Set for EOrigin::Memory and Download. Shared by the copies of the request, so that they do not copy
     * the model. */
    std::shared_ptr<const CModelInMemory> memory;
    /** The scene of modelPath if it was loaded ahead; used unless the file has changed since. Shared by the
     * copies of the request; the first opening takes it. */
    std::shared_ptr<CReadyScene> ready;
    /** It was reached by a step or a show; nobody chose this file. See CRecentFileList. */
    bool isStep = false;

    /** Of a script, the number of the scene; the session finds its model. */
    std::size_t scene = 0;

    /** A model, or a scene script by its ending "orv" in any letter case. */
    [[nodiscard]] static COpenRequest OfFile(std::wstring path) {
        if (IsScript(path)) return {EOrigin::Script, std::move(path), {}, {}, {}};
        return {EOrigin::File, path, std::move(path), {}, {}};
    }
    [[nodiscard]] static bool IsScript(std::wstring_view path) {
        return ascii_text::EqualNoCase(file_util_ex::GetFileExt(path), L"orv");
    }
    [[nodiscard]] static COpenRequest OfMemory(EOrigin origin, std::wstring name, CModelInMemory model) {
        return {origin, std::move(name), {}, std::make_shared<const CModelInMemory>(std::move(model)), {}};
    }
};

enum class EOpened {
    Opened,
    AlreadyShown,  ///< a success: the same model is open already and stays as it is
    Failed,
    Cancelled,  ///< the user keeps the scene with its unsaved edits; nothing has changed, and no listener is told
    Waits,      ///< the session is busy; it opens this next unless a newer request replaces it
};

/** How an opening ended. */
struct COpenReport {
    EOpened result = EOpened::Failed;  ///< never Waits or Cancelled
    CError error;                      ///< why it failed
    bool isReload = false;             ///< the same file was read again; camera and frame stay
    unsigned folderModels = 0;         ///< number of models in the document's folder, itself included
    unsigned folderPlace = 0;          ///< the document's place among them, from 1 on; 0: it is none of them
    /** The scene of the script that was opened; null for any other model. Valid during the call that reports. */
    const CScriptScene* scene = nullptr;
};
