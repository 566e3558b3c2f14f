#include "sdpModifiers/removedMLines.h"

#include <algorithm>
#include <cstring>

#include "sdpModifiers.h"
#include "text/sections.h"
#include "trace.h"

// Records of removed m-lines, and the dummy m-lines that take their places.

namespace sdpneg {

namespace {

/// In the order in which they are looked for on an m-line.
constexpr std::string_view kMedia[kAllRecordedMedia] = {"audio", "video", "application", "image"};

/// Codes per media kind.
constexpr std::size_t kRange = 25;

/// The position that a code stands for. It is the smallest one that any media kind gives the code, so that a code
/// above all ranges has a position too. Zero is none.
std::size_t positionOf(std::size_t code) {
  std::size_t position = code;
  for (std::size_t i = 1; i < kAllRecordedMedia && position > kRange; ++i) position -= kRange;
  return position;
}

/// Finds "m=" by its position. What it has passed it does not look at again, so text may be inserted where it
/// stands.
class Positions {
 public:
  explicit Positions(const SdpText& text) : text_(text) {}

  /// @return npos when the text has fewer, or for position 0
  std::size_t find(std::size_t position) {
    if (position == 0) return npos;
    if (position < position_) position_ = 0;
    if (position_ == 0) moveTo(1, nextMAnywhere(text_.view()));
    while (at_ != npos && position_ < position) {
      moveTo(position_ + 1, nextMAnywhereBehind(text_.view(), at_));
    }
    return at_;
  }

 private:
  void moveTo(std::size_t position, std::size_t at) {
    position_ = position;
    at_ = at;
  }

  const SdpText& text_;
  std::size_t position_ = 0;
  std::size_t at_ = 0;
};

/// The media kind of a code. Those above the largest, which are negative where characters are signed, are of audio.
std::string_view mediaOf(std::size_t code) {
  if (code == 0 || code > kLargestCode) return kMedia[0];
  return kMedia[std::min((code - 1) / kRange, kAllRecordedMedia - 1)];
}

/// @param at npos to append it
Edit addDummy(SdpText& text, std::size_t at, DummyMLine dummy) {
  const DummyMLineText line = textOf(dummy);
  if (at != npos) return text.insert(at, line.view());
  return text.append(FixedText<34>().add(missingLineEnd(text.view())).add(line.view()).view());
}

}  // namespace

std::optional<MediaSection> findSection(std::string_view text, std::size_t from) {
  // Where the last section ended, most often.
  const std::size_t at = startsWith(text.substr(from), kMLine) ? from : nextMAnywhere(text, from);
  if (at == npos) return std::nullopt;
  const Line mLine = lineAt(text, at);
  return MediaSection{mLine, sectionEndAnywhere(text, mLine.next())};
}

std::optional<std::size_t> removedCode(std::string_view mLine, std::size_t position, std::size_t mediaCount) {
  for (std::size_t i = 0; i < mediaCount && i < kAllRecordedMedia; ++i) {
    if (contains(mLine, kMedia[i])) return position + i * kRange;
  }
  return std::nullopt;
}

bool takesCode(std::size_t count, std::size_t code, std::size_t position, const char* operation) {
  if (count < kRecordCapacity && code <= kLargestCode) return true;
  trace::info("%s(): The removed m-line at position %d is not recorded. There are %d codes of at most %d.",
              operation, static_cast<int>(position), static_cast<int>(kRecordCapacity),
              static_cast<int>(kLargestCode));
  return false;
}

std::string_view codesOf(const char* record) {
  return record != nullptr ? std::string_view(record, strnlen(record, kRecordCapacity)) : std::string_view();
}

DummyMLineText textOf(DummyMLine dummy) {
  const std::string_view media = mediaOf(dummy.code);
  DummyMLineText line;
  line.add(kMLine).add(media).add(" 0 RTP/").add(dummy.secure ? "SAVP" : "AVP");
  line.add(media == "video" ? " 31\r\n" : " 0\r\n");
  return line;
}

Refusal putMLinesBack(SdpText& text, std::string_view codes, DummyMLine (*dummyOf)(unsigned char code),
                      const char* operation) {
  Positions positions(text);
  std::size_t at = 0;
  for (const char each : codes) {
    const DummyMLine dummy = dummyOf(static_cast<unsigned char>(each));
    if (at != npos) at = positions.find(positionOf(dummy.code));
    if (addDummy(text, at, dummy) == Edit::done) continue;
    return {.reason = SDP_REFUSED_NO_ROOM_FOR_M_LINE, .operation = operation};
  }
  return {};
}

}  // namespace sdpneg

using namespace sdpneg;

int sdpModifications::buildDummyMLine(char* out, char mediaCode, bool secure) {
  if (out == nullptr) return 0;
  const auto line = textOf({static_cast<unsigned char>(mediaCode), secure});
  out[line.view().copy(out, line.size())] = '\0';
  return static_cast<int>(line.size());
}
