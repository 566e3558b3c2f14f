// The rules of sections.

#include <string>

#include "judge/bodies.h"
#include "plainText.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// What an answered section is.
enum class State : std::uint8_t {
  unreadable,
  refused,        ///< it has port 0
  notAcceptable,  ///< it has a port, and what was offered is disabled or cannot be read
  accepted
};

State stateOf(const Pair& pair) {
  if (!pair.answered.isReadable()) return State::unreadable;
  if (pair.answered.port() == 0) return State::refused;
  return pair.offered.isReadable() && !pair.offered.isDisabled() ? State::accepted : State::notAcceptable;
}

/// What an answer may have in the place of a field that is missing, or may not stand in lines of ours, is not judged.
bool isJudged(std::string_view offered) { return !offered.empty() && isPlain(offered); }

void judgeMedia(const Pair& pair, const MLineFields& offered, const MLineFields& answered,
                Findings& findings) {
  if (!isJudged(offered.media) || offered.media == answered.media) return;
  findings.add(pair.number, AnswerRule::sectionMedia,
               {shown(answered.media), " answers ", shown(offered.media)});
}

void judgeTransport(const Pair& pair, const MLineFields& offered, const MLineFields& answered,
                    Findings& findings) {
  if (!isJudged(offered.transport) || offered.transport == answered.transport) return;
  const bool isRtp = sdpneg::contains(offered.transport, "RTP/");
  if (!isRtp && sdpneg::equalNoCase(offered.transport, answered.transport)) return;
  findings.add(pair.number, AnswerRule::transport,
               {shown(answered.transport), " answers ", shown(offered.transport)});
}

void judgeDirection(const Pair& pair, Findings& findings) {
  const Direction offered = pair.offered.direction();
  const Direction answered = pair.answered.direction();
  const bool sends = answered == Direction::sendrecv || answered == Direction::sendonly;
  const bool receives = answered == Direction::sendrecv || answered == Direction::recvonly;
  const bool isTaken = offered == Direction::sendrecv || offered == Direction::recvonly;
  const bool isGiven = offered == Direction::sendrecv || offered == Direction::sendonly;
  if ((!sends || isTaken) && (!receives || isGiven)) return;
  findings.add(pair.number, AnswerRule::direction, {textOf(answered), " answers ", textOf(offered)});
}

void judgeAddress(const Pair& pair, Findings& findings) {
  const std::optional<Connection> connection = pair.answered.connection();
  if (connection && !connection->address.empty()) return;
  if (pair.bodies.groups.haveAddress(pair.number)) return;
  findings.add(
      pair.number, AnswerRule::noAddress,
      {connection ? "its c-line has no address" : "neither the section nor the session has a c-line"});
}

}  // namespace

void judgeSectionCount(const Bodies& bodies, Findings& findings) {
  const std::uint32_t offered = bodies.offer.sectionCount();
  const std::uint32_t answered = bodies.answer.sectionCount();
  if (offered == answered) return;
  findings.add(0, AnswerRule::sectionCount,
               {"the answer has ", std::to_string(answered), answered == 1 ? " section" : " sections",
                ", the offer ", std::to_string(offered)});
}

bool judgeSection(const Pair& pair, Findings& findings) {
  const MLineFields offered(pair.offered);
  const MLineFields answered(pair.answered);
  const State state = stateOf(pair);
  judgeMedia(pair, offered, answered, findings);
  if (state == State::unreadable) {
    findings.add(pair.number, AnswerRule::noPort, {"its m-line cannot be read"});
    return false;
  }
  judgeTransport(pair, offered, answered, findings);
  if (state == State::notAcceptable) {
    findings.add(pair.number, AnswerRule::disabledAccepted,
                 {"port ", std::to_string(pair.answered.port()), " answers a section that ",
                  pair.offered.isReadable() ? "is disabled" : "cannot be read"});
  }
  if (state != State::accepted) return false;
  judgeDirection(pair, findings);
  judgeAddress(pair, findings);
  return true;
}

}  // namespace sdp::exchange
