// SPDX-License-Identifier: MIT
#include "programs/orbivue_convert/CConversionPlan.h"

#include <sys/stat.h>

#include <filesystem>

#include "base/text/lng.h"
#include "files/file_util_ex.h"
#include "programs/orbivue_convert/CConvertOptions.h"

namespace {

/** One path for all that lead to a file, which need not be there yet. */
std::string Resolved(const std::string& path) {
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
    return error ? path : resolved.native();
}

std::string OutputFor(const std::string& input, const CConvertOptions& options) {
    if (options.ending.empty()) return options.output;
    const std::string name = file_util_ex::SetFileExt(file_util_ex::GetFileName(input), options.ending);
    return file_util_ex::MakePath(options.folder.empty() ? file_util_ex::GetFilePath(input) : options.folder,
                                  name);
}

}  // namespace

CConversionPlan::CConversionPlan(const CConvertOptions& options) : m_options(options) {
    for (const std::string& input : options.inputs)
        if (const auto place = PlaceOf(input)) m_inputs.insert(*place);
}

CConversion CConversionPlan::Begin(const std::string& input) {
    CConversion conversion{input, OutputFor(input, m_options), {}};
    conversion.refusal = RefusalOf(conversion);
    if (!conversion.refusal) m_begun.emplace(Resolved(conversion.output), input);
    return conversion;
}

void CConversionPlan::Written(const CConversion& conversion) {
    if (const auto place = PlaceOf(conversion.output)) m_written.emplace(*place, conversion.input);
}

std::optional<CConversionPlan::CPlace> CConversionPlan::PlaceOf(const std::string& path) {
    struct stat info = {};
    if (::stat(path.c_str(), &info) != 0) return std::nullopt;
    return CPlace{info.st_dev, info.st_ino};
}

std::optional<std::string> CConversionPlan::MadeOf(const std::string& output) const {
    if (const auto begun = m_begun.find(Resolved(output)); begun != m_begun.end()) return begun->second;
    const auto place = PlaceOf(output);
    const auto written = place ? m_written.find(*place) : m_written.end();
    if (written == m_written.end()) return std::nullopt;
    return written->second;
}

std::optional<std::string> CConversionPlan::RefusalOf(const CConversion& conversion) const {
    const auto place = PlaceOf(conversion.output);
    if (place && m_inputs.contains(*place))
        return lng::TextUtf8("%s is one of the files to be converted, and stays as it is",
                             {conversion.output});
    if (const auto other = MadeOf(conversion.output))
        return lng::TextUtf8("%s is written from %s already", {conversion.output, *other});
    if (place && !m_options.ending.empty() && !m_options.force)
        return lng::TextUtf8("%s exists already (--force replaces it)", {conversion.output});
    return std::nullopt;
}
