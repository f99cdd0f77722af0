// SPDX-License-Identifier: MIT
#include "files/system_error.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

#include "base/text/lng.h"

using lng::Mark;

namespace {

struct CMeaning {
    int number;
    const char* text;
};
// The C library's own texts follow the desktop's language, which need not be the program's.
constexpr CMeaning kMeanings[] = {
    {ENOENT, Mark("there is no such file or folder")},
    {ENOTDIR, Mark("a part of the path is no folder")},
    {EISDIR, Mark("this is a folder")},
    {ENXIO, Mark("this is no ordinary file")},
    {EACCES, Mark("you have no permission for this")},
    {EPERM, Mark("you have no permission for this")},
    {EROFS, Mark("this disk can only be read")},
    {ENOSPC, Mark("the disk is full")},
    {EDQUOT, Mark("your share of the disk is full")},
    {EFBIG, Mark("the file would become too large")},
    {EIO, Mark("the disk does not work as it should")},
    {ENAMETOOLONG, Mark("the name is too long")},
    {ELOOP, Mark("too many links follow each other")},
    {EEXIST, Mark("there is such a file already")},
    {EBUSY, Mark("somebody else is using it")},
    {ETXTBSY, Mark("somebody else is using it")},
    {EMFILE, Mark("too many files are open")},
    {ENFILE, Mark("too many files are open")},
    {ENOMEM, Mark("there is not enough memory")},
    {ETIMEDOUT, Mark("no data comes from it")},
};

}  // namespace

std::string SystemErrorText(int errorNumber) {
    const auto* found = std::ranges::find(kMeanings, errorNumber, &CMeaning::number);
    return found == std::end(kMeanings) ? std::generic_category().message(errorNumber) : found->text;
}
