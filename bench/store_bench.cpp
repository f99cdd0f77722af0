// SPDX-License-Identifier: MIT
// Fills a store of models by a generator and prints, as JSON, what its lists and its imports take.
//   orbivue_store_bench PLACE MODELS [GROUPS]   PLACE: a file that is not there yet, or postgresql://...
#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "base/CStopwatch.h"
#include "modeldb/store/CModelStore.h"

namespace {

constexpr std::size_t kBatch = 10'000;

double ProcessorMs() {
    rusage used{};
    (void)::getrusage(RUSAGE_SELF, &used);
    const auto ms = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return ms(used.ru_utime) + ms(used.ru_stime);
}

[[noreturn]] void Fail(const CError& error) {
    std::fprintf(stderr, "orbivue_store_bench: %s\n", error.Text().c_str());
    std::exit(1);
}
template <class T>
T Need(CResult<T> result) {
    if (!result) Fail(result.Error());
    return std::move(result).Value();
}

/** Names as people give them, most of them different. */
std::string NameOf(std::size_t number) {
    constexpr const char* kThings[] = {"chair", "table", "lamp", "car", "house", "tree", "ship", "robot"};
    constexpr const char* kKinds[] = {"old", "red", "small", "broken", "modern", "round", "heavy"};
    return std::string(kKinds[number % 7]) + " " + kThings[number % 8] + " " + std::to_string(number);
}

/** All have one small file's bytes as texture, and a file of their own. */
CNewModel ModelOf(std::size_t number, std::size_t groups, std::size_t fileBytes, const CNewBlob& texture) {
    std::string content = "3ds " + std::to_string(number) + " ";
    std::mt19937 random(static_cast<unsigned>(number));
    while (content.size() < fileBytes) content += static_cast<char>(random() % 64);
    CNewModel model;
    char group[32];
    (void)std::snprintf(group, sizeof(group), "group %05zu", number % groups);
    model.group = group;
    model.name = NameOf(number);
    model.file = Need(CBlobWriter::Write(nullptr, std::as_bytes(std::span(content))));
    if (fileBytes > 100) model.textures.push_back({"wood.jpg", texture});
    return model;
}

/** Adds models; how many of them were refused, as their keys met those of others. */
std::size_t Fill(CModelStore& store, std::size_t first, std::size_t count, std::size_t groups,
                 std::size_t fileBytes, std::size_t batch) {
    const std::string picture(5000, 'p');
    const CNewBlob texture = Need(CBlobWriter::Write(nullptr, std::as_bytes(std::span(picture))));
    std::size_t refused = 0;
    for (std::size_t done = 0; done < count; done += batch) {
        std::vector<CNewModel> models;
        for (std::size_t i = done; i < std::min(count, done + batch); ++i)
            models.push_back(ModelOf(first + i, groups, fileBytes, texture));
        for (const auto& result : Need(store.AddModels(models))) refused += result ? 0u : 1u;
    }
    return refused;
}

/** The median of several runs. */
void Measure(const char* name, int runs, const std::function<void(int)>& body) {
    std::vector<double> clock;
    const double before = ProcessorMs();
    for (int i = 0; i < runs; ++i) {
        const CStopwatch watch;
        body(i);
        clock.push_back(watch.Ms());
    }
    std::ranges::sort(clock);
    std::printf(",\n \"%s\": {\"median_ms\": %.3f, \"worst_ms\": %.3f, \"processor_ms\": %.3f}", name,
                clock[clock.size() / 2], clock.back(), (ProcessorMs() - before) / runs);
}

void MeasureFill(const char* name, CModelStore& store, std::size_t first, std::size_t count,
                 std::size_t fileBytes, std::size_t batch) {
    const double before = ProcessorMs();
    const CStopwatch watch;
    (void)Fill(store, first, count, 10, fileBytes, batch);
    std::printf(",\n \"%s\": {\"models\": %zu, \"seconds\": %.2f, \"a_second\": %.0f, \"processor_s\": %.2f}",
                name, count, watch.Ms() / 1e3, static_cast<double>(count) / watch.Ms() * 1e3,
                (ProcessorMs() - before) / 1e3);
}

void MeasureLists(CModelStore& store) {
    const std::vector<CGroupRecord> groups = Need(store.Groups());
    Measure("groups", 20, [&](int) { (void)Need(store.Groups()); });
    Measure("group_of_1000", 50, [&](int i) {
        (void)Need(
            store.Models(groups[static_cast<std::size_t>(i) * 17 % groups.size()].id, std::nullopt, 1000));
    });
    const std::vector<CModelSummary> some = Need(store.Models(groups[0].id, std::nullopt, 50));
    Measure("model", 50,
            [&](int i) { (void)Need(store.Model(some[static_cast<std::size_t>(i) % some.size()].key)); });
    Measure("search_rare", 10,
            [&](int i) { (void)Need(store.Search("lamp 1234" + std::to_string(i), 0, 100)); });
    Measure("search_common", 10, [&](int) { (void)Need(store.Search("lamp", 0, 100)); });
    Measure("search_nothing", 10, [&](int) { (void)Need(store.Search("xylophone", 0, 100)); });
    Measure("search_two_letters", 3, [&](int) { (void)Need(store.Search("qx", 0, 100)); });
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: orbivue_store_bench PLACE MODELS [GROUPS]\n");
        return 2;
    }
    const std::size_t models = std::strtoul(argv[2], nullptr, 10),
                      groups = argc > 3 ? std::strtoul(argv[3], nullptr, 10) : 1000;
    CModelStore store = Need(CModelStore::Open(CStoreAddress::Parse(argv[1]), EStoreUse::Create));
    const CStopwatch watch;
    const std::size_t refused = Fill(store, 0, models, groups, 20, kBatch);
    std::printf(
        "{\"models\": %zu, \"groups\": %zu, \"filled_s\": %.1f, \"processor_s\": %.1f, \"keys_taken\": %zu",
        models, groups, watch.Ms() / 1e3, ProcessorMs() / 1e3, refused);
    MeasureLists(store);
    Measure("quick_check", 1, [&](int) { (void)Need(store.Check(CModelStore::ECheck::Quick)); });
    MeasureFill("add_4kb_batches_of_200", store, 100'000'000, 4000, 4096, 200);
    MeasureFill("add_20kb_batches_of_200", store, 200'000'000, 2000, 20480, 200);
    MeasureFill("add_200kb_one_by_one", store, 300'000'000, 100, 204800, 1);
    std::printf("\n}\n");
    return 0;
}
