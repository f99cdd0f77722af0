// SPDX-License-Identifier: MIT
#include "frame/preview/ui/C3DSFileDlgI.h"

#include <gtk/gtk.h>
#include <wx/filedlg.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "frame/preview/CPreviewCache.h"
#include "frame/preview/ui/CPreviewControl.h"
#include "settings/CLocalRegStore.h"
#include "widgets/file_dialog_text.h"
#include "widgets/ui/file_chooser.h"

namespace {

std::array<std::uint8_t, 3>& Background() {
    static std::array<std::uint8_t, 3> background{};
    return background;
}

CPreviewCache& Cache() {
    static CPreviewCache cache;  // outlives a dialog: the next one shows the same folder as a rule
    return cache;
}

std::uint8_t Byte(float part) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(part, 0.0f, 1.0f) * 255.0f));
}

std::vector<file_dialog_text::CFilter> Filters() {
    return {{lng::Text("3D scenes (*.3ds;*.zip;*.obj;*.orv)"), {L"*.3ds", L"*.zip", L"*.obj", L"*.orv"}},
            {lng::Text("3D Studio scenes (*.3ds)"), {L"*.3ds"}},
            {lng::Text("Zip archives (*.zip)"), {L"*.zip"}},
            {lng::Text("OBJ models (*.obj)"), {L"*.obj"}},
            {lng::Text("Scene scripts (*.orv)"), {L"*.orv"}},
            {lng::Text("All files"), {L"*"}}};
}

}  // namespace

void C3DSFileDlgI::SetBackgroundColor(float r, float g, float b) {
    Background() = {Byte(r), Byte(g), Byte(b)};
}

std::wstring C3DSFileDlgI::LaunchDialog(wxWindow* parent, std::wstring_view startFolder) {
    const std::string folder = file_util_ex::DoesFolderExist(startFolder)
                                   ? file_util_ex::ConvertToUTF8(startFolder)
                                   : std_file_paths::GetDataPath("samples");
    wxFileDialog dialog(parent, lng::Text("Open"), wxString(), wxString(), wxString("*"),
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    file_chooser::SetFilters(dialog, Filters());
    file_chooser::SetFolder(dialog, folder);
    // The toolkit's extra control would lie below the list and take its height; the desktop's place for a
    // preview is beside it.
    const CPreviewControl preview(GTK_FILE_CHOOSER(dialog.GetHandle()), Background(), Cache());
    if (dialog.ShowModal() != wxID_OK) return {};
    std::wstring path = file_util_ex::PathFromBytes(file_chooser::ChosenPath(dialog));
    CLocalRegStore::WriteString("3dsFileDialog", "Path", std::wstring_view(file_util_ex::GetFilePath(path)));
    return path;
}
