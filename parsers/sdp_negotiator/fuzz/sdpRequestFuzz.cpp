// Parses any body and makes a sequence of any requests. Which ones, and a seed for their values, the input's end says.
// Behind each the object is as the table of requests has it.

#include <algorithm>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "../test/requestProperty.h"
#include "editBuffer.h"

namespace {

/// Numbers and words from a seed; words are pieces of the body.
class Dice {
 public:
  Dice(std::uint32_t seed, const std::string& body) : state_(seed), body_(body) {}

  std::uint32_t any() {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::uint32_t>(state_ >> 32U);
  }
  std::uint32_t below(std::uint32_t limit) { return any() % limit; }
  bool flag() { return below(2) != 0; }
  template <typename Enumeration>
  Enumeration oneOf(int first, std::uint32_t count) {
    return static_cast<Enumeration>(first + static_cast<int>(below(count)));
  }
  template <typename T, std::size_t N>
  T of(const T (&choices)[N]) {
    return choices[below(static_cast<std::uint32_t>(N))];
  }
  /// A word that lives as long as the dice.
  const char* word() {
    const auto begin = below(static_cast<std::uint32_t>(body_.size() + 1));
    words_.push_back(body_.substr(begin, below(flag() ? 16 : 600)));
    return words_.back().c_str();
  }
  /// One of some texts, null, or a word.
  template <std::size_t N>
  const char* text(const char* const (&choices)[N]) {
    const std::uint32_t which = below(static_cast<std::uint32_t>(N) + 2);
    return which < N ? choices[which] : which == N ? nullptr : word();
  }

 private:
  std::uint64_t state_;
  const std::string& body_;
  std::deque<std::string> words_;
};

void chooseCodecs(RequestValues& values, Dice& dice) {
  for (unsigned char& codec : values.codecs) codec = static_cast<unsigned char>(dice.below(42));
  for (unsigned char& codec : values.videoCodecs) codec = static_cast<unsigned char>(dice.below(15));
  values.codecCount = dice.oneOf<int>(-2, 24);
  values.videoCodecCount = dice.oneOf<int>(-2, 24);
  values.codecNames = dice.text({"OPUS,TELEPHONE_EVENT", "G722_64K,,G711ALAW64K", ",,,,,,,,,,,,,,,,,,,,,,,"});
}

void chooseTexts(RequestValues& values, Dice& dice) {
  values.ip = dice.text({"192.0.2.1", "2001:db8::1", "", "0.0.0.0"});
  values.sessionId = dice.text({"1", "0", "99999999999999999999"});
  values.sessionVersion = dice.text({"1", "0", "99999999999999999999"});
  values.fromTransport = dice.text({"RTP/SAVP", "RTP/AVP", "UDP/TLS/RTP/SAVPF", ""});
  values.toTransport = dice.text({"RTP/SAVPF", "RTP/AVP", "UDP/TLS/RTP/SAVPF", ""});
  values.sections = dice.text(
      {"m=video 1024 RTP/AVP 34\r\n", "m=video 5008 RTP/SAVP 96\nm=video 0 RTP/AVP 34\n", "video", ""});
}

void chooseNumbers(RequestValues& values, Dice& dice) {
  values.port = dice.of({0U, 1024U, 65535U, 9U, dice.any()});
  values.version = dice.any();
  values.longVersion = static_cast<long long>((std::uint64_t{dice.any()} << 32U) | dice.any());
  values.ipVersion = static_cast<eIPAddressVersion>(dice.of({2, 10, 0, 7}));
  values.mode = dice.oneOf<unsigned char>(0, 7);
  values.mediaSelect = dice.of({0, 1, 2, 3, 64});
  values.mediaMask = dice.below(80);
  values.state = dice.oneOf<unsigned char>(0, 4);
  values.side = dice.oneOf<unsigned char>(0, 5);
  values.unsupported = dice.oneOf<eNonSupportedSecurity>(-1, 6);
  values.from = dice.flag() ? BE_SRTP_2m_LINE : dice.oneOf<eSecurityType>(-1, 9);
  values.to = dice.oneOf<eSecurityType>(-1, 9);
  values.bandwidth = dice.of({0U, 1U, 384U, dice.any()});
  values.profile = dice.oneOf<eH264_profile_id>(-3, 22);
}

void chooseRecords(RequestValues& values, Dice& dice) {
  const auto codes = dice.below(26);
  for (std::uint32_t i = 0; i < 25; ++i) {
    values.removed[i] = static_cast<char>(i < codes ? dice.flag() ? dice.below(30) : dice.below(256) : 0);
  }
  for (sSdpPrecondions& each : values.preconditions) {
    each = {dice.below(5), dice.below(3), dice.below(6), dice.below(4), dice.below(5)};
  }
  values.preconditionCount = dice.oneOf<int>(-1, 4);
}

/// The body itself, another version of it, or a body that answers to little.
cSdpNegotiator otherObject(const cSdpNegotiator& first, Dice& dice) {
  cSdpNegotiator other = first;
  switch (dice.below(4)) {
    case 0:
      other.sdpCreateRmDummyOffer(dice.any(), dice.any(), dice.flag());
      break;
    case 1:
      other.sdpParse("", SDP_TYPE_UNKNOWN);
      break;
    case 2:
      other.sdpRemoveVideoMedia();
      break;
    default:
      break;
  }
  return other;
}

/// A text is parsed afresh, so that what a stored one leaves does not add up.
bool parseAfresh(cSdpNegotiator& object) {
  object = requestProperty::parseOf(requestProperty::Text(object));
  return object.isSdpPresent();
}

/// The object whose o-line a request may raise.
void requireOriginLineOnly(const cSdpNegotiator& before, const cSdpNegotiator& after) {
  require(requestProperty::sameBut(after.getParsedData(), before.getParsedData(), kOLineEnd));
}

/// Whether a body is ordinary and nothing that edits look for stands within a line.
bool isPlain(const cSdpNegotiator& object) {
  const std::string text = requestProperty::Text(object).characters;
  for (const char* const sought : {"a=", "m=", "o="}) {
    for (std::size_t at = text.find(sought); at != std::string::npos; at = text.find(sought, at + 1)) {
      if (at == 0 || text[at - 1] != '\n') return false;
    }
  }
  return requestProperty::isOrdinary(text);
}

/// @return whether the object is fit for another request
bool request(cSdpNegotiator& object, const cSdpNegotiator& first, const RequestRow& row, Dice dice) {
  RequestValues values;
  const bool usual = dice.flag();
  if (!usual) {
    chooseCodecs(values, dice);
    chooseTexts(values, dice);
    chooseNumbers(values, dice);
    chooseRecords(values, dice);
  }
  for (bool* const each : {&values.flag, &values.hold, &values.third, &values.answer}) *each = dice.flag();
  values.other = otherObject(first, dice);
  values.offer = otherObject(object, dice);
  // Of exactly that size, so that the sanitizer sees a write behind it.
  values.videoOutSize = dice.below(2000);
  const std::unique_ptr<char[]> sections = std::make_unique<char[]>(values.videoOutSize);
  if (dice.flag()) values.videoOut = sections.get();
  const cSdpNegotiator before = object;
  const cSdpNegotiator otherBefore = values.other;
  const unsigned short status = row.run(object, values);
  const bool ordinary = usual && isPlain(before) && isPlain(otherBefore);
  require(requestProperty::complaint(row, before, object, status, ordinary).empty());
  requireOriginLineOnly(otherBefore, values.other);
  return object.isSdpPresent() && parseAfresh(object);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::vector<RequestRow> rows = allRequests();
  const std::string input(reinterpret_cast<const char*>(data), size);
  Values values(input);
  const std::string body = input.substr(0, input.find('\0')).substr(0, kCapacity - 1);
  cSdpNegotiator object;
  if (object.sdpParse(body.c_str(), SDP_TYPE_UNKNOWN) != 0) return 0;
  const cSdpNegotiator first = object;
  for (int steps = values.number<std::uint8_t>() % 8; steps >= 0; --steps) {
    const RequestRow& row = rows[values.number<std::uint8_t>() % rows.size()];
    if (!request(object, first, row, Dice(values.number<std::uint32_t>(), body))) break;
  }
  return 0;
}
