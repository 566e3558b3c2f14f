#include "lineFormats.h"
#include "sessionDescription.h"
#include "textWriter.h"

// From a description to its text, its lines in the order of RFC 4566 5.

namespace sdpcodec {

namespace {

template <typename Line>
void writeIfPresent(TextWriter& out, char letter, const Line& line, unsigned int presence, unsigned int bit) {
  if ((presence & bit) != 0) writeText(out, letter, line.text);
}

// The place from which on lines are written exactly: an attribute of a section, or the section's begin.
struct ExactFrom {
  int section;  // of the session it is -1
  int attribute;

  static constexpr int kBegin = -1;
  static constexpr int kNone = -2;

  int attributeIn(int each) const { return each == section ? attribute : kNone; }
  bool beginOf(int each) const { return attributeIn(each) == kBegin; }
};

// Goes back over a section's attributes until their lines have `missing` characters.
int exactFrom(const a_line& line, std::size_t& missing) {
  for (int i = sdp_AgetNoOfAs(&line) - 1; i >= 0; --i) {
    const a_line::entry& entry = line.entries[i];
    const std::size_t length =
        4 + fieldText(entry.name).size() + (entry.hasColon != 0 ? fieldText(entry.value).size() : 0);
    if (length >= missing) return i;
    missing -= length;
  }
  return ExactFrom::kBegin;
}

// Goes back until a piece's characters are sure to follow.
ExactFrom exactFrom(const sDescription& d) {
  constexpr std::size_t kLeastMediaLine = 6;  // all its fields may be empty
  std::size_t missing = kPiece;
  for (int i = usable(d.noOfMDs, SDP_MEDIA_CAPACITY) - 1; i >= 0; --i) {
    const int attribute = exactFrom(d.media[i].aLine, missing);
    if (attribute != ExactFrom::kBegin || missing <= kLeastMediaLine) return {i, attribute};
    missing -= kLeastMediaLine;
  }
  return {-1, exactFrom(d.aLine, missing)};
}

void writeSession(TextWriter& out, const sDescription& d, const ExactFrom& exact) {
  if (exact.beginOf(-1)) out.writeExactly();
  writeIfPresent(out, 'v', d.vLine, d.linePresence, SDP_HAS_V_LINE);
  writeOrigin(out, d.oLine);
  writeIfPresent(out, 's', d.sLine, d.linePresence, SDP_HAS_S_LINE);
  writeIfPresent(out, 'i', d.iLine, d.linePresence, SDP_HAS_I_LINE);
  writeIfPresent(out, 'u', d.uLine, d.linePresence, SDP_HAS_U_LINE);
  writeEntries(out, 'e', d.eLine);
  writeEntries(out, 'p', d.pLine);
  writeConnections(out, d.cLine);
  writeBandwidths(out, d.bLine);
  writeTimes(out, d.tLine, d.rLine);
  writeIfPresent(out, 'z', d.zLine, d.linePresence, SDP_HAS_Z_LINE);
  writeIfPresent(out, 'k', d.kLine, d.linePresence, SDP_HAS_K_LINE);
  writeAttributes(out, d.aLine, exact.attributeIn(-1));
}

void writeMediaDescription(TextWriter& out, const sDescription& d, int index, const ExactFrom& exact) {
  const mDescription& media = d.media[index];
  if (exact.beginOf(index)) out.writeExactly();
  writeMedia(out, media.mLine);
  writeIfPresent(out, 'i', media.iLine, media.linePresence, SDP_HAS_I_LINE);
  writeConnections(out, media.cLine);
  writeBandwidths(out, media.bLine);
  writeIfPresent(out, 'k', media.kLine, media.linePresence, SDP_HAS_K_LINE);
  writeAttributes(out, media.aLine, exact.attributeIn(index));
}

}  // namespace
}  // namespace sdpcodec

using namespace sdpcodec;

unsigned short sdp_encode_r(const sDescription* description, eSdpType /*type*/, char*& text, int& length,
                            int& size) {
  length = 0;
  if (description == nullptr) return 1;
  TextWriter out(text, size);
  const ExactFrom exact = exactFrom(*description);
  writeSession(out, *description, exact);
  for (int i = 0; i < usable(description->noOfMDs, SDP_MEDIA_CAPACITY); ++i) {
    writeMediaDescription(out, *description, i, exact);
  }
  return out.finish(length, size) ? 0 : 1;
}
