#include <array>
#include <cstring>
#include <optional>
#include <string_view>

#include "refusal.h"
#include "sdpModifiers/dummy.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/parse.h"
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

/// What a dummy is made by.
struct DummyValues {
  DummyKind kind;
  const char* ip;
  unsigned short port;
  bool modifyOLine;
};

/// Makes a text a dummy and parses it, with one decoding of the dummy.
/// @param text what the object holds
/// @param lost whether the text is no longer that
/// @return the status, where the object stays as it was unless it is 0; nothing where this could not be done, with nothing
///         told
std::optional<unsigned short> createAndParse(const ParseTarget& to, SdpText& text, const DummyValues& values,
                                             bool& lost) {
  std::optional<unsigned short> status;
  const Undecoded made = createDummyUndecoded(text, values.kind, values.ip, values.port, values.modifyOLine);
  lost = made != Undecoded::untouched;
  if (made != Undecoded::made) return status;
  withDescription([&](sDescription& description) -> Refusal {
    sSdpParsedData data = to.data;
    data.init();
    if (sdp_decodeOpt_r(&description, text.view().data(), SDP_TYPE_UNKNOWN, nullptr, false, data.oLineStart,
                        data.oLineEnd) != 0) {
      return {};
    }
    // What is deflated may not fit, and need not be hurried.
    if (text.size() >= sizeof to.store) return {};
    status = analyse(data, description, text.view());
    if (*status != 0) return {};
    to.data = data;
    status = storeText(to.data, to.store, text.view());
    return {};
  });
  return status;
}

/// Makes a text a dummy, edit by edit, and parses it.
/// @return a status; where it is not 0 the object is no longer what it was
unsigned short createThenParse(cSdpNegotiator& object, SdpText& text, const DummyValues& values) {
  int length = 0;
  unsigned short oLineEnd = 0;
  const unsigned short status =
      createDummy(text, values.kind, values.ip, values.port, length, oLineEnd, values.modifyOLine);
  return status == 0 ? object.sdpParse(text.view().data(), SDP_TYPE_UNKNOWN) : 1;
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
  const unsigned int told = toldSoFar();
  const DummyValues values = {{answer, holdFlag, third}, ip, port, modifyOLine};
  unsigned short status = 1;
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  std::size_t fetched = 0;
  if (fetchText(parsedData, rawSdp, buffer, fetched) == 0) {
    SdpText text = SdpText::ofLength(buffer, fetched);
    bool lost = false;
    const auto done = isTracing() || fetched >= sizeof rawSdp
                          ? std::nullopt
                          : createAndParse({*this, parsedData, rawSdp}, text, values, lost);
    if (done) {
      status = *done;
    } else {
      const cSdpNegotiator before = *this;
      if (lost) getRawSDP(buffer, sizeof buffer);
      text = SdpText(buffer);
      status = createThenParse(*this, text, values);
      if (status != 0) *this = before;
    }
  }
  if (status == 0) return 0;
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
