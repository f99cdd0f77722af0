// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/ui/CConfirmPage.h"

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/image.h>
#include <wx/listbox.h>
#include <wx/log.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include <algorithm>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "programs/upload_prepare/CUpload.h"
#include "programs/upload_prepare/remembered_remote.h"
#include "programs/upload_prepare/ui/CUploadFileList.h"
#include "programs/upload_prepare/ui/page_parts.h"
#include "programs/upload_prepare/upload_sentences.h"
#include "programs/upload_prepare/upload_texts.h"
#include "widgets/ui/accessible_name.h"
#include "widgets/ui/field_label.h"

using page_parts::Shown;

namespace {

/** The picture at a path, scaled to fit; not sound where there is none. */
wxBitmap PictureAt(const wxWindow& window, const std::string& path) {
    const wxLogNull quiet;
    wxImage image;
    if (path.empty() || !image.LoadFile(file_util_ex::PathFromBytes(path), wxBITMAP_TYPE_JPEG)) return {};
    const double scale = window.GetContentScaleFactor();
    const wxSize room = window.FromDIP(wxSize(144, 108)) * scale;
    const double fit = std::min(1.0 * room.x / image.GetWidth(), 1.0 * room.y / image.GetHeight());
    image.Rescale(std::max(1, static_cast<int>(image.GetWidth() * fit)),
                  std::max(1, static_cast<int>(image.GetHeight() * fit)), wxIMAGE_QUALITY_HIGH);
    return {image, wxBITMAP_SCREEN_DEPTH, scale};
}

}  // namespace

CConfirmPage::CConfirmPage(wxWindow* parent, const CUploadContent& content, const std::string& modelName)
    : wxPanel(parent) {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(MakeHead(content, modelName), wxSizerFlags().Border(wxBOTTOM, FromDIP(8)));
    column->Add(new CUploadFileList(this, content), wxSizerFlags(1).Expand().Border(wxBOTTOM, FromDIP(8)));
    AddOutside(*column, content);
    column->Add(MakeTarget(), wxSizerFlags().Expand().Border(wxBOTTOM, FromDIP(8)));
    m_link = new wxCheckBox(this, wxID_ANY, lng::Text("Make a link with which anybody can open the folder"));
    column->Add(m_link, wxSizerFlags().Border(wxBOTTOM, FromDIP(8)));
    page_parts::AddText(this, *column, lng::Text("Nothing has left this computer yet."));
    SetSizer(column);
}

wxSizer* CConfirmPage::MakeHead(const CUploadContent& content, const std::string& modelName) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    if (const wxBitmap picture = PictureAt(*this, content.picture); picture.IsOk())
        row->Add(new wxStaticBitmap(this, wxID_ANY, picture), wxSizerFlags().Border(wxRIGHT, FromDIP(12)));
    auto* texts = new wxBoxSizer(wxVERTICAL);
    page_parts::AddHeading(this, *texts, lng::Text("Upload this to Google Drive?"));
    auto* name = new wxStaticText(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxSize(FromDIP(340), -1),
                                  wxST_ELLIPSIZE_MIDDLE | wxST_NO_AUTORESIZE);
    name->SetLabelText(Shown(modelName));
    texts->Add(name, wxSizerFlags().Border(wxBOTTOM, FromDIP(4)));
    texts->Add(new wxStaticText(this, wxID_ANY, upload_sentences::Sum(content)));
    row->Add(texts, wxSizerFlags(1).CenterVertical());
    return row;
}

void CConfirmPage::AddOutside(wxSizer& column, const CUploadContent& content) {
    const std::wstring sentence = upload_sentences::Outside(content);
    if (sentence.empty()) return;
    wxStaticText* text = page_parts::AddText(this, column, {});
    text->SetFont(text->GetFont().Bold());
    page_parts::ShowText(*text, sentence);
    if (!content.outside) return;
    auto* list =
        new wxListBox(this, wxID_ANY, wxDefaultPosition,
                      wxSize(page_parts::TextWidth(*this), std::max(FromDIP(80), 4 * GetCharHeight())));
    SetAccessibleName(*list, lng::Text("Pictures from outside the model's folder"));
    for (const std::string& path : *content.outside) list->Append(Shown(path));
    column.Add(list, wxSizerFlags().Expand().Border(wxBOTTOM, FromDIP(8)));
}

wxSizer* CConfirmPage::MakeTarget() {
    auto* grid = new wxFlexGridSizer(2, FromDIP(wxSize(8, 6)));
    grid->AddGrowableCol(1);
    const wxSizerFlags middle = wxSizerFlags().CenterVertical();
    auto* label = new wxStaticText(this, wxID_ANY, lng::Text("Drive:"));
    m_remote = new wxChoice(this, wxID_ANY);
    SetLabelFor(*label, *m_remote);
    grid->Add(label, middle);
    grid->Add(m_remote, wxSizerFlags().Expand());
    grid->Add(new wxStaticText(this, wxID_ANY, lng::Text("Folder:")), middle);
    m_folder = new wxStaticText(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                wxST_ELLIPSIZE_MIDDLE);
    grid->Add(m_folder, wxSizerFlags().Expand().CenterVertical());
    return grid;
}

void CConfirmPage::ShowRemotes(const CUpload& upload) {
    m_remote->Clear();
    for (const std::string& name : upload.Remotes()) m_remote->Append(lng::ConvertFromUTF8(name));
    m_remote->SetSelection(0);
    m_remote->SetStringSelection(lng::ConvertFromUTF8(remembered_remote::Get()));
    m_folder->SetLabelText(Shown(upload.RemoteFolder()));
    m_remote->SetFocus();
    Layout();
}

std::string CConfirmPage::Remote() const {
    return file_util_ex::ConvertToUTF8(m_remote->GetStringSelection().ToStdWstring());
}

bool CConfirmPage::WantsLinkForAnybody() const {
    return m_link->GetValue();
}
