// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/filedlg.h>
#include <wx/frame.h>

#include <filesystem>
#include <string>

#include "files/CTestFolder.h"
#include "files/file_util_ex.h"
#include "files/std_file_paths.h"
#include "frame/preview/ui/C3DSFileDlgI.h"
#include "settings/CLocalRegStore.h"
#include "widgets/CModalDriver.h"

namespace {

namespace fs = std::filesystem;

GtkWidget* Find(GtkWidget* root, const std::string& name) {
    if (name == gtk_widget_get_name(root)) return root;
    GtkWidget* found = nullptr;
    if (!GTK_IS_CONTAINER(root)) return found;
    GList* children = gtk_container_get_children(GTK_CONTAINER(root));
    for (GList* child = children; child && !found; child = child->next)
        found = Find(GTK_WIDGET(child->data), name);
    g_list_free(children);
    return found;
}

GtkWidget* InDialog(const char* name) {
    wxFileDialog* dialog = CModalDriver::FileDialog();
    if (!dialog) return nullptr;
    return Find(gtk_file_chooser_get_preview_widget(GTK_FILE_CHOOSER(dialog->GetHandle())), name);
}

/** What the preview shows: "picture", "waiting", "problem" or "nothing"; empty without a dialog. */
std::string Page() {
    GtkWidget* stack = InDialog("preview-picture");
    return stack ? gtk_stack_get_visible_child_name(GTK_STACK(stack)) : "";
}

std::string TextOf(const char* name) {
    GtkWidget* label = InDialog(name);
    return label && gtk_widget_get_visible(label) ? gtk_label_get_text(GTK_LABEL(label)) : "";
}

CModalDriver::CStep Shows(const std::string& page) {
    return [page] { return Page() == page; };
}

CModalDriver::CStep Select(const std::string& path) {
    return [path] {
        wxFileDialog* dialog = CModalDriver::FileDialog();
        return dialog &&
               gtk_file_chooser_select_filename(GTK_FILE_CHOOSER(dialog->GetHandle()), path.c_str());
    };
}

/** Red, green and blue of a pixel of the picture that is shown. */
std::string Pixel(int x, int y) {
    GtkWidget* image = gtk_stack_get_child_by_name(GTK_STACK(InDialog("preview-picture")), "picture");
    cairo_surface_t* surface = nullptr;
    g_object_get(image, "surface", &surface, nullptr);
    if (!surface) return "no picture";
    const unsigned char* pixel =
        cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface) + x * 4;
    std::string text =
        std::to_string(pixel[2]) + "," + std::to_string(pixel[1]) + "," + std::to_string(pixel[0]);
    cairo_surface_destroy(surface);
    return text;
}

class COpenDialogWxTest : public testing::Test {
  protected:
    COpenDialogWxTest() {
        CModalDriver::ShowFirst(*frame);
        C3DSFileDlgI::SetBackgroundColor(10 / 255.0f, 20 / 255.0f, 30 / 255.0f);
    }
    ~COpenDialogWxTest() override {
        frame->Destroy();
        std_file_paths::DeleteTempDir();
    }
    std::string Launch(const std::string& start, std::deque<CModalDriver::CStep> steps) {
        CModalDriver driver(std::move(steps));
        const std::wstring path = C3DSFileDlgI::LaunchDialog(frame, file_util_ex::ConvertFromUTF8W(start));
        EXPECT_TRUE(driver.IsDone());
        return file_util_ex::ConvertToUTF8(path);
    }
    static std::wstring StoredFolder() { return CLocalRegStore::GetString("3dsFileDialog", "Path", L""); }

    CLocalRegStore::CDefaultFileGuard store;
    CTestFolder folder;
    std::string samples = std_file_paths::GetDataPath("samples");
    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "main");
};

TEST_F(COpenDialogWxTest, ShowsWhatIsSelectedAndOpensIt) {
    const std::string sample = samples + "/knot.3ds";
    ASSERT_TRUE(fs::exists(sample));
    const auto look = [] {
        EXPECT_EQ(Pixel(2, 2), "10,20,30");
        EXPECT_NE(Pixel(128, 128), "10,20,30") << "the model is to be seen";
        EXPECT_EQ(
            TextOf("preview-fact-0") + ", " + TextOf("preview-fact-1") + ", " + TextOf("preview-fact-2"),
            "330.1 kB, 15,928, 2");
        return true;
    };
    EXPECT_EQ(Launch("", {Select(sample), Shows("picture"), look, CModalDriver::Press(WXK_RETURN)}), sample)
        << "without a folder it stands in the samples";
    EXPECT_EQ(StoredFolder(), file_util_ex::ConvertFromUTF8W(samples));
}

TEST_F(COpenDialogWxTest, SaysWhyThereIsNoPicture) {
    const std::string broken = folder.Add("broken \u6A21\u578B.3DS", "nothing");
    fs::create_directory(folder / "sub");
    const auto look = [] { return TextOf("preview-problem") == "This is not a 3D Studio file"; };
    EXPECT_EQ(Launch(folder.Path(),
                     {Select(broken), Shows("problem"), look, Select(folder / "sub"), Shows("nothing"),
                      Select(broken), Shows("problem"), CModalDriver::Press(WXK_RETURN)}),
              broken)
        << "it may be chosen all the same, and its name is listed in capitals";
}

TEST_F(COpenDialogWxTest, IsCancelledWhileAPictureIsDrawn) {
    const std::string sample = samples + "/orrery.3ds";
    EXPECT_EQ(Launch(samples, {Select(sample), Shows("waiting"),
                               [] { return fs::exists(std_file_paths::GetTempFilePath("open-preview")); },
                               CModalDriver::Press(WXK_ESCAPE)}),
              "");
    EXPECT_EQ(StoredFolder(), L"");
    EXPECT_FALSE(fs::exists(std_file_paths::GetTempFilePath("open-preview")))
        << "something of the drawing is left";
}

}  // namespace
