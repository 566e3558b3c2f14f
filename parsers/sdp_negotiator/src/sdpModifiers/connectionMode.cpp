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

/// A line of its own for a direction of at most eight characters.
FixedText<16> directionLine(std::string_view direction) {
  return FixedText<16>().add(kAttribute).add(direction).add("\r\n");
}

/// Whether nothing of a one-way direction is left under a request: for the other way or none.
bool stops(eConnectionMode oneWay, eConnectionMode requested) {
  if (requested == CONNECTION_MODE_INACTIVE) return true;
  return requested != oneWay &&
         (requested == CONNECTION_MODE_SENDONLY || requested == CONNECTION_MODE_RECVONLY);
}

/// The direction word of the first a-line from `from` on.
std::size_t findMode(std::string_view text, std::size_t from) {
  for (std::size_t line = findLine(text, kAttribute, from); line != npos;
       line = findLine(text, kAttribute, line)) {
    const std::size_t name = line + kAttribute.size();
    if (startsWithDirection(text.substr(name))) return name;
  }
  return npos;
}

}  // namespace

std::optional<std::string_view> commonMode(std::string_view current, std::string_view requested) {
  trace::progress("Enter changeConnectionMode");
  current = word(current);
  requested = word(requested);
  const eConnectionMode direction = directionOf(current);
  const bool oneWay = direction == CONNECTION_MODE_SENDONLY || direction == CONNECTION_MODE_RECVONLY;
  if (direction != CONNECTION_MODE_SENDRECV && !(oneWay && stops(direction, directionOf(requested)))) {
    return std::nullopt;
  }
  const std::string_view result = oneWay ? nameOf(CONNECTION_MODE_INACTIVE) : requested;
  trace::progress("currentMode is %s needs to change to %s, the new mediaMode is %s",
                  FixedText<10>().add(current).text(), FixedText<10>().add(requested).text(),
                  FixedText<10>().add(result).text());
  return result;
}

namespace {

/// The change of the direction word at `at`, if the request asks for it.
std::optional<Change> modeChange(std::string_view text, std::size_t at, std::string_view requested) {
  const std::optional<std::string_view> mode = commonMode(text.substr(at), requested);
  return mode ? std::optional(Change{{at, at + kDirectionLength}, *mode}) : std::nullopt;
}

/// What becomes of the section whose m-line begins at `mLine`.
/// @param line stands at the end of one that has no direction
std::optional<Change> modeOfSection(std::string_view text, std::size_t mLine, std::string_view mode,
                                    std::string_view line) {
  const std::size_t end = sectionEnd(text, mLine);
  const std::size_t found = findMode(text.substr(0, end), mLine);
  return found != npos ? modeChange(text, found, mode) : Change{{end, end}, line};
}

}  // namespace

void applyModeToMedia(SdpText& text, std::size_t from, std::string_view mediaName, std::string_view mode) {
  trace::progress("Entering setMediaConnectionMode(): request to set the mode to %s for all %s media",
                  FixedText<10>().add(mode).text(), FixedText<64>().add(mediaName).text());
  std::size_t at = from;
  const FixedText<16> line = directionLine(word(mode));
  text.changeEach(
      [&](std::string_view view, std::size_t /*from*/, std::size_t room) -> std::optional<Change> {
        for (at = nextMLineOf(view, mediaName, at); at != npos; at = nextMLineOf(view, mediaName, at)) {
          const std::optional<Change> change = modeOfSection(view, at, mode, line.view());
          // A line that does not fit is left out.
          if (change && takes(*change) <= room) return change;
        }
        return std::nullopt;
      });
}

namespace {

/// The counts of the trace at the end of a request.
struct SessionLines {
  int modified = 0;
  int added = 0;
};

/// Changes the first session direction that the request changes; a send-only or inactive request that changes
/// none adds a line of its own, also beside one that stays.
/// @return false when there is no room for the line
bool applyModeToSession(SdpText& text, eConnectionMode mode, SessionLines& lines) {
  const std::string_view name = nameOf(mode);
  const std::size_t media = nextMLine(text.view());
  for (std::size_t at = findMode(text.view().substr(0, media), 0); at != npos;
       at = findMode(text.view().substr(0, media), at)) {
    if (const auto change = modeChange(text.view(), at, name)) {
      text.replace(change->span, change->inserted);
      lines.modified = 1;
      return true;
    }
  }
  if (mode == CONNECTION_MODE_RECVONLY) return true;
  lines.added = 1;
  return text.insert(media, directionLine(name).view()) == Edit::done;
}

Refusal applyMode(SdpText& text, eConnectionMode mode, int mediaSelect) {
  const std::string_view name = nameOf(mode);
  SessionLines lines;
  if (!applyModeToSession(text, mode, lines)) return {.reason = SDP_REFUSED_NO_ROOM_FOR_MODE, .what = name};
  const std::size_t firstMLine = nextMLine(text.view()) - 1;
  if (mediaSelect != kVideoAlone) applyModeToMedia(text, firstMLine, "audio", name);
  if (mediaSelect != kAudioAlone) applyModeToMedia(text, firstMLine, "video", name);
  trace::progress(
      "sdpReplaceMode(): Applied %s mode. Modified %i session-level lines and %i media-level lines. Added %i "
      "session-level lines and %i media-level lines.",
      name.data(), lines.modified, 0, lines.added, 0);
  return {};
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
  applyModeToMedia(text, from, mediaName, mode);
  return {};
}

}  // namespace

Refusal replaceMode(SdpText& text, unsigned char mode, int mediaSelect) {
  const auto requested = static_cast<eConnectionMode>(mode);
  const std::string_view name = nameOf(requested);
  if (name.empty()) return {.reason = SDP_REFUSED_UNSUPPORTED_MODE, .number = mode};
  trace::progress("Entering sdpReplaceMode(): request to set mode to %s", name.data());
  if (requested == CONNECTION_MODE_SENDRECV) {
    trace::progress("Not valid change to %s", name.data());
    return {};
  }
  if (const Refusal refusal = refusalOfBuffer(text, "sdpReplaceMode")) return refusal;
  if (nextMLine(text.view()) == npos) {
    trace::progress("sdpReplaceMode(): No media lines are present to the SDP message. Exiting.");
    return {};
  }
  return applyMode(text, requested, mediaSelect);
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
  const std::optional<std::string_view> mode = commonMode(bounded(currentMode), bounded(requestedMode));
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
