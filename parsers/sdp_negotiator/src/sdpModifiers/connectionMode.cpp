#include "sdpModifiers/connectionMode.h"

#include <cstdint>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// The directions of a session and of its media sections.

namespace sdpneg {

namespace {

/// The first eight characters, all that comparisons look at. Direction words all have eight, so that one is
/// changed for another in place.
std::string_view word(std::string_view text) { return text.substr(0, kDirectionLength); }

/// A direction that is asked for.
struct Wanted {
  /// @param requested its first eight characters count
  explicit Wanted(std::string_view requested) : name(requested) {
    line.add(kAttribute).add(word(requested)).add("\r\n");
  }

  std::string_view name;
  FixedText<16> line;  ///< one of its own
};

/// Whether nothing of a one-way direction is left under a request: for the other way or none.
bool stops(eConnectionMode oneWay, eConnectionMode requested) {
  if (requested == CONNECTION_MODE_INACTIVE) return true;
  return requested != oneWay &&
         (requested == CONNECTION_MODE_SENDONLY || requested == CONNECTION_MODE_RECVONLY);
}

/// Changes the direction word at `at` if the request asks for it.
bool changeMode(NotedText& text, std::size_t at, const Wanted& wanted) {
  const std::optional<std::string_view> mode =
      commonMode(text.view().substr(at, kDirectionLength), wanted.name, text.tracing());
  if (!mode) return false;
  text.replace({at, at + kDirectionLength}, *mode);
  return true;
}

/// The word of the first direction from `from` on.
std::size_t findMode(const NotedText& text, std::size_t from, std::size_t end) {
  const std::size_t line = text.notes().find(Noted::direction, from, end);
  return line != npos ? line + kAttribute.size() : npos;
}

/// The one section whose m-line begins at `mLine`.
void applyModeToSection(NotedText& text, std::size_t mLine, const Wanted& wanted) {
  const std::size_t end = sectionEnd(text, mLine);
  const std::size_t found = findMode(text, mLine, end);
  if (found != npos) {
    changeMode(text, found, wanted);
    return;
  }
  // A line that does not fit is left out.
  text.insert(end, wanted.line.view());
}

}  // namespace

std::optional<std::string_view> commonMode(std::string_view current, std::string_view requested,
                                           bool tracing) {
  if (tracing) trace::progress("Enter changeConnectionMode");
  current = word(current);
  requested = word(requested);
  const eConnectionMode direction = directionOf(current);
  const bool oneWay = direction == CONNECTION_MODE_SENDONLY || direction == CONNECTION_MODE_RECVONLY;
  if (direction != CONNECTION_MODE_SENDRECV && !(oneWay && stops(direction, directionOf(requested)))) {
    return std::nullopt;
  }
  const std::string_view result = oneWay ? nameOf(CONNECTION_MODE_INACTIVE) : requested;
  if (tracing) {
    trace::progress("currentMode is %s needs to change to %s, the new mediaMode is %s",
                    FixedText<10>().add(current).text(), FixedText<10>().add(requested).text(),
                    FixedText<10>().add(result).text());
  }
  return result;
}

namespace {

/// Applies a direction to each section of one medium, from the LF of a first m-line on.
void applyModeToMedia(NotedText& text, std::size_t from, std::string_view mediaName, const Wanted& wanted) {
  if (text.tracing()) {
    trace::progress("Entering setMediaConnectionMode(): request to set the mode to %s for all %s media",
                    FixedText<10>().add(wanted.name).text(), FixedText<64>().add(mediaName).text());
  }
  const auto apply = [&](std::size_t mLine) {
    applyModeToSection(text, mLine, wanted);
    return true;
  };
  forEachMLineOf(text, mediaName, apply, from);
}

/// The counts of the trace at the end of a request.
struct SessionLines {
  int modified = 0;
  int added = 0;
};

/// Changes the first session direction that the request changes; a send-only or inactive request that changes
/// none adds a line of its own, also beside one that stays.
/// @return false when there is no room for the line
bool applyModeToSession(NotedText& text, eConnectionMode mode, const Wanted& wanted, SessionLines& lines) {
  const std::size_t media = nextMLine(text.notes());
  for (std::size_t at = findMode(text, 0, media); at != npos; at = findMode(text, at, media)) {
    if (changeMode(text, at, wanted)) {
      lines.modified = 1;
      return true;
    }
  }
  if (mode == CONNECTION_MODE_RECVONLY) return true;
  lines.added = 1;
  return text.insert(media, wanted.line.view()) == Edit::done;
}

Refusal applyMode(NotedText& text, eConnectionMode mode, int mediaSelect) {
  const Wanted wanted(nameOf(mode));
  SessionLines lines;
  if (!applyModeToSession(text, mode, wanted, lines)) {
    return {.reason = SDP_REFUSED_NO_ROOM_FOR_MODE, .what = wanted.name};
  }
  if (mediaSelect != kVideoAlone) applyModeToMedia(text, 0, "audio", wanted);
  if (mediaSelect != kAudioAlone) applyModeToMedia(text, 0, "video", wanted);
  text.settle();
  if (text.tracing()) {
    trace::progress(
        "sdpReplaceMode(): Applied %s mode. Modified %i session-level lines and %i media-level lines. Added %i "
        "session-level lines and %i media-level lines.",
        wanted.name.data(), lines.modified, 0, lines.added, 0);
  }
  return {};
}

/// The same where nothing is traced, in one pass.
/// @return whether that could be done; otherwise nothing was
bool applyModeAtOnce(NotedText& text, eConnectionMode mode, int mediaSelect) {
  PlannedChanges changes;
  ModePlan plan(text.view(), static_cast<unsigned char>(mode), mediaSelect, changes);
  text.notes().eachOfAll([&](Noted what, std::size_t at) {
    if (what == Noted::mLine) plan.mLine(at);
    if (what == Noted::direction) plan.direction(at);
  });
  plan.end();
  return text.make(changes);
}

/// `sdpModifications::setMediaConnectionMode`.
/// @param from the offset of the first m-line's LF
Refusal setMediaMode(SdpText& text, std::uintptr_t from, const char* mediaName, const char* mode) {
  constexpr const char* kOperation = "setMediaConnectionMode";
  if (const Refusal refusal = refusalOfBuffer(text, kOperation)) return refusal;
  if (from > text.size() || mediaName == nullptr || mode == nullptr) {
    return {.reason = SDP_REFUSED_DIRECTION_ARGUMENTS};
  }
  if (const Refusal refusal = refusalOfLineTexts({mode}, kOperation)) return refusal;
  NotedText noted(text);
  applyModeToMedia(noted, from, mediaName, Wanted(mode));
  return {};
}

}  // namespace

Refusal replaceMode(NotedText& text, unsigned char mode, int mediaSelect) {
  const auto requested = static_cast<eConnectionMode>(mode);
  const std::string_view name = nameOf(requested);
  if (name.empty()) return {.reason = SDP_REFUSED_UNSUPPORTED_MODE, .number = mode};
  if (text.tracing()) trace::progress("Entering sdpReplaceMode(): request to set mode to %s", name.data());
  if (requested == CONNECTION_MODE_SENDRECV) {
    trace::progress("Not valid change to %s", name.data());
    return {};
  }
  if (const Refusal refusal = refusalOfBuffer(text.text(), "sdpReplaceMode")) return refusal;
  if (nextMLine(text.notes()) == npos) {
    trace::progress("sdpReplaceMode(): No media lines are present to the SDP message. Exiting.");
    return {};
  }
  if (!text.tracing() && text.isPlannable() && applyModeAtOnce(text, requested, mediaSelect)) return {};
  return applyMode(text, requested, mediaSelect);
}

ModePlan::ModePlan(std::string_view text, unsigned char mode, int mediaSelect, PlannedChanges& changes)
    : text_(text),
      mode_(nameOf(static_cast<eConnectionMode>(mode))),
      mediaSelect_(mediaSelect),
      changes_(changes) {
  line_.add(kAttribute).add(mode_).add("\r\n");
}

void ModePlan::direction(std::size_t line) {
  if (!wanted_ || has_) return;
  const std::size_t at = line + kAttribute.size();
  const auto mode = commonMode(text_.substr(at, kDirectionLength), mode_, false);
  // A session has one changed, a section its first one if at all.
  has_ = mode || !inSession_;
  if (mode) changes_.add({at, at + kDirectionLength}, *mode);
}

void ModePlan::mLine(std::size_t line) {
  endSection(line);
  const std::string_view media = text_.substr(line + kMLine.size());
  inSession_ = has_ = false;
  wanted_ = (mediaSelect_ != kVideoAlone && startsWith(media, "audio")) ||
            (mediaSelect_ != kAudioAlone && startsWith(media, "video"));
}

void ModePlan::endSection(std::size_t at) {
  const bool lacks = wanted_ && !has_ && !(inSession_ && mode_ == nameOf(CONNECTION_MODE_RECVONLY));
  if (lacks) changes_.add({at, at}, line_.view());
}

Refusal replaceMode(SdpText& text, unsigned char mode, int mediaSelect) {
  NotedText noted(text);
  return replaceMode(noted, mode, mediaSelect);
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpReplaceMode(char* sdp, unsigned char mode, int mediaSelect) {
  SdpText text(sdp);
  return statusOf(replaceMode(text, mode, mediaSelect));
}

unsigned short sdpModifications::changeConnectionMode(const char* currentMode, const char* requestedMode,
                                                      char* newMode) {
  // Only the words are looked at; what follows them may be a whole body.
  const auto bounded = [](const char* text) {
    return text != nullptr ? std::string_view(text, strnlen(text, kDirectionLength + 1)) : std::string_view();
  };
  const std::optional<std::string_view> mode =
      commonMode(bounded(currentMode), bounded(requestedMode), isTracing());
  if (!mode || requestedMode == nullptr || newMode == nullptr) return 0;
  FixedText<10> result;
  // The requested word is handed on with one character more when it has one.
  const bool handedOn = directionOf(word(bounded(currentMode))) == CONNECTION_MODE_SENDRECV;
  result.add(handedOn ? bounded(requestedMode) : *mode);
  std::memcpy(newMode, result.text(), result.size() + 1);
  return 1;
}

unsigned short sdpModifications::setMediaConnectionMode(char* sdp, const char* /*savedSdp*/, char* firstMLine,
                                                        const char* mediaName, const char* mode) {
  SdpText text(sdp);
  const std::uintptr_t from =
      reinterpret_cast<std::uintptr_t>(firstMLine) - reinterpret_cast<std::uintptr_t>(sdp);
  return statusOf(setMediaMode(text, from, mediaName, mode));
}
