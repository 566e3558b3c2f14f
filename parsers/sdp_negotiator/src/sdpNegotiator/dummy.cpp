#include <array>
#include <string_view>

#include "refusal.h"
#include "sdpModifiers/dummy.h"
#include "sdpNegotiator.h"
#include "text/fixedText.h"
#include "text/search.h"
#include "trace.h"

// Bodies that stand in for the real one.

namespace sdpneg {
namespace {

using CodecValues = std::array<unsigned char, MAX_SDP_NEGOTIATOR_AUDIO_CODECS>;

/// The value of an encoding name that does not end in NUL. One too long for the buffer is in no table.
unsigned char codecValueOf(std::string_view encodingName) {
  const FixedText<SDP_ENCODING_NAME_SIZE> name = FixedText<SDP_ENCODING_NAME_SIZE>().add(encodingName);
  return cSdpNegotiator::getRtpMapAudioCodecValue(name.text());
}

/// The values of encoding names with commas between them, followed by zeros; what does not fit is left out. An
/// unknown name has no value, and an empty one that of the name in front of it.
CodecValues codecValuesOf(std::string_view names) {
  CodecValues values{};
  std::size_t count = 0;
  unsigned char value = SDP_NO_CODEC;
  for (bool more = true; more && count < values.size();) {
    const std::size_t comma = names.find(',');
    const std::string_view name = names.substr(0, comma);
    if (!name.empty()) value = codecValueOf(name);
    if (value != SDP_NO_CODEC) values[count++] = value;
    more = comma != npos;
    if (more) names.remove_prefix(comma + 1);
  }
  return values;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpCreateRmDummyOffer(unsigned int sessionId, unsigned int version,
                                                     bool ipv6) {
  trace::progress("Creating a RM dummy SDP.");
  const char* const address = ipv6 ? "IP6 FD00:127::1" : "IP4 127.0.0.1";
  FixedText<256> text;
  text.add("v=0\r\no=IRM ").add(sessionId).add(" ").add(version).add(" IN ").add(address);
  text.add("\r\ns=IRM\r\nc=IN ").add(address).add("\r\nt=0 0\r\nm=audio 5004 RTP/SAVP 0 8 9 4 18\r\n");
  return sdpParse(text.text(), SDP_TYPE_UNKNOWN);
}

unsigned short cSdpNegotiator::createDummy(bool answer, bool holdFlag, bool third, const char* ip,
                                           unsigned short port, bool modifyOLine) {
  const char* const kind = answer ? "Answer" : "Ack";
  trace::debug("Request to create a dummy %s, holdFlag=%s", kind, holdFlag ? "true" : "false");
  const cSdpNegotiator before = *this;
  const unsigned int told = toldSoFar();
  unsigned short status = 1;
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (getRawSDP(buffer, sizeof buffer) == 0) {
    SdpText text(buffer);
    int length = 0;
    const DummyKind wanted = {answer, holdFlag, third};
    if (sdpneg::createDummy(text, wanted, ip, port, length, parsedData.oLineEnd, modifyOLine) == 0) {
      status = sdpParse(buffer, SDP_TYPE_UNKNOWN);
    }
  }
  if (status == 0) return 0;
  *this = before;
  tellUnlessTold({.reason = SDP_REFUSED_NO_DUMMY, .what = kind}, told);
  return status;
}

unsigned short cSdpNegotiator::createDummy(bool answer, bool holdFlag, const char* ip, unsigned short port) {
  return createDummy(answer, holdFlag, false, ip, port, true);
}

unsigned short cSdpNegotiator::createDummyAnswer(bool holdFlag, const char* ip, unsigned short port) {
  return createDummy(true, holdFlag, ip, port);
}

unsigned short cSdpNegotiator::createDummyAck(bool holdFlag, const char* ip, unsigned short port) {
  return createDummy(false, holdFlag, true, ip, port, true);
}

unsigned short cSdpNegotiator::createDummyAck(bool holdFlag, const char* ip, unsigned short port,
                                              const char* codecNames) {
  const unsigned short status = createDummyAck(holdFlag, ip, port);
  if (status != 0) return status;
  const CodecValues values = codecValuesOf(codecNames != nullptr ? codecNames : "");
  sdpRestrictAudioCodecsTo(values.data(), MAX_SDP_NEGOTIATOR_AUDIO_CODECS, true);
  return 0;
}
