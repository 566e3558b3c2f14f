#include "bLine.h"

#include <charconv>

#include "lineFormats.h"
#include "singleLine.h"

// Bandwidth lines (RFC 4566 5.8).

namespace sdpcodec {

namespace {

// The end of the digits that a text begins with.
std::size_t digitsEnd(std::string_view text) {
  std::size_t end = 0;
  while (end < text.size() && isDigit(text[end])) ++end;
  return end;
}

Problem splitBandwidth(std::string_view value, const char* readable, std::string_view& type,
                       std::string_view& number) {
  const std::size_t colon = positionOf(':', value, readable);
  const char* end = value.data() + value.size();
  if (colon == 0 || value.empty() || isBlank(value.front()))
    return expected("a bandwidth type", value.data());
  if (colon == value.size()) return expected("a colon behind the bandwidth type", end);
  type = value.substr(0, colon);
  const std::size_t blank = std::min(positionOf(' ', type, readable), positionOf('\t', type, readable));
  if (blank != type.size()) return expected("a colon behind the bandwidth type", type.data() + blank);
  const std::string_view rest = LineFields(value.substr(colon + 1), readable).rest();
  const std::size_t length = digitsEnd(rest);
  number = rest.substr(0, length);
  if (length == 0) return expected("a bandwidth in digits", value.data() + colon + 1);
  if (length != rest.size()) return expected("the end of the line", rest.data() + length);
  return {};
}

}  // namespace

namespace {

void addBandwidth(b_line& line, std::string_view type, std::string_view number, const char* readable) {
  if (line.count >= SDP_BANDWIDTH_CAPACITY) {
    line.incomplete = 1;
    return;
  }
  b_line::entry& entry = line.entries[line.count++];
  const bool typeFits = copyField(entry.type, type, readable);
  const bool numberFits = copyField(entry.number, number, readable);
  if (!typeFits || !numberFits) line.incomplete = 1;
  entry.value = saturatingNumber(number);
}

}  // namespace

Problem readBandwidth(std::string_view value, const char* readable, b_line& line) {
  std::string_view type;
  std::string_view number;
  if (const Problem problem = splitBandwidth(value, readable, type, number)) return problem;
  addBandwidth(line, type, number, readable);
  return {};
}

Problem readOnlyBandwidth(std::string_view value, const char* readable, b_line& line) {
  std::string_view type;
  std::string_view number;
  if (const Problem problem = splitBandwidth(value, readable, type, number)) return problem;
  line.count = 0;
  line.incomplete = 0;
  addBandwidth(line, type, number, readable);
  return {};
}

void writeBandwidths(TextWriter& out, const b_line& line) {
  for (int i = 0; i < usable(line.count, SDP_BANDWIDTH_CAPACITY); ++i) {
    const b_line::entry& entry = line.entries[i];
    if (!out.reserve(sizeof entry + 16)) return;
    LineWriter text = out.line('b');
    text.put(entry.type).put(':');
    const std::string_view number = fieldText(entry.number);
    if (digitsEnd(number) == number.size() && !number.empty() && saturatingNumber(number) == entry.value) {
      text.put(entry.number);  // as it stood, leading zeros included
    } else {
      char digits[16];
      const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, entry.value);
      text.put(std::string_view(digits, static_cast<std::size_t>(end.ptr - digits)));
    }
    out.endLine(text);
  }
}

}  // namespace sdpcodec

using namespace sdpcodec;

unsigned int sdp_BgetBandwidthValue(const b_line* line) {
  return line != nullptr && line->count > 0 ? line->entries[0].value : 0;
}

unsigned short sdp_Bdecode_r(b_line* line, const char*& position, char* error, int& errorLine,
                             int& errorColumn) {
  return decodeSingleLine(
      'b', position, error, errorLine, errorColumn,
      line == nullptr
          ? nullptr
          : +[](std::string_view value, const char* readable,
                void* record) { return readOnlyBandwidth(value, readable, *static_cast<b_line*>(record)); },
      line);
}

unsigned short sdp_Bencode_r(const b_line* line, char*& text, int& length, int& size) {
  length = 0;
  if (line == nullptr) return 1;
  TextWriter out(text, size);
  out.writeExactly();
  writeBandwidths(out, *line);
  return out.finish(length, size) ? 0 : 1;
}
