// SPDX-License-Identifier: MIT
#include "export/picture/ui/screenshot_command.h"

#include <wx/clipbrd.h>
#include <wx/dataobj.h>

#include <memory>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "picture/CBitmapConverter.h"
#include "picture/image_writer.h"
#include "view/ui/CViewer3DSWindowHandler.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/CBXFileDialogI.h"
#include "widgets/ui/run_job.h"

namespace {

constexpr char kSaveEntry[] = "save_img";

/** The picture is offered as PNG, which programs ask for first and which loses nothing. */
void CopyToClipboard(const CImage& image) {
    const CResult<std::vector<std::byte>> png = image_codec::PngBytes(image, false);
    if (!png) return;
    auto data = std::make_unique<wxCustomDataObject>(wxDataFormat("image/png"));
    if (!data->SetData(png.Value().size(), png.Value().data())) return;
    const wxClipboardLocker clipboard;
    if (!!clipboard)
        (void)wxTheClipboard->SetData(data.release());  // where it cannot be had, it stays as it is
}

/** Asks until the name is that of a picture, or the user cancels: else a slip could put a picture in the model's place. */
std::wstring AskForTarget(const std::wstring& modelPath, wxWindow& parent) {
    const CRegEntryGuard entry(kSaveEntry);
    std::wstring folder;  // the remembered one
    std::wstring name = file_util_ex::SetFileExt(file_util_ex::GetFileName(modelPath), L"jpg");
    while (true) {
        std::wstring path = CBXFileDialogI::LaunchSaveDialog(
            &parent, L"*.jpg", lng::Text("JPG file (*.jpg)|*.jpg|PNG file (*.png)|*.png||"),
            lng::Text("ScreenShot Save As"), folder, name);
        if (path.empty() || IsPictureName(path)) return path;
        CUserPrompt::Instance().ShowMessage(
            lng::Text("A picture is saved as a .jpg or a .png file, and %s would be neither.",
                      file_util_ex::GetFileName(path)));
        folder = file_util_ex::GetFilePath(path);
        name = file_util_ex::SetFileExt(file_util_ex::GetFileName(path), L"jpg");
    }
}

}  // namespace

CResult<std::wstring> RunScreenshot(const std::wstring& modelPath, CViewer3DSWindowHandler& view,
                                    wxWindow& parent) {
    const std::wstring path = AskForTarget(modelPath, parent);
    if (path.empty()) return path;
    const CBusyCursor cursor;
    const CResult<CImage> picture = view.TakePicture(EPictureOf::Screen);
    if (!picture) return picture.Error();
    CStatus written = CDone{};
    RunJob([&](CJobProgress&) { written = CBitmapConverter().Write(picture.Value(), path); });
    CopyToClipboard(picture.Value());
    if (!written) return written.Error();
    return path;
}
