#include "requests/rewriting.h"

#include <algorithm>
#include <new>
#include <utility>

#include "inspection/bodyInput.h"
#include "inspection/refusal.h"
#include "sdpDocumentRequests.h"

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

/// A body on its way through requests: as a text, and as an object or a document that has read it.
class Rewriting {
 public:
  /// @param object that has read the body; without one, `text` is that
  Rewriting(std::optional<cSdpNegotiator> object, std::string_view text, std::size_t firstLine,
            std::span<const RequestCall> calls)
      : calls_(calls), firstLine_(firstLine), object_(std::move(object)), isInput_(!object_) {
    result_.text = object_ ? bodyText(*object_) : std::string(text);
  }

  Rewritten run() && {
    for (index_ = 0; index_ < calls_.size() && !result_.refusal; ++index_) {
      const std::string before = result_.text;
      result_.refusal = calls_[index_].row->isOfDocument() ? askDocument() : askObject();
      isInput_ = isInput_ && result_.text == before;
    }
    return std::move(result_);
  }

 private:
  std::string name() const { return requestName(calls_, index_); }
  Problem refused(const std::string& why) const { return {{}, name() + " is refused: " + why}; }

  std::optional<Problem> askDocument();
  Problem explain(const sdp::Refusal& refusal) const;
  std::optional<Problem> askObject();
  std::optional<Problem> readText();
  std::optional<std::string> runTraced();
  std::optional<std::string> run(cSdpNegotiator& object);
  void noteIdle(std::string why) { result_.idle.push_back({name(), std::move(why)}); }

  std::span<const RequestCall> calls_;
  std::size_t index_ = 0;
  std::size_t firstLine_;
  std::optional<cSdpNegotiator> object_;  ///< that has read the text
  sdp::Document document_;
  bool isDocument_ = false;  ///< the document has the text
  std::size_t readAt_ = 0;   ///< the request for which it was read
  bool readInput_ = false;   ///< what was read were lines of the input
  bool isInput_;             ///< the text is still that of the input
  Rewritten result_;
};

// --- the document layer ----------------------------------------------------------------------------------

std::optional<Problem> Rewriting::askDocument() {
  object_.reset();
  if (!isDocument_) {
    if (document_.read(result_.text)) throw std::bad_alloc();  // no input is too long
    isDocument_ = true;
    readAt_ = index_;
    readInput_ = isInput_;
  }
  const RequestCall& call = calls_[index_];
  std::vector<std::string_view> words{call.row->name};
  words.insert(words.end(), call.input.words.begin(), call.input.words.end());
  const sdp::Refusal refusal = sdp::perform(document_, words);
  if (refusal.reason == sdp::Reason::noMemory) throw std::bad_alloc();
  if (refusal) return explain(refusal);
  if (document_.text() == result_.text) noteIdle({});
  result_.text = document_.text();
  return std::nullopt;
}

/// What the document says, with its line, and behind it the request where there are several.
Problem Rewriting::explain(const sdp::Refusal& refusal) const {
  Problem problem{{}, std::string(document_.explanation())};
  std::string behind;
  if (calls_.size() > 1)
    behind = "request " + std::to_string(index_ + 1) + ", " + std::string(calls_[index_].row->name);
  if (refusal.line != 0 && readInput_) {
    problem.place = {firstLine_ + refusal.line - 1, 0};
  } else if (refusal.line != 0) {
    behind +=
        ", line " + std::to_string(refusal.line) + " of what request " + std::to_string(readAt_) + " left";
  }
  if (!behind.empty()) problem.reason += " (" + behind + ")";
  return problem;
}

// --- objects ---------------------------------------------------------------------------------------------

/// Reads the text into the object.
/// @return why that cannot be
std::optional<Problem> Rewriting::readText() {
  Inspection read = inspect(result_.text, Detail::object);
  result_.trace.insert(result_.trace.end(), read.trace.begin(), read.trace.end());
  if (!read.problem) {
    object_ = std::move(read.object);
    return std::nullopt;
  }
  if (!isInput_) return refused(*unreadableResult(read, "what comes to it"));
  Place place = read.problem->place;
  if (place.line != 0) place.line += firstLine_ - 1;
  return Problem{place, name() + " is refused: " + read.problem->reason};
}

std::optional<Problem> Rewriting::askObject() {
  isDocument_ = false;
  if (!object_) {
    if (auto problem = readText()) return problem;
  }
  if (const auto why = runTraced()) return refused(*why);
  // Read again, as a reader of the body would.
  const Inspection read = inspect(result_.text, Detail::object);
  if (const auto why = unreadableResult(read)) return refused(*why);
  object_ = read.object;
  return std::nullopt;
}

/// Runs the request with its lines added to the trace.
std::optional<std::string> Rewriting::runTraced() {
  const TraceLines trace;
  auto refusal = run(*object_);
  result_.trace.insert(result_.trace.end(), trace.lines().begin(), trace.lines().end());
  return refusal;
}

/// Runs the request and takes what comes of it.
std::optional<std::string> Rewriting::run(cSdpNegotiator& object) {
  if (auto obstacle = requestObstacle(object)) return obstacle;
  const RequestRow& row = *calls_[index_].row;
  const std::string before = bodyText(object);
  RequestInput input = calls_[index_].input;
  const RefusalWatch watch;
  const unsigned short status = row.run(object, input);
  if (!input.refusal.empty()) return input.refusal;
  result_.text = bodyText(object);
  if (status == 0 && result_.text.empty()) {
    return "what comes of it is no body: " + explainRefusedRequest(watch, status);
  }
  if (auto refusal = refusalOf(row, status, watch)) return refusal;
  if (result_.text == before) {
    if (!input.failure.empty()) return input.failure;
    noteIdle(std::move(input.idle));
  }
  if (!input.removed.empty()) result_.removed.push_back({row.name, std::move(input.removed)});
  for (std::string& what : sideEffects(before, result_.text, row.takes)) {
    result_.effects.push_back({row.name, std::move(what)});
  }
  return std::nullopt;
}

}  // namespace

Rewritten rewrite(const cSdpNegotiator& body, std::span<const RequestCall> calls) {
  return Rewriting(body, {}, 1, calls).run();
}

Rewritten rewrite(std::string_view text, std::size_t firstLine, std::span<const RequestCall> calls) {
  return Rewriting(std::nullopt, text, firstLine, calls).run();
}

}  // namespace tool
