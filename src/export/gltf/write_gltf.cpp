// SPDX-License-Identifier: MIT
#include "export/gltf/write_gltf.h"

#include <exception>
#include <new>
#include <utility>

#include "base/jobs/CJobProgress.h"
#include "base/text/lng.h"
#include "export/gltf/CGltfWriter.h"
#include "files/CAtomicFile.h"
#include "model/prepare/source_files.h"

CResult<std::vector<std::byte>> WriteGlb(const CGltfSource& source, const CGltfOptions& options,
                                         CJobProgress* progress) {
    try {
        return CGltfWriter(source, options).Write(progress);
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory for the export"), {}};
    } catch (const std::exception&) {
        return CError{EErrorCode::WriteFailed, lng::Mark("the export was ended"), {}};
    }
}

CStatus WriteGlbFile(const CGltfSource& source, const std::string& output, const CGltfOptions& options,
                     CJobProgress* progress) {
    if (output.empty()) return CError{EErrorCode::BadArgument, lng::Mark("there is no name to write to"), {}};
    const auto refuse = [&](const char* why) { return CError{EErrorCode::BadArgument, why, output}; };
    switch (SourceAt(source.scene, output)) {
        case ESource::None:
            break;
        case ESource::Model:
            return refuse(lng::Mark("a file that the model was read from would be overwritten"));
        case ESource::Picture:
            return refuse(lng::Mark("a picture of the model would be overwritten"));
    }
    CResult<CAtomicFile> file = CAtomicFile::CreateOutput(output);
    if (!file) return file.Error();
    const CResult<std::vector<std::byte>> glb = WriteGlb(source, options, progress);
    if (!glb) return CError{glb.Error().code, glb.Error().message, output};
    if (CStatus status = file.Value().Write(glb.Value()); !status) return status;
    return file.Value().Commit();
}
