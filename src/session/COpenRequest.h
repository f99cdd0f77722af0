// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/CResult.h"
#include "model/textures/CTextureLocator.h"
#include "session/CDocument.h"
#include "session/CSceneLoading.h"

/** A 3DS file that somebody holds in memory, and its textures. */
struct CModelInMemory {
    std::vector<char> data;
    CImageDataTextVec textures;
};

/** A wish to see a model. It may have to wait for its turn, so it holds all that it needs. */
struct COpenRequest {
    EOrigin origin = EOrigin::File;
    std::wstring path;       ///< see CDocument
    std::wstring modelPath;  ///< likewise
    /** Of EOrigin::Memory and Download. Shared, as copies of a request do not copy the model. */
    std::shared_ptr<const CModelInMemory> memory;
    /** The scene of modelPath, where it was loaded ahead; taken from here unless the file has been changed
     * since. Shared likewise. */
    std::shared_ptr<CReadyScene> ready;

    [[nodiscard]] static COpenRequest OfFile(std::wstring path) {
        return {EOrigin::File, path, std::move(path), {}, {}};
    }
    /** A model that a script names. */
    [[nodiscard]] static COpenRequest OfScript(std::wstring script, std::wstring model) {
        return {EOrigin::Script, std::move(script), std::move(model), {}, {}};
    }
    [[nodiscard]] static COpenRequest OfMemory(EOrigin origin, std::wstring name, CModelInMemory model) {
        return {origin, std::move(name), {}, std::make_shared<const CModelInMemory>(std::move(model)), {}};
    }
};

enum class EOpened {
    Opened,
    AlreadyShown,  ///< a success: what is shown stays as it is
    Failed,
    Waits,  ///< something else holds the turn; this comes next, unless something newer is asked for
};

/** How an opening ended; told once after each. */
struct COpenReport {
    EOpened result = EOpened::Failed;  ///< never Waits
    CError error;                      ///< why it failed
    bool isReload = false;             ///< the same file again; camera and frame stay
    unsigned folderModels = 0;         ///< the models in the document's folder, itself among them
};
