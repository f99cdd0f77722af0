// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

/** Stands between the text of an OBJ file and tinyobjloader and hands on only lines that it reads well:
 * - lines continued by a backslash are joined, comments (those behind faces, too) and kinds of lines that we
 *   do not draw are left out;
 * - lines over kMaxLine bytes are left out, so that no buffer of the loader grows with a hostile file;
 * - a position that is no number ("nan") becomes one that is infinite, where the loader would take it for 0;
 * - smoothing groups, for which the loader has no callback, become object names that start
 *   with kSmoothingMark;
 * - points and lines, for which it has none either, become faces with an impossible first corner,
 *   see kElementMark;
 * - mtllib lines are kept here, as the loader would open whatever they name. */
class CObjLineFilter : public std::streambuf {
  public:
    static constexpr std::size_t kMaxLine = std::size_t{1} << 20;
    static constexpr char kSmoothingMark = '\x01';
    /** The first corner's position; its normal tells what the other corners are. */
    static constexpr int kElementMark = 2147483647, kPointsNormal = 1, kLineNormal = 2;

    /** text must outlive this object. */
    explicit CObjLineFilter(std::string_view text) : m_text(text) {}

    /** The rest of each mtllib line that was passed over so far. */
    [[nodiscard]] const std::vector<std::string>& Libraries() const { return m_libraries; }
    [[nodiscard]] std::size_t DroppedLines() const { return m_droppedLines; }

    /** One past the line end that follows the line at or after the position: a place where text
     * may be cut in two. */
    [[nodiscard]] static std::size_t CutAfter(std::string_view text, std::size_t position);

  protected:
    int_type underflow() override;

  private:
    enum class EUse { Pass, Skip, Replaced };
    [[nodiscard]] std::string_view NextLine();
    [[nodiscard]] EUse Judge(std::string_view line);
    [[nodiscard]] EUse JudgeKind(std::string_view line);
    [[nodiscard]] EUse JudgeVertex(std::string_view line);
    [[nodiscard]] EUse JudgeElement(std::string_view line);
    [[nodiscard]] EUse Join(std::string_view line);
    int_type Show(std::string_view text);
    int_type ShowReplacement();

    std::string_view m_text;
    std::size_t m_position = 0;
    std::size_t m_lineFeed = 0, m_return = 0;  ///< the next of each from m_position, where already looked for
    std::string m_replacement;
    bool m_replacementWaits = false;  ///< until what stands before it has been read
    std::vector<std::string> m_libraries;
    std::size_t m_droppedLines = 0;
};
