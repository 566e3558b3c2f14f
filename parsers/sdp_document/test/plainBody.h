#ifndef PLAIN_BODY_H
#define PLAIN_BODY_H

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A body cut into lines and sections in the plainest way, for judging what the library does: it shares nothing with the
// library's own reading.

namespace plain {

struct PlainLine {
  std::size_t section;  ///< 0 in the session
  std::string_view content;
  std::string_view end;
};

using Words = std::vector<std::string_view>;

/// The words of a text, which blanks and tabs separate.
Words wordsOf(std::string_view text);
/// The n-th word; empty without one.
std::string_view wordOf(std::string_view text, std::size_t n);
/// The name of an attribute; nothing, as a null view, for other lines.
std::string_view attributeName(std::string_view line);
/// What stands behind an attribute's colon.
std::string_view attributeValue(std::string_view line);
bool hasOnlyDigits(std::string_view text);
bool sameLetters(std::string_view a, std::string_view b);
bool isIn(std::string_view word, const Words& words);

struct PlainSection {
  std::size_t first = 0;  ///< of the body's lines
  std::size_t end = 0;
  std::string_view mLine;
  Words words;  ///< of its m-line
  bool readable = false;
  bool zero = false;        ///< its port
  bool bundleOnly = false;  ///< it has the attribute
  bool alive = false;       ///< readable and not disabled
  std::string_view mid;

  std::string_view media() const { return words.empty() ? std::string_view() : words[0]; }
  std::string_view port() const { return words.size() < 2 ? std::string_view() : words[1]; }
  std::string_view transport() const { return words.size() < 3 ? std::string_view() : words[2]; }
  Words formats() const { return words.size() < 4 ? Words() : Words(words.begin() + 3, words.end()); }
};

class PlainBody {
 public:
  /// @param text must outlive the body
  explicit PlainBody(std::string_view text);

  std::size_t sectionCount() const { return sections.size() - 1; }
  bool has(std::size_t section, std::string_view name) const;
  /// The mids that the groups of the session name.
  Words groupedMids() const;
  /// The payload types of rtx with what their fmtp says they repair.
  std::vector<std::pair<std::string_view, std::string_view>> repairs(std::size_t section) const;
  std::size_t blankLines() const;

  std::string_view text;
  std::vector<PlainLine> lines;
  std::vector<PlainSection> sections;  ///< the session as number 0
};

}  // namespace plain

#endif
