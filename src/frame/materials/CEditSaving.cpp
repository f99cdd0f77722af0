// SPDX-License-Identifier: MIT
#include "frame/materials/CEditSaving.h"

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "files/file_util_ex.h"
#include "session/CSession.h"
#include "widgets/CUserPrompt.h"

bool CEditSaving::Save() {
    const CTurns::CHold hold(m_session.Turns());
    const std::wstring known = m_session.EditsScript();
    if (!known.empty() && SaveTo(known)) return true;
    const std::wstring chosen = AskWhere();
    return !chosen.empty() && SaveTo(chosen);
}

bool CEditSaving::SaveTo(const std::wstring& script) {
    const CStatus saved = m_session.SaveEdits(script);
    if (!saved)
        CUserPrompt::Instance().ShowMessage(lng::Text("The edits could not be saved.") + L"\n" +
                                            file_util_ex::ShownText(lng::Text(saved.Error())));
    return saved.HasValue();
}

std::wstring CEditSaving::AskWhere() {
    const CDocument& document = m_session.Document();
    const std::wstring& model = document.modelPath.empty() ? document.path : document.modelPath;
    return m_askWhere(file_util_ex::GetFilePath(model),
                      file_util_ex::SetFileExt(file_util_ex::GetFileName(model), L"orv"));
}

bool CEditSaving::MayLose() {
    const std::wstring name = file_util_ex::ShownName(file_util_ex::GetFileName(m_session.Document().path));
    switch (CUserPrompt::Instance().AskSave(
        lng::Text("The edits of %s are not saved. Save them to a script?", name))) {
        case ESaveAnswer::Save:
            return Save();
        case ESaveAnswer::Discard:
            return true;
        case ESaveAnswer::Cancel:
            break;
    }
    return false;
}
