// SPDX-License-Identifier: MIT
#include "frame/dialogs/ui/CShortcutList.h"

#include <gtk/gtk.h>
#include <wx/nativewin.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/tokenzr.h>

#include <algorithm>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "frame/shortcuts.h"
#include "widgets/ui/field_label.h"

namespace {

/** The keys as GTK names them: "<Control><Shift>z". */
std::string Accelerator(const std::string& key) {
    constexpr std::pair<const char*, const char*> kModifiers[] = {
        {"Ctrl+", "<Control>"}, {"Shift+", "<Shift>"}, {"Alt+", "<Alt>"}};
    std::string text = key;
    for (const auto& [ours, theirs] : kModifiers)
        if (const std::size_t at = text.find(ours); at != text.npos)
            text.replace(at, std::string_view(ours).size(), theirs);
    if (text.ends_with('?')) text.replace(text.size() - 1, 1, "question");
    return text;
}

/** GTK's name of a key in the language of the program. */
std::wstring ToolkitName(const std::string& accelerator) {
    guint key = 0;
    GdkModifierType modifiers{};
    gtk_accelerator_parse(accelerator.c_str(), &key, &modifiers);
    gchar* label = gtk_accelerator_get_label(key, modifiers);
    std::wstring name = lng::ConvertFromUTF8(label);
    g_free(label);
    return name;
}

/** GTK's name, unless it misleads: its German one of this key is what users know as Delete. */
std::wstring KeyName(std::wstring toolkitName) {
    if (toolkitName == ToolkitName("BackSpace")) return lng::TextIn("key", "Backspace");
    std::ranges::replace(toolkitName, L'_', L' ');  // some languages have "Page_Up"
    return toolkitName;
}

/** All labels in a widget that shows keys. */
void NameKeys(GtkWidget* widget, gpointer) {
    if (GTK_IS_CONTAINER(widget)) gtk_container_foreach(GTK_CONTAINER(widget), NameKeys, nullptr);
    if (!GTK_IS_LABEL(widget)) return;
    const std::wstring name = KeyName(lng::ConvertFromUTF8(gtk_label_get_text(GTK_LABEL(widget))));
    gtk_label_set_text(GTK_LABEL(widget), file_util_ex::ConvertToUTF8(name).c_str());
}

}  // namespace

CShortcutList::CShortcutList(wxWindow* parent) : wxScrolledWindow(parent, wxID_ANY) {
    int keysWidth = 0;
    for (const CShortcutGroup& from : ShortcutGroups()) {
        CGroup group{new wxStaticText(this, wxID_ANY, wxControl::EscapeMnemonics(from.title)), {}};
        group.heading->SetFont(group.heading->GetFont().Bold());
        for (const CShortcut& shortcut : from.shortcuts) {
            group.rows.push_back(MakeRow(shortcut));
            keysWidth = std::max(keysWidth, group.rows.back().keys->GetEffectiveMinSize().x);
        }
        m_groups.push_back(std::move(group));
    }
    auto* column = new wxBoxSizer(wxVERTICAL);
    for (const CGroup& group : m_groups) column->Add(Arrange(group, keysWidth), wxSizerFlags().Expand());
    SetSizer(column);
    SetScrollRate(0, 2 * GetCharHeight());
    FitInside();
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        Wrap();
        event.Skip();
    });
}

void CShortcutList::Wrap() {
    const int width = GetClientSize().x;
    if (width == m_wrappedTo || m_groups.empty()) return;
    m_wrappedTo = width;
    const int gap = FromDIP(4);
    for (const CGroup& group : m_groups)
        for (const CRow& row : group.rows) {
            row.does->SetLabelText(row.text);
            const int room = width - row.keys->GetMinSize().x - 6 * gap;
            if (room > 0 && row.does->GetBestSize().x > room) WrapText(*row.does, room);
        }
    FitInside();
}

/** The keys drawn as such. The toolkit asks for the size before the parts are visible, and would get none. */
wxWindow* CShortcutList::MakeKeys(const std::string& accelerators) {
    GtkWidget* label = gtk_shortcut_label_new(accelerators.c_str());
    NameKeys(label, nullptr);
    gtk_widget_show_all(label);
    auto* keys = new wxNativeWindow(this, wxID_ANY, label);
    GtkRequisition size;
    gtk_widget_get_preferred_size(label, nullptr, &size);
    keys->SetMinSize(wxSize(size.width, size.height));
    return keys;
}

CShortcutList::CRow CShortcutList::MakeRow(const CShortcut& shortcut) {
    std::wstring sought = shortcut.gesture + L" " + shortcut.does;
    CRow row{nullptr,
             new wxStaticText(this, wxID_ANY, wxControl::EscapeMnemonics(shortcut.does)),
             shortcut.does,
             {}};
    if (shortcut.keys.empty()) {
        row.keys = new wxStaticText(this, wxID_ANY, wxControl::EscapeMnemonics(shortcut.gesture));
    } else {
        std::string accelerators;
        for (const std::string& key : shortcut.keys) {
            const std::string accelerator = Accelerator(key);
            sought += L" " + KeyName(ToolkitName(accelerator));
            accelerators += (accelerators.empty() ? "" : " ") + accelerator;
        }
        row.keys = MakeKeys(accelerators);
    }
    row.sought = wxString(sought).Lower().ToStdWstring();
    return row;
}

wxSizer* CShortcutList::Arrange(const CGroup& group, int keysWidth) const {
    const int gap = FromDIP(4);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(group.heading, wxSizerFlags().Border(wxTOP | wxBOTTOM, 2 * gap));
    for (const CRow& row : group.rows) {
        row.keys->SetMinSize(wxSize(keysWidth, row.keys->GetMinSize().y));
        auto* line = new wxBoxSizer(wxHORIZONTAL);
        line->Add(row.keys, wxSizerFlags().CenterVertical().Border(wxALL, gap));
        line->Add(row.does, wxSizerFlags(1).CenterVertical().Border(wxLEFT, 4 * gap));
        column->Add(line, wxSizerFlags().Expand());
    }
    return column;
}

bool CShortcutList::Filter(std::wstring_view text) {
    const wxArrayString words = wxStringTokenize(wxString(text.data(), text.size()).Lower());
    bool isAnyShown = false;
    for (const CGroup& group : m_groups) {
        bool isGroupShown = false;
        for (const CRow& row : group.rows) {
            const bool isShown = std::ranges::all_of(words, [&](const wxString& word) {
                return row.sought.find(word.ToStdWstring()) != std::wstring::npos;
            });
            row.keys->Show(isShown);
            row.does->Show(isShown);
            isGroupShown = isGroupShown || isShown;
        }
        group.heading->Show(isGroupShown);
        isAnyShown = isAnyShown || isGroupShown;
    }
    FitInside();
    Scroll(0, 0);
    return isAnyShown;
}

wxSize CShortcutList::FullSize() const {
    return GetSizer()->CalcMin();
}
