// SPDX-License-Identifier: MIT
#include "modeldb/client/make_user_store.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>
#include <vector>

#include "base/text/lng.h"
#include "files/CFileDescriptor.h"
#include "files/file_util_ex.h"
#include "files/system_error.h"
#include "modeldb/import/read_model.h"
#include "modeldb/store/CModelStore.h"

using namespace std::chrono_literals;

namespace {

constexpr auto kPatience = 10s;  ///< for another process that fills the store, which takes less than one
constexpr std::uint64_t kMostPreviewBytes = 1 << 20;

struct CSample {
    const char* file;  ///< without its extension, which the preview has another of
    const char* group;
    const char* name;
};
constexpr CSample kSamples[] = {
    {"chess", "Scenes", "Chess"}, {"orrery", "Scenes", "Orrery"},          {"knot", "Shapes", "Knot"},
    {"vase", "Shapes", "Vase"},   {"materials", "Materials", "Materials"},
};

bool IsThere(const std::string& path) {
    struct stat state {};
    return ::lstat(path.c_str(), &state) == 0;
}

CError SystemFailure(const std::string& path) {
    return {errno == ENOSPC ? EErrorCode::NoSpace : EErrorCode::WriteFailed, SystemErrorText(errno), path};
}

/** The folder, locked against other processes until it is closed. */
CResult<CFileDescriptor> LockFolder(const std::string& folder) {
    (void)file_util_ex::Mkdir(folder);  // a failure shows in the next line
    CFileDescriptor lock(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!lock.IsOpen()) return SystemFailure(folder);
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (::flock(lock.Get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) return SystemFailure(folder);
        if (std::chrono::steady_clock::now() > end)
            return CError{EErrorCode::Busy, lng::Mark("somebody else is using it"), folder};
        std::this_thread::sleep_for(20ms);
    }
    return lock;
}

/** Deletes what belongs to a store's file: a log that lies beside another file would be taken for that one's. */
void DeleteLogs(const std::string& path) {
    for (const char* suffix : {"-wal", "-shm", "-journal"}) (void)::unlink((path + suffix).c_str());
}

void DeleteStore(const std::string& path) {
    (void)::unlink(path.c_str());
    DeleteLogs(path);
}

void AddPreview(const std::string& path, CNewModel& model) {
    const CResult<std::vector<std::byte>> picture = file_util_ex::ReadPlainFile(path, kMostPreviewBytes);
    if (!picture) return;
    CResult<CNewBlob> blob = CBlobWriter::Write(nullptr, picture.Value());
    if (blob) model.preview = std::move(blob).Value();
}

/** How many samples were there. */
CResult<std::size_t> AddSamples(CModelStore& store, const std::string& folder) {
    const std::string previews = file_util_ex::MakePath(file_util_ex::GetFilePath(folder), "previews");
    std::vector<CNewModel> models;
    for (const CSample& sample : kSamples) {
        const std::string path = file_util_ex::MakePath(folder, std::string(sample.file) + ".3ds");
        CResult<CNewModel> model = ReadModel(path, sample.group, nullptr);
        if (!model) continue;  // samples may be left out of a package
        model.Value().name = sample.name;
        AddPreview(file_util_ex::MakePath(previews, std::string(sample.file) + ".jpg"), model.Value());
        models.push_back(std::move(model).Value());
    }
    const auto added = store.AddModels(models);
    if (!added) return added.Error();
    return models.size();
}

/** A complete store in a file of its own, and how many samples it has. */
CResult<std::size_t> Fill(const std::string& path, const std::string& samplesFolder) {
    DeleteStore(path);  // of one who was killed
    CResult<CModelStore> store = CModelStore::Open(CStoreAddress::Parse(path), EStoreUse::Create);
    if (!store) return store.Error();
    return AddSamples(store.Value(), samplesFolder);  // closing the store takes its log into the file
}

/** Gives a complete store its name, unless something has it. */
CStatus Publish(const std::string& from, const std::string& path, const CFileDescriptor& folder) {
    int failed = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE);
    // Not every file system can do that; then the lock has to do.
    if (failed != 0 && errno == EINVAL && !IsThere(path)) failed = ::rename(from.c_str(), path.c_str());
    if (failed != 0 && errno != EEXIST) return SystemFailure(path);
    (void)::fsync(folder.Get());  // a store that is not there after a power cut is made again
    return CDone{};
}

/** The file that says that a store has never been filled. */
std::string MarkOf(const std::string& path) {
    return path + "-unfilled";
}

/** Sets or deletes the mark of a store that is not there yet. */
CStatus Mark(const std::string& path, bool isUnfilled) {
    const std::string mark = MarkOf(path);
    (void)::unlink(mark.c_str());
    if (!isUnfilled) return CDone{};
    const CFileDescriptor made(::open(mark.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    return made.IsOpen() ? CStatus(CDone{}) : CStatus(SystemFailure(mark));
}

bool HasSamples(const std::string& folder) {
    return std::ranges::any_of(kSamples, [&folder](const CSample& sample) {
        return IsThere(file_util_ex::MakePath(folder, std::string(sample.file) + ".3ds"));
    });
}

/** Fills a store that never was. The mark goes last: who is killed before adds nothing twice, as the store knows the files. */
void FillLater(const std::string& path, const std::string& samplesFolder) {
    if (!IsThere(MarkOf(path)) || !HasSamples(samplesFolder)) return;
    const CResult<CFileDescriptor> folder = LockFolder(file_util_ex::GetFilePath(path));
    if (!folder || !IsThere(MarkOf(path))) return;
    CResult<CModelStore> store = CModelStore::Open(CStoreAddress::Parse(path), EStoreUse::Write);
    if (!store) return;
    const CResult<std::size_t> added = AddSamples(store.Value(), samplesFolder);
    if (added && added.Value() > 0) (void)::unlink(MarkOf(path).c_str());
}

}  // namespace

CStatus MakeUserStore(const std::string& path, const std::string& samplesFolder) {
    if (IsThere(path)) {
        FillLater(path, samplesFolder);
        return CDone{};
    }
    const CResult<CFileDescriptor> folder = LockFolder(file_util_ex::GetFilePath(path));
    if (!folder) return folder.Error();
    if (IsThere(path)) return CDone{};
    DeleteLogs(path);
    const std::string unfinished = path + ".new";
    const CResult<std::size_t> samples = Fill(unfinished, samplesFolder);
    CStatus made = samples ? Mark(path, samples.Value() == 0) : CStatus(samples.Error());
    if (made) made = Publish(unfinished, path, folder.Value());
    DeleteStore(unfinished);
    return made;
}
