// SPDX-License-Identifier: MIT
#include "frame/preview/ui/CPreviewPane.h"

#include <gtk/gtk.h>

#include <memory>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "frame/preview/CPreviewRequest.h"
#include "frame/preview/CPreviewResult.h"
#include "frame/preview/preview_facts.h"

namespace {

constexpr int kGap = 12;
constexpr char kNothingPage[] = "nothing";
constexpr char kWaitingPage[] = "waiting";
constexpr char kPicturePage[] = "picture";
constexpr char kProblemPage[] = "problem";

std::string Utf8(const std::wstring& text) {
    return file_util_ex::ConvertToUTF8(text);
}

void AddClass(GtkWidget* widget, const char* name) {
    gtk_style_context_add_class(gtk_widget_get_style_context(widget), name);
}

GtkWidget* DimLabel(const std::string& text) {
    GtkWidget* label = gtk_label_new(text.c_str());
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    AddClass(label, GTK_STYLE_CLASS_DIM_LABEL);
    return label;
}

// The pane has the picture's background, so that only the model appears and disappears; the dots are visible
// on any background.
std::string Style(const std::array<std::uint8_t, 3>& background) {
    const auto& [red, green, blue] = background;
    const std::string ground =
        "rgb(" + std::to_string(red) + "," + std::to_string(green) + "," + std::to_string(blue) + ")";
    const char* ink = red * 3 + green * 6 + blue > 1275 ? "#000" : "#fff";
    return "stack { background: " + ground + "; color: " + ink +
           "; border: 1px solid alpha(@borders, 0.9); border-radius: 3px; }";
}

std::unique_ptr<GdkPixbuf, decltype(&g_object_unref)> Decoded(const CPreviewResult& result) {
    const std::unique_ptr<GdkPixbufLoader, decltype(&g_object_unref)> loader(
        gdk_pixbuf_loader_new_with_type("png", nullptr), &g_object_unref);
    if (!loader) return {nullptr, &g_object_unref};
    const auto* bytes = reinterpret_cast<const guchar*>(result.png.data());
    const bool written = gdk_pixbuf_loader_write(loader.get(), bytes, result.png.size(), nullptr);
    const bool closed = gdk_pixbuf_loader_close(loader.get(), nullptr);
    GdkPixbuf* picture = written && closed ? gdk_pixbuf_loader_get_pixbuf(loader.get()) : nullptr;
    return {picture ? GDK_PIXBUF(g_object_ref(picture)) : nullptr, &g_object_unref};
}

}  // namespace

CPreviewPane::CPreviewPane(const std::array<std::uint8_t, 3>& background)
    : m_box(gtk_box_new(GTK_ORIENTATION_VERTICAL, kGap)),
      m_stack(gtk_stack_new()),
      m_picture(gtk_image_new()),
      m_problem(gtk_label_new(nullptr)) {
    g_object_ref_sink(m_box);
    gtk_container_set_border_width(GTK_CONTAINER(m_box), kGap);
    BuildFrame(background);
    BuildFacts();
    gtk_widget_show_all(m_box);
    ShowNothing();
}

CPreviewPane::~CPreviewPane() {
    g_object_unref(m_box);
}

void CPreviewPane::BuildFrame(const std::array<std::uint8_t, 3>& background) {
    GtkStack* stack = GTK_STACK(m_stack);
    gtk_stack_add_named(stack, gtk_label_new(nullptr), kNothingPage);
    gtk_stack_add_named(stack, gtk_label_new("\u2026"), kWaitingPage);
    gtk_stack_add_named(stack, m_picture, kPicturePage);
    gtk_stack_add_named(stack, gtk_image_new_from_icon_name("image-missing-symbolic", GTK_ICON_SIZE_DIALOG),
                        kProblemPage);
    gtk_widget_set_opacity(gtk_stack_get_child_by_name(stack, kWaitingPage), 0.6);
    gtk_widget_set_opacity(gtk_stack_get_child_by_name(stack, kProblemPage), 0.4);
    gtk_widget_set_size_request(m_stack, kSide + 2, kSide + 2);
    gtk_widget_set_name(m_stack, "preview-picture");
    atk_object_set_name(gtk_widget_get_accessible(m_picture),
                        Utf8(lng::Text("Preview of the selected file")).c_str());

    GtkCssProvider* provider = gtk_css_provider_new();
    gtk_css_provider_load_from_data(provider, Style(background).c_str(), -1, nullptr);
    gtk_style_context_add_provider(gtk_widget_get_style_context(m_stack), GTK_STYLE_PROVIDER(provider),
                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(provider);
    gtk_box_pack_start(GTK_BOX(m_box), m_stack, FALSE, FALSE, 0);
}

void CPreviewPane::BuildFacts() {
    GtkWidget* grid = gtk_grid_new();
    gtk_grid_set_column_spacing(GTK_GRID(grid), kGap);
    gtk_grid_set_row_spacing(GTK_GRID(grid), kGap / 2);
    m_size = AddRow(grid, 0, lng::Mark("File size:"));
    m_triangles = AddRow(grid, 1, lng::Mark("Triangles:"));
    m_objects = AddRow(grid, 2, lng::Mark("Objects:"));
    gtk_box_pack_start(GTK_BOX(m_box), grid, FALSE, FALSE, 0);

    GtkLabel* problem = GTK_LABEL(m_problem);
    gtk_label_set_line_wrap(problem, TRUE);
    gtk_label_set_line_wrap_mode(problem, PANGO_WRAP_WORD_CHAR);
    gtk_label_set_max_width_chars(problem, 1);  // the picture gives the width
    gtk_label_set_xalign(problem, 0);
    gtk_label_set_lines(problem, 6);
    gtk_label_set_ellipsize(problem, PANGO_ELLIPSIZE_END);
    gtk_widget_set_name(m_problem, "preview-problem");
    gtk_box_pack_start(GTK_BOX(m_box), m_problem, FALSE, FALSE, 0);
}

CPreviewPane::CRow CPreviewPane::AddRow(GtkWidget* grid, int line, const char* englishName) {
    const CRow row{DimLabel(Utf8(lng::Text(englishName))), gtk_label_new(nullptr)};
    gtk_label_set_xalign(GTK_LABEL(row.value), 0);
    gtk_grid_attach(GTK_GRID(grid), row.name, 0, line, 1, 1);
    gtk_grid_attach(GTK_GRID(grid), row.value, 1, line, 1, 1);
    gtk_widget_set_name(row.value, ("preview-fact-" + std::to_string(line)).c_str());
    return row;
}

void CPreviewPane::SetRow(const CRow& row, const std::wstring& value) {
    gtk_label_set_text(GTK_LABEL(row.value), Utf8(value).c_str());
    gtk_widget_set_visible(row.name, !value.empty());
    gtk_widget_set_visible(row.value, !value.empty());
}

int CPreviewPane::ScaleFactor() const {
    return gtk_widget_get_scale_factor(m_box);
}

void CPreviewPane::ShowPage(const char* page) {
    gtk_stack_set_visible_child_name(GTK_STACK(m_stack), page);
    // Its place stays.
    gtk_widget_set_opacity(m_stack, page == kNothingPage ? 0 : 1);
}

void CPreviewPane::ShowNothing() {
    SetRow(m_size, {});
    SetRow(m_triangles, {});
    SetRow(m_objects, {});
    gtk_widget_hide(m_problem);
    ShowPage(kNothingPage);
}

void CPreviewPane::ShowWaiting(const CPreviewRequest& request) {
    ShowNothing();
    SetRow(m_size, lng::Size(request.bytes));
    ShowPage(kWaitingPage);
}

void CPreviewPane::ShowResult(const CPreviewRequest& request, const CPreviewResult& result) {
    ShowNothing();
    SetRow(m_size, lng::Size(request.bytes));
    if (result.triangles >= 0) SetRow(m_triangles, lng::Number(static_cast<std::uint64_t>(result.triangles)));
    if (result.objects >= 0) SetRow(m_objects, lng::Number(static_cast<std::uint64_t>(result.objects)));
    ShowPage(SetPicture(result) ? kPicturePage : kProblemPage);
    gtk_label_set_text(GTK_LABEL(m_problem), Utf8(result.problem).c_str());
    gtk_widget_set_visible(m_problem, !result.problem.empty());
}

bool CPreviewPane::SetPicture(const CPreviewResult& result) {
    if (result.png.empty()) return false;
    const auto picture = Decoded(result);
    if (!picture) return false;
    cairo_surface_t* surface = gdk_cairo_surface_create_from_pixbuf(picture.get(), ScaleFactor(), nullptr);
    gtk_image_set_from_surface(GTK_IMAGE(m_picture), surface);
    cairo_surface_destroy(surface);
    return true;
}
