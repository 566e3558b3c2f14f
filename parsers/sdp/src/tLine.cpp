#include "tLine.h"

#include "lineFormats.h"

// Time lines and the repeats that follow them (RFC 4566 5.9 and 5.10).

namespace sdpcodec {

void readRepeat(std::string_view value, const char* readable, int timeCount, r_line& line, bool& cut) {
  const int index = line.count;
  readEntry(value, readable, line, cut);
  if (line.count > index) line.entries[index].time = timeCount - 1;
}

// The repeats that follow a time line; those before the first one have the index -1.
static void writeRepeatsOf(TextWriter& out, const r_line& repeats, int time) {
  for (int i = 0; i < usable(repeats.count, SDP_REPEAT_CAPACITY); ++i) {
    if (repeats.entries[i].time == time) writeText(out, 'r', repeats.entries[i].text);
  }
}

void writeTimes(TextWriter& out, const t_line& times, const r_line& repeats) {
  writeRepeatsOf(out, repeats, -1);
  for (int i = 0; i < usable(times.count, SDP_TIME_CAPACITY); ++i) {
    writeText(out, 't', times.entries[i].text);
    writeRepeatsOf(out, repeats, i);
  }
}

}  // namespace sdpcodec
