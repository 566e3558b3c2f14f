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

void writeSession(TextWriter& out, const sDescription& d) {
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
  writeAttributes(out, d.aLine);
}

void writeMediaDescription(TextWriter& out, const mDescription& media) {
  writeMedia(out, media.mLine);
  writeIfPresent(out, 'i', media.iLine, media.linePresence, SDP_HAS_I_LINE);
  writeConnections(out, media.cLine);
  writeBandwidths(out, media.bLine);
  writeIfPresent(out, 'k', media.kLine, media.linePresence, SDP_HAS_K_LINE);
  writeAttributes(out, media.aLine);
}

}  // namespace
}  // namespace sdpcodec

using namespace sdpcodec;

unsigned short sdp_encode_r(const sDescription* description, eSdpType /*type*/, char*& text, int& length,
                            int& size) {
  length = 0;
  if (description == nullptr) return 1;
  TextWriter out(text, size);
  writeSession(out, *description);
  for (int i = 0; i < usable(description->noOfMDs, SDP_MEDIA_CAPACITY); ++i) {
    writeMediaDescription(out, description->media[i]);
  }
  return out.finish(length, size) ? 0 : 1;
}
