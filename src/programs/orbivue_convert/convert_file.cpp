// SPDX-License-Identifier: MIT
#include "programs/orbivue_convert/convert_file.h"

#include <exception>
#include <new>

#include "base/text/lng.h"
#include "engine/C3dsDisplayWrap.h"
#include "engine/gl/COffscreenContext.h"
#include "export/gltf/write_gltf.h"
#include "export/pov/pov_export_format.h"
#include "export/webgl/C3ds2WebGL.h"
#include "export/webgl/download_archive.h"
#include "files/file_util_ex.h"
#include "model/open/load_scene.h"
#include "model/prepare/source_files.h"
#include "model/save/lib3ds_util.h"
#include "model/save/picture_copies.h"
#include "model/save/save_scene.h"
#include "picture/CBitmapConverter.h"
#include "programs/orbivue_convert/CConversionPlan.h"
#include "programs/orbivue_convert/CConvertOptions.h"
#include "programs/shared/draw_model.h"
#include "programs/shared/open_input.h"
#include "settings/CSettings.h"
#include "settings/language_catalogue.h"

namespace {

/** What a page says in a language; in English where it is not known. */
CPageTexts TextsIn(const std::string& language) {
    if (language == "en") return CPageTexts::English();
    lng::LoadCatalogue(file_util_ex::ConvertFromUTF8W(language));
    CPageTexts texts = CPageTexts::InProgramLanguage();
    lng::UseDesktopLanguage();  // of what the program itself says
    return texts;
}

/** Writes what an engine shows. */
class CSceneOutput {
  public:
    CSceneOutput(C3dsDisplayWrap& engine, const CConvertOptions& options, const CConversion& conversion)
        : m_engine(engine), m_options(options), m_input(conversion.input), m_path(conversion.output) {}

    [[nodiscard]] CStatus Write() {
        switch (m_options.kind) {
            case EOutputKind::Glb:
                return WriteGlb();
            case EOutputKind::Html:
                return WriteHtml();
            case EOutputKind::Pov:
                return WritePov();
            case EOutputKind::Model3ds:
                return Write3ds();
            case EOutputKind::Zip:
                return WriteZip();
            case EOutputKind::Png:
            case EOutputKind::Jpeg:
                break;
        }
        return WritePicture();
    }
    /** Pictures that are not beside the model although they should be. */
    [[nodiscard]] const std::vector<std::string>& NotCopied() const { return m_notCopied; }

  private:
    [[nodiscard]] CStatus WriteGlb() {
        CGltfOptions format;
        format.compress = m_options.compress;
        format.doubleSided = m_options.doubleSided;
        format.withTextures = m_options.withTextures;
        format.maxTextureSide = m_options.textureSide;
        return WriteGlbFile({*m_engine.Prepared(), m_engine.GetTextures(), m_engine.GetScene()}, m_path,
                            format);
    }

    [[nodiscard]] CResult<C3ds2WebGL::COutFormat> PageFormat() const {
        const CSeenView& seen = m_engine.SeenView();
        C3ds2WebGL::COutFormat format;
        format.minify = m_options.minify;
        format.combine = m_options.combine;
        format.gzip = m_options.gzip;
        format.downloadLink = m_options.downloadLink;
        format.displayFlag = seen.wire;
        format.camerasBar = m_options.camerasBar;
        format.doubleSided = m_options.doubleSided;
        format.bkRed = seen.background.x;
        format.bkGreen = seen.background.y;
        format.bkBlue = seen.background.z;
        format.cameraName = seen.camera.Name();
        format.modelFileName = file_util_ex::GetFileName(m_input);
        format.version = ORBIVUE_VERSION;
        if (m_options.scriptFile.empty()) return format;
        const auto script = file_util_ex::ReadWholeFile(m_options.scriptFile);
        if (!script) return script.Error();
        format.javaScript.assign(reinterpret_cast<const char*>(script.Value().data()), script.Value().size());
        return format;
    }

    [[nodiscard]] CStatus WriteHtml() {
        const CResult<C3ds2WebGL::COutFormat> format = PageFormat();
        if (!format) return format.Error();
        const CWebGLSource source{*m_engine.Prepared(), m_engine.GetTextures(), m_engine.SeenView(),
                                  TextsIn(m_options.language), m_engine.GetScene()};
        CStatus written = C3ds2WebGL::TryExport(source, m_path, format.Value());
        if (!written || !m_options.downloadLink) return written;
        return WriteArchive(format.Value().modelFileName);
    }

    /** What the page's link leads to. */
    [[nodiscard]] CStatus WriteArchive(const std::string& modelFileName) {
        const auto picture = [this](std::string_view path) -> CStatus {
            const CResult<CImage> taken = TakePicture();
            if (!taken) return taken.Error();
            return CBitmapConverter().Write(taken.Value(), file_util_ex::ConvertFromUTF8W(path));
        };
        return download_archive::Make(
            m_path, modelFileName, *m_engine.Prepared(),
            {m_engine.Get3dsFile(), [this](std::string_view path) { return SaveAs(path); }, picture});
    }

    [[nodiscard]] CStatus WritePov() {
        const CVec3 background = m_engine.SeenView().background;
        const pov_export_format::CColor color{background.x, background.y, background.z};
        C3ds2Pov::COutFormat format =
            pov_export_format::Make(CSettings(), m_engine.GetCameraName(), color, color);
        format.outputTextures = m_options.withTextures;
        return C3ds2Pov::TryExport(
            CPovSource{*m_engine.Prepared(), m_engine.GetTextures(), m_engine.SeenView()}, m_path, format,
            nullptr);
    }

    [[nodiscard]] CStatus SaveAs(std::string_view path) {
        if (m_engine.SaveAs(file_util_ex::ConvertFromUTF8W(path).c_str())) return CDone{};
        return m_engine.LastError();
    }

    /** As the window's Save As does it. */
    [[nodiscard]] CStatus Write3ds() {
        lib3ds_util::change_textures_ext(m_engine.Get3dsFile(), "jpg");
        if (CStatus saved = SaveAs(m_path); !saved || !m_options.withTextures) return saved;
        const CImageDataTextVec pictures = picture_copies::MissingAt(m_engine.Get3dsFile(), m_path);
        m_notCopied = picture_copies::CopyInto(file_util_ex::GetFilePath(m_path), pictures);
        return CDone{};
    }

    /** Without a picture of the view where none can be drawn. */
    [[nodiscard]] CStatus WriteZip() {
        const CResult<CImage> picture = TakePicture();
        Lib3dsFile* scene = m_engine.Get3dsFile();
        if (scene == nullptr) return m_engine.LastError();
        lib3ds_util::change_textures_ext(scene, "jpg");
        return SaveSceneZip(
            scene, [this](std::string_view path) { return SaveAs(path); },
            picture ? picture.Value() : CImage{}, m_path);
    }

    [[nodiscard]] CResult<CImage> TakePicture() {
        CResult<COffscreenContext> context =
            COffscreenContext::Create(m_options.width, m_options.height, m_options.samples.value_or(1));
        if (!context) return context.Error();
        CResult<CImage> picture = Draw(m_engine, context.Value(), m_options);
        return picture;
    }

    [[nodiscard]] CStatus WritePicture() {
        const CResult<CImage> picture = TakePicture();
        if (!picture) return picture.Error();
        return CBitmapConverter().Write(picture.Value(), file_util_ex::ConvertFromUTF8W(m_path));
    }

    C3dsDisplayWrap& m_engine;
    const CConvertOptions& m_options;
    std::string m_input, m_path;
    std::vector<std::string> m_notCopied;
};

CStatus Convert(const CConversion& conversion, const CConvertOptions& options,
                std::vector<CSceneNote>& notes) {
    const bool isPicture = options.kind == EOutputKind::Png || options.kind == EOutputKind::Jpeg;
    CLoadLimits limits;
    if (isPicture) limits.pictureBytes = scene_budget::kPictureBytesForOneView;
    // Ends without its destructor: the context that has drawn it is gone by then, and the process ends soon.
    C3dsDisplayWrap& engine = *new C3dsDisplayWrap;
    CResult<COpenedInput> opened = OpenInput(engine, conversion.input, limits, options.scene,
                                             isPicture ? EOpenFor::Viewing : EOpenFor::Saving);
    if (!opened) return opened.Error();
    if (SourceAt(*engine.Prepared(), conversion.output) != ESource::None)
        return CError{EErrorCode::BadArgument, lng::Mark("is a file of the model, and stays as it is"),
                      conversion.output};
    CPictureOptions draw = options;
    if (!options.withTextures) draw.textureMode = 3;
    if (CStatus ready = SetUp(engine, draw, opened.Value()); !ready) return ready;
    CSceneOutput output(engine, options, conversion);
    CStatus written = output.Write();
    notes = std::move(opened.Value().notes);
    notes.insert(notes.end(), engine.Prepared()->notes.begin(), engine.Prepared()->notes.end());
    for (const std::string& name : output.NotCopied())
        notes.push_back({CSceneNote::EKind::Missing, "A picture could not be copied beside the model", name});
    return written;
}

}  // namespace

CStatus ConvertFile(const CConversion& conversion, const CConvertOptions& options,
                    std::vector<CSceneNote>& notes) {
    try {
        return Convert(conversion, options, notes);
    } catch (const std::bad_alloc&) {
        return CError{EErrorCode::TooLarge, lng::Mark("there is not enough memory to convert it"),
                      conversion.input};
    } catch (const std::exception& error) {
        return CError{EErrorCode::BadFormat, error.what(), conversion.input};
    }
}
