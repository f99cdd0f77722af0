// SPDX-License-Identifier: MIT
#include <optional>

#include "base/jobs/parallel_for.h"
#include "modeldb/bytes/calc_crc.h"
#include "modeldb/import/read_model.h"
#include "programs/orbivue_modeldb/draw_previews.h"
#include "programs/orbivue_modeldb/model_commands.h"
#include "programs/orbivue_modeldb/model_source.h"
#include "programs/orbivue_modeldb/store_output.h"

namespace {

/** What is read at once, and what of it is added in one transaction. */
constexpr std::size_t kModelsAtOnce = 16, kBatchModels = 200;
constexpr std::uint64_t kBatchBytes = 64ULL << 20;

struct CTally {
    std::size_t added = 0, known = 0, leftOut = 0;
};

class CImport {
  public:
    CImport(CModelStore& store, const CModelDbOptions& options) : m_store(store), m_options(options) {}

    CStatus Add(std::span<const CModelSource> sources) {
        while (!sources.empty()) {
            std::size_t count = 0;
            for (std::uint64_t bytes = 0; count < std::min(kModelsAtOnce, sources.size()); ++count)
                if ((bytes += sources[count].bytes) > kBatchBytes && count > 0) break;
            Read(sources.first(count));
            sources = sources.subspan(count);
            if (m_models.size() < kBatchModels && m_heldBytes < kBatchBytes && !sources.empty()) continue;
            if (CStatus added = AddBatch(); !added) return added;
        }
        return CDone{};
    }

    CTally tally;
    std::vector<std::uint32_t> added;  ///< the keys of new models

  private:
    void Read(std::span<const CModelSource> sources) {
        std::vector<std::optional<CResult<CNewModel>>> read(sources.size());
        // A single large file goes into the store while it is read, which only this thread can do.
        if (sources.size() == 1)
            read[0] = ReadModel(sources[0].path, m_options.group, &m_store);
        else
            ParallelFor(sources.size(), 0, [&](std::size_t i) {
                read[i] = ReadModel(sources[i].path, m_options.group, nullptr);
            });
        for (std::size_t i = 0; i < sources.size(); ++i) {
            if (!*read[i]) {
                LeaveOut(read[i]->Error());
                continue;
            }
            CNewModel& model = m_models.emplace_back(std::move(*read[i]).Value());
            m_paths.push_back(sources[i].path);
            m_heldBytes += model.file.facts.stored;
            for (const CNewTexture& texture : model.textures) m_heldBytes += texture.blob.facts.stored;
        }
    }

    CStatus AddBatch() {
        const auto results = m_store.AddModels(m_models);
        if (!results) return results.Error();
        for (std::size_t i = 0; i < m_paths.size(); ++i) Note(m_paths[i], results.Value()[i]);
        m_models.clear();
        m_paths.clear();
        m_heldBytes = 0;
        return CDone{};
    }

    void LeaveOut(const CError& error) {
        ++tally.leftOut;
        (void)Complain(error, kPartly);  // the program's code is that of the tally
    }

    void Note(const std::string& path, const CResult<CAddedModel>& result) {
        if (!result) return LeaveOut({result.Error().code, result.Error().message, path});
        const bool isNew = result.Value().how == EAdded::Added;
        ++(isNew ? tally.added : tally.known);
        if (isNew && m_options.previews) added.push_back(result.Value().key);
        if (m_options.verbose)
            (void)Print(model_key::ToText(result.Value().key) + (isNew ? " added " : " known ") +
                        Shown(path) + "\n");
    }

    CModelStore& m_store;
    const CModelDbOptions& m_options;
    std::vector<CNewModel> m_models;  ///< read, and not yet added
    std::vector<std::string> m_paths;
    std::uint64_t m_heldBytes = 0;
};

}  // namespace

int model_commands::Import(const CModelDbOptions& options) {
    std::vector<CModelSource> sources;
    for (const std::string& path : options.arguments) {
        const CResult<std::vector<CModelSource>> found = FindModels(path);
        if (!found) return Complain(found.Error(), kUsage);
        sources.insert(sources.end(), found.Value().begin(), found.Value().end());
    }
    CResult<CModelStore> store = OpenStore(options, EStoreUse::Create);
    if (!store) return Complain(store.Error(), kStoreFails);
    CImport import(store.Value(), options);
    const CStatus done = import.Add(sources);
    const CTally& tally = import.tally;
    const bool printed = Print(std::to_string(tally.added) + " added, " + std::to_string(tally.known) +
                               " there already, " + std::to_string(tally.leftOut) + " left out\n");
    if (!done) return Complain(done.Error(), kStoreFails);
    if (CStatus drawn = DrawPreviews(options, import.added); !drawn)
        return Complain(drawn.Error(), kStoreFails);
    if (tally.leftOut > 0) return kPartly;
    return printed ? kDone : kCannotWrite;
}
