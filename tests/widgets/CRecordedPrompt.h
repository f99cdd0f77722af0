// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "widgets/CUserPrompt.h"

/** Stands in for the user while it lives: keeps what is told and asked, and answers as it was told. */
class CRecordedPrompt {
  public:
    CRecordedPrompt() : m_before(CUserPrompt::Install(std::make_unique<CInstalled>(*this))) {}
    CRecordedPrompt(const CRecordedPrompt&) = delete;
    CRecordedPrompt& operator=(const CRecordedPrompt&) = delete;
    ~CRecordedPrompt() { CUserPrompt::Install(std::move(m_before)); }

    std::vector<std::wstring> messages;
    bool answer = false;
    ESaveAnswer saveAnswer = ESaveAnswer::Discard;
    std::function<void()> whileAsking;  ///< once
    int busy = 0;

  private:
    class CInstalled final : public CUserPrompt {
      public:
        explicit CInstalled(CRecordedPrompt& record) : m_record(record) {}
        void ShowMessage(const std::wstring& text) override { m_record.messages.push_back(text); }
        bool AskYesNo(const std::wstring& text) override {
            ShowMessage(text);
            if (const auto work = std::exchange(m_record.whileAsking, nullptr)) work();
            return m_record.answer;
        }
        ESaveAnswer AskSave(const std::wstring& text) override {
            ShowMessage(text);
            return m_record.saveAnswer;
        }
        void BeginBusy() override { ++m_record.busy; }
        void EndBusy() override { --m_record.busy; }

      private:
        CRecordedPrompt& m_record;
    };
    std::unique_ptr<CUserPrompt> m_before;
};
