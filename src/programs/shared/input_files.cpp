// SPDX-License-Identifier: MIT
#include "programs/shared/input_files.h"

#include <filesystem>
#include <set>

#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "model/textures/CModelSurroundings.h"
#include "programs/shared/open_input.h"

CFileAccess FilesFor(std::span<const std::string> inputs, const std::string& outputFolder,
                     std::size_t scene) {
    constexpr std::size_t kMostScripts = 50;  // each takes a process
    CFileAccess files;
    files.readable = {file_util_ex::GetFilePath(std_file_paths::GetProgramFolderPath())};
    std::set<std::string> folders;
    std::size_t scripts = 0;
    for (const std::string& input : inputs) {
        files.readable.push_back(input);
        folders.insert(file_util_ex::GetFilePath(input));
        if (!IsScript(input) || ++scripts > kMostScripts) continue;
        const CNamedFiles named = FilesNamedBy(input, scene);
        for (const std::vector<std::string>* list : {&named.files, &named.models})
            files.readable.insert(files.readable.end(), list->begin(), list->end());
        for (const std::string& model : named.models) folders.insert(file_util_ex::GetFilePath(model));
        for (const std::string& file : named.files) files.listable.push_back(file_util_ex::GetFilePath(file));
    }
    for (const std::string& folder : folders) {
        const CModelSurroundings surroundings(folder);
        for (const std::filesystem::path& path : surroundings.Readable())
            files.readable.push_back(path.native());
        files.listable.push_back(surroundings.Folder().native());
        for (const std::filesystem::path& path : surroundings.Above())
            files.listable.push_back(path.native());
    }
    if (!outputFolder.empty()) files.writable.push_back(outputFolder);
    return files;
}
