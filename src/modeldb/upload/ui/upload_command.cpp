// SPDX-License-Identifier: MIT
#include "modeldb/upload/ui/upload_command.h"

#include <cstddef>
#include <filesystem>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "export/source/ui/view_source.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "model/save/lib3ds_util.h"
#include "model/textures/CLib3dsMatUtil.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/client/model_server.h"
#include "modeldb/transfer/ui/connect_to_server.h"
#include "modeldb/upload/ui/COutsidePicturesDlg.h"
#include "modeldb/upload/ui/CUploadDialog.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CUserPrompt.h"

namespace {

constexpr std::size_t kUsualTextures = 100;

/** Deletes the temporary folder, unless others have something in it: previews that are drawn meanwhile. */
void DeleteTempDirIfEmpty() {
    std::error_code error;
    if (std::filesystem::is_empty(std_file_paths::GetTempDir(), error) && !error)
        std_file_paths::DeleteTempDir();
}

std::wstring LastError() {
    return lng::ConvertFromUTF8(C3DModelsLoadApi::LastError());
}

/** The bytes of the scene as a file has them. */
CResult<std::vector<std::byte>> BytesOf(CViewer3DSWindowHandler& view) {
    constexpr std::uint64_t kMostBytes = std::numeric_limits<std::int32_t>::max();
    const CBusyCursor cursor;
    const std::wstring path = std_file_paths::GetTempFilePath(L"temp.3ds");
    if (file_util_ex::DoesFileExist(path) && !file_util_ex::DeleteFileW(path))
        return CError{EErrorCode::WriteFailed, lng::Mark("a temporary file cannot be deleted"), {}};
    lib3ds_util::change_textures_ext(view.Get3dsFile(), "jpg");
    CResult<std::vector<std::byte>> bytes = std::vector<std::byte>();
    if (view.GetEngine().SaveAs(path.c_str()))
        bytes = file_util_ex::GetFileData(path, kMostBytes);
    else
        bytes = view.LastError();
    (void)file_util_ex::DeleteFileW(path);
    DeleteTempDirIfEmpty();
    return bytes;
}

bool IsThereAlready(std::uint32_t key) {
    {
        const CBusyCursor cursor;
        if (!ModelExistsOnServer(key)) return false;
    }
    CUserPrompt::Instance().ShowMessage(lng::Text("3ds file alreay exist in the server"));
    return true;
}

/** Pictures from outside the model's folder go with it only when the user agrees. */
bool MayPicturesGo(CViewer3DSWindowHandler& view, wxWindow& parent) {
    std::vector<std::string> outside;
    for (const CScenePicture& picture :
         CLib3dsMatUtil::PicturesOf(*view.Get3dsFile(), view.GetEngine().GetTextures()))
        if (picture.hit.outsideModelFolder) outside.push_back(picture.hit.foundAt);
    return outside.empty() || COutsidePicturesDlg(&parent, outside).ShowModal() == wxID_OK;
}

CImageDataTextVec TexturesOf(CViewer3DSWindowHandler& view) {
    const CBusyCursor cursor;
    CImageDataTextVec textures;
    textures.reserve(kUsualTextures);
    CLib3dsMatUtil::GetMatTextures(view.Get3dsFile(), textures);
    return textures;
}

}  // namespace

bool UploadCurrentModel(CViewer3DSWindowHandler& view, wxWindow& parent, std::uint32_t& key,
                        std::wstring& reason) {
    if (view.GetPath().empty() || !view.Get3dsFile()) return false;
    const CStillView still(view);
    if (!ConnectToModelServer(&parent)) {
        reason = LastError();
        return false;
    }
    CResult<std::vector<std::byte>> file = BytesOf(view);
    if (!file || file.Value().empty()) {
        reason = file ? lng::Text("the file is empty") : lng::Text(file.Error());
        return false;
    }
    std::vector<std::byte>& bytes = file.Value();
    key = C3DModelsLoadApi::CalcCrc(bytes.data(), bytes.size());
    if (IsThereAlready(key) || !MayPicturesGo(view, parent)) return false;
    const CImageDataTextVec textures = TexturesOf(view);
    auto* dialog = new CUploadDialog(&parent, view.GetPath(), reinterpret_cast<unsigned char*>(bytes.data()),
                                     static_cast<std::uint32_t>(bytes.size()), textures);
    dialog->ShowModal();
    dialog->Destroy();
    reason = LastError();
    return true;
}
