// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "export/webgl/C3ds2WebGL.h"
#include "export/webgl/page_settings.h"
#include "files/CFilesBeside.h"

/** Writes one page with the files beside it. An object writes only once. */
class CPageWriter {
  public:
    /** What source refers to must outlive this object. output: the page's path, UTF-8. */
    CPageWriter(const CWebGLSource& source, const C3ds2WebGL::COutFormat& format, std::string output);

    /** See C3ds2WebGL. Throws std::bad_alloc. */
    [[nodiscard]] CStatus Write(CJobProgress* progress);
    /** See C3ds2WebGL::CombinedPage; instead of Write. output: empty. Throws std::bad_alloc. */
    [[nodiscard]] CResult<std::string> Combined(CJobProgress* progress);

    /** What a page's policy allows as scripts when the viewer stands in the page. */
    [[nodiscard]] static std::string ViewerPolicy(bool minify);
    /** A page's content security policy; scripts: a list of sources. */
    [[nodiscard]] static std::string Policy(const std::string& scripts, bool combined);

  private:
    [[nodiscard]] CStatus MakeScene(CJobProgress* progress);
    [[nodiscard]] CStatus MakeDownloadLink();
    /** The elements behind the settings, and what policy they need. */
    struct CScripts {
        std::string elements, policy;
    };
    [[nodiscard]] CScripts CombinedScripts() const;
    [[nodiscard]] CResult<CScripts> ScriptsBeside();
    [[nodiscard]] std::string Page(const CScripts& scripts) const;
    [[nodiscard]] std::string PolicyElement(const std::string& scriptPolicy) const;
    /** Writes a file beside the page, with a packed copy where the format asks for one, and returns its name: wanted, or
     * one like it. */
    [[nodiscard]] CResult<std::string> WriteBeside(const std::string& wanted, std::string_view text,
                                                   bool packs);
    [[nodiscard]] CStatus WritePacked(const std::string& name, std::string_view text);
    /** The copy of the page, and what makes Apache pack. */
    [[nodiscard]] CStatus WriteForServers(std::string_view page);
    [[nodiscard]] std::string Record() const;
    [[nodiscard]] bool IsOurName(const std::string& name) const;

    const CWebGLSource& m_source;
    const C3ds2WebGL::COutFormat& m_format;
    std::string m_output;
    std::string m_name;  ///< the page's file name
    std::string m_userCode;
    CFilesBeside m_files;
    CPageLinks m_links;
    std::vector<std::byte> m_scene;          ///< packed
    std::vector<std::string> m_packedNames;  ///< what a server may pack
};
