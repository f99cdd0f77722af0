// SPDX-License-Identifier: MIT
#include "process/file_access.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "files/CFileDescriptor.h"

namespace {

// Rights and fields that came after this machine's headers, with the version of the interface that has them.
constexpr std::uint64_t kRefer = 1U << 13, kTruncate = 1U << 14, kDeviceControl = 1U << 15;
constexpr int kHasRefer = 2, kHasTruncate = 3, kHasNetwork = 4, kHasDeviceControl = 5, kHasScopes = 6;
struct CRuleset {
    std::uint64_t files = 0;
    std::uint64_t network = 0;
    std::uint64_t scopes = 0;
};

constexpr std::uint64_t kRead = LANDLOCK_ACCESS_FS_READ_FILE;
constexpr std::uint64_t kList = LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t kWrite = LANDLOCK_ACCESS_FS_WRITE_FILE | kTruncate;
constexpr std::uint64_t kChangeFolder = LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_REMOVE_FILE;
constexpr std::uint64_t kChangeTree =
    kChangeFolder | LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_REMOVE_DIR;
constexpr std::uint64_t kOfFiles = kRead | kWrite | LANDLOCK_ACCESS_FS_EXECUTE | kDeviceControl;

// Libraries and what they read when they are loaded; of a process's own facts, those of this one alone.
constexpr std::array kSystemFiles{"/usr",
                                  "/lib",
                                  "/lib32",
                                  "/lib64",
                                  "/etc/ld.so.cache",
                                  "/etc/ld.so.conf",
                                  "/etc/ld.so.conf.d",
                                  "/etc/glvnd",
                                  "/etc/drirc",
                                  "/etc/localtime",
                                  "/nix/store",
                                  "/gnu/store",
                                  "/run/opengl-driver",
                                  "/app",
                                  "/proc/self",
                                  "/proc/cpuinfo",
                                  "/proc/meminfo",
                                  "/proc/stat",
                                  "/sys/devices/system",
                                  "/dev/urandom",
                                  "/dev/random",
                                  "/dev/zero"};
constexpr std::array kNowhere{"/dev/null"};

int InterfaceVersion() {
    return static_cast<int>(
        ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION));
}

/** Everything that a version can hold back, so that what no rule allows is denied. */
CRuleset AllOf(int version) {
    CRuleset all;
    all.files = kRefer - 1;
    if (version >= kHasRefer) all.files |= kRefer;
    if (version >= kHasTruncate) all.files |= kTruncate;
    if (version >= kHasDeviceControl) all.files |= kDeviceControl;
    if (version >= kHasNetwork) all.network = 3;  // bind and connect
    if (version >= kHasScopes) all.scopes = 3;    // abstract sockets and signals
    return all;
}

std::size_t SizeFor(int version) {
    if (version >= kHasScopes) return sizeof(CRuleset);
    return version >= kHasNetwork ? 2 * sizeof(std::uint64_t) : sizeof(std::uint64_t);
}

class CRules {
  public:
    explicit CRules(int version) : m_all(AllOf(version)) {
        m_handle = CFileDescriptor(
            static_cast<int>(::syscall(SYS_landlock_create_ruleset, &m_all, SizeFor(version), 0)));
    }
    [[nodiscard]] bool IsMade() const { return m_handle.IsOpen(); }

    void Allow(const char* path, std::uint64_t rights) {
        const CFileDescriptor place(::open(path, O_PATH | O_CLOEXEC));
        struct stat info = {};
        if (!place.IsOpen() || ::fstat(place.Get(), &info) != 0) return;
        if (!S_ISDIR(info.st_mode)) rights &= kOfFiles;
        landlock_path_beneath_attr rule{};
        rule.allowed_access = rights & m_all.files;
        rule.parent_fd = place.Get();
        // What cannot be allowed stays denied.
        (void)::syscall(SYS_landlock_add_rule, m_handle.Get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
    }
    [[nodiscard]] bool Enforce() const {
        return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
               ::syscall(SYS_landlock_restrict_self, m_handle.Get(), 0) == 0;
    }

  private:
    CRuleset m_all;
    CFileDescriptor m_handle;
};

}  // namespace

bool RestrictFiles(const CFileAccess& access) {
    const int version = InterfaceVersion();
    if (version < 1) return false;
    CRules rules(version);
    if (!rules.IsMade()) return false;
    for (const char* path : kSystemFiles) rules.Allow(path, kRead | kList);
    for (const char* path : kNowhere) rules.Allow(path, kRead | kWrite);
    for (const std::string& path : access.readable) rules.Allow(path.c_str(), kRead | kList);
    for (const std::string& path : access.listable) rules.Allow(path.c_str(), kList);
    for (const std::string& path : access.writable)
        rules.Allow(path.c_str(), kRead | kList | kWrite | kChangeFolder);
    for (const std::string& path : access.trees)
        rules.Allow(path.c_str(), kRead | kList | kWrite | kChangeTree);
    return rules.Enforce();
}
