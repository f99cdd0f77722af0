// SPDX-License-Identifier: MIT
#include "export/webgl/CPageWriter.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <span>
#include <utility>

#include "base/text/lng.h"
#include "export/gltf/write_gltf.h"
#include "export/webgl/download_archive.h"
#include "export/webgl/gzip.h"
#include "export/webgl/page_text.h"
#include "export/webgl/server_files.h"
#include "export/webgl/web_assets.h"
#include "files/CAtomicFile.h"
#include "files/file_util_ex.h"
#include "model/prepare/CPreparedScene.h"
#include "model/prepare/source_files.h"

namespace {

constexpr int kMostTextureSide = 2048;
constexpr const char* kHtaccess = ".htaccess";
constexpr std::string_view kPacked = ".gz";

/** Runs the user's code from the block before it. Written so, no text in it can end the element that holds it. */
constexpr std::string_view kUserCodeRunner =
    R"({const s=document.createElement("script");s.textContent=JSON.parse(document.getElementById("user-code").textContent);document.body.append(s)})";

std::span<const std::byte> BytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

std::string Element(std::string_view attributes, std::string_view text) {
    std::string element = "<script";
    element.append(attributes).append(">").append(text).append("</script>\n");
    return element;
}

/** "viewer.js" is wanted: also "viewer0.js" and so on, and the packed copies. */
bool IsLike(std::string_view name, std::string_view wanted) {
    if (name.ends_with(kPacked)) name.remove_suffix(kPacked.size());
    const std::size_t dot = wanted.find('.');
    if (!name.starts_with(wanted.substr(0, dot))) return false;
    name.remove_prefix(dot);
    name.remove_prefix(std::min(name.find_first_not_of("0123456789"), name.size()));
    return name == wanted.substr(dot);
}

}  // namespace

CPageWriter::CPageWriter(const CWebGLSource& source, const C3ds2WebGL::COutFormat& format, std::string output)
    : m_source(source),
      m_format(format),
      m_output(std::move(output)),
      m_name(file_util_ex::GetFileName(m_output)),
      m_userCode(page_text::Sound(format.javaScript)),
      m_files(m_output) {
    for (const std::string& file : source.scene.sourceFiles) m_files.Protect(file);
    for (const CPreparedTexture& texture : source.scene.textures) {
        if (!texture.foundAt.empty()) m_files.Protect(texture.foundAt);
    }
}

CStatus CPageWriter::Write(CJobProgress* progress) {
    if (CStatus status = CheckOutput(m_source.scene, m_output); !status) return status;
    CResult<CAtomicFile> file = CAtomicFile::CreateOutput(m_output);
    if (!file) return file.Error();
    if (CStatus status = MakeDownloadLink(); !status) return status;
    if (CStatus status = MakeScene(progress); !status) return status;
    const CResult<CScripts> scripts =
        m_format.combine ? CResult<CScripts>(CombinedScripts()) : ScriptsBeside();
    if (!scripts) return scripts.Error();
    const std::string page = Page(scripts.Value());
    if (m_format.gzip) {
        if (CStatus status = WriteForServers(page); !status) return status;
    }
    if (CStatus status = file.Value().Write(page + Record()); !status) return status;
    CAtomicFileGroup group = m_files.TakeFiles();
    if (CStatus status = group.Add(std::move(file).Value()); !status) return status;
    if (CStatus status = group.Commit(); !status) return status;
    // A packed copy that stayed would be handed out in the place of the new page.
    m_files.DeleteEarlier([this](const std::string& name) { return IsOurName(name); });
    return CDone{};
}

CResult<std::string> CPageWriter::Combined(CJobProgress* progress) {
    if (CStatus status = MakeScene(progress); !status) return status.Error();
    return Page(CombinedScripts());
}

CStatus CPageWriter::MakeDownloadLink() {
    if (!m_format.downloadLink) return CDone{};
    const auto name = download_archive::NameFor(m_output, m_format.modelFileName, m_source.scene);
    if (!name) return name.Error();
    m_links.download = page_text::Link(name.Value());
    return CDone{};
}

CStatus CPageWriter::MakeScene(CJobProgress* progress) {
    CGltfOptions options;
    options.compress = true;
    options.doubleSided = m_format.doubleSided;
    options.maxTextureSide = kMostTextureSide;
    const auto scene = WriteGlb({m_source.scene, m_source.textures, m_source.model}, options, progress);
    if (!scene) return scene.Error();
    m_scene = Gzip(scene.Value());
    return CDone{};
}

CPageWriter::CScripts CPageWriter::CombinedScripts() const {
    const std::string_view viewer = m_format.minify ? web_assets::MinifiedViewer() : web_assets::Viewer();
    CScripts scripts{Element("", viewer), ViewerPolicy(m_format.minify)};
    scripts.elements += Element(R"( type="text/plain" id="scene")", page_text::Base64(m_scene));
    if (!m_userCode.empty()) {
        scripts.elements += Element(R"( type="application/json" id="user-code")",
                                    page_text::ScriptJson(nlohmann::json(m_userCode).dump()));
        scripts.elements += Element("", kUserCodeRunner);
    }
    return scripts;
}

CResult<CPageWriter::CScripts> CPageWriter::ScriptsBeside() {
    CScripts scripts{{}, "'self'"};
    const auto add = [&](const char* wanted, std::string_view text) -> CStatus {
        const CResult<std::string> name = WriteBeside(wanted, text, true);
        if (!name) return name.Error();
        scripts.elements += Element(" src=\"" + page_text::Link(name.Value()) + '"', {});
        return CDone{};
    };
    const std::string_view bytes(reinterpret_cast<const char*>(m_scene.data()), m_scene.size());
    const auto scene = WriteBeside("scene.bin", bytes, false);
    if (!scene) return scene.Error();
    const auto asScript =
        WriteBeside("scene.bin.js", "orbivueScene(\"" + page_text::Base64(m_scene) + "\")\n", false);
    if (!asScript) return asScript.Error();
    m_links.scene = page_text::Link(scene.Value());
    m_links.sceneScript = page_text::Link(asScript.Value());
    if (CStatus status =
            add("viewer.js", m_format.minify ? web_assets::MinifiedViewer() : web_assets::Viewer());
        !status)
        return status.Error();
    if (m_userCode.empty()) return scripts;
    if (CStatus status = add("user.js", m_userCode); !status) return status.Error();
    return scripts;
}

std::string CPageWriter::PolicyElement(const std::string& scriptPolicy) const {
    // What the user's code may do is the user's business.
    if (!m_userCode.empty()) return {};
    return "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
           Policy(scriptPolicy, m_format.combine) + "\">\n";
}

std::string CPageWriter::ViewerPolicy(bool minify) {
    return page_text::PolicyHash(minify ? web_assets::MinifiedViewer() : web_assets::Viewer());
}

std::string CPageWriter::Policy(const std::string& scripts, bool combined) {
    return "default-src 'none'; script-src " + scripts + "; style-src " +
           page_text::PolicyHash(web_assets::Style()) + "; img-src data: blob:; connect-src " +
           (combined ? "'none'" : "'self'") + "; base-uri 'none'; form-action 'none'";
}

std::string CPageWriter::Page(const CScripts& scripts) const {
    const auto text = [this](const char* key) { return page_text::Html(m_source.texts.Of(key)); };
    return page_text::Fill(web_assets::PageForm(),
                           {{"lang", page_text::Html(m_source.texts.language)},
                            {"policy", PolicyElement(scripts.policy)},
                            {"version", page_text::Html(m_format.version)},
                            {"title", page_text::Html(PageTitle(m_format))},
                            {"style", std::string(web_assets::Style())},
                            {"loading", text("loading")},
                            {"noScript", text("noScript")},
                            {"settings", page_text::ScriptJson(PageSettings(m_source, m_format, m_links))},
                            {"scripts", scripts.elements}});
}

CResult<std::string> CPageWriter::WriteBeside(const std::string& wanted, std::string_view text, bool packs) {
    packs = packs && m_format.gzip;
    const std::size_t dot = wanted.find('.');
    constexpr int kMostTries = 100;
    std::string name = wanted;
    for (int i = 0;; ++i) {
        std::vector<std::string> names{name};
        if (packs) names.push_back(name + std::string(kPacked));
        if (m_files.TakeNames(names)) break;
        if (i == kMostTries)
            return CError{EErrorCode::WriteFailed,
                          lng::Mark("other files have all names that this file could get"), wanted};
        name = wanted.substr(0, dot) + std::to_string(i) + wanted.substr(dot);
    }
    if (CStatus status = m_files.Write(name, BytesOf(text)); !status) return status.Error();
    if (!packs) return name;
    m_packedNames.push_back(name);
    if (CStatus status = WritePacked(name, text); !status) return status.Error();
    return name;
}

CStatus CPageWriter::WritePacked(const std::string& name, std::string_view text) {
    return m_files.Write(name + std::string(kPacked), Gzip(BytesOf(text)));
}

CStatus CPageWriter::WriteForServers(std::string_view page) {
    const std::array packed{m_name + std::string(kPacked)};
    if (m_files.TakeNames(packed)) {
        if (CStatus status = WritePacked(m_name, page); !status) return status;
    }
    m_packedNames.push_back(m_name);
    const std::array htaccess{std::string(kHtaccess)};
    if (!m_files.TakeNames(htaccess)) return CDone{};
    return m_files.Write(kHtaccess, BytesOf(MakeHtaccess(m_packedNames)));
}

/** Behind the page. The packed copy of the page lacks it, since it would have to hold its own sum. */
std::string CPageWriter::Record() const {
    std::string record;
    for (const std::string& line : m_files.ToRecord()) record += line + '\n';
    return record.empty()
               ? record
               : "<!-- The files written with this page, for the next export to it:\n" + record + "-->\n";
}

bool CPageWriter::IsOurName(const std::string& name) const {
    constexpr std::array<std::string_view, 4> kNames = {"viewer.js", "scene.bin", "scene.bin.js", "user.js"};
    return name == kHtaccess || name == m_name + std::string(kPacked) ||
           std::ranges::any_of(kNames, [&](std::string_view wanted) { return IsLike(name, wanted); });
}
