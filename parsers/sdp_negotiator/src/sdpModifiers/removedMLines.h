#ifndef SDP_MODIFIERS_REMOVED_M_LINES_H
#define SDP_MODIFIERS_REMOVED_M_LINES_H

#include <cstddef>
#include <optional>
#include <string_view>

#include "refusal.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "text/sdpText.h"

// Records of removed m-lines: which ones went, so that dummy m-lines can be put in their places later. A record
// is a caller's array of at most 25 codes, each a character, ended by a zero when there are fewer. A code is the
// position of the m-line among all m-lines, from 1, plus 0 for audio, 25 for video, 50 for application and 75 for
// image. So a code has one meaning up to position 25, and beyond reads as one of the next media kind.

namespace sdpneg {

/// Codes that a record holds at most.
inline constexpr std::size_t kRecordCapacity = 25;

/// The largest code; the bit above says that the m-line was secure.
inline constexpr std::size_t kLargestCode = 127;

/// The media kinds that have codes: all, and those without image.
inline constexpr std::size_t kAllRecordedMedia = 4;
inline constexpr std::size_t kRecordedMediaWithoutImage = 3;

/// A media section as removals see it: it begins with "m=" wherever that stands and ends with the next one behind
/// the LF of its m-line.
struct MediaSection {
  Line mLine;
  std::size_t end;
};

/// The first media section at or behind an offset.
std::optional<MediaSection> findSection(std::string_view text, std::size_t from);

/// The code of a removed m-line, by the first of the media kinds' names that stands on it.
/// @param position   from 1
/// @param mediaCount how many media kinds have codes
/// @return nothing without such a name; it may be above the largest that a record takes
std::optional<std::size_t> removedCode(std::string_view mLine, std::size_t position, std::size_t mediaCount);

/// Whether a record of `count` codes takes another one. The reason why not is traced.
bool takesCode(std::size_t count, std::size_t code, std::size_t position, const char* operation);

/// The codes of a record, which may be null, without the zero that ends them.
std::string_view codesOf(const char* record);

/// A dummy m-line by the code whose position and media kind it has.
struct DummyMLine {
  unsigned char code;
  bool secure;
};

using DummyMLineText = FixedText<30>;

/// The text of a dummy m-line, see `sdpModifications::buildDummyMLine`.
DummyMLineText textOf(DummyMLine dummy);

/// Puts a dummy m-line in front of the m-line that stands at a code's position ("m=" wherever it stands), for each
/// code in the record's order. The first whose position the text does not have is appended, and so are all behind
/// it. The first that does not fit ends this.
/// @param codes     see `codesOf`
/// @param dummyOf   reads a code
/// @param operation named in the refusal
Refusal putMLinesBack(SdpText& text, std::string_view codes, DummyMLine (*dummyOf)(unsigned char code),
                      const char* operation);

}  // namespace sdpneg

#endif
