#include "cLine.h"

#include "lineFormats.h"

// Connection lines (RFC 4566 5.7).

namespace sdpcodec {

Problem readConnection(std::string_view value, const char* readable, c_line& line, bool& cut) {
  static const char* const kNames[] = {"a network type", "an address type", "an address"};
  LineFields fields(value, readable);
  std::string_view field[3];
  for (int i = 0; i < 3; ++i) {
    if (fields.atEnd()) return expected(kNames[i], fields.position());
    field[i] = fields.take();
  }
  if (!fields.atEnd()) return expected("the end of the line", fields.position());
  const std::size_t suffix = positionOf('/', field[2], readable);
  if (suffix == 0) return expected(kNames[2], field[2].data());
  if (line.count >= SDP_CONNECTION_CAPACITY) {
    cut = true;
    return {};
  }
  c_line::entry& entry = line.entries[line.count++];
  cut |= !copyField(entry.networkType, field[0], readable);
  cut |= !copyField(entry.addressType, field[1], readable);
  cut |= !copyField(entry.address, field[2].substr(0, suffix), readable);
  cut |= !copyField(entry.suffix, field[2].substr(suffix), readable);
  return {};
}

void writeConnections(TextWriter& out, const c_line& line) {
  for (int i = 0; i < usable(line.count, SDP_CONNECTION_CAPACITY); ++i) {
    const c_line::entry& entry = line.entries[i];
    if (!out.reserve(sizeof entry + 16)) return;
    LineWriter text = out.line('c');
    text.put(entry.networkType).put(' ').put(entry.addressType).put(' ').put(entry.address).put(entry.suffix);
    out.endLine(text);
  }
}

}  // namespace sdpcodec

using namespace sdpcodec;

int sdp_CgetNoOfCs(const c_line* line) {
  return line != nullptr ? usable(line->count, SDP_CONNECTION_CAPACITY) : 0;
}

const char* sdp_CgetAddress(const c_line* line, int index) {
  const c_line::entry* entry = entryAt(line, index);
  return entry != nullptr ? entry->address : nullptr;
}

const char* sdp_CgetAddressType(const c_line* line, int index) {
  const c_line::entry* entry = entryAt(line, index);
  return entry != nullptr ? entry->addressType : nullptr;
}
