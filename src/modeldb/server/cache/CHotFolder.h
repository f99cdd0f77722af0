// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"

/** A file of a hot folder, open for reading alone. */
struct CHotFile {
    std::shared_ptr<const CFileDescriptor> file;  ///< shared with the answers that are sending it
    std::uint64_t bytes = 0;
    std::string_view mime;  ///< "image/png" or "image/jpeg" where the bytes begin so, else those of no kind
    bool isFresh = false;   ///< it was confirmed within the last minute
};

struct CHotCounts {
    std::uint64_t bytes = 0, files = 0;              ///< now
    std::uint64_t hits = 0, fills = 0, dropped = 0;  ///< since the start
};

/** Files of bytes that are asked for often, beside the store that has them: disposable, private to this process, bounded.
 * Below the given folder each process takes the first folder hot-0, hot-1 ... that no other has locked, and empties
 * it at its start and at its end. Names are hexadecimal digits with, perhaps, an ending; a file lies in a folder of its
 * name's first two characters. Links are never followed. Any thread. */
class CHotFolder {
  public:
    struct COptions {
        std::string folder;  ///< made, for this user alone, where it is missing
        std::uint64_t bytes = 4ULL << 30;
        std::size_t files = 200'000;
    };
    /** WriteFailed, NoSpace: the folder cannot be made or used. */
    [[nodiscard]] static CResult<std::unique_ptr<CHotFolder>> Open(COptions options);
    CHotFolder(const CHotFolder&) = delete;
    CHotFolder& operator=(const CHotFolder&) = delete;
    ~CHotFolder();

    [[nodiscard]] std::optional<CHotFile> Find(std::string_view name);
    /** Says that the file still holds what the store has. */
    void Confirm(std::string_view name);
    void Remove(std::string_view name);

    using CWrite = std::function<CStatus(std::span<const std::byte> piece)>;
    using CFill = std::function<CStatus(const CWrite& write)>;
    /** Makes the file of what fill writes, unless fill fails; others see it when it is whole. When the disk is full all other
     * files go and fill is called once more. Without it: fill's failure, NoSpace, WriteFailed. */
    [[nodiscard]] CResult<CHotFile> Put(std::string_view name, const CFill& fill);
    [[nodiscard]] CHotCounts Counts() const;

  private:
    struct CEntry {
        std::string name;
        std::uint64_t bytes = 0;
        std::string_view mime;
        std::chrono::steady_clock::time_point confirmed;
        std::weak_ptr<const CFileDescriptor> file;  ///< while anybody has it open
    };
    using CEntries = std::list<CEntry>;

    CHotFolder(COptions options, CFileDescriptor folder)
        : m_options(std::move(options)), m_folder(std::move(folder)) {}
    [[nodiscard]] CResult<CHotFile> PutOnce(std::string_view name, const CFill& fill);
    [[nodiscard]] CHotFile Keep(std::string_view name, std::shared_ptr<const CFileDescriptor> file,
                                std::uint64_t bytes);
    [[nodiscard]] std::shared_ptr<const CFileDescriptor> OpenAgain(CEntry& entry);
    void Trim(std::uint64_t bytes, std::size_t files);
    void Drop(CEntries::iterator entry);

    const COptions m_options;
    const CFileDescriptor m_folder;  ///< locked
    mutable std::mutex m_mutex;
    CEntries m_entries;  ///< the one asked for last comes first
    std::unordered_map<std::string_view, CEntries::iterator> m_byName;  // of texts in m_entries
    std::array<std::shared_ptr<const CFileDescriptor>, 256> m_open;     ///< opened last: they stay open
    std::size_t m_nextOpen = 0;
    std::uint64_t m_nextTemporary = 0;
    CHotCounts m_counts;
};
