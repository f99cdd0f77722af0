// SPDX-License-Identifier: MIT
#include "update/win_sparkle.h"

#include "update/CUpdatePresenter.h"

namespace {

struct CService {
    CUpdateDetails details;
    CUpdatePresenter* presenter = nullptr;
    bool isRunning = false;
};

CService& Service() {
    static CService service;
    return service;
}

template <class Char>
std::basic_string<Char> TextOf(const Char* text) {
    return text != nullptr ? text : std::basic_string<Char>();
}

}  // namespace

void CUpdatePresenter::Set(CUpdatePresenter* presenter) {
    Service().presenter = presenter;
}

void win_sparkle_set_app_details(const wchar_t* company, const wchar_t* program, const wchar_t* version) {
    CUpdateDetails& details = Service().details;
    details.company = TextOf(company);
    details.program = TextOf(program);
    details.version = TextOf(version);
}

void win_sparkle_set_appcast_url(const char* url) {
    Service().details.feed = TextOf(url);
}

void win_sparkle_set_automatic_check_for_updates(int state) {
    Service().details.isAutomatic = state != 0;
}

void win_sparkle_init() {
    CService& service = Service();
    if (service.isRunning) return;
    service.isRunning = true;
    if (service.presenter != nullptr) service.presenter->OnStarted(service.details);
}

void win_sparkle_check_update_with_ui() {
    const CService& service = Service();
    if (service.isRunning && service.presenter != nullptr) service.presenter->CheckWithWindows();
}

void win_sparkle_cleanup() {
    CService& service = Service();
    if (!service.isRunning) return;
    service.isRunning = false;
    if (service.presenter != nullptr) service.presenter->OnEnded();
}
