#include "oLine.h"

#include "lineFormats.h"

// The origin line (RFC 4566 5.2).

namespace sdpcodec {

Problem readOrigin(std::string_view value, const char* readable, o_line& line, bool& cut) {
  static const char* const kNames[] = {"a user name", "a session id", "a session version", "a network type",
                                       "an address type"};
  LineFields fields(value, readable);
  std::string_view field[5];
  for (int i = 0; i < 5; ++i) {
    if (fields.atEnd()) return expected(kNames[i], fields.position());
    field[i] = fields.take();
  }
  if (fields.atEnd()) return expected("an address", fields.position());
  cut |= !copyField(line.userName, field[0], readable);
  cut |= !copyField(line.sessionId, field[1], readable);
  cut |= !copyField(line.sessionVersion, field[2], readable);
  cut |= !copyField(line.networkType, field[3], readable);
  cut |= !copyField(line.addressType, field[4], readable);
  // A cut in front of a blank must not leave one at the end: read again it would be gone.
  cut |= fields.rest().size() >= sizeof line.address;
  copyField(line.address, trimEnd(fields.rest().substr(0, sizeof line.address - 1)), readable);
  line.present = 1;
  return {};
}

void writeOrigin(TextWriter& out, const o_line& line) {
  if (line.present == 0 || !out.reserve(sizeof line + 16)) return;
  LineWriter text = out.line('o');
  text.put(line.userName).put(' ').put(line.sessionId).put(' ').put(line.sessionVersion).put(' ');
  text.put(line.networkType).put(' ').put(line.addressType).put(' ').put(line.address);
  out.endLine(text);
}

namespace {

const char* field(const o_line* line, const char* text) { return line->present != 0 ? text : nullptr; }

}  // namespace
}  // namespace sdpcodec

using namespace sdpcodec;

const char* sdp_OgetUserName(const o_line* line) {
  return line != nullptr ? field(line, line->userName) : nullptr;
}

const char* sdp_OgetSessionId(const o_line* line) {
  return line != nullptr ? field(line, line->sessionId) : nullptr;
}

const char* sdp_OgetSessionVersion(const o_line* line) {
  return line != nullptr ? field(line, line->sessionVersion) : nullptr;
}

const char* sdp_OgetNetworkType(const o_line* line) {
  return line != nullptr ? field(line, line->networkType) : nullptr;
}

const char* sdp_OgetAddressType(const o_line* line) {
  return line != nullptr ? field(line, line->addressType) : nullptr;
}

const char* sdp_OgetAddress(const o_line* line) {
  return line != nullptr ? field(line, line->address) : nullptr;
}
