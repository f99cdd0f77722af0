// SPDX-License-Identifier: MIT
#include "widgets/CUserPrompt.h"

#include <utility>

namespace {

class CSilentPrompt final : public CUserPrompt {
  public:
    void ShowMessage(const std::wstring&) override {}
    [[nodiscard]] bool AskYesNo(const std::wstring&) override { return false; }
    void BeginBusy() override {}
    void EndBusy() override {}
};

std::unique_ptr<CUserPrompt>& Installed() {
    static std::unique_ptr<CUserPrompt> prompt;
    return prompt;
}

}  // namespace

CUserPrompt& CUserPrompt::Instance() {
    static CSilentPrompt silent;
    return Installed() ? *Installed() : silent;
}

ESaveAnswer CUserPrompt::AskSave(const std::wstring&) {
    return ESaveAnswer::Discard;
}

std::unique_ptr<CUserPrompt> CUserPrompt::Install(std::unique_ptr<CUserPrompt> prompt) {
    return std::exchange(Installed(), std::move(prompt));
}
