#include "inspection/bodyInput.h"

#include <utility>

namespace tool {

BodyInput readBody(const Input& input, Detail detail) {
  // What is too long for the analysis has its sections told all the same.
  InputBytes read = readInput(input, detail == Detail::all ? kMaxDocumentInputSize : kMaxInputSize);
  Inspection inspection = read.problem ? unreadable(std::move(*read.problem)) : inspect(read.bytes, detail);
  return {input.name, std::move(read.bytes), std::move(inspection)};
}

void writeProblems(Output& err, const std::string& name, std::span<const Problem> notes,
                   const std::optional<Problem>& problem) {
  for (const Problem& note : notes) writeProblem(err, name, {note.place, "note: " + note.reason});
  if (problem) writeProblem(err, name, *problem);
}

void writeProblems(Output& err, const std::string& name, const Inspection& inspection) {
  writeProblems(err, name, inspection.notes, inspection.problem);
}

BodyInput readBodyFor(const std::string& operand, Streams streams) {
  BodyInput input = readBody(inputOf(operand), Detail::object);
  writeProblems(streams.err, input.name, input.inspection);
  return input;
}

std::optional<std::string> requestObstacle(const cSdpNegotiator& object) {
  if (object.getRawSdpSize() != 0) return std::nullopt;
  return "the body is longer than the " + std::to_string(MAX_SDP_PROTOCOL_DATA_SIZE - 1) +
         " characters that requests take";
}

std::optional<std::string> unreadableResult(const Inspection& result, std::string_view what) {
  if (!result.problem) return std::nullopt;
  const Place& place = result.problem->place;
  const std::string where = place.line == 0 ? std::string()
                                            : "line " + std::to_string(place.line) + ", column " +
                                                  std::to_string(place.column) + ": ";
  return std::string(what) + " cannot be read: " + where + result.problem->reason;
}

std::string bodyText(const cSdpNegotiator& object) {
  char text[MAX_SDP_PROTOCOL_DATA_SIZE + 1];
  return object.getRawSDP(text, sizeof text) == 0 ? std::string(text) : std::string();
}

}  // namespace tool
