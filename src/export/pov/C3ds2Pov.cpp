// SPDX-License-Identifier: MIT
#include "export/pov/C3ds2Pov.h"

#include <new>

#include "base/text/lng.h"
#include "export/pov/C3ds2PovExportFlow.h"
#include "export/pov/CPovWriter.h"
#include "export/pov/pov_export_format.h"
#include "files/file_util_ex.h"
#include "model/open/CSceneReader.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/CScene.h"
#include "model/textures/CLib3dsMatUtil.h"

namespace {

/** Calls Finished on every way out of the export. */
class CFinishedGuard {
  public:
    explicit CFinishedGuard(C3ds2PovExportFlow* flow) : m_flow(flow) {}
    CFinishedGuard(const CFinishedGuard&) = delete;
    CFinishedGuard& operator=(const CFinishedGuard&) = delete;
    ~CFinishedGuard() {
        if (m_flow == nullptr) return;
        try {
            m_flow->Finished();
        } catch (...) {  // NOLINT(bugprone-empty-catch): it was told, and nothing may leave a destructor
        }
    }

  private:
    C3ds2PovExportFlow* m_flow;
};

/** Runs work and turns exceptions, also those of the flow, into errors. */
template <class Work>
CStatus Guarded(C3ds2PovExportFlow* flow, const std::string& output, Work work) {
    const CFinishedGuard guard(flow);
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory for the export"), output};
    } catch (...) {
        return CError{EErrorCode::WriteFailed, lng::Mark("the export was ended"), output};
    }
}

CStatus Prepare(const CScene& scene, const std::string& output, const C3ds2Pov::COutFormat& format,
                C3ds2PovExportFlow* flow) {
    CPrepareOptions options;
    options.loadTextures = true;  // also for an export without them: materials may depend on missing pictures
    CPreparedScene prepared;
    C3ds2PovExportFlow::Do(flow, [&] { prepared = PrepareScene(scene, options); });
    const CSeenView seen = pov_export_format::SeenViewOf(prepared, format);
    return CPovWriter(prepared, scene.Textures(), seen, format).Write(output, flow);
}

}  // namespace

CStatus C3ds2Pov::TryExport(const CPovSource& source, const std::string& output, const COutFormat& format,
                            C3ds2PovExportFlow* flow) {
    return Guarded(flow, output, [&] {
        return CPovWriter(source.scene, source.textures, source.seen, format).Write(output, flow);
    });
}

CStatus C3ds2Pov::TryExport(Lib3dsFile* file, const std::string& output, const COutFormat& format,
                            C3ds2PovExportFlow* flow) {
    return Guarded(flow, output, [&]() -> CStatus {
        if (file == nullptr) return CError{EErrorCode::BadArgument, "there is no scene to export", output};
        CScene scene;
        C3ds2PovExportFlow::Do(flow, [&] { scene = CScene::Borrow(*file); });
        scene.SetTextures(CTexturesOfScene::Find(file));
        return Prepare(scene, output, format, flow);
    });
}

CStatus C3ds2Pov::TryExport(const std::string& input, const std::string& output, const COutFormat& format,
                            C3ds2PovExportFlow* flow) {
    return Guarded(flow, output, [&]() -> CStatus {
        const CResult<CScene> scene = CSceneReader::ReadFile(input);
        if (!scene) return scene.Error();
        return Prepare(scene.Value(), output, format, flow);
    });
}

bool C3ds2Pov::Export(Lib3dsFile* file, const std::wstring& output, const COutFormat& format,
                      C3ds2PovExportFlow* flow) {
    return TryExport(file, file_util_ex::ConvertToUTF8(output), format, flow).HasValue();
}

bool C3ds2Pov::Export(const std::wstring& input, const std::wstring& output, const COutFormat& format,
                      C3ds2PovExportFlow* flow) {
    return TryExport(file_util_ex::ConvertToUTF8(input), file_util_ex::ConvertToUTF8(output), format, flow)
        .HasValue();
}
