// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

struct CConvertOptions;

/** One file that is to be made of another. Paths are UTF-8 or any bytes. */
struct CConversion {
    std::string input;
    std::string output;
    std::optional<std::string> refusal;  ///< why it is not begun
};

/** Names the outputs, and sees to it that nothing is lost: refused is what would replace one of the inputs, and what would
 * go where an earlier one goes; and with made names, unless forced, what would replace any other file. Names and links
 * that lead to one file, also where letter case does not count, are one. */
class CConversionPlan {
  public:
    /** options: with the inputs, must outlive it. */
    explicit CConversionPlan(const CConvertOptions& options);

    /** Call it for each input, shortly before it is converted. */
    [[nodiscard]] CConversion Begin(const std::string& input);
    /** Call it when the output has been written. */
    void Written(const CConversion& conversion);

  private:
    using CPlace = std::pair<dev_t, ino_t>;  ///< of a file, whatever leads to it

    [[nodiscard]] static std::optional<CPlace> PlaceOf(const std::string& path);
    [[nodiscard]] std::optional<std::string> RefusalOf(const CConversion& conversion) const;
    [[nodiscard]] std::optional<std::string> MadeOf(const std::string& output) const;

    const CConvertOptions& m_options;
    std::set<CPlace> m_inputs;
    std::map<std::string, std::string> m_begun;  ///< resolved outputs, with what they are made of
    std::map<CPlace, std::string> m_written;
};
