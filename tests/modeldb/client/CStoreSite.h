// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <mutex>
#include <string>

#include "CScriptedServer.h"
#include "modeldb/protocol/CUploadBodyReader.h"
#include "modeldb/protocol/wire_address.h"
#include "modeldb/protocol/wire_errors.h"
#include "modeldb/protocol/wire_limits.h"
#include "modeldb/protocol/wire_records.h"
#include "modeldb/store/CModelStore.h"

/** Answers a scripted server's requests as a server of models does, from a store. */
class CStoreSite {
  public:
    explicit CStoreSite(CModelStore& store) : m_store(store) {}

    bool Answer(const CScriptedRequest& request, CScriptedPeer& peer) {
        const std::lock_guard lock(m_mutex);
        const CResult<CWireAddress> address = wire_address::Read(request.target);
        if (!address) return Refuse(peer, 404, "");
        return std::visit([&](const auto& of) { return Give(of, request, peer); }, address.Value());
    }

  private:
    static bool Refuse(CScriptedPeer& peer, int status, std::string_view why) {
        return peer.Answer(status, wire_errors::Write(status, why));
    }
    template <class T, class TWrite>
    static bool Json(const CResult<T>& result, CScriptedPeer& peer, TWrite write) {
        if (!result) return Refuse(peer, wire_errors::StatusOf(result.Error().code), result.Error().message);
        return peer.Answer(200, write(result.Value()));
    }

    static bool Give(const CVersionAddress& of, const CScriptedRequest&, CScriptedPeer& peer) {
        CVersionAnswer answer{of.client == "1.5", {"1.5"}, "test", false, wire_limits::kUploadBytes, 2000};
        return peer.Answer(200, wire_records::WriteVersion(answer));
    }
    bool Give(const CGroupsAddress&, const CScriptedRequest&, CScriptedPeer& peer) {
        return Json(m_store.Groups(), peer, [](const auto& all) { return wire_records::WriteGroups(all); });
    }
    bool Give(const CGroupAddress& of, const CScriptedRequest&, CScriptedPeer& peer) {
        return Json(m_store.Group(of.name), peer, &wire_records::WriteGroup);
    }
    bool Give(const CModelsAddress& of, const CScriptedRequest&, CScriptedPeer& peer) {
        return Json(m_store.Models(of.groupId, of.after, of.limit), peer, [&](const auto& models) {
            return wire_records::WriteModels(models, models.size() == of.limit);
        });
    }
    bool Give(const CSearchAddress& of, const CScriptedRequest&, CScriptedPeer& peer) {
        return Json(m_store.Search(of.text, of.groupId, of.limit), peer,
                    [](const auto& found) { return wire_records::WriteFound(found, false); });
    }
    bool Give(const CModelAddress& of, const CScriptedRequest& request, CScriptedPeer& peer) {
        const CResult<CModelRecord> model = m_store.Model(of.key);
        if (request.method != "HEAD") return Json(model, peer, &wire_records::WriteModel);
        return peer.Send(model ? "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n"
                               : "HTTP/1.1 404 No\r\nContent-Length: 99\r\n\r\n");
    }
    bool Give(const CBlobAddress& of, const CScriptedRequest& request, CScriptedPeer& peer) {
        CMemorySink sink(64 << 20);
        const CStatus read = of.form == EBlobForm::Plain
                                 ? m_store.ReadBytes(of.hash, sink)
                                 : m_store.ReadStored(of.hash, 0, UINT64_MAX >> 1, sink);
        if (!read) return Refuse(peer, 404, "");
        const std::string bytes(reinterpret_cast<const char*>(sink.bytes.data()), sink.bytes.size());
        const std::string range = request.Header("Range");
        if (range.empty() || request.Header("If-Range") != wire_address::BlobTag(of.hash, of.form))
            return peer.Answer(200, bytes);
        const std::size_t from = std::stoul(range.substr(6));
        if (from >= bytes.size()) return Refuse(peer, 416, "");
        return peer.Answer(206, bytes.substr(from),
                           "Content-Range: bytes " + std::to_string(from) + "-" +
                               std::to_string(bytes.size() - 1) + "/" + std::to_string(bytes.size()) +
                               "\r\n");
    }
    bool Give(const CUploadAddress&, const CScriptedRequest& request, CScriptedPeer& peer) {
        CTaker taker;
        CUploadBodyReader reader({request.body.size(), 2000}, taker);
        CStatus read = reader.Take(std::as_bytes(std::span(request.body)));
        if (read) read = reader.Finish();
        if (!read) return Refuse(peer, 400, read.Error().message);
        return Json(m_store.AddModel(taker.model), peer, &wire_records::WriteUploaded);
    }
    template <class T>
    static bool Give(const T&, const CScriptedRequest&, CScriptedPeer& peer) {
        return Refuse(peer, 404, "");
    }

    /** Makes a model of what an upload holds. */
    struct CTaker final : CUploadTaker {
        CStatus OnHead(const CUploadHead& head) override {
            model.name = head.name;
            model.group = head.group;
            for (const CUploadTexture& texture : head.textures) model.textures.push_back({texture.name, {}});
            return CDone{};
        }
        CResult<CByteSink*> OnPart(std::size_t) override {
            sink = std::make_unique<CMemorySink>(64 << 20);
            return sink.get();
        }
        CStatus OnPartEnd(std::size_t number) override {
            CResult<CNewBlob> blob = CBlobWriter::Write(nullptr, sink->bytes);
            if (!blob) return blob.Error();
            (number == 0 ? model.file : model.textures[number - 1].blob) = std::move(blob).Value();
            return CDone{};
        }
        CNewModel model;
        std::unique_ptr<CMemorySink> sink;
    };

    std::mutex m_mutex;
    CModelStore& m_store;
};
