// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "settings/CLocalRegStore.h"

/** What the user has chosen for exported web pages: section "html" of html_settings.ini in the settings folder. Read when
 * it is first asked for, written by Save alone. Thread of the windows only. */
class CHtmlSettings {
  public:
    /** The one object of the process; the first call reads the file. */
    [[nodiscard]] static CHtmlSettings& Instance();

    /** Defaults, then what the file says. */
    CHtmlSettings();
    /** The same from another file (UTF-8 path). */
    explicit CHtmlSettings(std::string path);

    /** Writes all values into the file. Whatever else the file holds stays. False, and nothing written, for a script of
     * more than 8 MB, with which the file could not be read again. */
    [[nodiscard]] bool Save();

    [[nodiscard]] bool GetMinify() const { return m_minify; }
    void SetMinify(bool minify) { m_minify = minify; }
    [[nodiscard]] bool GetCombine() const { return m_combine; }
    void SetCombine(bool combine) { m_combine = combine; }
    [[nodiscard]] bool GetLaunchBrowser() const { return m_launchBrowser; }
    void SetLaunchBrowser(bool launch) { m_launchBrowser = launch; }
    [[nodiscard]] bool GetGzip() const { return m_gzip; }
    void SetGzip(bool gzip) { m_gzip = gzip; }
    [[nodiscard]] bool GetDownloadLink() const { return m_downloadLink; }
    void SetDownloadLink(bool link) { m_downloadLink = link; }
    [[nodiscard]] bool GetCamerasBar() const { return m_camerasBar; }
    void SetCamerasBar(bool bar) { m_camerasBar = bar; }
    [[nodiscard]] bool GetDoubleSided() const { return m_doubleSided; }
    void SetDoubleSided(bool doubleSided) { m_doubleSided = doubleSided; }
    /** UTF-8. */
    [[nodiscard]] const std::string& GetJavaScript() const { return m_javaScript; }
    void SetJavaScript(std::string script) { m_javaScript = std::move(script); }

  private:
    void Read();

    bool m_minify = true;
    bool m_combine = true;
    bool m_launchBrowser = true;
    bool m_gzip = true;
    bool m_downloadLink = true;
    bool m_camerasBar = true;
    bool m_doubleSided = false;
    std::string m_javaScript;
    CIniFilePtr m_ini;
    std::string m_path;
};
