// SPDX-License-Identifier: MIT
#pragma once

#include <wx/clntdata.h>
#include <wx/treebase.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/textures/CTextureLocator.h"
#include "modeldb/client/CSmpModel.h"
#include "modeldb/records/store_records.h"

// What the worker threads hand to the browser. The thread makes it, and whoever takes it from the event owns it.

/** The groups in the order of the library. */
struct CGroupsData final : public wxClientData {
    std::vector<std::pair<std::string, std::uint64_t>> groups;  ///< name, UTF-8, and number of models
};

/** The models of one group. */
struct CModelsData final : public wxClientData {
    wxTreeItemId item;  ///< of the group
    std::string group;  ///< UTF-8
    CSmpModelArr models;
};

/** A model. */
struct CModelData final : public wxClientData {
    CModelData() { textures.reserve(kUsualTextures); }
    CModelData(const CModelData&) = delete;
    CModelData& operator=(const CModelData&) = delete;
    ~CModelData() override { delete[] data; }

    CImageDataTextVec textures;
    std::wstring fileName;          ///< the model's name and ".3ds"
    unsigned char* data = nullptr;  ///< owned, from new[]
    std::uint32_t size = 0;         ///< 0 when the download failed

  private:
    static constexpr std::size_t kUsualTextures = 100;
};

/** What a search found. */
struct CFoundData final : public wxClientData {
    std::string text;  ///< that was searched for
    std::vector<CFoundModel> models;
    bool hasSucceeded = false;
};
