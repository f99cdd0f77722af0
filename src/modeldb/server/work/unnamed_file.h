// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "base/CResult.h"
#include "files/CFileDescriptor.h"

/** Files without names: nothing is left of them when their last descriptor is closed, however that comes about. */
namespace unnamed_file {

/** A new, empty one to write and read, in a folder; in memory where its file system has none. Empty: the system's temporary
 * folder. */
[[nodiscard]] CResult<CFileDescriptor> Make(const std::string& folder);
/** Adds to its end. NoSpace, WriteFailed. */
[[nodiscard]] CStatus Append(const CFileDescriptor& file, std::span<const std::byte> bytes);
[[nodiscard]] CStatus AppendTo(int descriptor, std::span<const std::byte> bytes);
/** The same file again, for reading alone, with a position of its own. */
[[nodiscard]] CResult<CFileDescriptor> OpenToRead(const CFileDescriptor& file);
/** 0 for what is none. */
[[nodiscard]] std::uint64_t SizeOf(const CFileDescriptor& file);

}  // namespace unnamed_file
