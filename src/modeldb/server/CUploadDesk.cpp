// SPDX-License-Identifier: MIT
#include "modeldb/server/CUploadDesk.h"

#include <algorithm>
#include <memory>

#include "base/text/ascii_text.h"
#include "modeldb/protocol/wire_address.h"
#include "modeldb/protocol/wire_errors.h"
#include "modeldb/protocol/wire_records.h"
#include "modeldb/server/server_answers.h"
#include "modeldb/server/work/CPreviewQueue.h"
#include "modeldb/server/work/CWorkshop.h"

namespace {

constexpr std::size_t kThreads =
    2;  ///< the store takes one writer at a time; another one reads and packs meanwhile

/** The type without parameters. */
bool IsUploadType(std::string_view type) {
    type = type.substr(0, type.find(';'));
    while (!type.empty() && type.back() == ' ') type.remove_suffix(1);
    return ascii_text::EqualNoCase(type, wire_limits::kUploadType);
}

CError Full(const char* message) {
    return {EErrorCode::Unsupported, message, {}};
}

/** A model that is there already, under the key of an upload. */
CResult<std::optional<CAddedModel>> FindSame(CModelStore& store, const CSpooledUpload& upload) {
    const CResult<CModelRecord> model = store.Model(upload.key);
    if (!model) {
        if (model.Error().code == EErrorCode::NotFound) return std::optional<CAddedModel>();
        return model.Error();
    }
    if (model.Value().file.hash == upload.head.file.hash)
        return std::optional(CAddedModel{upload.key, EAdded::SameIsThere});
    return CError{EErrorCode::Exists, "another file has this key already", {}};
}

}  // namespace

CUploadDesk::CUploadDesk(const CServerOptions& options, CStorePool& stores, CAccess& access,
                         CWorkshop& workshop, CPreviewQueue* previews)
    : m_options(options),
      m_stores(stores),
      m_access(access),
      m_workshop(workshop),
      m_previews(previews),
      m_turns(options.uploadsPerMinute, std::max(10.0, options.uploadsPerMinute)),
      m_workers(kThreads, options.waitingUploads) {}

std::optional<CHttpAnswer> CUploadDesk::Refuse(const CHttpRequest& request) {
    if (std::optional<CHttpAnswer> refusal = m_access.Refuse(request, EAccess::Upload)) return refusal;
    if (!IsUploadType(request.Header("Content-Type")))
        return server_answers::Refusal(
            415, "the content type of an upload is " + std::string(wire_limits::kUploadType));
    if (request.bodyBytes > m_options.uploadBytes) return server_answers::Refusal(413);
    if (!m_turns.Take(request.peer)) return server_answers::Refusal(429);
    if (m_workers.IsFull()) return server_answers::Refusal(503);
    return std::nullopt;
}

void CUploadDesk::Take(CHttpBody body, CHttpReply reply) {
    struct CTask {
        CHttpBody body;
        CHttpReply reply;
    };
    const auto task =
        std::make_shared<CTask>(CTask{std::move(body), std::move(reply)});  // shared: to be copyable
    const bool isTaken = m_workers.Post([this, task] { task->reply.Send(Work(std::move(task->body))); });
    if (!isTaken) task->reply.Send(server_answers::Refusal(503));
}

CHttpAnswer CUploadDesk::Work(CHttpBody body) {
    CResult<CSpooledUpload> upload = spooled_upload::Read(std::move(body), store_limits::kTextures);
    if (!upload) {
        ++m_counts.refused;
        return server_answers::Refusal(wire_errors::StatusOfUpload(upload.Error().code),
                                       upload.Error().message);
    }
    return AnswerOf(Add(upload.Value()));
}

CResult<CAddedModel> CUploadDesk::Add(const CSpooledUpload& upload) {
    const CResult<std::optional<CAddedModel>> same =
        m_stores.Run([&](CModelStore& store) -> CResult<std::optional<CAddedModel>> {
            CResult<std::optional<CAddedModel>> found = FindSame(store, upload);
            if (!found || found.Value()) return found;
            if (CStatus room = CheckRoom(store, upload.head.group); !room) return room.Error();
            return found;
        });
    if (!same) return same.Error();
    if (same.Value()) return *same.Value();
    // Without a connection, as it may take long.
    if (CStatus sound = spooled_upload::CheckPictures(upload); !sound) return sound.Error();
    if (CStatus sound = Inspect(upload); !sound) return sound.Error();
    return m_stores.Run([&](CModelStore& store) -> CResult<CAddedModel> {
        CResult<CNewModel> model = spooled_upload::Pack(store, upload);
        if (!model) return model.Error();
        return store.AddModel(std::move(model).Value());
    });
}

CStatus CUploadDesk::CheckRoom(CModelStore& store, const std::string& group) const {
    const CResult<CGroupRecord> found = store.Group(group);
    if (found)
        return found.Value().modelCount < m_options.groupModels ? CStatus(CDone{})
                                                                : Full("the group is full");
    if (found.Error().code != EErrorCode::NotFound) return found.Error();
    const CResult<std::vector<CGroupRecord>> groups = store.Groups();
    if (!groups) return groups.Error();
    return groups.Value().size() < m_options.groups ? CStatus(CDone{})
                                                    : Full("this server makes no further groups");
}

CStatus CUploadDesk::Inspect(const CSpooledUpload& upload) {
    CResult<CInspected> inspected = m_workshop.Inspect(upload.input);
    if (!inspected) return inspected.Error();
    if (inspected.Value().sound) return CDone{};
    return CError{EErrorCode::Unsupported, std::move(inspected).Value().reason, {}};
}

CHttpAnswer CUploadDesk::AnswerOf(const CResult<CAddedModel>& added) {
    if (!added) {
        const CError& error = added.Error();
        // What a model is refused for is one status, whatever the reader calls it.
        const bool isRefused = error.code == EErrorCode::Unsupported;
        CHttpAnswer answer =
            isRefused ? server_answers::Refusal(422, error.message) : server_answers::Refusal(error);
        ++(answer.status < 500 ? m_counts.refused : m_counts.failed);
        if (answer.status >= 500 && m_options.complain)
            m_options.complain("an upload failed: " + error.Text());
        return answer;
    }
    const bool isNew = added.Value().how == EAdded::Added;
    ++(isNew ? m_counts.added : m_counts.same);
    if (isNew && m_previews) m_previews->Add(added.Value().key);
    CHttpAnswer answer = server_answers::Json(isNew ? 201 : 200, wire_records::WriteUploaded(added.Value()));
    if (isNew) answer.headers.emplace_back("Location", wire_address::Write(CModelAddress{added.Value().key}));
    return answer;
}
