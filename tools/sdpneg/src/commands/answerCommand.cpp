#include "commands/answerCommand.h"

#include <algorithm>
#include <new>

#include "commands/exitStatus.h"
#include "input/bodyText.h"
#include "inspection/bodyInput.h"
#include "sdpAnswer.h"

namespace tool {
namespace {

/// A body that an answer is made from.
struct Body {
  BodyText input;
  sdp::Document document;
};

/// Reads a body, and says what is wrong with it.
/// @return whether it can be used
bool read(const std::string& operand, Body& body, Streams streams) {
  body.input = readBodyText(inputOf(operand));
  writeProblems(streams.err, body.input.name, body.input.body.notes, body.input.problem);
  if (body.input.problem) return false;
  // No input is longer than a document may be.
  if (body.document.read(body.input.text())) throw std::bad_alloc();
  return true;
}

void checkStandardInput(const Arguments& arguments, const std::string& offer) {
  const std::string_view names[] = {arguments.value("--local"), arguments.value("--previous"), offer};
  if (std::count(std::begin(names), std::end(names), "-") > 1)
    throw UsageError{"standard input can be read only once"};
}

/// Says for each section why it is refused.
void writeOutcomes(const Body& offer, const sdp::Answer& answer, Output& err) {
  const std::size_t firstLine = offer.input.firstLine();
  for (const sdp::Section& section : offer.document.sections()) {
    const sdp::SectionOutcome outcome = answer.sections[section.index() - 1].outcome;
    const std::string media(section.isReadable() ? " (" + std::string(section.media()) + ")" : "");
    const std::string reason = "section " + std::to_string(section.index()) + media + ": ";
    writeProblem(err, offer.input.name,
                 {{firstLine + section.lineNumber() - 1, 0}, reason + std::string(textOf(outcome))});
  }
}

int writeFailure(const Body& offer, const Body& local, const sdp::Answer& answer, Output& err) {
  if (answer.failure == sdp::AnswerFailure::noMemory) throw std::bad_alloc();
  const bool isLocal = answer.failure == sdp::AnswerFailure::noLocalSection;
  writeProblem(err, (isLocal ? local : offer).input.name, {{}, std::string(textOf(answer.failure))});
  if (answer.failure == sdp::AnswerFailure::nothingAccepted) writeOutcomes(offer, answer, err);
  return isLocal ? exitBadInput : exitRefused;
}

}  // namespace

int runAnswer(const Arguments& arguments, Streams streams) {
  const std::string& name = arguments.operands().front();
  checkStandardInput(arguments, name);
  const std::string previousName(arguments.value("--previous"));
  Body local;
  Body previous;
  Body offer;
  const bool isLocalRead = read(std::string(arguments.value("--local")), local, streams);
  const bool isPreviousRead = previousName.empty() || read(previousName, previous, streams);
  const bool isOfferRead = read(name, offer, streams);
  if (!isLocalRead || !isPreviousRead || !isOfferRead) return exitBadInput;
  const sdp::AnswerOptions options = {.prefersLocal = arguments.value("--prefer") == "local",
                                      .isSingle = arguments.has("--single"),
                                      .isPassive = arguments.value("--setup") == "passive",
                                      .previous = previousName.empty() ? nullptr : &previous.document};
  const sdp::Answer answer = makeAnswer(offer.document, local.document, options);
  if (!answer) return writeFailure(offer, local, answer, streams.err);
  writeText(streams.out, answer.text);
  return exitSuccess;
}

}  // namespace tool
