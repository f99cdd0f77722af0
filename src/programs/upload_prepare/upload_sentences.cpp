// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/upload_sentences.h"

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "programs/upload_prepare/upload_texts.h"

namespace upload_sentences {
namespace {

/** The text with its two "%s" replaced. */
std::wstring Text2(const char* text, const std::wstring& first, const std::wstring& second) {
    std::wstring filled = lng::Text(text, first);
    const std::size_t place = filled.find(L"%s", first.size());
    return place == filled.npos ? filled : filled.replace(place, 2, second);
}

CState WithoutDrive(CUpload::ENoDrive why) {
    const std::wstring heading = lng::Text("The page is ready, but nothing was uploaded");
    switch (why) {
        case CUpload::ENoDrive::NotInstalled:
            return {
                heading,
                lng::Text("To upload it from here, the program rclone is needed, and it is not installed. "
                          "You can upload the folder by hand in the browser instead.")};
        case CUpload::ENoDrive::NoRemote:
            return {
                heading,
                lng::Text("rclone is installed, but knows no Google Drive of yours. Run \"rclone config\" in "
                          "a terminal to add one, or upload the folder by hand in the browser.")};
        case CUpload::ENoDrive::Locked:
            return {lng::Text("rclone's configuration has a password"),
                    lng::Text("Type it here to upload with rclone. It is used this once and kept nowhere.")};
        case CUpload::ENoDrive::Failed:
            break;
    }
    return {heading, lng::Text("rclone cannot be used:")};
}

CState Finished(const CUpload& upload) {
    const std::wstring heading = lng::Text("The page is in Google Drive");
    if (upload.Address().empty())
        return {heading, lng::Text("There is no link to its folder. You find it in your drive as:")};
    if (upload.IsForAnybody()) return {heading, lng::Text("Anybody who has this link can open the folder:")};
    return {heading, lng::Text("This is its folder. Nobody but you can open it until you share it:")};
}

}  // namespace

std::wstring Size(std::uint64_t bytes) {
    return lng::Size(bytes);
}

std::wstring Sum(const CUploadContent& content) {
    return lng::TextN("%s file, %s", "%s files, %s", content.files.size(), Size(content.bytes));
}

std::wstring Outside(const CUploadContent& content) {
    if (!content.outside)
        return lng::Text("It is not known whether pictures from outside the model's folder are among them.");
    if (content.outside->empty()) return {};
    return lng::Text("These pictures come from outside the model's folder and would be uploaded, too:");
}

CState Of(const CUpload& upload) {
    switch (upload.State()) {
        case CUpload::EState::Looking:
            return {lng::Text("Looking for your Google Drive..."), {}};
        case CUpload::EState::NoDrive:
            return WithoutDrive(upload.WhyNoDrive());
        case CUpload::EState::Ready:
            return {lng::Text("Upload this to Google Drive?"), {}};
        case CUpload::EState::Copying:
            return {lng::Text("Uploading..."), {}};
        case CUpload::EState::Linking:
            return {lng::Text("Asking for the link..."), {}};
        case CUpload::EState::Done:
            return Finished(upload);
        case CUpload::EState::Failed:
            return {lng::Text("The upload failed"), lng::Text("rclone says:")};
        case CUpload::EState::Cancelled:
            break;
    }
    return {lng::Text("The upload was cancelled"),
            lng::Text("Files that were sent before are in your drive, in the folder:")};
}

std::wstring Progress(const CUpload& upload) {
    const rclone_output::CProgress& progress = upload.Progress();
    if (progress.totalFiles == 0) return {};
    return Text2(lng::Mark("Files: %s of %s"), lng::Number(progress.files),
                 lng::Number(progress.totalFiles)) +
           L", " + Text2(lng::Mark("%s of %s"), Size(progress.bytes), Size(progress.totalBytes));
}

}  // namespace upload_sentences
