#include "requests/rewriting.h"

#include <utility>

#include "inspection/bodyInput.h"
#include "inspection/refusal.h"

namespace tool {
namespace {

/// Why a request was refused; nothing when it was carried out.
std::optional<std::string> refusalOf(const RequestRow& row, unsigned short status,
                                     const RefusalWatch& watch) {
  const bool isRefused = status != 0 || (row.refusalIsKept && watch.sawFailure());
  return isRefused ? std::optional(explainRefusedRequest(watch, status)) : std::nullopt;
}

/// "request mode", with the request's number where there are several.
std::string requestName(std::span<const RequestCall> calls, std::size_t index) {
  const std::string name(calls[index].row->name);
  return calls.size() > 1 ? "request " + std::to_string(index + 1) + ", " + name + "," : "request " + name;
}

/// Tells what a request did to the body beside what it was asked for.
void noteEffects(const RequestRow& row, const std::string& before, Rewritten& result) {
  for (std::string& what : sideEffects(before, result.text, row.takes)) {
    result.effects.push_back({row.name, std::move(what)});
  }
}

/// Runs one request and takes what comes of it.
std::optional<std::string> run(cSdpNegotiator& object, std::span<const RequestCall> calls, std::size_t index,
                               Rewritten& result) {
  if (auto obstacle = requestObstacle(object)) return obstacle;
  const RequestRow& row = *calls[index].row;
  const std::string before = bodyText(object);
  RequestInput input = calls[index].input;
  const RefusalWatch watch;
  const unsigned short status = row.run(object, input);
  if (!input.refusal.empty()) return input.refusal;
  result.text = bodyText(object);
  if (status == 0 && result.text.empty()) {
    return "what comes of it is no body: " + explainRefusedRequest(watch, status);
  }
  if (auto refusal = refusalOf(row, status, watch)) return refusal;
  if (result.text == before) {
    if (!input.failure.empty()) return input.failure;
    result.idle.push_back({requestName(calls, index), std::move(input.idle)});
  }
  if (!input.removed.empty()) result.removed.push_back({row.name, std::move(input.removed)});
  noteEffects(row, before, result);
  return std::nullopt;
}

/// Runs one request with its lines added to the trace.
std::optional<std::string> runTraced(cSdpNegotiator& object, std::span<const RequestCall> calls,
                                     std::size_t index, Rewritten& result) {
  const TraceLines trace;
  auto refusal = run(object, calls, index, result);
  result.trace.insert(result.trace.end(), trace.lines().begin(), trace.lines().end());
  return refusal;
}

/// Reads what a request left, as a reader of the body would.
/// @return why it cannot be read
std::optional<std::string> readAgain(const std::string& text, cSdpNegotiator& object) {
  const Inspection read = inspect(text, Detail::object);
  if (auto refusal = unreadableResult(read)) return refusal;
  object = *read.object;
  return std::nullopt;
}

}  // namespace

Rewritten rewrite(const cSdpNegotiator& body, std::span<const RequestCall> calls) {
  Rewritten result;
  cSdpNegotiator object = body;
  for (std::size_t i = 0; i < calls.size() && !result.refusal; ++i) {
    std::optional<std::string> why = runTraced(object, calls, i, result);
    if (!why) why = readAgain(result.text, object);
    if (why) result.refusal = requestName(calls, i) + " is refused: " + *why;
  }
  return result;
}

}  // namespace tool
