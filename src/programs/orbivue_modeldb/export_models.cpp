// SPDX-License-Identifier: MIT
#include <algorithm>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/CAtomicFile.h"
#include "files/file_util_ex.h"
#include "modeldb/bytes/calc_crc.h"
#include "programs/orbivue_modeldb/model_commands.h"
#include "programs/orbivue_modeldb/store_output.h"
#include "programs/orbivue_modeldb/walk_models.h"
#include "settings/language_catalogue.h"

namespace {

constexpr std::size_t kMostNameBytes = 120;

/** A stranger's text as the name of a file or folder: it leads nowhere, hides nothing, and every system takes it. */
std::string FileNameOf(std::string_view text) {
    std::string name = Shown(utf8_text::Cut(text, kMostNameBytes));
    for (char& c : name)
        if (std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos) c = '_';
    if (name.starts_with('.') || name.starts_with(' ')) name[0] = '_';
    if (name.ends_with('.') || name.ends_with(' ')) name.back() = '_';
    return name.empty() ? "_" : name;
}

class CFileSink final : public CByteSink {
  public:
    explicit CFileSink(CAtomicFile& file) : m_file(file) {}
    CStatus Take(std::span<const std::byte> piece) override { return m_file.Write(piece); }

  private:
    CAtomicFile& m_file;
};

CStatus WriteBlob(CModelStore& store, const CBlobHash& hash, const std::string& path) {
    CResult<CAtomicFile> file = CAtomicFile::CreateNew(path);
    if (!file) return file.Error();
    CFileSink sink(file.Value());
    if (CStatus read = store.ReadBytes(hash, sink); !read) return read;
    return file.Value().Commit();
}

/** A new folder for a model: named as it is, or with its key where that is taken. Empty when none can be made. */
std::string NewFolder(const std::string& parent, const CModelRecord& model) {
    if (!file_util_ex::Mkdir(parent)) return {};
    const std::string name = FileNameOf(model.name);
    for (const std::string& candidate : {name, name + " " + model_key::ToText(model.key)}) {
        std::string path = file_util_ex::MakePath(parent, candidate);
        if (!file_util_ex::DoesFolderExist(path) && file_util_ex::Mkdir(path)) return path;
    }
    return {};
}

CStatus WriteModel(CModelStore& store, const std::string& into, std::uint32_t key) {
    const CResult<CModelRecord> found = store.Model(key);
    if (!found) return found.Error();
    const CModelRecord& model = found.Value();
    const std::string folder = NewFolder(file_util_ex::MakePath(into, FileNameOf(model.group)), model);
    if (folder.empty()) return CError{EErrorCode::WriteFailed, lng::Mark("no new folder can be made"), into};
    const std::string file = FileNameOf(model.name) + ".3ds";
    if (CStatus written = WriteBlob(store, model.file.hash, file_util_ex::MakePath(folder, file)); !written)
        return written;
    for (const CStoredTexture& texture : model.textures) {
        const std::string path = file_util_ex::MakePath(folder, FileNameOf(texture.name));
        if (CStatus written = WriteBlob(store, texture.blob.hash, path); !written) return written;
    }
    return CDone{};
}

}  // namespace

int model_commands::Export(const CModelDbOptions& options) {
    CResult<CModelStore> store = OpenStore(options, EStoreUse::Read);
    if (!store) return Complain(store.Error(), kStoreFails);
    std::size_t written = 0;
    int code = kDone;
    const CStatus done = WalkModels(store.Value(), options, [&](std::uint32_t key) -> CStatus {
        CStatus exported = WriteModel(store.Value(), options.into, key);
        if (exported) {
            ++written;
            return exported;
        }
        const EErrorCode why = exported.Error().code;
        if (why == EErrorCode::NoSpace || why == EErrorCode::Busy) return exported;
        const std::string message =
            lng::TextUtf8("model %s: ", {model_key::ToText(key)}) + lng::TextForTerminal(exported.Error());
        code = Complain(message, why == EErrorCode::WriteFailed ? kCannotWrite : kPartly);
        return CDone{};
    });
    if (!done) return Complain(done.Error(), WalkFailureCode(done.Error()));
    if (!Print(std::to_string(written) + " written\n")) return kCannotWrite;
    return code;
}
