// SPDX-License-Identifier: MIT
#include "model/prepare/load_textures.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <map>
#include <queue>
#include <span>
#include <string>
#include <utility>

#include "base/jobs/parallel_for.h"
#include "base/text/lng.h"
#include "model/prepare/prepare_materials.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/CNoteList.h"
#include "model/scene/CScene.h"
#include "model/scene/scene_budget.h"
#include "picture/decode/image_codec.h"

namespace {
constexpr std::uint64_t kBytesOfPixel = 4;
/** Files are read to learn what they claim; so much of them is kept for decoding. */
constexpr std::uint64_t kMaxKeptBytes = 64ULL << 20;
constexpr std::uint64_t kMaxReduction = 8;
/** Pictures as people make them have at most so many bytes, decoded, for each byte of the file. */
constexpr std::uint64_t kUsualRatio = 64;

bool HasTranslucency(const CImage& image) {
    for (std::size_t i = 3; i < image.rgba.size(); i += 4) {
        if (image.rgba[i] != 255) return true;
    }
    return false;
}

CSceneNote NotReadable(std::string subject, const CError& error) {
    return {CSceneNote::EKind::Missing, lng::Mark("Texture not readable"), std::move(subject), error.message};
}

const char* ReductionText(int reduction) {
    return reduction == 2
               ? lng::Mark("A picture is shown at a half of its size, as all together are too large")
           : reduction == 4
               ? lng::Mark("A picture is shown at a quarter of its size, as all together are too large")
               : lng::Mark("A picture is shown at an eighth of its size, as all together are too large");
}

/** One file, or one picture in memory, that some textures name. */
struct CSource {
    CTextureHit hit;
    std::size_t texture = 0;      ///< the first that names it
    std::vector<std::byte> kept;  ///< bytes of the file; may be empty
    std::uint64_t bytes = 0;      ///< of the whole picture, decoded; 0 when it cannot be told
    std::uint64_t fileBytes = 0;
    std::uint64_t reduction = 1;  ///< over kMaxReduction: it is left out
    std::vector<CSceneNote> notes = {};

    [[nodiscard]] std::uint64_t Cost() const {
        return reduction > kMaxReduction ? 0 : bytes / (reduction * reduction);
    }
    /** What decoding it takes, whatever the reduction, that the size of the file does not account for. */
    [[nodiscard]] std::uint64_t Excess() const {
        const std::uint64_t usual = fileBytes * kUsualRatio;
        return reduction > kMaxReduction || bytes < usual ? 0 : bytes - usual;
    }
};

/** Tells files apart, however they are named. */
struct CFileKey {
    const void* memory = nullptr;
    std::uint64_t device = 0, number = 0;
    std::string path;  ///< where the system tells no number

    static CFileKey Of(const CTextureHit& hit) {
        if (hit.data) return {hit.data, 0, 0, {}};
        struct stat info {};
        if (::stat(hit.foundAt.c_str(), &info) != 0) return {nullptr, 0, 0, hit.foundAt};
        return {nullptr, info.st_dev, info.st_ino, {}};
    }
    friend auto operator<=>(const CFileKey&, const CFileKey&) = default;
};

class CTextureLoader {
  public:
    CTextureLoader(const CScene& scene, const CPrepareOptions& options, CPreparedScene& prepared)
        : m_scene(scene), m_options(options), m_prepared(prepared) {}

    void Run() {
        FindSources();
        LearnClaims();
        BoundWork();
        FitBudget();
        Decode();
        DropRepeated();
        for (CSource& source : m_sources) {
            for (CSceneNote& note : source.notes) m_notes.Add(std::move(note));
        }
        for (CSceneNote& note : m_notes.Take()) m_prepared.notes.push_back(std::move(note));
    }

  private:
    [[nodiscard]] std::string NameOf(const CSource& source) const {
        return CNoteList::Printable(m_prepared.textures[source.texture].reference);
    }
    void FindSources();
    void LearnClaims();
    void FitBudget();
    void BoundWork();
    void Decode();
    void DecodeOne(CSource& source);
    void DropRepeated();

    const CScene& m_scene;
    const CPrepareOptions& m_options;
    CPreparedScene& m_prepared;
    CNoteList m_notes;
    std::vector<CSource> m_sources;
    std::vector<std::size_t> m_sameAs;  ///< for each texture the first one of the same file
};

void CTextureLoader::FindSources() {
    std::map<CFileKey, std::size_t> firstOfFile;
    for (std::size_t i = 0; i < m_prepared.textures.size(); ++i) {
        m_sameAs.push_back(i);
        if (m_options.IsStopped()) continue;
        const std::string& reference = m_prepared.textures[i].reference;
        std::optional<CTextureHit> hit = m_scene.Textures().Find(reference);
        if (!hit) {
            m_notes.Missing("Texture not found", CNoteList::Printable(reference));
            continue;
        }
        const auto [first, isNew] = firstOfFile.try_emplace(CFileKey::Of(*hit), i);
        m_sameAs[i] = first->second;
        if (isNew) m_sources.push_back({std::move(*hit), i, {}});
    }
}

/** What cannot be told now, decoding will refuse. */
void CTextureLoader::LearnClaims() {
    std::uint64_t kept = 0;
    for (CSource& source : m_sources) {
        if (m_options.IsStopped()) return;
        std::span<const std::byte> bytes;
        if (source.hit.data) {
            bytes = *source.hit.data;
        } else if (auto read = ReadTexture(source.hit, image_codec::kMaxFileBytes)) {
            source.kept = std::move(read).Value();
            bytes = source.kept;
        }
        source.fileBytes = bytes.size();
        const auto claim = image_codec::ClaimOf(bytes, source.hit.foundAt);
        constexpr std::uint64_t kLargest = 1ULL << 31;
        if (claim)
            source.bytes = std::min(claim.Value().width, kLargest) *
                           std::min(claim.Value().height, kLargest) * kBytesOfPixel;
        if (kept + source.kept.size() > kMaxKeptBytes) source.kept = {};
        kept += source.kept.size();
    }
}

/** Makes the largest smaller until all fit. */
void CTextureLoader::FitBudget() {
    const auto isSmaller = [this](std::size_t a, std::size_t b) {
        const std::uint64_t costA = m_sources[a].Cost(), costB = m_sources[b].Cost();
        return costA != costB ? costA < costB : a > b;
    };
    std::priority_queue<std::size_t, std::vector<std::size_t>, decltype(isSmaller)> byCost(isSmaller);
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < m_sources.size(); ++i) {
        CSource& source = m_sources[i];
        while (source.Cost() > image_codec::kMaxDecodedBytes) source.reduction *= 2;
        sum += source.Cost();
        byCost.push(i);
    }
    while (sum > m_options.pictureBytes) {
        const std::size_t largest = byCost.top();
        byCost.pop();
        sum -= m_sources[largest].Cost();
        m_sources[largest].reduction *= 2;
        sum += m_sources[largest].Cost();
        byCost.push(largest);
    }
}

/** A small file may claim a large picture, and that is decoded whole to be made smaller: of many, the largest are left
 * out. One alone may be as large as a picture can be. */
void CTextureLoader::BoundWork() {
    std::vector<CSource*> order;
    for (CSource& source : m_sources) order.push_back(&source);
    std::stable_sort(order.begin(), order.end(),
                     [](const CSource* a, const CSource* b) { return a->Excess() < b->Excess(); });
    std::uint64_t sum = 0;
    for (CSource* source : order) {
        const std::uint64_t before = sum;
        sum += source->Excess();
        if (before > 0 && sum > scene_budget::kPictureWorkRatio * m_options.pictureBytes)
            source->reduction = 2 * kMaxReduction;
    }
}

void CTextureLoader::Decode() {
    std::vector<CSource*> order;  // the largest first, so that none is left to one core at the end
    for (CSource& source : m_sources) order.push_back(&source);
    std::stable_sort(order.begin(), order.end(),
                     [](const CSource* a, const CSource* b) { return a->Cost() > b->Cost(); });
    ParallelFor(order.size(), m_options.threads, [&](std::size_t i) {
        if (!m_options.IsStopped()) DecodeOne(*order[i]);
    });
}

void CTextureLoader::DecodeOne(CSource& source) {
    CPreparedTexture& texture = m_prepared.textures[source.texture];
    if (source.reduction > kMaxReduction) {
        source.notes.push_back(NotReadable(
            NameOf(source), {EErrorCode::TooLarge, lng::Mark("all pictures together are too large"), {}}));
        return;
    }
    if (!source.hit.data && source.kept.empty()) {
        auto read = ReadTexture(source.hit, image_codec::kMaxFileBytes);
        if (!read) return source.notes.push_back(NotReadable(NameOf(source), read.Error()));
        source.kept = std::move(read).Value();
    }
    const std::span<const std::byte> bytes = source.hit.data ? *source.hit.data : source.kept;
    // Sides are rounded up when they are divided.
    const std::uint64_t slack = source.reduction > 1 ? source.Cost() / 8 + 4096 : 0;
    image_codec::CDecodeLimits limits;
    if (source.bytes > 0) limits.bytes = std::min(limits.bytes, source.Cost() + slack);
    auto decoded = image_codec::DecodeImage(bytes, source.hit.foundAt, limits);
    source.kept = {};
    if (!decoded) return source.notes.push_back(NotReadable(NameOf(source), decoded.Error()));
    if (decoded.Value().reduction > 1)
        source.notes.push_back(
            {CSceneNote::EKind::Limited, ReductionText(decoded.Value().reduction), NameOf(source)});
    if (source.hit.outsideModelFolder)
        source.notes.push_back({CSceneNote::EKind::Limited,
                                lng::Mark("A picture lies outside the model's own folder"),
                                CNoteList::Printable(source.hit.foundAt)});
    texture.foundAt = source.hit.foundAt;
    SetPicture(std::move(decoded.Value().image), texture);
    m_options.Spend(texture.image.rgba.size());
}

/** Leaves one texture for each file, in the order of their first names. */
void CTextureLoader::DropRepeated() {
    std::vector<int> newIndex(m_sameAs.size());
    std::size_t count = 0;
    for (std::size_t i = 0; i < m_sameAs.size(); ++i) {
        newIndex[i] = m_sameAs[i] == i ? static_cast<int>(count) : newIndex[m_sameAs[i]];
        if (m_sameAs[i] != i) continue;
        if (count != i) m_prepared.textures[count] = std::move(m_prepared.textures[i]);
        ++count;
    }
    if (count == m_sameAs.size()) return;
    m_prepared.textures.resize(count);
    for (CPreparedMaterial& material : m_prepared.materials) {
        ForEachMap(material, [&](CPreparedMap& map) {
            if (map.texture >= 0) map.texture = newIndex[static_cast<std::size_t>(map.texture)];
        });
    }
}
}  // namespace

std::optional<CSceneNote> LoadTexture(const CTextureLocator& textures, std::uint64_t maxBytes,
                                      CPreparedTexture& texture) {
    std::string name = CNoteList::Printable(texture.reference);
    const std::optional<CTextureHit> hit = textures.Find(texture.reference);
    if (!hit) return CSceneNote{CSceneNote::EKind::Missing, lng::Mark("Texture not found"), std::move(name)};
    std::vector<std::byte> read;
    if (!hit->data) {
        auto file = ReadTexture(*hit, image_codec::kMaxFileBytes);
        if (!file) return NotReadable(std::move(name), file.Error());
        read = std::move(file).Value();
    }
    auto decoded = image_codec::DecodeImage(hit->data ? *hit->data : read, hit->foundAt,
                                            {std::min(maxBytes, image_codec::kMaxDecodedBytes)});
    if (!decoded) return NotReadable(std::move(name), decoded.Error());
    texture.foundAt = hit->foundAt;
    SetPicture(std::move(decoded.Value().image), texture);
    return std::nullopt;
}

void SetPicture(CImage image, CPreparedTexture& texture) {
    texture.image = std::move(image);
    texture.hasTranslucency = HasTranslucency(texture.image);
}

void LoadTextures(const CScene& scene, const CPrepareOptions& options, CPreparedScene& prepared) {
    CTextureLoader(scene, options, prepared).Run();
}
