#include "rewriting.h"

#include <utility>

#include "bodyInput.h"
#include "refusal.h"

namespace tool {
namespace {

using Trace = std::span<const TraceLine>;

/// Why a request was refused; nothing when it was carried out.
std::optional<std::string> refusalOf(const RequestRow& row, unsigned short status, Trace trace) {
  if (status != 0) return explainRefusedRequest(trace, status);
  const Trace ofEdit = beforeParse(trace);
  if (row.refusalIsTraced && hasError(ofEdit)) return explainRefusedRequest(ofEdit, status);
  return std::nullopt;
}

/// "request mode", with the request's number where there are several.
std::string requestName(std::span<const RequestCall> calls, std::size_t index) {
  const std::string name(calls[index].row->name);
  return calls.size() > 1 ? "request " + std::to_string(index + 1) + ", " + name + "," : "request " + name;
}

/// Runs one request and takes what comes of it.
std::optional<std::string> run(cSdpNegotiator& object, std::span<const RequestCall> calls, std::size_t index,
                               const TraceLines& trace, Rewritten& result) {
  if (auto obstacle = requestObstacle(object)) return obstacle;
  const RequestRow& row = *calls[index].row;
  const std::string before = bodyText(object);
  const std::size_t begin = trace.lines().size();
  RequestInput input = calls[index].input;
  const unsigned short status = row.run(object, input);
  if (!input.refusal.empty()) return input.refusal;
  const Trace own = Trace(trace.lines()).subspan(begin);
  if (auto refusal = refusalOf(row, status, own)) return refusal;
  result.text = bodyText(object);
  if (result.text.empty()) return "what comes of it is no body: " + explainRefusedText(own);
  if (result.text == before) {
    const std::string failure = row.failure != nullptr ? row.failure(own) : std::string();
    if (!failure.empty()) return failure;
    result.idle.push_back({requestName(calls, index), std::move(input.idle)});
  }
  if (!input.removed.empty()) result.removed.push_back({row.name, std::move(input.removed)});
  return std::nullopt;
}

/// Parses what a request left.
std::optional<std::string> parseAgain(cSdpNegotiator& object, const TraceLines& trace,
                                      const std::string& text) {
  const std::size_t begin = trace.lines().size();
  const unsigned short status = object.sdpParse(text.c_str(), SDP_TYPE_UNKNOWN);
  if (status == 0) return std::nullopt;
  return "the body before it: " + explainRefusedRequest(Trace(trace.lines()).subspan(begin), status);
}

}  // namespace

Rewritten rewrite(const cSdpNegotiator& body, std::span<const RequestCall> calls) {
  Rewritten result;
  const TraceLines trace;
  cSdpNegotiator object = body;
  for (std::size_t i = 0; i < calls.size() && !result.refusal; ++i) {
    std::optional<std::string> why = i > 0 ? parseAgain(object, trace, result.text) : std::nullopt;
    if (!why) why = run(object, calls, i, trace, result);
    if (why) result.refusal = requestName(calls, i) + " is refused: " + *why;
  }
  result.trace = trace.lines();
  return result;
}

}  // namespace tool
