// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

/** Every value of section "Settings" of settings.ini. The program reads them once at its start, changes them
 * in memory and writes them once at its end. One thread at a time. */
struct CSettings {
    /** The command identifier of the camera "ISO Camera". */
    static constexpr int kIsoCamera = 32776;

    /** The one object of the process. The first call creates it with the defaults below; it lives until the
     * process ends. */
    [[nodiscard]] static CSettings& Instance();

    /** Loads the file into the store. False when it cannot be read; the defaults then stay. */
    static bool LoadFile();
    /** Takes the values from the store. Without its key a field keeps its value, except lastCamera, the
     * background colour and the two factors, which then get their defaults. A colour keeps its low eight
     * bits; a factor whose text does not begin with a number becomes 0. */
    void ReadAll();
    /** Puts all values into the store and saves the file. False when it could not be written. */
    bool WriteAll() const;

    std::wstring language = L"en";
    bool showCameras = false;
    bool showLights = false;
    bool showAxis = false;
    bool rotate = false;
    bool showToolBar = true;
    bool showModelList = false;
    std::int32_t lastCamera = kIsoCamera;  ///< command identifier of the preset camera last chosen
    std::uint8_t bkColorR = 0;             ///< clear colour of the view, 0..255
    std::uint8_t bkColorG = 0;
    std::uint8_t bkColorB = 0;
    bool showBounds = false;
    bool wireFrame = false;
    bool povOutputTex = true;
    bool povPreviewBack = false;
    bool povUseLastName = false;
    bool povRadiosity = false;
    std::wstring povLastName;  ///< path of the last POV-Ray file
    float povDiffuse = 0.6F;
    float povSelfDiff = 0.1F;
    bool autoUpdate = true;
    bool closeOnEsc = false;
    bool showMaterialBar = true;
    std::int32_t slideShowTime = 3000;  ///< how long a slideshow shows each model, in milliseconds
    std::wstring modelServer;           ///< address of a server of models; empty: the one of the build
    std::wstring modelServerToken;  ///< a secret, which is never shown; with it the file is the user's alone
    std::wstring updateFeed;        ///< address of the list of new versions; empty: the one of the build
    std::wstring updateLastCheck;   ///< when it was last asked for unbidden, in seconds since 1970 (UTC)
    std::wstring updateSkipped;     ///< a version that the user wants to hear no more of

    bool operator==(const CSettings&) const = default;
};
