// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "model/textures/CTextureLocator.h"
#include "modeldb/client/CBlobData.h"
#include "modeldb/client/CBlobProgress.h"
#include "modeldb/client/CSmpModel.h"
#include "modeldb/records/store_records.h"

/** The library of models: one connection for the whole process, to a server, or to the user's own store of models. Texts are
 * UTF-8, an id is a model's key. Each call blocks until the library has answered; those with a progress (which may be
 * null) last as long as the transfer, the others some 15 seconds at most. Any thread may call, several at once too.
 *
 * Nothing that a library holds is trusted: sizes, counts and texts are bounded, bytes are checked by their SHA-256, and names
 * stay text. A failed call leaves what it was to fill empty, if not told otherwise, and LastError says why. */
class C3DModelsLoadApi {
  public:
    // --- connection ---------------------------------------------------------------------------------------
    /** Connects. "": the user's own store, which is made, with some samples in it, if there is none yet. "http://..." or
     * "https://...": a server of models; it must answer as one. All else fails. What was open before is closed, but
     * where it has the same address: then its running calls go on. */
    [[nodiscard]] static bool Open(const std::string& address);
    /** Ends the calls that run, as if they were cancelled, and the connection. Until the next Open all calls fail. */
    static void Close();
    /** True when the library speaks this version of the protocol. False with a LastError: it did not answer. */
    [[nodiscard]] static bool CheckVersion(const std::string& version);
    /** A secret that is sent to servers with each call; "" for none. It is never shown. A text that cannot be one
     * (anything but printable ASCII without blanks) counts as none. */
    static void SetToken(const std::string& token);
    /** Called, on the thread of the call that fails, when the connection is lost: once, until it stands again. The next
     * call connects anew by itself. An empty function takes the listener away. */
    static void SetConnLostListner(std::function<void()> listener);
    /** Why the last call of this process failed, in one line of the current language; empty when it succeeded. GetPreview
     * says nothing here. Main thread only, like all texts. */
    [[nodiscard]] static std::string LastError();

    // --- lists --------------------------------------------------------------------------------------------
    /** In the order of the names' bytes. */
    static void GetGroups(std::vector<std::string>& names, CBlobProgress* progress);
    /** 0 also for a group that is not there. Right after GetGroups it needs no answer of the server. */
    [[nodiscard]] static std::uint64_t GetGroupModelsCount(const std::string& group);
    /** In the order of the names' bytes. */
    static void GetGroupModels(const std::string& group, CSmpModelArr& models, CBlobProgress* progress);
    /** Models of all groups whose name holds the text, at most 1,000. False when the search fails; it may
     * find none, and finds none for an empty text. */
    [[nodiscard]] static bool SearchModels(const std::string& text, std::vector<CFoundModel>& found,
                                           CBlobProgress* progress);

    // --- one model ----------------------------------------------------------------------------------------
    /** Empty when there is no such model. */
    [[nodiscard]] static std::string GetModelGroup(std::uint32_t id);
    /** The text that a list shows for the model right after its upload. Empty when there is no such model. */
    [[nodiscard]] static std::string GetModelCode(std::uint32_t id);
    [[nodiscard]] static bool DoesModelExist(std::uint32_t id);
    /** The model's file and textures. After a failure all outputs are as they were. What was downloaded already is
     * kept: the next call goes on from there. */
    [[nodiscard]] static bool DownloadModel(std::uint32_t id, std::string& name, std::string& group,
                                            CBlobData& file, CImageDataTextVec& textures,
                                            CBlobProgress* progress);
    /** A small picture of the model: the bytes of a PNG or JPEG file, at most 4 MiB, unchecked but for these. False
     * when there is none. */
    [[nodiscard]] static bool GetPreview(std::uint32_t id, std::vector<std::byte>& picture);

    // --- changes ------------------------------------------------------------------------------------------
    /** Adds a model to a group, which is made when it is not there. True also when the library has this very file. */
    [[nodiscard]] static bool UploadModel(const std::string& name, const std::string& group,
                                          const CBlobData& file, const CImageDataTextVec& textures,
                                          CBlobProgress* progress);

    // --- beside a connection ------------------------------------------------------------------------------
    /** The key that a model with this file has. */
    [[nodiscard]] static std::uint32_t CalcCrc(const void* bytes, std::size_t count);
    /** Deletes all that was kept of downloads. Running calls go on. */
    static void ClearCache();
};
