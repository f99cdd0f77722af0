// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/join_upload.h"

#include <algorithm>
#include <filesystem>
#include <new>

#include "base/text/ascii_text.h"
#include "base/text/lng.h"
#include "export/drive/upload_notes.h"
#include "files/file_util_ex.h"
#include "programs/upload_prepare/landing_page.h"
#include "programs/upload_prepare/upload_texts.h"

namespace fs = std::filesystem;
using file_util_ex::MakePath;

namespace {

constexpr char kModelFolder[] = "model";
constexpr char kPage[] = "index.html";
constexpr char kTexts[] = "texts.json";
constexpr char kPicture[] = "screenshot.jpg";
constexpr std::size_t kMostFiles = 2000;
constexpr std::uint64_t kMostFileBytes = 4ULL << 30;

/** Gathers files in the upload folder. */
class CJoining {
  public:
    explicit CJoining(const CUploadArguments& arguments) : m_arguments(arguments) {
        m_content.folder = arguments.uploadFolder;
    }

    [[nodiscard]] CResult<CUploadContent> Run() {
        // All that lies there would be uploaded, and nobody would be shown it; and no link there is followed.
        std::error_code error;
        if (!fs::is_empty(m_arguments.uploadFolder, error) || error)
            return CError{EErrorCode::Exists, lng::Mark("the folder for the upload is not empty"),
                          m_arguments.uploadFolder};
        // Their page is the template itself.
        if (CStatus copied = CopyFolder(m_arguments.templateFolder, "", {kPage, kTexts}); !copied)
            return copied.Error();
        if (CStatus copied = CopyFolder(m_arguments.modelFolder, kModelFolder, {kUploadNotesFile}); !copied)
            return copied.Error();
        if (CStatus written = WriteLandingPage(); !written) return written.Error();
        if (auto notes = ReadUploadNotes(m_arguments.modelFolder))
            m_content.outside = std::move(notes.Value().outside);
        std::ranges::sort(m_content.files, {}, &CUploadContent::CFile::name);
        return std::move(m_content);
    }

  private:
    /** Copies what a folder holds, but for some files in it itself. */
    [[nodiscard]] CStatus CopyFolder(const std::string& from, const std::string& to,
                                     const std::vector<std::string>& without) {
        std::error_code error;
        for (fs::recursive_directory_iterator entry(from, error), end; !error && entry != end;
             entry.increment(error)) {
            const std::string relative = entry->path().lexically_relative(from).string();
            if (std::ranges::find(without, relative) != without.end()) continue;
            if (!fs::is_regular_file(entry->symlink_status(error))) continue;
            if (CStatus copied = CopyFile(entry->path().string(), MakePath(to, relative)); !copied)
                return copied;
        }
        if (error) return CError{EErrorCode::Unreadable, error.message(), from};
        return CDone{};
    }

    [[nodiscard]] CStatus CopyFile(const std::string& from, const std::string& to) {
        const auto bytes = file_util_ex::ReadPlainFile(from, kMostFileBytes);
        if (!bytes) return bytes.Error();
        return Write(to, bytes.Value());
    }

    [[nodiscard]] CStatus Write(const std::string& name, std::span<const std::byte> bytes) {
        if (m_content.files.size() >= kMostFiles)
            return CError{EErrorCode::TooLarge, lng::Mark("there are too many files"), m_content.folder};
        const std::string path = MakePath(m_content.folder, name);
        (void)file_util_ex::Mkdir(file_util_ex::GetFilePath(path));  // writing tells
        m_content.files.push_back({name, bytes.size()});
        m_content.bytes += bytes.size();
        return file_util_ex::WriteFileAtomically(path, bytes);
    }

    [[nodiscard]] const CUploadContent::CFile* Find(const std::string& name) const {
        const auto found = std::ranges::find(m_content.files, name, &CUploadContent::CFile::name);
        return found == m_content.files.end() ? nullptr : &*found;
    }

    [[nodiscard]] CStatus WriteLandingPage() {
        CLandingPage facts;
        facts.title = TitleOf(m_arguments.modelName);
        facts.page = MakePath(kModelFolder, kPage);
        const auto page = file_util_ex::ReadPlainFile(MakePath(m_arguments.modelFolder, kPage));
        if (!page) return page.Error();
        facts.language =
            LanguageOfPage({reinterpret_cast<const char*>(page.Value().data()), page.Value().size()});
        const std::string picture = MakePath(kModelFolder, kPicture);
        if (Find(picture)) {
            facts.picture = picture;
            m_content.picture = MakePath(m_content.folder, picture);
        }
        // The archive is the only one that lies beside the page.
        for (const CUploadContent::CFile& file : m_content.files)
            if (ascii_text::Lowered(file_util_ex::GetFileExt(file.name)) == "zip" &&
                file_util_ex::GetFilePath(file.name) == kModelFolder) {
                facts.download = file.name;
                facts.downloadBytes = file.bytes;
            }
        const CResult<std::string> landing = MakeLandingPage(m_arguments.templateFolder, facts);
        if (!landing) return landing.Error();
        return Write(kPage, std::as_bytes(std::span(landing.Value())));
    }

    const CUploadArguments& m_arguments;
    CUploadContent m_content;
};

}  // namespace

CResult<CUploadContent> JoinUpload(const CUploadArguments& arguments) {
    try {
        return CJoining(arguments).Run();
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory"), arguments.modelFolder};
    }
}
