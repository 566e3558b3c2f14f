#include "sdpModifiers/mediaSet.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/codecText.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "trace.h"

// The m-lines of a text as a set, compared with those of another.

namespace sdpneg {

namespace {

constexpr std::size_t kCapacity = SDP_MEDIA_CAPACITY;

/// The number of a text's m-lines; nothing, with a refusal told, when the codec refuses the text.
/// @param text nothing when it could not be adopted
std::optional<int> mLineCount(std::optional<std::string_view> text) {
  if (!text) return std::nullopt;
  int count = 0;
  const Refusal refusal = withDescription([&](sDescription& description) {
    const Refusal ofText = decode(description, *text);
    count = sdp_getNoOfMDs(&description);
    return ofText;
  });
  return statusOf(refusal) == 0 ? std::optional(count) : std::nullopt;
}

/// The m-lines of a body.
struct MLines {
  m_line lines[kCapacity];
  std::size_t count = 0;
  bool held = false;  ///< whether these are all, and whole; the body's other lines do not matter

  std::span<m_line> all() { return std::span(lines).first(count); }
};

/// Whether a description holds all m-lines of its text whole.
bool holdsMLines(const sDescription& description) {
  if (sdp_isComplete(&description)) return true;
  const auto media = mediaOf(description);
  return sdp_getNoOfMDs(&description) <= SDP_MEDIA_CAPACITY &&
         std::none_of(media.begin(), media.end(),
                      [](const mDescription& one) { return one.mLine.incomplete != 0; });
}

/// Takes the m-lines of a text. Never inlined: its description would stand on the stack beside that of the other body.
/// @return the codec's refusal
[[gnu::noinline]] Refusal takeMLines(const SdpText& text, MLines& taken) {
  return withDescription([&](sDescription& description) -> Refusal {
    if (const Refusal refusal = decode(description, text.view())) return refusal;
    for (const mDescription& media : mediaOf(description)) taken.lines[taken.count++] = media.mLine;
    taken.held = holdsMLines(description);
    return {};
  });
}

void traceMedia(const char* verb, const m_line& line) {
  trace::info("Media to %s [Type=%d,Port=%s,Transport=%s]", verb, static_cast<int>(line.mediaType),
              sdp_MgetPort(&line), sdp_MgetTransport(&line));
}

bool isSameMedium(const m_line& a, const m_line& b) { return a.mediaType == b.mediaType; }

bool matches(const m_line& a, const m_line& b) {
  return isSameMedium(a, b) && viewOf(sdp_MgetTransport(&a)) == viewOf(sdp_MgetTransport(&b));
}

/// How many times each media description is kept.
struct Keeping {
  std::size_t times[kCapacity] = {};
  std::size_t total = 0;
};

/// A media description is kept once for each one of the other body that it matches, up to the capacity.
Keeping chooseKept(const sDescription& of, std::span<const m_line> other) {
  Keeping keeping;
  std::size_t* times = keeping.times;
  for (const mDescription& media : mediaOf(of)) {
    for (const m_line& candidate : other) {
      if (keeping.total == kCapacity || !matches(media.mLine, candidate)) continue;
      ++*times;
      ++keeping.total;
      traceMedia("Keep", media.mLine);
    }
    ++times;
  }
  return keeping;
}

/// Leaves the kept media descriptions, each as many times as it is kept, in their order.
void keepMedia(sDescription& description, Keeping keeping) {
  mDescription* const media = description.media;
  std::size_t distinct = 0;
  for (std::size_t i = 0; i < mediaOf(description).size(); ++i) {
    if (keeping.times[i] == 0) continue;
    sdp_copyMedia(&media[distinct], &media[i]);
    keeping.times[distinct++] = keeping.times[i];
  }
  // From the last one on, each lies at or in front of its own copies.
  std::size_t to = keeping.total;
  while (distinct-- > 0) {
    for (std::size_t copies = keeping.times[distinct]; copies > 0; --copies) {
      sdp_copyMedia(&media[--to], &media[distinct]);
    }
  }
  description.noOfMDs = static_cast<int>(keeping.total);
}

/// How the m-lines of a body answer to one of another body.
enum class Presence { none, otherTransport, present };

Presence presenceIn(const sDescription& description, const m_line& wanted, bool matchTransport) {
  Presence presence = Presence::none;
  for (const mDescription& media : mediaOf(description)) {
    if (!isSameMedium(media.mLine, wanted)) continue;
    if (!matchTransport || matches(media.mLine, wanted)) return Presence::present;
    presence = Presence::otherTransport;
  }
  return presence;
}

/// Adds an m-line without the lines that follow one.
void addMLine(sDescription& description, const m_line& line) {
  if (mediaOf(description).size() == kCapacity) return;
  trace::info("compareNumberOfMLines() method, adding new m-line.");
  mDescription& media = description.media[description.noOfMDs++];
  media.mLine = line;
  media.linePresence = 0;
  media.cLine.count = 0;
  media.bLine.count = 0;
  media.bLine.incomplete = 0;
  media.aLine.count = 0;
}

/// Adds the m-lines of the old body that the new one lacks.
void addMissing(std::span<m_line> oldLines, sDescription& newBody, bool matchTransport) {
  const m_line* missing[kCapacity];
  std::size_t count = 0;
  for (m_line& line : oldLines) {
    const Presence presence = presenceIn(newBody, line, matchTransport);
    if (presence == Presence::present) continue;
    // Only the first digit: what a new transport replaces is to be no active medium.
    if (presence == Presence::otherTransport) line.port[0] = '0';
    traceMedia("Add", line);
    missing[count++] = &line;
  }
  for (const m_line* line : std::span(missing).first(count)) addMLine(newBody, *line);
}

Refusal correct(SdpText& text, MLines& oldLines, sDescription& newBody, bool keepOnly, bool matchTransport) {
  if (!oldLines.held || !sdp_isComplete(&newBody)) return {.reason = SDP_REFUSED_M_LINES_NOT_HELD};
  if (keepOnly && matchTransport) {
    const Keeping keeping = chooseKept(newBody, oldLines.all());
    if (keeping.total < kCapacity) keepMedia(newBody, keeping);
  } else {
    addMissing(oldLines.all(), newBody, matchTransport);
  }
  return replaceByEncoded(text, newBody, "correctMLines", "new SDP");
}

}  // namespace

bool hasSingleMLine(const SdpText& text) { return mLineCount(text.view()) == 1; }

Refusal correctMLines(const SdpText& oldText, SdpText& newText, bool keepOnly, bool matchTransport) {
  constexpr const char* kOperation = "correctMLines";
  // The entry is traced under the name of the other operation, and readers of traces know it so.
  trace::progress("Entering compareNumberOfMLines() method.");
  if (const Refusal refusal = refusalOfBuffer(oldText, kOperation)) return refusal;
  if (const Refusal refusal = refusalOfBuffer(newText, kOperation)) return refusal;
  MLines oldLines;
  if (const Refusal refusal = takeMLines(oldText, oldLines)) return refusal;
  return withDescription([&](sDescription& newBody) -> Refusal {
    if (const Refusal refusal = decode(newBody, newText.view())) return refusal;
    return correct(newText, oldLines, newBody, keepOnly, matchTransport);
  });
}

}  // namespace sdpneg

using namespace sdpneg;

int sdpModifications::compareNumberOfMLines(char* oldSdp, const char* newSdp) {
  constexpr const char* kOperation = "compareNumberOfMLines";
  trace::progress("Entering compareNumberOfMLines() method.");
  const std::optional<int> before = mLineCount(adoptedView(oldSdp, kOperation));
  const std::optional<int> after = before ? mLineCount(adoptedView(newSdp, kOperation)) : std::nullopt;
  if (!after) return -2;
  if (*before > *after) {
    trace::progress("Old SDP has more m-lines from the new SDP.");
    return -1;
  }
  if (*before < *after) {
    trace::progress("Old SDP has less m-lines than the new SDP.");
    return 1;
  }
  trace::progress("Old SDP has the same number of m-lines with the new SDP.");
  return 0;
}

unsigned short sdpModifications::correctMLines(char* oldSdp, char* newSdp, bool keepOnly,
                                               bool matchTransport) {
  SdpText text(newSdp);
  return statusOf(sdpneg::correctMLines(SdpText(oldSdp), text, keepOnly, matchTransport));
}

bool sdpModifications::isSingleMLineSdp(char* sdp) {
  return mLineCount(adoptedView(sdp, "isSingleMLineSdp")) == 1;
}
