// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/CResult.h"

struct CPreparedScene;

/** What of a scene was read from a file. */
enum class ESource { None, Model, Picture };

/** What would be lost if the file of that path (UTF-8) were written over, whichever name or link leads to it:
 * the model with its material files, or one of its pictures. Exporters ask it before they write a file. */
[[nodiscard]] ESource SourceAt(const CPreparedScene& scene, const std::string& path);

/** Refuses an output of an exporter (UTF-8 path) that is empty or such a file. */
[[nodiscard]] CStatus CheckOutput(const CPreparedScene& scene, const std::string& path);
