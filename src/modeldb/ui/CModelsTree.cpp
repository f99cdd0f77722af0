// SPDX-License-Identifier: MIT
// Transfers and what the user does. What is put into the tree is in CModelsTree_fill.cpp.
#include "modeldb/ui/CModelsTree.h"

#include <wx/icon.h>
#include <wx/menu.h>
#include <wx/textctrl.h>

#include <utility>

#include "base/text/lng.h"
#include "modeldb/client/C3DModelsLoadApi.h"
#include "modeldb/client/CBlobProgress.h"
#include "modeldb/transfer/ui/CLoadGroupsThread.h"
#include "modeldb/transfer/ui/CLoadModelThread.h"
#include "modeldb/transfer/ui/CLoadModelsThread.h"
#include "modeldb/transfer/ui/payload_records.h"
#include "modeldb/transfer/ui/transfer_events.h"
#include "modeldb/ui/C3dsTreeItemData.h"
#include "modeldb/ui/CSetFileNameObs.h"
#include "modeldb/ui/text_keys.h"
#include "widgets/tools/ui/tool_icon.h"
#include "widgets/ui/accessible_name.h"

namespace {

constexpr int kIconSide = 16;
constexpr int kIdMenu = 6001;

/** Stops a thread of the window's and forgets it. */
template <class T>
void Stop(std::unique_ptr<T>& thread) {
    if (!thread) return;
    thread->StartKill();
    thread->Wait();
    thread.reset();
}

template <class T>
void StopPainting(std::unique_ptr<T>& thread) {
    if (!thread) return;
    thread->StopPainting();
    thread.reset();
}

}  // namespace

CModelsTree::CModelsTree(wxWindow* parent, CActions actions, CBlobProgress& progress,
                         CSetFileNameObs& fileName)
    : wxTreeCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                 wxTR_HAS_BUTTONS | wxTR_LINES_AT_ROOT | wxTR_EDIT_LABELS | wxBORDER_NONE),
      m_actions(std::move(actions)),
      m_progress(progress),
      m_fileName(fileName),
      m_images(kIconSide, kIconSide),
      m_access(*this, [this](const wxTreeItemId& item) { Activate(item); }) {
    const wxBitmapBundle icon = LoadIcon("main.ico", kIconSide);
    if (icon.IsOk()) m_images.Add(icon.GetBitmap(wxSize(kIconSide, kIconSide)));
    SetImageList(&m_images);
    AddRoot(lng::Text("3ds files"), 0);
    SetAccessibleName(*this, lng::Text("3ds files"));
    BindEvents();
    BindKeys();
    C3DModelsLoadApi::SetConnLostListner([] {});  // what was under way fails, which is told of there
}

CModelsTree::~CModelsTree() {
    Stop(m_modelThread);
    Stop(m_modelsThread);
    Stop(m_groupsThread);
    C3DModelsLoadApi::SetConnLostListner({});
    SetImageList(nullptr);
}

void CModelsTree::BindEvents() {
    Bind(wxEVT_MY_CUSTOM_COMMAND, &CModelsTree::OnThread, this);
    Bind(wxEVT_TREE_ITEM_EXPANDING, &CModelsTree::OnExpanding, this);
    Bind(wxEVT_TREE_SEL_CHANGED, &CModelsTree::OnSelected, this);
    Bind(wxEVT_TREE_ITEM_MENU, [this](wxTreeEvent& event) { ShowMenu(event.GetItem(), event.GetPoint()); });
    Bind(wxEVT_IDLE, [this](wxIdleEvent& event) {
        event.Skip();
        if (m_fills.empty()) return;
        FillSome();
        event.RequestMore();
    });
    Bind(wxEVT_TREE_BEGIN_LABEL_EDIT, [this](wxTreeEvent&) {
        CallAfter([this] {
            if (wxTextCtrl* editor = GetEditControl()) GiveTextKeys(*editor);
        });
    });
}

/** Home would go to the main window's command otherwise. */
void CModelsTree::BindKeys() {
    wxAcceleratorEntry home(wxACCEL_NORMAL, WXK_HOME, wxID_TOP);
    SetAcceleratorTable({1, &home});
    Bind(
        wxEVT_MENU, [this](wxCommandEvent&) { SelectItem(GetRootItem()); }, wxID_TOP);
    Bind(wxEVT_TREE_KEY_DOWN, [this](wxTreeEvent& event) {
        const int key = event.GetKeyCode();
        if (key == WXK_RETURN || key == WXK_NUMPAD_ENTER)
            Activate(GetSelection());
        else if (key == WXK_F2 && GetSelection().IsOk())
            EditLabel(GetSelection());
        else if (key == WXK_F10 && event.GetKeyEvent().GetModifiers() == wxMOD_SHIFT)
            ShowMenu(GetSelection(), wxDefaultPosition);
        else
            event.Skip();
    });
}

// --- transfers --------------------------------------------------------------------------------------------

bool CModelsTree::IsBusy() const {
    return m_modelThread || m_modelsThread || m_groupsThread;
}

void CModelsTree::StopTransfers() {
    const bool wasBusy = IsBusy();
    StopPainting(m_modelThread);
    StopPainting(m_modelsThread);
    StopPainting(m_groupsThread);
    if (wasBusy) m_actions.ended({});
}

void CModelsTree::LoadGroups() {
    if (IsBusy()) return;
    m_groupsThread = std::make_unique<CLoadGroupsThread>(this, wxEVT_MY_CUSTOM_COMMAND);
    m_firstThread = m_groupsThread->Number();
    if (!m_groupsThread->RunThread()) m_groupsThread.reset();
}

void CModelsTree::Download(std::uint32_t id, const std::wstring& label) {
    if (IsBusy()) return;
    m_fileName.SetFileName(label);
    m_modelThread = std::make_unique<CLoadModelThread>(this, id, wxEVT_MY_CUSTOM_COMMAND);
    if (!m_modelThread->RunThread()) m_modelThread.reset();
}

/** False for the events of a thread that was stopped meanwhile. */
bool CModelsTree::IsCurrent(const wxGUIThreadEvent& event) const {
    const auto posted = [&event](const auto& thread) { return thread && thread->Number() == event.Thread(); };
    return posted(m_modelThread) || posted(m_modelsThread) || posted(m_groupsThread);
}

void CModelsTree::OnThread(wxGUIThreadEvent& event) {
    switch (event.GetId()) {
        case transfer_event::kModelStart:
        case transfer_event::kGroupsStart:
        case transfer_event::kModelsStart:
            if (IsCurrent(event)) m_progress.OnProgressStart(event.Value());
            break;
        case transfer_event::kModelStep:
        case transfer_event::kGroupsStep:
        case transfer_event::kModelsStep:
            if (IsCurrent(event)) m_progress.OnProgressStep();
            break;
        case transfer_event::kModel:
            OnModel(event);
            break;
        case transfer_event::kGroups:
            OnGroups(event);
            break;
        case transfer_event::kModels:
            OnModels(event);
            break;
        default:
            event.Skip();
    }
}

/** Forgets the thread that has posted its last event; one that was stopped before it arrived is forgotten already. isEmpty:
 * nothing came, which may have a reason. */
template <class T>
void CModelsTree::End(std::unique_ptr<T>& thread, const wxGUIThreadEvent& event, bool isEmpty) {
    if (!thread || thread->Number() != event.Thread()) return;
    const std::wstring reason =
        isEmpty ? lng::ConvertFromUTF8(C3DModelsLoadApi::LastError()) : std::wstring();
    Stop(thread);
    m_actions.ended(reason);
}

void CModelsTree::OnModel(wxGUIThreadEvent& event) {
    const auto model = event.Take<CModelData>();
    End(m_modelThread, event, model->size == 0);
    if (model->size != 0) m_actions.open(*model);
}

void CModelsTree::OnGroups(wxGUIThreadEvent& event) {
    const auto groups = event.Take<CGroupsData>();
    End(m_groupsThread, event, groups->groups.empty());
    if (event.Thread() < m_firstThread) return;
    AddGroups(*groups);
    Expand(GetRootItem());
}

void CModelsTree::OnModels(wxGUIThreadEvent& event) {
    auto models = event.Take<CModelsData>();
    const bool isEmpty = models->models.empty();
    if (event.Thread() >= m_firstThread) AddModels(std::move(models));
    End(m_modelsThread, event, isEmpty);
}

// --- what the user does -----------------------------------------------------------------------------------

void CModelsTree::OnExpanding(wxTreeEvent& event) {
    C3dsTreeItemData* group = DataOf(event.GetItem());
    if (IsBusy() || !group || group->isModel || group->loaded) return;
    m_modelsThread =
        std::make_unique<CLoadModelsThread>(this, group->name, wxEVT_MY_CUSTOM_COMMAND, event.GetItem());
    if (!m_modelsThread->RunThread()) m_modelsThread.reset();
}

void CModelsTree::OnSelected(wxTreeEvent& event) {
    const wxTreeItemId item = event.GetItem();
    if (!item.IsOk() || item == GetRootItem()) return;
    const C3dsTreeItemData* data = DataOf(item);
    if (data && data->isModel) Download(data->id, GetItemText(item).ToStdWstring());
}

void CModelsTree::Activate(const wxTreeItemId& item) {
    if (!item.IsOk()) return;
    const C3dsTreeItemData* data = DataOf(item);
    if (data && data->isModel)
        Download(data->id, GetItemText(item).ToStdWstring());
    else
        Toggle(item);
}

/** where: in the tree; the default: at the item. */
void CModelsTree::ShowMenu(const wxTreeItemId& item, wxPoint where) {
    if (!item.IsOk()) return;
    wxRect area;
    if (where == wxDefaultPosition && GetBoundingRect(item, area, true)) where = area.GetBottomLeft();
    const C3dsTreeItemData* data = DataOf(item);
    const bool isModel = data && data->isModel;
    wxMenu menu;
    menu.Append(kIdMenu, lng::Text(isModel ? lng::Mark("Open") : lng::Mark("Load again")))->Enable(!IsBusy());
    if (GetPopupMenuSelectionFromUser(menu, where) != kIdMenu) return;
    if (isModel)
        Download(data->id, GetItemText(item).ToStdWstring());
    else
        LoadAgain(item);
}
