// SPDX-License-Identifier: MIT
#include "modeldb/client/model_server.h"

#include <utility>

#include "base/text/utf8_text.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "settings/CSettings.h"

bool OpenModelServer() {
    const CSettings& settings = CSettings::Instance();
    const std::string chosen = file_util_ex::ConvertToUTF8(settings.modelServer);
    C3DModelsLoadApi::SetToken(file_util_ex::ConvertToUTF8(settings.modelServerToken));
    return C3DModelsLoadApi::Open(chosen.empty() ? std::string(ORBIVUE_MODEL_SERVER) : chosen);
}

bool ModelExistsOnServer(std::uint32_t id) {
    return C3DModelsLoadApi::DoesModelExist(id);
}

bool DownloadServerModel(std::uint32_t id, std::wstring& fileName, unsigned char*& data, std::uint32_t& size,
                         CImageDataTextVec& textures, CBlobProgress* progress) {
    std::string name, group;
    CBlobData file;
    if (!C3DModelsLoadApi::DownloadModel(id, name, group, file, textures, progress)) return false;
    size = file.size;
    data = file.Release();
    fileName = file_util_ex::ConvertFromUTF8W(name) + L".3ds";
    return true;
}
