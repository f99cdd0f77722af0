// SPDX-License-Identifier: MIT
#include "files/CFilesBeside.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <random>

#include "base/text/lng.h"
#include "files/CFileDescriptor.h"
#include "files/file_util_ex.h"

namespace {

constexpr std::string_view kMark = "orbivue-file: ";
constexpr off_t kMostRecord = 1 << 20;  // some 15,000 files
constexpr std::uint32_t kOtherNumbers = 1000;
constexpr int kMaxTries = 16;

std::uint64_t SumOf(std::span<const std::byte> bytes) {
    std::uint64_t sum = 14695981039346656037u;  // FNV-1a
    for (const std::byte byte : bytes) sum = (sum ^ static_cast<std::uint64_t>(byte)) * 1099511628211u;
    return sum;
}

/** The end of a regular file; no link is followed. */
std::string EndOf(const std::string& path) {
    const CFileDescriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat info = {};
    if (!file.IsOpen() || ::fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode)) return {};
    std::string text(static_cast<std::size_t>(std::min(info.st_size, kMostRecord)), '\0');
    const ssize_t got =
        ::pread(file.Get(), text.data(), text.size(), std::max<off_t>(info.st_size - kMostRecord, 0));
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return text;
}

std::string_view NextWord(std::string_view& line) {
    const std::size_t end = std::min(line.find_first_of(" \r\n"), line.size());
    const std::string_view word = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return word;
}

std::uint64_t Number(std::string_view word, int base) {
    std::uint64_t number = 0;
    (void)std::from_chars(word.data(), word.data() + word.size(), number,
                          base);  // a wrong one matches no file
    return number;
}

/** Whether a byte stands for itself in a record, which blanks part and a comment of any kind may hold. */
bool IsPlain(char c) {
    return c > ' ' && c < 0x7F && std::string_view("%<>*").find(c) == std::string_view::npos;
}

std::string Recorded(std::string_view name) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto byte = static_cast<unsigned char>(name[i]);
        const bool endsComment = name[i] == '-' && i > 0 && name[i - 1] == '-';
        if (IsPlain(name[i]) && !endsComment) {
            text += name[i];
        } else {
            text.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
        }
    }
    return text;
}

std::string NameOf(std::string_view recorded) {
    std::string name;
    for (std::size_t i = 0; i < recorded.size(); ++i) {
        const bool isCoded = recorded[i] == '%' && i + 2 < recorded.size();
        name += isCoded ? static_cast<char>(Number(recorded.substr(i + 1, 2), 16)) : recorded[i];
        if (isCoded) i += 2;
    }
    return name;
}

std::string Hexadecimal(std::uint64_t number) {
    std::array<char, 16> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr};
}

}  // namespace

CFilesBeside::CFilesBeside(std::string_view mainPath) : m_folder(file_util_ex::GetFilePath(mainPath)) {
    ReadRecord(std::string(mainPath));
}

void CFilesBeside::ReadRecord(const std::string& mainPath) {
    const CResult<std::string> target = CAtomicFile::OutputTarget(mainPath);
    const std::string text = target ? EndOf(target.Value()) : std::string();
    std::string_view rest(text);
    for (std::size_t at = rest.find(kMark); at != rest.npos; at = rest.find(kMark)) {
        rest.remove_prefix(at + kMark.size());
        const std::string name = NameOf(NextWord(rest));
        const std::uint64_t bytes = Number(NextWord(rest), 10);
        m_earlier[name] = {bytes, Number(NextWord(rest), 16)};
    }
}

void CFilesBeside::Protect(const std::string& path) {
    struct stat info = {};
    if (::stat(path.c_str(), &info) == 0) m_protected.insert({info.st_dev, info.st_ino});
}

bool CFilesBeside::IsFree(const std::string& name, std::optional<CFileId>& old) const {
    const std::string path = file_util_ex::MakePath(m_folder, name);
    old.reset();
    const std::optional<CFileId> there = CFileId::Of(path);
    if (!there) return errno == ENOENT;
    const auto earlier = m_earlier.find(name);
    if (earlier == m_earlier.end() || !S_ISREG(there->kind) ||
        m_protected.contains({there->device, there->inode}))
        return false;
    if (static_cast<std::uint64_t>(there->bytes) != earlier->second.bytes) return false;
    const auto bytes = file_util_ex::ReadPlainFile(path, earlier->second.bytes);
    if (!bytes || CWritten{bytes.Value().size(), SumOf(bytes.Value())} != earlier->second) return false;
    old = there;
    return true;
}

CResult<std::string> CFilesBeside::ChooseName(std::string_view stem, std::string_view extension) {
    std::uint32_t number = m_next++;
    std::random_device random;
    std::optional<CFileId> old;
    for (int i = 0; i < 2 * kMaxTries; ++i, number += kOtherNumbers) {
        std::string name = std::string(stem) + std::to_string(number);
        if (i >= kMaxTries) name += '-' + Hexadecimal(random());  // somebody has taken them on purpose
        name += extension;
        if (m_chosen.contains(name) || !IsFree(name, old)) continue;
        m_chosen.emplace(name, old);
        return name;
    }
    return CError{EErrorCode::WriteFailed, lng::Mark("other files have all names that this file could get"),
                  file_util_ex::MakePath(m_folder, std::string(stem) + std::string(extension))};
}

bool CFilesBeside::TakeNames(std::span<const std::string> names) {
    std::map<std::string, std::optional<CFileId>> found;
    std::optional<CFileId> old;
    for (const std::string& name : names) {
        if (name.find('/') != name.npos || m_chosen.contains(name) || !IsFree(name, old)) return false;
        if (!found.emplace(name, old).second) return false;
    }
    m_chosen.insert(found.begin(), found.end());
    return true;
}

void CFilesBeside::DeleteEarlier(const std::function<bool(const std::string& name)>& isOurs) const {
    std::optional<CFileId> old;
    for (const auto& [name, earlier] : m_earlier) {
        if (m_written.contains(name) || name.find('/') != name.npos || !isOurs(name)) continue;
        if (IsFree(name, old) && old) (void)file_util_ex::DeleteFileW(file_util_ex::MakePath(m_folder, name));
    }
}

CStatus CFilesBeside::Write(const std::string& name, std::span<const std::byte> bytes) {
    const std::string path = file_util_ex::MakePath(m_folder, name);
    const auto chosen = m_chosen.find(name);
    if (chosen == m_chosen.end()) return CError{EErrorCode::BadArgument, "no chosen name", path};
    const CWritten written{bytes.size(), SumOf(bytes)};
    m_written[name] = written;
    if (chosen->second && m_earlier[name] == written && CFileId::Of(path) == chosen->second)
        return CDone{};  // it is there already
    CResult<CAtomicFile> file =
        chosen->second ? CAtomicFile::CreateOver(path, *chosen->second) : CAtomicFile::CreateNew(path);
    if (!file) return file.Error();
    if (CStatus status = file.Value().Write(bytes); !status) return status;
    return m_files.Add(std::move(file).Value());
}

std::vector<std::string> CFilesBeside::ToRecord() const {
    std::vector<std::string> lines;
    for (const auto& [name, written] : m_written)
        lines.push_back(std::string(kMark) + Recorded(name) + ' ' + std::to_string(written.bytes) + ' ' +
                        Hexadecimal(written.sum));
    return lines;
}
