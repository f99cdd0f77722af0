// SPDX-License-Identifier: MIT
#include "update/find_update.h"

#include <sys/utsname.h>

#include <algorithm>
#include <charconv>
#include <utility>

#include "base/text/ascii_text.h"
#include "update/CVersionNumber.h"

namespace {

constexpr std::int64_t kDaySeconds = 24 * 60 * 60;

/** One name for the machines that have several. */
std::string_view MachineOf(std::string_view name) {
    if (name == "amd64" || name == "x64") return "x86_64";
    return name == "arm64" ? "aarch64" : name;
}

bool IsFor(std::string_view system, const CUpdateTarget& target) {
    constexpr std::string_view kOurs = "linux";
    if (system.empty() || system == kOurs) return true;
    if (!system.starts_with(kOurs) || system[kOurs.size()] != '-') return false;
    return MachineOf(system.substr(kOurs.size() + 1)) == MachineOf(target.machine);
}

bool Fits(const CAppcastItem& item, const CUpdateTarget& target) {
    if (std::ranges::none_of(item.systems, [&](const std::string& system) { return IsFor(system, target); }))
        return false;
    if (item.minimumSystem.empty()) return true;
    const auto minimum = CVersionNumber::Parse(item.minimumSystem),
               own = CVersionNumber::Parse(target.system);
    return minimum && own && *own >= *minimum;
}

}  // namespace

CUpdateTarget CUpdateTarget::Here(std::string version) {
    utsname names{};
    (void)::uname(&names);  // what it does not tell stays empty
    const std::string_view release = names.release;
    const std::string_view numbers = release.substr(0, release.find_first_not_of("0123456789."));
    return {std::move(version), std::string(ascii_text::Trimmed(numbers, ".")),
            ascii_text::Lowered(names.machine)};
}

std::optional<CAppcastItem> FindUpdate(const CAppcast& list, const CUpdateTarget& target) {
    const CAppcastItem* best = nullptr;
    for (const CAppcastItem& item : list.items)
        if (IsNewerVersion(item.version, best != nullptr ? best->version : target.version) &&
            Fits(item, target))
            best = &item;
    return best != nullptr ? std::optional(*best) : std::nullopt;
}

bool IsSkipped(const CAppcastItem& item, std::string_view skippedVersion) {
    const auto version = CVersionNumber::Parse(item.version), skipped = CVersionNumber::Parse(skippedVersion);
    return version && skipped && *version == *skipped;
}

bool IsCheckDue(std::string_view lastCheck, std::int64_t now) {
    std::int64_t last = 0;
    const auto [end, error] = std::from_chars(lastCheck.data(), lastCheck.data() + lastCheck.size(), last);
    const bool isTime = error == std::errc() && end == lastCheck.data() + lastCheck.size() && last >= 0;
    return !isTime || last > now || now - last >= kDaySeconds;
}
