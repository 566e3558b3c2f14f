#include <algorithm>
#include <optional>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/codecText.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "trace.h"

// The m-lines of a text as a set, compared with those of another.

namespace {

using namespace sdpneg;

constexpr std::size_t kCapacity = SDP_MEDIA_CAPACITY;

/// The number of m-lines; nothing when the codec refuses the text.
std::optional<int> mLineCount(const char* sdp, const char* operation) {
  std::optional<int> count;
  if (!adoptedView(sdp, operation)) return count;
  withDescription([&](sDescription& description) {
    const unsigned short status = decodeText(description, sdp);
    if (status == 0) count = sdp_getNoOfMDs(&description);
    return status;
  });
  return count;
}

void traceMedia(const char* verb, const mDescription& media) {
  trace::info("Media to %s [Type=%d,Port=%s,Transport=%s]", verb, static_cast<int>(media.mLine.mediaType),
              sdp_MgetPort(&media.mLine), sdp_MgetTransport(&media.mLine));
}

bool isSameMedium(const mDescription& a, const mDescription& b) {
  return a.mLine.mediaType == b.mLine.mediaType;
}

bool matches(const mDescription& a, const mDescription& b) {
  return isSameMedium(a, b) && transportOf(a) == transportOf(b);
}

/// How many times each media description is kept.
struct Keeping {
  std::size_t times[kCapacity] = {};
  std::size_t total = 0;
};

/// A media description is kept once for each one of the other body that it matches, up to the capacity.
Keeping chooseKept(const sDescription& of, const sDescription& other) {
  Keeping keeping;
  std::size_t* times = keeping.times;
  for (const mDescription& media : mediaOf(of)) {
    for (const mDescription& candidate : mediaOf(other)) {
      if (keeping.total == kCapacity || !matches(media, candidate)) continue;
      ++*times;
      ++keeping.total;
      traceMedia("Keep", media);
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

Presence presenceIn(const sDescription& description, const mDescription& wanted, bool matchTransport) {
  Presence presence = Presence::none;
  for (const mDescription& media : mediaOf(description)) {
    if (!isSameMedium(media, wanted)) continue;
    if (!matchTransport || matches(media, wanted)) return Presence::present;
    presence = Presence::otherTransport;
  }
  return presence;
}

/// Leaves the m-line alone, without the lines that follow it.
void stripToMLine(mDescription& media) {
  media.linePresence = 0;
  media.cLine.count = 0;
  media.bLine.count = 0;
  media.aLine.count = 0;
}

void addMedia(sDescription& description, const mDescription& media) {
  if (mediaOf(description).size() == kCapacity) return;
  trace::info("compareNumberOfMLines() method, adding new m-line.");
  sdp_copyMedia(&description.media[description.noOfMDs++], &media);
}

/// Adds the m-lines of the old body that the new one lacks, without their other lines.
void addMissing(sDescription& oldBody, sDescription& newBody, bool matchTransport) {
  const mDescription* missing[kCapacity];
  std::size_t count = 0;
  for (mDescription& media : mediaOf(oldBody)) {
    const Presence presence = presenceIn(newBody, media, matchTransport);
    if (presence == Presence::present) continue;
    stripToMLine(media);
    // Only the first digit: what a new transport replaces is to be no active medium.
    if (presence == Presence::otherTransport) media.mLine.port[0] = '0';
    traceMedia("Add", media);
    missing[count++] = &media;
  }
  for (const mDescription* media : std::span(missing).first(count)) addMedia(newBody, *media);
}

/// Whether a description holds all m-lines of its text whole; its other lines do not matter.
bool holdsMLines(const sDescription& description) {
  if (sdp_isComplete(&description)) return true;
  const auto media = mediaOf(description);
  return sdp_getNoOfMDs(&description) <= SDP_MEDIA_CAPACITY &&
         std::none_of(media.begin(), media.end(),
                      [](const mDescription& one) { return one.mLine.incomplete != 0; });
}

unsigned short refuse(const char* reason) {
  trace::error("correctMLines(): %s Exiting.", reason);
  return 1;
}

unsigned short correct(SdpText& text, sDescription& oldBody, sDescription& newBody, bool keepOnly,
                       bool matchTransport) {
  if (!holdsMLines(oldBody) || !sdp_isComplete(&newBody)) {
    return refuse("A description does not hold all lines of its SDP.");
  }
  if (keepOnly && matchTransport) {
    const Keeping keeping = chooseKept(newBody, oldBody);
    if (keeping.total < kCapacity) keepMedia(newBody, keeping);
  } else {
    addMissing(oldBody, newBody, matchTransport);
  }
  return replaceByEncoded(text, newBody, "correctMLines", "new SDP") ? 0 : 1;
}

}  // namespace

int sdpModifications::compareNumberOfMLines(char* oldSdp, const char* newSdp) {
  trace::progress("Entering compareNumberOfMLines() method.");
  const std::optional<int> before = mLineCount(oldSdp, "compareNumberOfMLines");
  const std::optional<int> after = before ? mLineCount(newSdp, "compareNumberOfMLines") : std::nullopt;
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
  trace::progress("Entering compareNumberOfMLines() method.");
  SdpText text(newSdp);
  if (!adopted(SdpText(oldSdp), "correctMLines") || !adopted(text, "correctMLines")) return 1;
  return withDescription([&](sDescription& oldBody) -> unsigned short {
    if (decodeText(oldBody, oldSdp) != 0) return 1;
    return withDescription([&](sDescription& newBody) -> unsigned short {
      if (decodeText(newBody, newSdp) != 0) return 1;
      return correct(text, oldBody, newBody, keepOnly, matchTransport);
    });
  });
}

bool sdpModifications::isSingleMLineSdp(char* sdp) { return mLineCount(sdp, "isSingleMLineSdp") == 1; }
