#include <algorithm>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/search.h"
#include "trace.h"

// Writing SDP texts from values.

namespace sdpneg {
namespace {

/// Appends to a text; what does not fit is cut.
class CutText {
 public:
  explicit CutText(SdpText& text) : text_(text) {}

  CutText& add(std::string_view piece) {
    text_.append(piece.substr(0, text_.room()));
    return *this;
  }
  CutText& add(std::integral auto number) { return add(FixedText<24>().add(number).view()); }
  std::size_t size() const { return text_.size(); }

 private:
  SdpText& text_;
};

/// The static payload types of an encoded summary. Telephone events have no blank behind their number, unlike
/// all others, and G726-40 shares its number with the telephone events of a user request: both are kept.
struct Payload {
  unsigned char codec;
  std::string_view format;
  std::string_view attribute;
};

constexpr Payload kPayloads[] = {
    {1, "8 ", "a=rtpmap:8 PCMA/8000\r\n"},         {3, "0 ", "a=rtpmap:0 PCMU/8000\r\n"},
    {5, "9 ", "a=rtpmap:9 G722/8000\r\n"},         {8, "4 ", "a=rtpmap:4 G723/8000\r\n"},
    {9, "15 ", "a=rtpmap:15 G728/8000\r\n"},       {10, "18 ", "a=rtpmap:18 G729/8000\r\n"},
    {11, "18 ", "a=rtpmap:18 G729/8000\r\n"},      {14, "18 ", "a=rtpmap:18 G729/8000\r\n"},
    {15, "18 ", "a=rtpmap:18 G729/8000\r\n"},      {20, "101 ", "a=rtpmap:101 G726-40/8000\r\n"},
    {21, "100 ", "a=rtpmap:100 G726-32/8000\r\n"}, {22, "99 ", "a=rtpmap:99 G726-24/8000\r\n"},
    {23, "98 ", "a=rtpmap:98 G726-16/8000\r\n"},   {29, "102", "a=rtpmap:102 telephone-event/8000\r\n"}};

const Payload* payloadOf(unsigned char codec) {
  const auto* found = std::find_if(std::begin(kPayloads), std::end(kPayloads),
                                   [codec](const Payload& payload) { return payload.codec == codec; });
  return found != std::end(kPayloads) ? found : nullptr;
}

constexpr std::size_t kAttributeAreaSize = 512;

/// The formats of all codec slots into the text, their attribute lines into an area of their own, whose lines
/// stay whole: one that does not fit is left out.
void addPayloads(CutText& text, FixedText<kAttributeAreaSize>& attributes, const sSdpParsedData& data) {
  for (const unsigned char codec : data.audioCodec) {
    const Payload* payload = payloadOf(codec);
    if (payload == nullptr) continue;
    text.add(payload->format);
    if (attributes.size() + payload->attribute.size() < kAttributeAreaSize)
      attributes.add(payload->attribute);
  }
}

/// The codecs that a user request knows, in the order in which an item of its list is searched for them.
struct RequestCodec {
  std::string_view name;
  std::string_view format;
  std::string_view attribute;
};

constexpr RequestCodec kRequestCodecs[] = {
    {"PCMU", " 0", "a=rtpmap:0 PCMU/8000\r\n"},
    {"PCMA", " 8", "a=rtpmap:8 PCMA/8000\r\n"},
    {"G729", " 18", "a=rtpmap:18 G729/8000\r\n"},
    {"G723", " 4", "a=rtpmap:4 G723/8000\r\n"},
    {"telephone-event", " 101", "a=rtpmap:101 telephone-event/8000\r\n"}};

/// Adds one column of every codec that the items of a list name; of PCMU when they name none.
void addRequested(CutText& text, std::string_view codecs, std::string_view RequestCodec::*column) {
  bool found = false;
  Words items(codecs, ",");
  for (std::string_view item = items.next(); !item.empty(); item = items.next()) {
    for (const RequestCodec& codec : kRequestCodecs) {
      if (!contains(item, codec.name)) continue;
      text.add(codec.*column);
      found = true;
    }
  }
  if (!found) text.add(kRequestCodecs[0].*column);
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpEncoder(char* out, const sSdpParsedData& data, int version, int& length) {
  SdpText written = emptied(out);
  CutText text(written);
  char address[50];
  data.address.getIPAddressText(address, sizeof address);
  text.add("v=0\r\ns=-\r\nt=0 0\r\no=- ").add(version).add(" ").add(version).add(" IN IP4 ").add(address);
  text.add("\r\nc=IN IP4 ").add(address);
  text.add("\r\nm=audio ").add(static_cast<int>(data.port)).add(" RTP/AVP ");
  FixedText<kAttributeAreaSize> attributes;
  addPayloads(text, attributes, data);
  text.add("\r\n").add(attributes.view());
  const unsigned char period = data.packetizationPeriod[0];
  if (period != SDP_PACKETIZATION_NOT_SET) text.add("a=ptime:").add(static_cast<int>(period)).add("\r\n");
  if (data.silenceSuppression == FEATURE_STATE_ON) text.add("a=silenceSupp:on - - - -\r\n");
  if (data.silenceSuppression == FEATURE_STATE_OFF) text.add("a=silenceSupp:off - - - -\r\n");
  length = static_cast<int>(text.size());
  trace::progress("The encoding of the SDP succesfully built");
  return 0;
}

unsigned short sdpModifications::createSDPUserRequest(char* out, const char* ip, unsigned int port,
                                                      const char* codecs, bool inactive) {
  if (out == nullptr || ip == nullptr || codecs == nullptr) {
    return refuse({.reason = SDP_REFUSED_NO_REQUEST_ARGUMENTS});
  }
  if (!areLineTexts({ip}, "createSDPUserRequest")) return 1;
  SdpText written = emptied(out);
  CutText text(written);
  text.add("v=0\r\no=- 0 0 IN IP4 ").add(ip).add("\r\ns=-\r\nc=IN IP4 ").add(ip).add("\r\nt=0 0\r\nm=audio ");
  text.add(port).add(" RTP/AVP");
  addRequested(text, codecs, &RequestCodec::format);
  text.add("\r\n");
  addRequested(text, codecs, &RequestCodec::attribute);
  if (inactive) text.add("a=inactive\r\n");
  return 0;
}
