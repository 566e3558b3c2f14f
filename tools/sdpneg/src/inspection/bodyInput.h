#ifndef SDPNEG_BODY_INPUT_H
#define SDPNEG_BODY_INPUT_H

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "input/inputFiles.h"
#include "inspection/inspection.h"

namespace tool {

/// An input with what was made of it.
struct BodyInput {
  std::string name;
  std::string bytes;
  Inspection inspection;

  /// Whether it holds a body that the analysis takes and nothing is wrong with it.
  bool usable() const { return inspection.object && !inspection.problem; }
};

BodyInput readBody(const Input& input, Detail detail);

/// Writes the notes and the problem of an input, a line each.
void writeProblems(Output& err, const std::string& name, std::span<const Problem> notes,
                   const std::optional<Problem>& problem);
void writeProblems(Output& err, const std::string& name, const Inspection& inspection);

/// Reads a body that a command works with, and says what is wrong with it.
BodyInput readBodyFor(const std::string& operand, Streams streams);

/// Why a body cannot be given to a request; nothing when it can.
std::optional<std::string> requestObstacle(const cSdpNegotiator& object);

/// Why a body that a request made must not go out, or on to the next: the library itself cannot read it. Nothing when
/// it can.
/// @param what the words for the body
std::optional<std::string> unreadableResult(const Inspection& result,
                                            std::string_view what = "what comes of it");

/// The body's text.
std::string bodyText(const cSdpNegotiator& object);

}  // namespace tool

#endif
