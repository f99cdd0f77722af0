// SPDX-License-Identifier: MIT
#include "modeldb/database/sqlite_state.h"

#include <sqlite3.h>

#include <algorithm>

namespace {

constexpr int kIndexPageBytes = 32768;
constexpr std::size_t kIsInitAt = 12;

using CMark = CDatabase::CStateMark;

CMark CopyOf(const volatile unsigned char* bytes) {
    CMark mark{};
    std::copy_n(bytes, mark.size(), mark.begin());
    return mark;
}

}  // namespace

std::optional<CMark> SqliteStateMark(sqlite3* database) {
    sqlite3_file* file = nullptr;
    if (sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK)
        return std::nullopt;
    if (!file || !file->pMethods || file->pMethods->iVersion < 2) return std::nullopt;
    volatile void* index = nullptr;
    if (file->pMethods->xShmMap(file, 0, kIndexPageBytes, 0, &index) != SQLITE_OK || !index)
        return std::nullopt;
    // It is there twice: whoever writes it writes the second one first, so equal ones are whole.
    const auto* bytes = static_cast<const volatile unsigned char*>(index);
    const CMark first = CopyOf(bytes);
    file->pMethods->xShmBarrier(file);
    const CMark second = CopyOf(bytes + first.size());
    if (first != second || first[kIsInitAt] == 0) return std::nullopt;
    return first;
}
