// Answers: those made here, and those of the peer.

#include <new>
#include <stdexcept>
#include <utility>

#include "bodies.h"
#include "exchange.h"
#include "origins.h"
#include "outgoing.h"

namespace sdp::exchange {
namespace {

/// Both bodies are the current ones from now on.
void agree(DialogData& data, std::string local, std::string remote, Party offerer, Intent intent) {
  data.state = DialogState::stable;
  data.offerer = offerer;
  data.local = std::move(local);
  data.remote = std::move(remote);
  data.pending.clear();
  data.intent = std::move(intent);
  data.pendingIntent = {};
}

DialogFailure failureOf(AnswerFailure failure) {
  switch (failure) {
    case AnswerFailure::none:
      return DialogFailure::none;
    case AnswerFailure::noMemory:
      throw std::bad_alloc();
    case AnswerFailure::textTooLong:
      throw std::length_error("answer");
    case AnswerFailure::brokenOffer:
      return DialogFailure::brokenBody;
    case AnswerFailure::noLocalSection:
      return DialogFailure::noLocalSection;
    case AnswerFailure::nothingAccepted:
      return DialogFailure::nothingAccepted;
  }
  return DialogFailure::nothingAccepted;
}

/// What the local body would say of the roles of DTLS if the peer had left it the choice: those that are taken.
void takeRoles(Document& local, const Document& remote) {
  std::vector<std::pair<std::uint32_t, std::string_view>> roles;
  for (const Section& section : local.sections()) {
    if (section.setup() != "actpass") continue;
    const std::string_view theirs = remote.section(section.index()).setup();
    if (theirs == "active") roles.emplace_back(section.index(), "passive");
    if (theirs == "passive") roles.emplace_back(section.index(), "active");
  }
  for (const auto& [section, role] : roles) require(local.setAttribute(section, "setup", role));
}

/// The directions of a description by the sections that they serve.
std::vector<Direction> directionsBy(const std::vector<AnsweredSection>& sections,
                                    const std::vector<Direction>& wanted) {
  std::vector<Direction> directions;
  for (const AnsweredSection& section : sections) {
    const bool isServed = section.local != 0 && section.local <= wanted.size();
    directions.push_back(isServed ? wanted[section.local - 1] : Direction::sendrecv);
  }
  return directions;
}

LocalBody sendAnswer(DialogData& data, std::string text, Intent intent) {
  Document body;
  read(body, text);
  rememberSent(data, body);
  LocalBody sent;
  sent.text = text;
  sent.isRefresh = text == data.local;
  agree(data, std::move(text), std::move(data.pending), Party::remote, std::move(intent));
  return sent;
}

/// Whether a body may be an answer by its number of sections, and their media.
DialogStatus checkSections(const Document& offer, const Document& answer) {
  if (!isDescription(answer)) return {DialogFailure::brokenBody};
  if (offer.sectionCount() != answer.sectionCount()) return {DialogFailure::sectionCount};
  auto offered = offer.sections().begin();
  for (const Section& section : answer.sections()) {
    const bool isAccepted = section.isReadable() && !section.isDisabled();
    if (isAccepted && offered->isReadable() && section.media() != offered->media()) {
      return {DialogFailure::sectionMedia, section.index()};
    }
    ++offered;
  }
  return {};
}

bool isAnyReadable(const Document& document) {
  for (const Section& section : document.sections()) {
    if (section.isReadable()) return true;
  }
  return document.sectionCount() == 0;
}

}  // namespace

LocalBody answerDescription(DialogData& data, std::string_view description, const AnswerOptions& options) {
  if (const Transition step = transitionOf(data.state, Call::answer); step.failure != DialogFailure::none) {
    return refused(step.failure);
  }
  Document offer;
  Document wanted;
  Document previous;
  read(offer, data.pending);
  read(wanted, description);
  read(previous, data.local);
  const std::vector<Direction> directions = directionsOf(wanted);
  if (data.intent.isHeld) {
    setDirections(wanted, [](std::uint32_t, Direction direction) { return held(direction); });
  }
  AnswerOptions own = options;
  own.previous = nullptr;
  if (!data.local.empty()) {
    Document remote;
    read(remote, data.remote);
    takeRoles(previous, remote);
    own.previous = &previous;
  }
  Answer answer = makeAnswer(offer, wanted, own);
  LocalBody sent = refused(failureOf(answer.failure));
  if (sent) {
    Intent intent{data.intent.isHeld, directionsBy(answer.sections, directions)};
    sent = sendAnswer(data, versioned(data, answer.text), std::move(intent));
  }
  sent.sections = std::move(answer.sections);
  return sent;
}

LocalBody answerFinished(DialogData& data, std::string_view body) {
  if (const Transition step = transitionOf(data.state, Call::answer); step.failure != DialogFailure::none) {
    return refused(step.failure);
  }
  Document offer;
  Document answer;
  read(offer, data.pending);
  read(answer, body);
  if (const DialogStatus check = checkSections(offer, answer); !check) {
    return refused(check.failure, check.section);
  }
  if (const std::uint32_t section = firstUnreadable(answer); section != 0) {
    return refused(DialogFailure::unreadableSection, section);
  }
  return sendAnswer(data, std::string(body), finishedIntent(data.intent, answer, offer));
}

DialogStatus takeAnswer(DialogData& data, std::string_view body) {
  const Transition step = transitionOf(data.state, Call::receiveAnswer);
  if (step.failure != DialogFailure::none) {
    const bool isRepeated = data.state == DialogState::stable && data.offerer == Party::local;
    if (isRepeated && body == data.remote) return {DialogFailure::repeatedAnswer};
    return {step.failure};
  }
  Document offer;
  Document answer;
  read(offer, data.pending);
  read(answer, body);
  if (const DialogStatus check = checkSections(offer, answer); !check) return check;
  if (!isAnyReadable(answer)) return {DialogFailure::brokenBody};
  agree(data, std::move(data.pending), std::string(body), Party::local, std::move(data.pendingIntent));
  return {};
}

}  // namespace sdp::exchange
