// SPDX-License-Identifier: MIT
#include "export/webgl/C3ds2WebGL.h"

#include <exception>
#include <new>

#include "base/text/lng.h"
#include "export/webgl/CPageWriter.h"
#include "export/webgl/web_export_format.h"
#include "files/file_util_ex.h"
#include "model/prepare/prepare_scene.h"
#include "model/scene/CScene.h"
#include "model/textures/CLib3dsMatUtil.h"

namespace {

/** Runs work and turns exceptions into errors. */
template <class Work>
auto Guarded(const std::string& output, Work work) -> decltype(work()) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("not enough memory for the export"), output};
    } catch (const std::exception&) {
        return CError{EErrorCode::WriteFailed, lng::Mark("the export was ended"), output};
    }
}

}  // namespace

CStatus C3ds2WebGL::TryExport(const CWebGLSource& source, const std::string& output, const COutFormat& format,
                              CJobProgress* progress) {
    return Guarded(output, [&] { return CPageWriter(source, format, output).Write(progress); });
}

CResult<std::string> C3ds2WebGL::CombinedPage(const CWebGLSource& source, const COutFormat& format,
                                              CJobProgress* progress) {
    return Guarded({}, [&] { return CPageWriter(source, format, {}).Combined(progress); });
}

std::string C3ds2WebGL::CombinedPagePolicy(bool minify) {
    return CPageWriter::Policy(CPageWriter::ViewerPolicy(minify), true);
}

CStatus C3ds2WebGL::TryExport(Lib3dsFile* file, const std::string& output, const COutFormat& format) {
    return Guarded(output, [&]() -> CStatus {
        if (file == nullptr) return CError{EErrorCode::BadArgument, "there is no scene to export", output};
        CScene scene = CScene::Borrow(*file);
        scene.SetTextures(CTexturesOfScene::Find(file));
        CPrepareOptions options;
        options.loadTextures = true;
        const CPreparedScene prepared = PrepareScene(scene, options);
        const CWebGLSource source{prepared, scene.Textures(), web_export_format::SeenViewOf(prepared, format),
                                  CPageTexts::English(), &scene};
        return CPageWriter(source, format, output).Write(nullptr);
    });
}

bool C3ds2WebGL::Export(Lib3dsFile* file, const std::wstring& output, const COutFormat& format) {
    return TryExport(file, file_util_ex::ConvertToUTF8(output), format).HasValue();
}
