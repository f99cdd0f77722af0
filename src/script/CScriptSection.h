// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/CResult.h"
#include "base/name_hash.h"
#include "settings/CIniFile.h"

class CNoteList;
class CScriptFiles;

/** One script or template in memory. */
struct CScriptFile {
    std::string path;  ///< UTF-8, without links
    CIniFile ini;
    CNameSet sections;  ///< in lower case
};

/** The values of a section: its own, and for keys that it lacks those of its template, which may have a template, too. The
 * template's section is that of the same name, or else "Model". */
class CScriptSection {
  public:
    struct CValue {
        std::string text;
        const std::string* file = nullptr;  ///< the path of the file that has it
    };

    /** Nothing where no file has the key. */
    [[nodiscard]] std::optional<CValue> Get(std::string_view key) const { return GetFrom(0, key); }
    /** Nothing where the script itself lacks the key. */
    [[nodiscard]] std::optional<std::string> GetOwn(std::string_view key) const;
    /** What it would be if the script lacked the key. */
    [[nodiscard]] std::optional<CValue> GetFromTemplate(std::string_view key) const {
        return GetFrom(1, key);
    }

  private:
    friend class CScriptLoader;
    struct CLayer {
        std::shared_ptr<const CScriptFile> file;  ///< the second owner is the loader
        std::string section;
    };
    [[nodiscard]] std::optional<CValue> GetFrom(std::size_t layer, std::string_view key) const;

    std::vector<CLayer> m_layers;  ///< the script itself first
};

/** Loads a script and its templates. Chains end after kMostTemplates, and where they would go round in a circle. */
class CScriptLoader {
  public:
    static constexpr std::size_t kMostTemplates = 8;

    /** Both must outlive it. */
    CScriptLoader(CScriptFiles& files, CNoteList& notes);

    /** path is UTF-8. After a failure there is no script. */
    [[nodiscard]] CStatus Load(std::string_view path);
    /** The script; call it after Load. */
    [[nodiscard]] const CScriptFile& Script() const { return *m_script; }
    /** The script and the templates that were read: paths as in CScriptFile. */
    [[nodiscard]] std::vector<std::string> Files() const;
    /** Of the script, by a name of its Sections(). */
    [[nodiscard]] CScriptSection Section(const std::string& name);

  private:
    [[nodiscard]] std::shared_ptr<const CScriptFile> Template(const CScriptSection& section);
    [[nodiscard]] std::shared_ptr<const CScriptFile> LoadTemplate(const std::string& path);

    CScriptFiles& m_files;
    CNoteList& m_notes;
    std::size_t m_templateBytesLeft;
    std::shared_ptr<const CScriptFile> m_script;
    CNameMap<std::shared_ptr<const CScriptFile>> m_templates;  ///< by path; null: cannot be read
};
