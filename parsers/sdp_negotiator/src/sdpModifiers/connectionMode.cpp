#include "sdpModifiers/connectionMode.h"

#include <cstdint>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "trace.h"
#include "vocabulary.h"

namespace sdpneg {

namespace {

constexpr std::string_view kSendOnly = "sendonly";
constexpr std::string_view kRecvOnly = "recvonly";
constexpr std::string_view kSendRecv = "sendrecv";
constexpr std::string_view kInactive = "inactive";

/// The first eight characters, all that comparisons look at. Direction words all have eight, so that one is
/// changed for another in place.
std::string_view word(std::string_view text) { return text.substr(0, kDirectionLength); }

/// Changes the direction word at `at` if the request asks for it.
bool changeMode(SdpText& text, std::size_t at, std::string_view requested) {
  const std::optional<std::string_view> mode = commonMode(text.view().substr(at), requested);
  if (!mode) return false;
  text.replace({at, at + kDirectionLength}, *mode);
  return true;
}

/// The direction word of the first a-line from `from` on.
std::size_t findMode(std::string_view text, std::size_t from) {
  for (std::size_t line = findLine(text, "a=", from); line != npos; line = findLine(text, "a=", line)) {
    if (startsWithDirection(text.substr(line + 2))) return line + 2;
  }
  return npos;
}

/// The start of the first m-line of a medium whose LF in front stands at or behind `from`.
std::size_t findMedia(std::string_view text, std::string_view mediaName, std::size_t from) {
  for (std::size_t line = findLine(text, "m=", from); line != npos; line = findLine(text, "m=", line)) {
    if (startsWith(text.substr(line + 2), mediaName)) return line;
  }
  return npos;
}

/// The one section whose m-line begins at `mLine`.
void applyModeToSection(SdpText& text, std::size_t mLine, std::string_view mode) {
  const std::size_t next = findLine(text.view(), "m=", mLine);
  const std::size_t end = orEnd(next, text.view());
  const std::size_t found = findMode(text.view().substr(0, end), mLine);
  if (found != npos) {
    changeMode(text, found, mode);
    return;
  }
  // A line that does not fit is left out.
  text.insert(end, FixedText<16>().add("a=").add(word(mode)).add("\r\n").view());
}

}  // namespace

std::optional<std::string_view> commonMode(std::string_view current, std::string_view requested) {
  trace::progress("Enter changeConnectionMode");
  current = word(current);
  requested = word(requested);
  std::string_view result;
  if (current == kSendRecv) {
    result = requested;
  } else if ((current == kSendOnly && (requested == kRecvOnly || requested == kInactive)) ||
             (current == kRecvOnly && (requested == kSendOnly || requested == kInactive))) {
    result = kInactive;
  } else {
    return std::nullopt;
  }
  trace::progress("currentMode is %s needs to change to %s, the new mediaMode is %s",
                  FixedText<10>().add(current).text(), FixedText<10>().add(requested).text(),
                  FixedText<10>().add(result).text());
  return result;
}

void applyModeToMedia(SdpText& text, std::size_t from, std::string_view mediaName, std::string_view mode) {
  trace::progress("Entering setMediaConnectionMode(): request to set the mode to %s for all %s media",
                  FixedText<10>().add(mode).text(), FixedText<64>().add(mediaName).text());
  for (std::size_t mLine = findMedia(text.view(), mediaName, from); mLine != npos;
       mLine = findMedia(text.view(), mediaName, mLine)) {
    applyModeToSection(text, mLine, mode);
  }
}

namespace {

/// The counts of the trace at the end of a request.
struct SessionLines {
  int modified = 0;
  int added = 0;
};

/// Changes the first session direction that the request changes; a send-only or inactive request that changes
/// none adds a line of its own, also beside one that stays.
bool applyModeToSession(SdpText& text, std::string_view mode, SessionLines& lines) {
  const std::size_t media = findLine(text.view(), "m=");
  for (std::size_t at = findMode(text.view().substr(0, media), 0); at != npos;
       at = findMode(text.view().substr(0, media), at)) {
    if (changeMode(text, at, mode)) {
      lines.modified = 1;
      return true;
    }
  }
  if (mode == kRecvOnly) return true;
  lines.added = 1;
  return text.insert(media, FixedText<16>().add("a=").add(mode).add("\r\n").view()) == Edit::done;
}

unsigned short applyMode(SdpText& text, std::string_view mode, int mediaSelect) {
  const FixedText<10> shown = FixedText<10>().add(mode);
  SessionLines lines;
  if (!applyModeToSession(text, mode, lines)) {
    trace::progress("sdpReplaceMode(): Not enough room to add a=%s line at the session level. Exiting.",
                    shown.text());
    return 1;
  }
  const std::size_t firstMLine = findLine(text.view(), "m=") - 1;
  if (mediaSelect != 2) applyModeToMedia(text, firstMLine, "audio", mode);
  if (mediaSelect != 1) applyModeToMedia(text, firstMLine, "video", mode);
  trace::progress(
      "sdpReplaceMode(): Applied %s mode. Modified %i session-level lines and %i "
      "media-level lines. Added %i session-level lines and %i media-level lines.",
      shown.text(), lines.modified, 0, lines.added, 0);
  return 0;
}

std::string_view modeWord(unsigned char mode) {
  switch (mode) {
    case CONNECTION_MODE_SENDONLY:
      return kSendOnly;
    case CONNECTION_MODE_RECVONLY:
      return kRecvOnly;
    case CONNECTION_MODE_SENDRECV:
      return kSendRecv;
    case CONNECTION_MODE_INACTIVE:
      return kInactive;
    default:
      return {};
  }
}

}  // namespace

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpReplaceMode(char* sdp, unsigned char mode, int mediaSelect) {
  const std::string_view requested = modeWord(mode);
  if (requested.empty()) {
    trace::error("sdpReplaceMode(): Unsupported mode (%d) found. Exiting.", mode);
    return 1;
  }
  const FixedText<10> shown = FixedText<10>().add(requested);
  trace::progress("Entering sdpReplaceMode(): request to set mode to %s", shown.text());
  if (requested == kSendRecv) {
    trace::progress("Not valid change to %s", shown.text());
    return 0;
  }
  SdpText text(sdp);
  if (!adopted(text, "sdpReplaceMode")) return 1;
  if (findLine(text.view(), "m=") == npos) {
    trace::progress("sdpReplaceMode(): No media lines are present to the SDP message. Exiting.");
    return 0;
  }
  return applyMode(text, requested, mediaSelect);
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
  result.add(word(bounded(currentMode)) == kSendRecv ? bounded(requestedMode) : *mode);
  std::memcpy(newMode, result.text(), result.size() + 1);
  return 1;
}

unsigned short sdpModifications::setMediaConnectionMode(char* sdp, const char* /*savedSdp*/, char* firstMLine,
                                                        const char* mediaName, const char* mode) {
  SdpText text(sdp);
  if (!adopted(text, "setMediaConnectionMode")) return 1;
  const std::uintptr_t from =
      reinterpret_cast<std::uintptr_t>(firstMLine) - reinterpret_cast<std::uintptr_t>(sdp);
  if (firstMLine == nullptr || from > text.size() || mediaName == nullptr || mode == nullptr) return 1;
  if (!areLineTexts({mode}, "setMediaConnectionMode")) return 1;
  applyModeToMedia(text, from, mediaName, mode);
  return 0;
}
