// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/upload_arguments.h"

#include "base/text/lng.h"
#include "files/file_util_ex.h"

CResult<CUploadArguments> ReadUploadArguments(std::span<const std::string> arguments) {
    constexpr std::size_t kFolders = 3;
    if (arguments.size() != kFolders + 1)
        return CError{
            EErrorCode::BadArgument,
            lng::Mark("four arguments are needed: model folder, template folder, upload folder, model name"),
            {}};
    for (const std::string& folder : arguments.first(kFolders)) {
        if (!folder.starts_with('/') || !file_util_ex::DoesFolderExist(folder))
            return CError{EErrorCode::NotFound, lng::Mark("there is no such file or folder"), folder};
    }
    return CUploadArguments{arguments[0], arguments[1], arguments[2], arguments[3]};
}
