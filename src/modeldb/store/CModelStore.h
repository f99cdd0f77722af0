// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/CResult.h"
#include "modeldb/bytes/byte_stream.h"
#include "modeldb/database/CDatabase.h"
#include "modeldb/database/CStoreAddress.h"
#include "modeldb/records/store_records.h"
#include "modeldb/store/CBlobWriter.h"

/** A texture and a model that are to be added. */
struct CNewTexture {
    std::string name;
    CNewBlob blob;
};
struct CNewModel {
    std::string group;  ///< made where it is not there yet
    std::string name;
    std::string code;  ///< what a list shows right after an upload; empty: the name
    std::string note;
    CNewBlob file;                    ///< the 3DS file; its crc is the model's key
    std::optional<CNewBlob> preview;  ///< a picture: PNG or JPEG
    std::vector<CNewTexture> textures;
};

enum class EStoreUse {
    Read,    ///< nothing is written; a store that is not there is NotFound, an old one Unsupported
    Write,   ///< an old one is brought up to date
    Create,  ///< the same, and one that is not there is made
};

/** A store of models: groups, and in them models, each with its 3DS file, its textures and perhaps a preview. It is one
 * SQLite file, or a PostgreSQL database; docs/model-server.md tells its form, its backups and its upgrades.
 *
 * An object is one connection, for one thread at a time; a program opens one for each thread that needs one. Any number of
 * objects, processes and (with PostgreSQL) hosts may use a store at once. What a call has changed when it returns is
 * on the disk and stays, whatever happens; a call that fails has changed nothing.
 *
 * Bytes are kept once however many models have them, under their SHA-256. Names are plain text, whatever is in them.
 *
 * Errors, beside those that a function names:
 * Busy: others hold the store for too long, or the server cannot be reached (the call tried to connect again, once);
 * NoSpace: the disk is full; Unreadable, WriteFailed: the system refuses; BadFormat: the store is damaged; BadArgument:
 * a name is too long, empty, not UTF-8, or holds a zero byte. Messages hold no names, no tokens and no passwords. */
class CModelStore {
  public:
    /** The file that the desktop program uses where no server is chosen. */
    [[nodiscard]] static std::string DefaultPath();
    /** BadFormat: the file is no store of models (a foreign file is never changed). Unsupported: a newer program wrote
     * it. Exists: the database holds foreign tables. */
    [[nodiscard]] static CResult<CModelStore> Open(const CStoreAddress& address, EStoreUse use);
    CModelStore(CModelStore&&) noexcept;
    CModelStore& operator=(CModelStore&&) noexcept;
    ~CModelStore();

    // --- lists --------------------------------------------------------------------------------------------
    /** In the order of their names' bytes. */
    [[nodiscard]] CResult<std::vector<CGroupRecord>> Groups();
    /** NotFound: no such group. */
    [[nodiscard]] CResult<CGroupRecord> Group(std::string_view name);
    /** Kept from one call to the next until anybody changes the store, where the engine tells (CDatabase::StateMark). */
    [[nodiscard]] CResult<CGroupRecord> GroupById(std::int64_t id);
    /** A page of a group's models, in the order of names' bytes, then of keys: those behind a place, or the first ones; at
     * most `limit`, and fewer only at the end. Empty for a group that is not there. */
    [[nodiscard]] CResult<std::vector<CModelSummary>> Models(std::int64_t groupId,
                                                             const std::optional<CPagePlace>& after,
                                                             std::size_t limit);
    /** Models whose name holds a text, whatever the letters' case, in the order of their keys; group: 0 for all groups. */
    [[nodiscard]] CResult<std::vector<CFoundModel>> Search(std::string_view text, std::int64_t groupId,
                                                           std::size_t limit);

    // --- one model ----------------------------------------------------------------------------------------
    [[nodiscard]] CResult<bool> HasModel(std::uint32_t key);
    /** NotFound: no such model. */
    [[nodiscard]] CResult<CModelRecord> Model(std::uint32_t key);
    /** The name of the model's group; NotFound. Cheaper than Model. */
    [[nodiscard]] CResult<std::string> GroupOf(std::uint32_t key);

    /** The bytes of the model's preview; nothing where it has none. NotFound. */
    [[nodiscard]] CResult<std::optional<CBlobHash>> PreviewOf(std::uint32_t key);
    /** The next models without a preview, of keys from one on, in their order. */
    [[nodiscard]] CResult<std::vector<std::uint32_t>> ModelsWithoutPreview(std::uint32_t from,
                                                                           std::size_t limit);

    // --- bytes --------------------------------------------------------------------------------------------
    /** NotFound: no bytes of that hash. */
    [[nodiscard]] CResult<CStoredBlob> Blob(const CBlobHash& hash);
    /** Hands on bytes as they are kept, from `offset` on, at most `length`, in pieces of at most kPartBytes. They are not
     * checked. NotFound: they are not there, or go while they are read. */
    [[nodiscard]] CStatus ReadStored(const CBlobHash& hash, std::uint64_t offset, std::uint64_t length,
                                     CByteSink& sink);
    /** Hands on the bytes themselves, unpacked; BadFormat when size or hash is wrong, which shows only after the last piece. */
    [[nodiscard]] CStatus ReadBytes(const CBlobHash& hash, CByteSink& sink);

    // --- changes ------------------------------------------------------------------------------------------
    /** Adds a model with all that it has, or nothing. The same file again changes nothing and succeeds; Exists: another file
     * has the same key. What of the blobs was staged belongs to the store afterwards. */
    [[nodiscard]] CResult<CAddedModel> AddModel(CNewModel model);
    /** Adds many in one transaction, which is much quicker. Each has its own result; a failure of the whole fails all. */
    [[nodiscard]] CResult<std::vector<CResult<CAddedModel>>> AddModels(std::span<CNewModel> models);
    /** Replaces a model's preview. NotFound. */
    [[nodiscard]] CStatus SetPreview(std::uint32_t key, CNewBlob preview);
    /** Removes a model with the bytes that nothing else has. NotFound. Its group stays. */
    [[nodiscard]] CStatus RemoveModel(std::uint32_t key);
    /** Removes a group that has no models. NotFound; Exists: it has some. */
    [[nodiscard]] CStatus RemoveGroup(std::string_view name);
    /** Deletes what was staged and not used. */
    void Discard(const CNewBlob& blob);

    // --- tokens -------------------------------------------------------------------------------------------
    /** A new token of 256 random bits, of which the store keeps a hash alone: this is the only time that it is
     * seen. Exists: the name is taken. */
    [[nodiscard]] CResult<std::string> CreateToken(std::string_view name, CStoreRights rights);
    [[nodiscard]] CResult<std::vector<CTokenRecord>> Tokens();
    /** NotFound. */
    [[nodiscard]] CStatus RevokeToken(std::string_view name);
    /** Whose token a stranger's text is; nothing where it is none. Takes equally long for all wrong secrets. */
    [[nodiscard]] CResult<std::optional<CTokenRecord>> FindToken(std::string_view token);

    // --- care ---------------------------------------------------------------------------------------------
    /** Quick: the form of the file, references, counters, sizes. Full: all indices, and all bytes against their hashes. */
    enum class ECheck { Quick, Full };
    [[nodiscard]] CResult<CCheckReport> Check(ECheck check);
    /** Copies the store into a new SQLite file, in one step, while others use the store; what they change meanwhile is not
     * in it. Exists: something has the name. */
    [[nodiscard]] CStatus Backup(const std::string& path);
    /** Whether a restored store knows the tokens of its backup. Whoever made the backup may know their secrets. */
    enum class ETokens { Keep, Forget };
    /** Fills a store from a backup. path: the backup. Exists: there is a store that holds something. */
    [[nodiscard]] static CStatus Restore(const std::string& path, const CStoreAddress& address,
                                         ETokens tokens = ETokens::Keep);

  private:
    friend class CBlobWriter;
    CModelStore(std::unique_ptr<CDatabase> database, EStoreUse use);
    [[nodiscard]] CStatus GetReady();
    [[nodiscard]] CStatus DeleteStale();
    [[nodiscard]] CStatus AddOne(const CNewModel& model, CResult<CAddedModel>& result);
    [[nodiscard]] CStatus InsertModel(const CNewModel& model);

    std::unique_ptr<CDatabase> m_database;
    EStoreUse m_use = EStoreUse::Read;
    /** Groups that were read in one state of the store. */
    struct CGroupsSeen {
        CDatabase::CStateMark state;
        std::unordered_map<std::int64_t, CGroupRecord> byId;
    };
    std::optional<CGroupsSeen> m_groupsSeen;
    bool m_hasTrigrams = false;  ///< see HasTrigramTable
};
