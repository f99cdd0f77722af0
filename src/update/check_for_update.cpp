// SPDX-License-Identifier: MIT
#include "update/check_for_update.h"

#include "base/text/lng.h"

namespace {

CUpdateOutcome Failed(const CError& error) {
    return {.kind = EUpdateOutcome::Failed, .error = error};
}

std::wstring SentenceWithoutPackage(const CUpdateOutcome& outcome, std::wstring_view version) {
    switch (outcome.kind) {
        case EUpdateOutcome::News:
            return lng::Text("A new version of Orbivue is available: %s.", outcome.item.shownVersion) + L" " +
                   lng::Text("This is version %s.", version);
        case EUpdateOutcome::UpToDate:
            return lng::Text("Orbivue %s is the newest version.", version);
        case EUpdateOutcome::NoFeed:
            return lng::Text("Orbivue knows no address to ask for new versions; nothing was looked for.");
        case EUpdateOutcome::Failed:
            break;
    }
    return lng::Text("It could not be found out whether there is a new version:") + L" " +
           lng::Text(outcome.error);
}

}  // namespace

CUpdateOutcome CheckForUpdate(const CFeedRequest& request, const CUpdateTarget& target,
                              const std::atomic<bool>& cancelled) {
    if (request.address.empty()) return {.kind = EUpdateOutcome::NoFeed};
    const CResult<std::string> xml = FetchFeed(request, cancelled);
    if (!xml) return Failed(xml.Error());
    const CResult<CAppcast> list = ReadAppcast(xml.Value());
    if (!list) return Failed(list.Error());
    std::optional<CAppcastItem> update = FindUpdate(list.Value(), target);
    if (!update) return {.kind = EUpdateOutcome::UpToDate};
    return {.kind = EUpdateOutcome::News, .item = std::move(*update)};
}

std::wstring SentenceOf(const CUpdateOutcome& outcome, std::wstring_view version, bool isPackaged) {
    if (!isPackaged) return SentenceWithoutPackage(outcome, version);
    const std::wstring package =
        lng::Text("Orbivue was installed as a package of this system, whose package manager updates it.");
    return outcome.kind == EUpdateOutcome::NoFeed
               ? package
               : SentenceWithoutPackage(outcome, version) + L"\n" + package;
}
