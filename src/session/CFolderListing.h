// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/** Lists the models beside a file as folder_models::ListBeside does, and keeps the listing as long as it is certainly true:
 * a step asks for it several times, and listing 50,000 files takes a tenth of a second. It is made anew when the folder was
 * changed, when it had been changed shortly before it was listed (its time has too coarse a grain to tell of more),
 * and after some seconds, as not every file system keeps a folder's time. */
class CFolderListing {
  public:
    /** Valid until the next call. */
    [[nodiscard]] const std::vector<std::wstring>& Beside(const std::wstring& path);

  private:
    struct CStamp {
        std::int64_t changedNs = 0;
        std::uint64_t device = 0, inode = 0;
        friend bool operator==(const CStamp&, const CStamp&) = default;
    };
    [[nodiscard]] static std::optional<CStamp> StampOf(const std::wstring& folder);

    std::wstring m_folder;
    std::optional<CStamp> m_stamp;  ///< none: the listing is not to be kept
    std::chrono::steady_clock::time_point m_listedAt;
    std::vector<std::wstring> m_models;
};
