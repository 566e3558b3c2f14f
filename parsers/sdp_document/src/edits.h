#ifndef SDP_DOCUMENT_EDITS_H
#define SDP_DOCUMENT_EDITS_H

// The few things that every edit is made of, and how a request keeps or takes back what it did.

#include <initializer_list>
#include <new>
#include <stdexcept>
#include <string_view>

#include "model.h"
#include "refusals.h"
#include "sdpDocumentRefusal.h"

namespace sdp::core {

inline constexpr std::size_t kLargestText = std::size_t{64} * 1024 * 1024;

/// Of lines of these kinds something is kept that was found in them.
inline constexpr Kinds kKept = kindsOf(Kind::group, Kind::mid, Kind::iceOptions);
/// Forgets what is kept of lines of such kinds.
void forgetKept(Model& model, bool ofSession, Kinds kinds);

using Pieces = std::initializer_list<std::string_view>;

/// Gives a line of a part another content. It keeps its end.
void replaceLine(Model& model, Part& part, Index line, Pieces content);
inline void removeLine(Model& model, Index line) {
  model.removed.push_back(line);
  Line& gone = model.lines[line];
  gone.gone = 1;
  model.length -= gone.whole().size();
  if (!has(kKept, gone.kind)) return;
  model.mostMids -= mostMidsOf(gone);
  forgetKept(model, isOfSession(model, line), one(gone.kind));
}
/// Takes away the lines of a part that are of one of the kinds.
void removeLines(Model& model, const Part& part, Kinds kinds);
/// Puts a line behind another, with the line end of that. It takes its place when the request is done, and a part gets at
/// most one by a request.
void addBehind(Model& model, Part& part, Index line, Pieces content);
/// Gives a line of a part another end.
void endLine(Model& model, Part& part, Index line, std::string_view end);

void setPort(Model& model, Part& section, Pieces port);
void setTransport(Model& model, Part& section, std::string_view transport);

/// Writes a line piece by piece where their number is not known.
class LineWriter {
 public:
  /// @param room what the content takes at most
  LineWriter(Model& model, Part& part, Index line, std::size_t room);
  LineWriter& add(std::string_view piece);
  std::string_view view() const { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }
  /// Puts it in the line's place.
  void finish();
  /// Puts it in the place of an m-line that differs in nothing but the formats, of which there are no more than before.
  /// @param formats where the first begins
  void finishFormats(std::size_t formats);
  /// Gives it up.
  void drop() { model_.arena.giveBack(room_); }

 private:
  std::size_t endLine();

  Model& model_;
  Part& part_;
  Index line_;
  std::size_t room_;
  char* begin_;
  char* end_;
};

// --- requests --------------------------------------------------------------------------------------------

void beginEdit(Model& model);
/// Keeps what the request did.
void keepEdits(Model& model);
void takeBackEdits(Model& model);
/// Forgets what was to be told when memory ran out.
void forgetHalfDone(Model& model);

/// Does a request as a whole or not at all.
/// @param request called without arguments; returns a Refusal, or none when it is done
template <typename Request>
Refusal perform(Model& model, Request request) noexcept {
  Refusal refusal;
  try {
    beginEdit(model);
    refusal = request();
    if (!refusal && model.length > kLargestText) {
      refusal.reason = Reason::textTooLong;
      explain(model, refusal);
    }
    if (!refusal) {
      keepEdits(model);
      return {};
    }
  } catch (const std::bad_alloc&) {
    refusal = {.reason = Reason::noMemory};
  } catch (const std::length_error&) {
    refusal = {.reason = Reason::noMemory};
  }
  takeBackEdits(model);
  if (refusal.reason == Reason::noMemory) forgetHalfDone(model);
  return refusal;
}

}  // namespace sdp::core

#endif
