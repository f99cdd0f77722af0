// SPDX-License-Identifier: MIT
#include "script/resolve_edits.h"

#include <utility>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "model/scene/CNoteList.h"

namespace {

bool Resolve(CTextureEdit& edit, const CEditsOrigin& origin, CScriptFiles& files, CNoteList& notes) {
    if (ascii_text::Trimmed(edit.imagePath).empty()) {
        edit.imagePath.clear();
        return true;
    }
    CScriptFiles::CPicture found = files.FindPicture(origin.namingFile, origin.modelPath, edit.imagePath);
    NotePicture(found, edit.imagePath, notes);
    edit.imagePath = std::move(found.path);
    return found.answer == CScriptFiles::EPicture::Found;
}

bool Resolve(CReplaceEdit& edit, const CEditsOrigin& origin, CScriptFiles& files, CNoteList& notes) {
    auto found = files.Find(file_util_ex::GetFilePath(origin.namingFile), edit.path);
    if (!found) {
        notes.Missing(lng::Mark("File of a replaced object not found"), CNoteList::Printable(edit.path));
        return false;
    }
    if (!files.MayRead(*found)) {
        notes.Limited(lng::Mark("The files of replaced objects are too large together"),
                      CNoteList::Printable(*found));
        return false;
    }
    if (!files.IsNear(origin.namingFile, origin.modelPath, *found))
        notes.Limited(lng::Mark("An object is replaced by one from another folder"),
                      CNoteList::Printable(*found));
    edit.path = std::move(*found);
    return true;
}

template <class Edit>
bool Resolve(Edit&, const CEditsOrigin&, CScriptFiles&, CNoteList&) {
    return true;
}

}  // namespace

bool ResolveEdit(CEdit& edit, const CEditsOrigin& origin, CScriptFiles& files, CNoteList& notes) {
    return std::visit([&](auto& one) { return Resolve(one, origin, files, notes); }, edit);
}

void NotePicture(const CScriptFiles::CPicture& picture, std::string_view written, CNoteList& notes) {
    if (picture.answer == CScriptFiles::EPicture::Missing)
        notes.Missing(lng::Mark("Picture of the script not found"), CNoteList::Printable(written));
    else if (picture.answer == CScriptFiles::EPicture::Outside)
        notes.Limited(lng::Mark("A picture far from the script and its model is not used"),
                      CNoteList::Printable(written));
    else if (picture.isElsewhere)
        notes.Limited(lng::Mark("A picture lies outside the model's own folder"),
                      CNoteList::Printable(picture.path));
}
