#include "calls/media.h"

#include <algorithm>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "calls/callKeys.h"
#include "calls/sdpFacts.h"
#include "calls/segments.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr std::size_t kMostSections = 6;
constexpr std::size_t kMostAgreedCodecs = 16;

std::string placeOf(const sdp::Section& section) {
  if (section.port() == 0) return "bundled";
  const std::string address = shownPiece(addressOf(section), 45);
  const bool isIp6 = sdpneg::contains(address, ":");
  return (isIp6 ? "[" + address + "]" : address) + ":" + std::to_string(section.port());
}

std::string formatsOf(const sdp::Section& section) {
  if (section.isRtp()) return namesOf(codecsOf(section));
  std::vector<CodecName> formats;
  for (const sdp::Format& format : section.formats()) {
    formats.push_back({std::string(format.format)});
    if (formats.size() == 16) break;
  }
  return namesOf(formats);
}

std::string shortForm(const sdp::Section& section) {
  if (!section.isReadable()) return "unreadable";
  std::string form = shownPiece(section.media(), 16);
  if (section.isDisabled()) return form + " refused";
  const std::string formats = formatsOf(section);
  if (!formats.empty()) form += " " + formats;
  if (section.isRtp()) form.append(" ").append(textOf(section.direction()));
  form.append(" ").append(placeOf(section)).append(" ").append(textOf(section.security()));
  if (section.hasIce()) form += " ice";
  if (isHeldByAddress(section)) form += " held";
  return form;
}

template <typename Value>
void addOnce(std::vector<Value>& values, Value value) {
  if (std::ranges::find(values, value) == values.end()) values.push_back(std::move(value));
}

AgreedMedia agreedOf(const sdp::Document& offer, const sdp::Document& answer) {
  AgreedMedia agreed;
  for (const sdp::Section& answered : answer.sections()) {
    const sdp::Section offered = offer.section(answered.index());
    if (!isActive(offered) || !isActive(answered)) continue;
    const bool isVideo = sdpneg::equalNoCase(answered.media(), "video");
    if (!isVideo && !sdpneg::equalNoCase(answered.media(), "audio")) continue;
    for (const CodecName& codec : commonCodecs(offered, answered)) {
      if (agreed.codecs.size() == kMostAgreedCodecs) break;
      addOnce(agreed.codecs, shownPiece(codec.name));
    }
    addOnce(agreed.securities, agreedSecurity(offered, answered));
  }
  return agreed;
}

/// What an exchange agreed on; null where its bodies cannot be read. It holds until another one is asked for.
const AgreedMedia* agreedOf(BodyCache& bodies, const Exchange& exchange) {
  ShapeFacts& facts = bodies.factsOf(exchange.offer, *exchange.answer);
  if (facts.agreed) {
    bodies.passOverAny(exchange.offer, *exchange.answer);
    return &*facts.agreed;
  }
  const sdp::Document* const offer = bodies.ofAny(exchange.offer);
  const sdp::Document* const answer = bodies.ofAny(*exchange.answer);
  if (offer == nullptr || answer == nullptr) return nullptr;
  return &facts.agreed.emplace(agreedOf(*offer, *answer));
}

bool wasRefused(const Exchange& exchange) { return !exchange.answer || exchange.finalStatus >= 300; }

}  // namespace

std::string shortForm(std::string_view sdp) {
  sdp::Document body;
  if (sdp.empty() || body.read(sdp)) return {};
  std::string form;
  std::size_t told = 0;
  for (const sdp::Section& section : body.sections()) {
    if (told != 0) form += "; ";
    if (told++ == kMostSections) {
      return form + std::to_string(body.sectionCount() - kMostSections) + " more";
    }
    form += shortForm(section);
  }
  return form.empty() ? "no media" : form;
}

void describeMedia(Call& call) {
  BodyCache bodies;
  bodies.begin(call);
  describeMedia(call, bodies);
}

void describeMedia(Call& call, BodyCache& bodies) {
  // Of each two that talk in a leg the last exchange, in the order in which they begin to talk.
  const Segments segments(call);
  std::vector<const Exchange*> last(segments.size(), nullptr);
  for (const Exchange& exchange : call.exchanges) {
    if (wasRefused(exchange)) continue;
    const Exchange*& known = last[segments.of(exchange.offer)];
    if (known == nullptr || *known->answer <= *exchange.answer) known = &exchange;
  }
  call.codecs.clear();
  std::vector<sdp::Security> securities;
  // Relays repeat both.
  NumberedKeys<std::pair<std::string_view, std::string_view>> texts;
  for (const Exchange* exchange : last) {
    if (exchange == nullptr) continue;
    const std::size_t before = texts.size();
    if (texts.add({call.messages[exchange->offer].sdp(), call.messages[*exchange->answer].sdp()}) != before)
      continue;
    const AgreedMedia* const agreed = agreedOf(bodies, *exchange);
    if (agreed == nullptr) continue;
    for (const std::string& codec : agreed->codecs) {
      if (call.codecs.size() < 2 * kMostAgreedCodecs) addOnce(call.codecs, codec);
    }
    for (const sdp::Security security : agreed->securities) addOnce(securities, security);
  }
  call.security.clear();
  for (const sdp::Security security : securities) {
    if (!call.security.empty()) call.security += '/';
    call.security += textOf(security);
  }
}

}  // namespace tool
