#ifndef SDP_DOCUMENT_FORMAT_TABLE_H
#define SDP_DOCUMENT_FORMAT_TABLE_H

// The formats of one RTP section, with what its attributes say of each, read in one pass.

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
  std::string_view apt;   ///< the payload type that a format of its fmtp is for; empty without one
  std::uint32_t clock = 0;
  std::uint32_t channels = 1;
  Index fmtp = kNone;      ///< its first fmtp line
  Index feedback = kNone;  ///< its first rtcp-fb line, from which `next` leads on
  Index lastFeedback = kNone;
  Index waiting = kNone;       ///< for a choice of codecs: who waits for it
  std::uint32_t waitsFor = 0;  ///< for a choice of codecs: how many it waits for
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
  void forget() { part_ = kNone; }
  /// Reads a readable section, unless it is the one that was read last.
  void read(const Model& model, const Part& section);

  /// The entry of a payload type; kNone when the m-line has no such.
  Index find(std::string_view payload);

  std::vector<FormatEntry> entries;
  std::vector<Occurrence> occurrences;
  std::vector<Waiting> waiting;
  std::vector<Index> news;
  Index feedbackOfAll = kNone;  ///< the first `a=rtcp-fb:*` line

 private:
  void readFormats(const Part& section);
  static void give(FormatEntry& entry, const std::optional<EncodingParts>& encoding);
  void readEncoding(const Line& line);
  void readFmtp(const Line& line, Index index);
  void readFeedback(const Model& model, Index index, Index& lastOfAll);

  Index part_ = kNone;  ///< the section that was read
  TextSlots slots_;
};

/// The number of formats that a text of an m-line has.
std::size_t formatCount(std::string_view formats);

/// `NAME/CLOCK` or `NAME/CLOCK/CHANNELS`; nothing for any other text.
std::optional<EncodingParts> readEncodingText(std::string_view text);

/// What RFC 3551 gives a payload type.
std::optional<EncodingParts> staticEncodingOf(std::string_view payload);

Role roleOf(std::string_view encodingName);

}  // namespace sdp::core

#endif
