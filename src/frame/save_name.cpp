// SPDX-License-Identifier: MIT
#include "frame/save_name.h"

#include "files/file_util_ex.h"

bool IsZipName(std::wstring_view path) {
    return file_util_ex::GetFileExt(path) == L"zip";
}

bool IsNameToSave(std::wstring_view path) {
    const std::wstring extension = file_util_ex::GetFileExt(path);
    return IsZipName(path) || extension == L"3ds" || extension == L"3DS" || extension == L"3Ds" ||
           extension == L"3dS";
}
