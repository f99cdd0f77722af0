// SPDX-License-Identifier: MIT
#include "programs/orbivue_modeldb/model_source.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/text/ascii_text.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"

namespace fs = std::filesystem;

namespace {

bool IsModel(const fs::directory_entry& entry) {
    std::error_code error;
    return ascii_text::EqualNoCase(file_util_ex::GetFileExt(entry.path().native()), "3ds") &&
           !entry.is_symlink(error) && entry.is_regular_file(error);
}

CError SystemFailure(const std::string& path, const std::error_code& error) {
    const bool missing = error == std::errc::no_such_file_or_directory;
    return {missing ? EErrorCode::NotFound : EErrorCode::Unreadable, SystemErrorText(error.value()), path};
}

}  // namespace

CResult<std::vector<CModelSource>> FindModels(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status))
        return SystemFailure(path, std::make_error_code(std::errc::no_such_file_or_directory));
    if (!fs::is_directory(status)) return std::vector<CModelSource>{{path, fs::file_size(path, error)}};
    std::vector<CModelSource> found;
    fs::recursive_directory_iterator entry(path, fs::directory_options::skip_permission_denied, error);
    if (error) return SystemFailure(path, error);
    for (; entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (error) return SystemFailure(path, error);
        if (entry->path().filename().native().starts_with('.')) entry.disable_recursion_pending();
        if (IsModel(*entry)) found.push_back({entry->path().native(), entry->file_size(error)});
    }
    std::ranges::sort(found, {}, &CModelSource::path);
    return found;
}
