// SPDX-License-Identifier: MIT
#include "frame/model_list/CListToolBarMgr.h"

#include <utility>

CListToolBarMgr::CListToolBarMgr(COpen open, CClock now) : m_open(std::move(open)), m_now(std::move(now)) {}

bool CListToolBarMgr::Step(folder_models::EStep step) {
    const auto next = m_list.Neighbour(step == folder_models::EStep::Next);
    if (!next) return false;
    const std::wstring path = m_list.Path(*next);  // opening may change the list
    SetCurrent(path);
    m_open(path, EReason::Step);
    return true;
}

bool CListToolBarMgr::HoldsStep() const {
    return m_isPressed || (m_lastUse.time_since_epoch().count() != 0 && m_now() < m_lastUse + kInUse);
}

void CListToolBarMgr::SetEntries(std::vector<std::wstring> paths) {
    m_list.SetEntries(std::move(paths));
    Tell();
}

void CListToolBarMgr::SetCurrent(const std::wstring& path) {
    m_list.SetCurrent(path);
    Tell();
}

void CListToolBarMgr::SetCursor(std::size_t index) {
    m_list.SetCursor(index);
    Tell();
}

void CListToolBarMgr::MoveCursor(std::ptrdiff_t by) {
    m_list.MoveCursor(by);
    Tell();
}

void CListToolBarMgr::Choose(std::size_t index) {
    if (index >= m_list.Size()) return;
    const std::wstring path = m_list.Path(index);
    SetCurrent(path);
    m_open(path, EReason::Chosen);
}

void CListToolBarMgr::SetPressed(bool pressed) {
    m_isPressed = pressed;
    NoteUse();
}

void CListToolBarMgr::Tell() const {
    if (m_changed) m_changed();
}
