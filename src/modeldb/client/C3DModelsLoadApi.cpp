// SPDX-License-Identifier: MIT
#include "modeldb/client/C3DModelsLoadApi.h"

#include <exception>
#include <memory>
#include <utility>

#include "base/text/lng.h"
#include "base/text/utf8_text.h"
#include "modeldb/bytes/calc_crc.h"
#include "modeldb/client/CLibraryConnection.h"
#include "modeldb/client/cache/CModelCache.h"
#include "modeldb/client/download_model.h"

using lng::Mark;

namespace {

constexpr std::size_t kMostErrorText = 500;

CLibraryConnection& Connection() {
    return CLibraryConnection::Instance();
}

/** What a call of ours returns; an exception, which only a lack of memory throws, as an error. */
template <class TCall>
auto Guarded(TCall call) -> decltype(call()) {
    try {
        return call();
    } catch (const std::exception&) {
        return CError{EErrorCode::TooLarge, Mark("there is not enough memory"), {}};
    }
}

/** Asks the library that is open. */
template <class TCall>
auto Ask(TCall call) -> decltype(call(std::declval<CModelLibrary&>())) {
    const std::shared_ptr<CModelLibrary> library = Connection().Library();
    if (!library) return CError{EErrorCode::BadArgument, Mark("no library of models is open"), {}};
    return Guarded([&] { return call(*library); });
}

/** Keeps how a call ended; true when well. */
template <class T>
bool Note(const CResult<T>& result) {
    Connection().Note(result ? std::nullopt : std::optional(result.Error()));
    return result.HasValue();
}

CResult<CModelRecord> RecordOf(std::uint32_t id) {
    return Ask([&](CModelLibrary& library) {
        CProgressUnits units(nullptr);
        return library.Model(id, units);
    });
}

}  // namespace

bool C3DModelsLoadApi::Open(const std::string& address) {
    return Note(Guarded([&] { return Connection().Open(address); }));
}

void C3DModelsLoadApi::Close() {
    Connection().Close();
}

bool C3DModelsLoadApi::CheckVersion(const std::string& version) {
    const CResult<bool> accepted = Ask([&](CModelLibrary& library) { return library.Accepts(version); });
    return Note(accepted) && accepted.Value();
}

void C3DModelsLoadApi::SetToken(const std::string& token) {
    Connection().SetToken(token);
}

void C3DModelsLoadApi::SetConnLostListner(std::function<void()> listener) {
    Connection().SetLostListener(std::move(listener));
}

std::string C3DModelsLoadApi::LastError() {
    const std::optional<CError> error = Connection().LastError();
    if (!error) return {};
    // The reason first: a bar that has no room for all of it shows the beginning.
    const std::string message = utf8_text::Printable(error->message, ' ');
    std::wstring sentence = lng::Text(CError{error->code, message, {}});
    if (!error->where.empty()) sentence += L" (" + lng::Isolated(lng::ConvertFromUTF8(error->where)) + L")";
    return std::string(utf8_text::Cut(file_util_ex::ConvertToUTF8(sentence), kMostErrorText));
}

void C3DModelsLoadApi::GetGroups(std::vector<std::string>& names, CBlobProgress* progress) {
    names.clear();
    CProgressUnits units(progress);
    CResult<std::vector<CGroupRecord>> groups =
        Ask([&](CModelLibrary& library) { return library.Groups(units); });
    if (!Note(groups)) return;
    Connection().KeepCounts(groups.Value());
    for (CGroupRecord& group : groups.Value()) names.push_back(std::move(group.name));
}

std::uint64_t C3DModelsLoadApi::GetGroupModelsCount(const std::string& group) {
    if (const std::optional<std::uint64_t> known = Connection().TakeCount(group)) return *known;
    const CResult<CGroupRecord> record = Ask([&](CModelLibrary& library) { return library.Group(group); });
    return Note(record) ? record.Value().modelCount : 0;
}

void C3DModelsLoadApi::GetGroupModels(const std::string& group, CSmpModelArr& models,
                                      CBlobProgress* progress) {
    models.clear();
    CProgressUnits units(progress);
    CResult<CSmpModelArr> found = Ask([&](CModelLibrary& library) { return library.Models(group, units); });
    if (Note(found)) models = std::move(found).Value();
}

bool C3DModelsLoadApi::SearchModels(const std::string& text, std::vector<CFoundModel>& found,
                                    CBlobProgress* progress) {
    found.clear();
    if (text.empty()) return Note(CStatus(CDone{}));
    CProgressUnits units(progress);
    CResult<std::vector<CFoundModel>> result =
        Ask([&](CModelLibrary& library) { return library.Search(text, units); });
    if (!Note(result)) return false;
    found = std::move(result).Value();
    return true;
}

std::string C3DModelsLoadApi::GetModelGroup(std::uint32_t id) {
    CResult<CModelRecord> record = RecordOf(id);
    return Note(record) ? std::move(record.Value().group) : std::string();
}

std::string C3DModelsLoadApi::GetModelCode(std::uint32_t id) {
    CResult<CModelRecord> record = RecordOf(id);
    return Note(record) ? std::move(record.Value().code) : std::string();
}

bool C3DModelsLoadApi::DoesModelExist(std::uint32_t id) {
    const CResult<bool> exists = Ask([&](CModelLibrary& library) { return library.Has(id); });
    return Note(exists) && exists.Value();
}

bool C3DModelsLoadApi::DownloadModel(std::uint32_t id, std::string& name, std::string& group, CBlobData& file,
                                     CImageDataTextVec& textures, CBlobProgress* progress) {
    CProgressUnits units(progress);
    CResult<CDownloadedModel> model =
        Ask([&](CModelLibrary& library) { return DownloadFrom(library, id, units); });
    if (!Note(model)) return false;
    name = std::move(model.Value().name);
    group = std::move(model.Value().group);
    file = std::move(model.Value().file);
    textures = std::move(model.Value().textures);
    return true;
}

bool C3DModelsLoadApi::GetPreview(std::uint32_t id, std::vector<std::byte>& picture) {
    picture.clear();
    CResult<std::vector<std::byte>> got =
        Ask([&](CModelLibrary& library) { return PreviewFrom(library, id); });
    if (!got) return false;
    picture = std::move(got).Value();
    return true;
}

bool C3DModelsLoadApi::UploadModel(const std::string& name, const std::string& group, const CBlobData& file,
                                   const CImageDataTextVec& textures, CBlobProgress* progress) {
    CProgressUnits units(progress);
    const CStatus uploaded = Ask([&](CModelLibrary& library) {
        return library.Upload({name, group, file.Bytes(), textures}, units);
    });
    Connection().ForgetCounts();
    return Note(uploaded);
}

std::uint32_t C3DModelsLoadApi::CalcCrc(const void* bytes, std::size_t count) {
    return ::CalcCrc(std::span(static_cast<const std::byte*>(bytes), count));
}

void C3DModelsLoadApi::ClearCache() {
    CModelCache().Clear();
}
