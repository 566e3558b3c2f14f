#ifndef SDP_LINE_FORMATS_H
#define SDP_LINE_FORMATS_H

#include <iterator>
#include <string_view>

#include "fields.h"
#include "sessionDescription.h"
#include "textWriter.h"

// One reader and one writer per line kind. A reader takes the value behind the equals sign, sets `cut` when
// the record could not hold all of it, and changes the record only when there is no problem.

namespace sdpcodec {

Problem readOrigin(std::string_view value, const char* readable, o_line& line, bool& cut);
Problem readConnection(std::string_view value, const char* readable, c_line& line, bool& cut);
Problem readBandwidth(std::string_view value, const char* readable, b_line& line);
/// Reads a bandwidth line into a record that holds nothing defined yet.
Problem readOnlyBandwidth(std::string_view value, const char* readable, b_line& line);
Problem readMedia(std::string_view value, const char* readable, m_line& line);

/// Reads an attribute of any length, wherever it stands.
/// @return whether it was held whole
bool readAnyAttribute(std::string_view value, const char* readable, a_line::entry& entry);

/// Reads an attribute, of which most lines are. Its name mostly has less than sixteen characters: one piece is the name
/// and tells where it ends.
/// @return whether it was held whole
inline bool readAttribute(std::string_view value, const char* readable, a_line& line) {
  if (line.count >= SDP_ATTRIBUTE_CAPACITY) return false;
  a_line::entry& entry = line.entries[line.count++];
  const char* const name = value.data();
  if (!kPiecesGoBehindTexts || static_cast<std::size_t>(readable - name) < kPiece)
    return readAnyAttribute(value, readable, entry);
  const blocks::Block piece = blocks::at(name);
  const auto colon = firstOf(blocks::bitsOf(blocks::where(piece, ':')) | 1U << kPiece);
  const std::size_t length = std::min(colon, value.size());
  if (length == kPiece) return readAnyAttribute(value, readable, entry);
  blocks::store(piece, entry.name);
  entry.name[length] = '\0';
  entry.value[0] = '\0';
  entry.hasColon = length == colon ? 1 : 0;
  if (length != colon) return true;
  return copyField(entry.value, {name + colon + 1, value.size() - colon - 1}, readable);
}

void readRepeat(std::string_view value, const char* readable, int timeCount, r_line& line, bool& cut);

/// A line of a kind that may stand several times and is kept as it stands.
template <typename Lines>
void readEntry(std::string_view value, const char* readable, Lines& line, bool& cut) {
  const auto capacity = static_cast<int>(std::size(line.entries));
  if (line.count >= capacity) {
    cut = true;
    return;
  }
  cut |= !copyField(line.entries[line.count].text, value, readable);
  ++line.count;
}

void writeOrigin(TextWriter& out, const o_line& line);
void writeConnections(TextWriter& out, const c_line& line);
void writeBandwidths(TextWriter& out, const b_line& line);
void writeMedia(TextWriter& out, const m_line& line);
/// @param exactFrom the index of the line from which on nothing is written behind lines
void writeAttributes(TextWriter& out, const a_line& line, int exactFrom);
void writeTimes(TextWriter& out, const t_line& times, const r_line& repeats);

/// One line whose value is written as it stands.
template <std::size_t N>
void writeText(TextWriter& out, char letter, const char (&text)[N]) {
  if (!out.reserve(N + 4)) return;
  LineWriter line = out.line(letter);
  line.put(text);
  out.endLine(line);
}

/// The lines of a kind that may stand several times.
template <typename Lines>
void writeEntries(TextWriter& out, char letter, const Lines& line) {
  const auto capacity = static_cast<int>(std::size(line.entries));
  for (int i = 0; i < usable(line.count, capacity); ++i) writeText(out, letter, line.entries[i].text);
}

}  // namespace sdpcodec

#endif
