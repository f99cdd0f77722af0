// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/remembered_remote.h"

#include "files/std_file_paths.h"
#include "settings/CIniFile.h"

namespace {

constexpr char kSection[] = "upload", kKey[] = "remote";

std::string Path() {
    return std_file_paths::GetIniFilePath("upload.ini");
}

}  // namespace

std::string remembered_remote::Get() {
    CIniFile file;
    if (!file.Load(Path())) return {};
    return file.Get(kSection, kKey).value_or("");
}

void remembered_remote::Keep(const std::string& remote) {
    CIniFile file;
    (void)file.Load(Path()).HasValue();  // at first there is none
    if (file.Set(kSection, kKey, remote)) (void)file.Save(Path()).HasValue();
}
