// SPDX-License-Identifier: MIT
#include "modeldb/server/work/CModelInput.h"

#include <utility>

#include "modeldb/records/store_records.h"
#include "modeldb/server/work/unnamed_file.h"
#include "modeldb/store/CModelStore.h"

namespace {

class CFileSink final : public CByteSink {
  public:
    explicit CFileSink(const CFileDescriptor& file) : m_file(file) {}
    [[nodiscard]] CStatus Take(std::span<const std::byte> piece) override {
        return unnamed_file::Append(m_file, piece);
    }

  private:
    const CFileDescriptor& m_file;
};

}  // namespace

CResult<CModelInput> CModelInput::OfBytes(std::span<const std::byte> model, const std::string& folder) {
    CResult<CFileDescriptor> file = unnamed_file::Make(folder);
    if (!file) return file.Error();
    if (CStatus written = unnamed_file::Append(file.Value(), model); !written) return written.Error();
    CModelInput input;
    input.file = std::make_shared<const CFileDescriptor>(std::move(file).Value());
    input.model.bytes = model.size();
    return input;
}

CResult<CModelInput> CModelInput::OfStore(CModelStore& store, const CModelRecord& record,
                                          const std::string& folder) {
    CResult<CFileDescriptor> file = unnamed_file::Make(folder);
    if (!file) return file.Error();
    CModelInput input;
    input.name = record.name;
    CFileSink sink(file.Value());
    std::uint64_t end = 0;
    const auto add = [&](const CStoredBlob& blob) -> CResult<CFileStretch> {
        if (CStatus read = store.ReadBytes(blob.hash, sink); !read) return read.Error();
        return CFileStretch{std::exchange(end, end + blob.size), blob.size};
    };
    const CResult<CFileStretch> model = add(record.file);
    if (!model) return model.Error();
    input.model = model.Value();
    for (const CStoredTexture& texture : record.textures) {
        const CResult<CFileStretch> stretch = add(texture.blob);
        if (!stretch) return stretch.Error();
        input.textures.push_back({texture.name, stretch.Value()});
    }
    input.file = std::make_shared<const CFileDescriptor>(std::move(file).Value());
    return input;
}
