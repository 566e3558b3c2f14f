#include "sdpModifiers/removedMLines.h"

#include <cstring>

#include "sdpModifiers.h"
#include "text/fixedText.h"
#include "trace.h"

using namespace sdpneg;

namespace sdpneg {

namespace {

/// In the order in which they are looked for on an m-line.
constexpr std::string_view kMedia[allRecordedMedia] = {"audio", "video", "application", "image"};

/// Codes per media kind.
constexpr std::size_t kRange = 25;

/// The position that a code stands for. It is the smallest one that any media kind gives the code, so that a code
/// above all ranges has a position too. Zero is none.
std::size_t positionOf(std::size_t code) {
  std::size_t position = code;
  for (std::size_t i = 1; i < allRecordedMedia && position > kRange; ++i) position -= kRange;
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
    if (position_ == 0) moveTo(1, 0);
    while (at_ != npos && position_ < position) moveTo(position_ + 1, at_ + 2);
    return at_;
  }

 private:
  void moveTo(std::size_t position, std::size_t from) {
    position_ = position;
    at_ = findAnywhere(text_.view(), "m=", from);
  }

  const SdpText& text_;
  std::size_t position_ = 0;
  std::size_t at_ = 0;
};

/// @param at npos to append it
Edit addDummy(SdpText& text, std::size_t at, DummyMLine dummy) {
  char line[32];
  const int length = sdpModifications::buildDummyMLine(line, static_cast<char>(dummy.code), dummy.secure);
  const std::string_view written(line, static_cast<std::size_t>(length));
  if (at != npos) return text.insert(at, written);
  return text.append(FixedText<34>().add(missingLineEnd(text.view())).add(written).view());
}

}  // namespace

std::optional<MediaSection> findSection(std::string_view text, std::size_t from) {
  const std::size_t at = findAnywhere(text, "m=", from);
  if (at == npos) return std::nullopt;
  const Line mLine = lineAt(text, at);
  return MediaSection{mLine, orEnd(findAnywhere(text, "m=", mLine.next()), text)};
}

std::optional<std::size_t> removedCode(std::string_view mLine, std::size_t position, std::size_t mediaCount) {
  for (std::size_t i = 0; i < mediaCount && i < allRecordedMedia; ++i) {
    if (contains(mLine, kMedia[i])) return position + i * kRange;
  }
  return std::nullopt;
}

bool takesCode(std::size_t count, std::size_t code, std::size_t position, const char* operation) {
  if (count < recordCapacity && code <= largestCode) return true;
  trace::info("%s(): The removed m-line at position %d is not recorded. There are %d codes of at most %d.",
              operation, static_cast<int>(position), static_cast<int>(recordCapacity),
              static_cast<int>(largestCode));
  return false;
}

std::string_view codesOf(const char* record) {
  return record != nullptr ? std::string_view(record, strnlen(record, recordCapacity)) : std::string_view();
}

void putMLinesBack(SdpText& text, std::string_view codes, DummyMLine (*dummyOf)(unsigned char code),
                   const char* operation) {
  Positions positions(text);
  std::size_t at = 0;
  for (const char each : codes) {
    const DummyMLine dummy = dummyOf(static_cast<unsigned char>(each));
    if (at != npos) at = positions.find(positionOf(dummy.code));
    if (addDummy(text, at, dummy) == Edit::done) continue;
    trace::error("%s(): The SDP buffer has no room for another m-line. Exiting.", operation);
    return;
  }
}

}  // namespace sdpneg
