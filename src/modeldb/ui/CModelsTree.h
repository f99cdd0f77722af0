// SPDX-License-Identifier: MIT
#pragma once

#include <wx/imaglist.h>
#include <wx/treectrl.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "modeldb/browse/CLoadedModels.h"
#include "modeldb/client/CSmpModel.h"
#include "modeldb/ui/CTreeForReaders.h"

class C3dsTreeItemData;
class CBlobProgress;
class CLoadGroupsThread;
class CLoadModelsThread;
class CLoadModelThread;
class CSetFileNameObs;
class wxGUIThread;
class wxGUIThreadEvent;
struct CGroupsData;
struct CModelData;
struct CModelsData;

/** The groups of the library and their models. Expanding a group loads its models, selecting a model downloads it. At most
 * one of these transfers runs at a time; what is asked for meanwhile is ignored.
 *
 * The models of a large group are appended little by little, while the window has nothing else to do. */
class CModelsTree final : public wxTreeCtrl {
  public:
    struct CActions {
        /** A model has come. It stays the tree's, but for the textures, which may be taken. */
        std::function<void(CModelData&)> open;
        /** A transfer has ended or was cancelled. reason: why it failed; empty otherwise. */
        std::function<void(const std::wstring& reason)> ended;
        /** The models that are in the tree are others, or more. */
        std::function<void()> changed;
    };
    /** progress and fileName must outlive it. */
    CModelsTree(wxWindow* parent, CActions actions, CBlobProgress& progress, CSetFileNameObs& fileName);
    /** Stops the transfer. */
    ~CModelsTree() override;

    /** Loads the groups; they are appended to the tree. */
    void LoadGroups();
    /** Downloads a model. label: how the user sees it named. */
    void Download(std::uint32_t id, const std::wstring& label);
    /** Loads again what an item holds: the models of a group, or all groups. */
    void LoadAgain(const wxTreeItemId& item);
    /** A transfer runs. */
    [[nodiscard]] bool IsBusy() const;
    /** Cancels the transfer: windows repaint until it has stopped. */
    void StopTransfers();
    /** After an upload: shows the new model under its group, if that is in the tree. */
    void ShowModel(std::uint32_t id);
    /** Appends the group of a model, if it is not there yet. */
    void AddGroupOf(std::uint32_t id);
    /** All that was loaded has been appended. */
    [[nodiscard]] bool IsFilled() const { return m_fills.empty(); }
    /** Those that are in the tree. */
    [[nodiscard]] const CLoadedModels& Models() const { return m_models; }
    /** What an item stands for; null for the root and for none. */
    [[nodiscard]] C3dsTreeItemData* DataOf(const wxTreeItemId& item) const;

  private:
    /** Models of a group that are still to be appended. */
    struct CFill {
        wxTreeItemId group;
        CSmpModelArr models;
        std::size_t next = 0;
    };

    void BindEvents();
    void BindKeys();
    void OnThread(wxGUIThreadEvent& event);
    void OnModel(wxGUIThreadEvent& event);
    void OnGroups(wxGUIThreadEvent& event);
    void OnModels(wxGUIThreadEvent& event);
    void OnExpanding(wxTreeEvent& event);
    void OnSelected(wxTreeEvent& event);
    /** Downloads a model, also once more; opens or closes a group. */
    void Activate(const wxTreeItemId& item);
    void ShowMenu(const wxTreeItemId& item, wxPoint where);
    [[nodiscard]] bool IsCurrent(const wxGUIThreadEvent& event) const;
    template <class T>
    void End(std::unique_ptr<T>& thread, const wxGUIThreadEvent& event, bool isEmpty);

    void AddGroups(const CGroupsData& groups);
    void ShowCount(const wxTreeItemId& group, std::uint64_t count);
    void AddModels(std::unique_ptr<CModelsData> models);
    void AddModel(const wxTreeItemId& group, const CSmpModel& model);
    void FillSome();
    void ForgetFill(const wxTreeItemId& group);
    [[nodiscard]] wxTreeItemId FindGroup(const std::string& name) const;

    CActions m_actions;
    CBlobProgress& m_progress;
    CSetFileNameObs& m_fileName;
    wxImageList m_images;
    std::unique_ptr<CLoadModelThread> m_modelThread;
    std::unique_ptr<CLoadModelsThread> m_modelsThread;
    std::unique_ptr<CLoadGroupsThread> m_groupsThread;
    std::uint64_t m_firstThread = 0;  ///< what earlier ones have loaded was removed from the tree
    std::deque<CFill> m_fills;
    CLoadedModels m_models;
    CTreeForReaders m_access;
};
