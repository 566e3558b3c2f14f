#ifndef SDP_DOCUMENT_FORMAT_TABLE_H
#define SDP_DOCUMENT_FORMAT_TABLE_H

// The formats of one RTP section, with what its attributes say of each, read in one pass.

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "lines.h"
#include "textSlots.h"

namespace sdp::core {

struct Model;
struct Part;

/// What a format is for. The first three serve others and have rules of their own in a choice of codecs.
enum class Role : std::uint8_t { codec, rtx, red, comfortNoise, telephoneEvent, otherCompanion };

/// An encoding, as `NAME/CLOCK/CHANNELS` tells it. Numbers beyond the type are told as its largest.
struct EncodingParts {
  std::string_view name;
  std::uint32_t clock = 0;
  std::uint32_t channels = 1;
};

/// A payload type of the m-line, however often it stands there.
struct FormatEntry {
  std::string_view payload;
  std::string_view name;  ///< of the encoding; empty when that is unknown
  std::uint32_t clock = 0;
  std::uint32_t channels = 1;
  Index firstLine = kNone;  ///< that speaks of it, but for feedback; `next` leads on to the others
  Index lastLine = kNone;
  Index feedback = kNone;  ///< its first rtcp-fb line, from which `next` leads on to the others
  Index lastFeedback = kNone;
  // What was asked of it once is kept: a format may stand in the m-line again and again.
  std::optional<Index> fmtp;            ///< its first fmtp line, or kNone
  std::optional<std::string_view> apt;  ///< the payload type that its fmtp names; empty without one
  Index waiting = kNone;                ///< for a choice of codecs: who waits for it
  std::uint32_t waitsFor = 0;           ///< for a choice of codecs: how many it waits for
  std::uint16_t shortIndex = 0;         ///< its place among the short payload types
  Role role = Role::codec;
  Index place = 0;        ///< for an order of codecs: in the list
  bool isListed = false;  ///< for a choice of codecs: the list names it
  bool chosen = false;
};

/// A format where it stands in the m-line.
struct Occurrence {
  std::string_view separator;  ///< the blanks in front of it
  std::string_view format;
  Index entry;
};

/// Someone who waits, and the next who waits for the same.
struct Waiting {
  Index entry;
  Index next;
};

class FormatTable {
 public:
  void reserve(std::size_t formats);
  /// How many formats it holds without an allocation.
  std::size_t room() const { return occurrences.capacity(); }
  void forget() { part_ = kNone; }
  /// Reads a readable section, unless it is the one that was read last.
  void read(const Model& model, const Part& section);

  /// The entry of a payload type; kNone when the m-line has no such.
  Index find(std::string_view payload);

  std::vector<FormatEntry> entries;
  std::vector<Occurrence> occurrences;
  std::vector<Waiting> waiting;
  std::vector<Index> news;
  Index feedbackOfAll = kNone;  ///< the first `a=rtcp-fb:*` line, from which `next` leads on

 private:
  /// Payload types as they nearly always are, up to three digits, have places of their own.
  static constexpr std::uint16_t kShortTexts = 10 + 100 + 1000;
  struct Payload {
    std::string_view text;
    std::uint16_t shortIndex;  ///< kShortTexts for other texts
  };
  static constexpr std::size_t kShortDigits = 3;
  /// Takes the first field of a text, behind which kReadAhead characters are readable.
  static Payload takePayload(std::string_view& text);
  static Payload takeShortPayload(std::string_view& text);

  void readFormats(const Part& section);
  Index& slotOf(const Payload& payload);
  Index find(const Payload& payload);
  void readLine(const Model& model, Index line, Index& lastOfAll);
  static void give(FormatEntry& entry, const std::optional<EncodingParts>& encoding);

  Index part_ = kNone;  ///< the section that was read
  std::array<Index, kShortTexts> short_ = noEntries();
  TextSlots slots_;
  bool usesSlots_ = false;

  static constexpr std::array<Index, kShortTexts> noEntries() {
    std::array<Index, kShortTexts> none{};
    none.fill(kNone);
    return none;
  }
};

/// The first fmtp line of a format; kNone without one.
Index fmtpOf(const Model& model, FormatEntry& entry);
/// What stands behind the payload type in a line that speaks of a format.
std::string_view behindPayload(const Line& line);
/// The payload type that `apt` of a format's fmtp names (RFC 4588, section 8.1); empty without one.
std::string_view aptOf(const Model& model, FormatEntry& entry);

/// The number of formats that a text of an m-line has.
std::size_t formatCount(std::string_view formats);

/// The encoding that the first field of a text is: `NAME/CLOCK` or `NAME/CLOCK/CHANNELS`; nothing for others.
std::optional<EncodingParts> readEncodingText(std::string_view text);

/// What RFC 3551 gives a payload type.
std::optional<EncodingParts> staticEncodingOf(std::string_view payload);

Role roleOf(std::string_view encodingName);

}  // namespace sdp::core

#endif
