#include "commands/checkAnswerCommand.h"

#include <new>

#include "commands/exitStatus.h"
#include "input/bodyText.h"
#include "inspection/bodyInput.h"
#include "output/json.h"
#include "sdpAnswerJudge.h"

namespace tool {
namespace {

/// Reads an input into a document, and says what is wrong with it.
/// @return whether there is a body
bool readDocument(const std::string& operand, sdp::Document& document, Streams streams) {
  const BodyText body = readBodyText(inputOf(operand));
  writeProblems(streams.err, body.name, body.body.notes, body.problem);
  // No input is longer than a document may be.
  if (!body.problem && document.read(body.text())) throw std::bad_alloc();
  return !body.problem;
}

void writeLines(Output& out, const std::vector<sdp::Finding>& findings) {
  BufferedOutput buffered(out);
  for (const sdp::Finding& finding : findings) {
    buffered.write(std::to_string(finding.section).append(": ").append(textOf(finding.rule)).append(": "));
    buffered.write(finding.text + "\n");
  }
}

/// Its keys are described in docs/tool.md and in data/check-answer.schema.json; they do not change while "format" stays
/// 1.
void writeJson(Output& out, const std::vector<sdp::Finding>& findings) {
  BufferedOutput buffered(out);
  JsonList list(buffered, {{"format", 1}, {"findings", Json::array()}}, "");
  for (const sdp::Finding& finding : findings) {
    const Json row = {{"section", finding.section},
                      {"rule", textOf(finding.rule)},
                      {"severity", textOf(severityOf(finding.rule))},
                      {"text", finding.text}};
    const std::string by = list.begin();
    buffered.write(indented(jsonText(row), by));
  }
  list.end();
  buffered.write("\n");
}

}  // namespace

int runCheckAnswer(const Arguments& arguments, Streams streams) {
  const std::vector<std::string>& operands = arguments.operands();
  if (operands.size() != 2) throw UsageError{"two bodies are wanted: OFFER and ANSWER"};
  if (operands[0] == "-" && operands[1] == "-") throw UsageError{"standard input can be read only once"};
  sdp::Document offer;
  sdp::Document answer;
  const bool hasOffer = readDocument(operands[0], offer, streams);
  const bool hasAnswer = readDocument(operands[1], answer, streams);
  if (!hasOffer || !hasAnswer) return exitBadInput;
  const sdp::Judgement judgement = sdp::checkAnswer(offer, answer);
  if (!judgement.isComplete) throw std::bad_alloc();
  (arguments.has("--json") ? writeJson : writeLines)(streams.out, judgement.findings);
  if (judgement.hasMore) streams.err.write("sdpneg: there are more findings than these\n");
  return judgement.findings.empty() ? exitSuccess : exitFindings;
}

}  // namespace tool
