// The rules of RTCP, header extensions and ICE.

#include <array>
#include <string>

#include "judge/bodies.h"

namespace sdp::exchange {
namespace {

/// What goes with ICE alone (RFC 8839); options and pacing may stand in any answer.
constexpr std::array<std::string_view, 7> kIceNames{"candidate",   "remote-candidates", "end-of-candidates",
                                                    "ice-ufrag",   "ice-pwd",           "ice-lite",
                                                    "ice-mismatch"};

struct ShortestLength {
  Credential credential;
  std::size_t characters;
};
/// RFC 8839, section 5.4.
constexpr std::array<ShortestLength, 2> kShortest{{{Credential::iceUfrag, 4}, {Credential::icePwd, 22}}};

/// The first ICE attribute of a session or section; empty without one.
template <typename Part>
std::string_view iceNameOf(const Part& part) {
  for (const std::string_view name : kIceNames) {
    if (part.has(name)) return name;
  }
  return {};
}

bool offersIce(const Bodies& bodies, std::uint32_t section) {
  return !bodies.offerBundles.valueOf(section, Credential::iceUfrag).empty() &&
         !bodies.offerBundles.valueOf(section, Credential::icePwd).empty();
}

bool offersIceAnywhere(const Bodies& bodies) {
  for (const Section& section : bodies.offer.sections()) {
    if (section.isReadable() && !section.isDisabled() && offersIce(bodies, section.index())) return true;
  }
  return false;
}

/// Judges the lengths of credentials; the text tells no more of them.
template <typename Part>
void judgeLengths(const Part& part, std::uint32_t section, Findings& findings) {
  for (const ShortestLength& shortest : kShortest) {
    const std::string_view name = nameOf(shortest.credential);
    const std::optional<Attribute> attribute = part.attribute(name);
    if (!attribute) continue;
    const std::size_t length = attribute->fields()[0].size();
    if (length >= shortest.characters) continue;
    findings.add(section, AnswerRule::iceShort,
                 {name, " has ", std::to_string(length), length == 1 ? " character" : " characters", ", not ",
                  std::to_string(shortest.characters)});
  }
}

void addUnoffered(std::uint32_t section, const Extmap& extmap, bool isOffered, Findings& findings) {
  const std::string_view uri = extmap.encrypted.empty() ? extmap.uri : extmap.encrypted;
  findings.add(section, AnswerRule::extmapNotOffered,
               {shown(uri), isOffered ? " was offered under another number" : " was not offered"});
}

void judgeSessionExtmaps(const Bodies& bodies, Findings& findings) {
  const Session session = bodies.answer.session();
  if (!session.has("extmap")) return;
  Extmaps offered(bodies.offer.session().attributes("extmap"));
  for (const Section& section : bodies.offer.sections()) offered.add(section.attributes("extmap"));
  offered.sort();
  for (const Attribute& attribute : session.attributes("extmap")) {
    const std::optional<Extmap> extmap = readExtmap(attribute);
    if (extmap && !offered.hasNumber(*extmap)) addUnoffered(0, *extmap, offered.has(*extmap), findings);
  }
}

void judgeExtmaps(const Pair& pair, Findings& findings) {
  if (!pair.answered.has("extmap")) return;
  const Extmaps& ofSession = pair.bodies.offeredExtmaps;
  const Extmaps own(pair.offered.attributes("extmap"));
  for (const Attribute& attribute : pair.answered.attributes("extmap")) {
    const std::optional<Extmap> extmap = readExtmap(attribute);
    if (!extmap || own.hasNumber(*extmap) || ofSession.hasNumber(*extmap)) continue;
    addUnoffered(pair.number, *extmap, own.has(*extmap) || ofSession.has(*extmap), findings);
  }
}

}  // namespace

void judgeSessionConnectivity(const Bodies& bodies, Findings& findings) {
  const Session session = bodies.answer.session();
  const std::string_view name = iceNameOf(session);
  if (!name.empty() && !offersIceAnywhere(bodies)) {
    findings.add(0, AnswerRule::iceNotOffered,
                 {name, " in the session, and no section was offered with ICE"});
  }
  judgeLengths(session, 0, findings);
  judgeSessionExtmaps(bodies, findings);
}

void judgeConnectivity(const Pair& pair, Findings& findings) {
  if (pair.answered.hasRtcpMux() && !pair.offered.hasRtcpMux()) {
    findings.add(pair.number, AnswerRule::rtcpMuxNotOffered, {"rtcp-mux was not offered"});
  }
  judgeExtmaps(pair, findings);
  const std::string_view name = iceNameOf(pair.answered);
  if (!name.empty() && !offersIce(pair.bodies, pair.number)) {
    findings.add(pair.number, AnswerRule::iceNotOffered,
                 {name, ", and the offer has no ice-ufrag and ice-pwd"});
  }
  judgeLengths(pair.answered, pair.number, findings);
}

}  // namespace sdp::exchange
