// SPDX-License-Identifier: MIT
#include "widgets/ui/file_chooser.h"

#include <gtk/gtk.h>
#include <wx/filedlg.h>

#include <memory>

#include "base/text/ascii_text.h"
#include "files/file_util_ex.h"

using file_dialog_text::CFilter;

namespace file_chooser {
namespace {

GtkFileChooser* Chooser(wxFileDialog& dialog) {
    return GTK_FILE_CHOOSER(dialog.GetHandle());
}

std::string TakeText(char* text) {
    const std::unique_ptr<char, decltype(&g_free)> owned(text, &g_free);
    return text == nullptr ? std::string() : std::string(text);
}

// GTK's patterns support sets of letters but no flag to ignore the case.
std::string AnyCase(const std::string& pattern) {
    std::string result;
    for (const char c : pattern) {
        const char lower = ascii_text::Lower(c), upper = ascii_text::Upper(c);
        if (lower == upper)
            result += c;
        else
            result += {'[', lower, upper, ']'};
    }
    return result;
}

GtkFileFilter* MakeFilter(const CFilter& filter) {
    GtkFileFilter* made = gtk_file_filter_new();
    gtk_file_filter_set_name(made, file_util_ex::ConvertToUTF8(filter.label).c_str());
    for (const std::wstring& pattern : filter.patterns) {
        const bool all = pattern == L"*.*";  // a file without a dot is a file as well
        gtk_file_filter_add_pattern(made, all ? "*" : AnyCase(file_util_ex::ConvertToUTF8(pattern)).c_str());
    }
    return made;
}

using CFilters = std::vector<CFilter>;

void OnFilterChanged(GtkFileChooser* chooser, GParamSpec*, gpointer data) {
    if (!gtk_widget_get_mapped(GTK_WIDGET(chooser))) return;  // the dialog is being closed
    auto* dialog = static_cast<wxFileDialog*>(data);
    const auto* filters =
        static_cast<const CFilters*>(g_object_get_data(G_OBJECT(chooser), "orbivue-filters"));
    const int chosen = dialog->GetFilterIndex();
    if (filters == nullptr || chosen < 0 || static_cast<std::size_t>(chosen) >= filters->size()) return;
    const std::wstring name = file_util_ex::ConvertFromUTF8W(Name(*dialog));
    const std::wstring changed =
        file_dialog_text::NameForFilter(name, (*filters)[static_cast<std::size_t>(chosen)]);
    if (!name.empty() && changed != name) SetName(*dialog, file_util_ex::ConvertToUTF8(changed));
}

}  // namespace

void SetFilters(wxFileDialog& dialog, const std::vector<CFilter>& filters) {
    GtkFileChooser* chooser = Chooser(dialog);
    GSList* old = gtk_file_chooser_list_filters(chooser);
    for (const GSList* item = old; item != nullptr; item = item->next)
        gtk_file_chooser_remove_filter(chooser, GTK_FILE_FILTER(item->data));
    g_slist_free(old);
    GtkFileFilter* first = nullptr;
    for (const CFilter& filter : filters) {
        GtkFileFilter* made = MakeFilter(filter);
        gtk_file_chooser_add_filter(chooser, made);
        if (first == nullptr) first = made;
    }
    if (first != nullptr) gtk_file_chooser_set_filter(chooser, first);
}

void SetFolder(wxFileDialog& dialog, const std::string& folder) {
    if (file_util_ex::DoesFolderExist(folder))
        gtk_file_chooser_set_current_folder(Chooser(dialog), folder.c_str());
}

void SetName(wxFileDialog& dialog, const std::string& name) {
    gtk_file_chooser_set_current_name(Chooser(dialog), name.c_str());
}

std::string Name(wxFileDialog& dialog) {
    return TakeText(gtk_file_chooser_get_current_name(Chooser(dialog)));
}

std::string ChosenPath(wxFileDialog& dialog) {
    return TakeText(gtk_file_chooser_get_filename(Chooser(dialog)));
}

void FollowFilter(wxFileDialog& dialog, const std::vector<CFilter>& filters) {
    g_object_set_data_full(G_OBJECT(Chooser(dialog)), "orbivue-filters", new CFilters(filters),
                           [](gpointer data) { delete static_cast<CFilters*>(data); });
    g_signal_connect(Chooser(dialog), "notify::filter", G_CALLBACK(OnFilterChanged), &dialog);
}

}  // namespace file_chooser
