#ifndef SDP_DOCUMENT_FORMAT_TABLE_H
#define SDP_DOCUMENT_FORMAT_TABLE_H

// The formats of RTP sections, with what their attributes say of each. A section is read when it is asked for, in one
// pass, and stays until the document changes.

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "encodings.h"
#include "lines.h"
#include "payloads.h"
#include "textSlots.h"

namespace sdp::core {

struct Model;
struct Part;

/// A payload type of the m-line, however often it stands there.
struct FormatEntry {
  std::string_view payload;
  EncodingParts encoding;      ///< without a name when it is unknown
  Index firstLine = kNone;     ///< that speaks of it, but for feedback; `next` leads on to the others
  Index feedback = kNone;      ///< its first rtcp-fb line, from which `next` leads on to the others
  Index fmtp = kNone;          ///< its first fmtp line
  Index waiting = kNone;       ///< for a choice of codecs: who waits for it
  std::string_view apt;        ///< what aptOf found
  std::uint32_t waitsFor = 0;  ///< for a choice of codecs: how many it waits for
  Index place = 0;             ///< for an order of codecs: in the list
  std::uint16_t number = kOtherPayload;  ///< of the payload type
  Role role = Role::codec;
  bool knowsApt = false;  ///< a format may stand in the m-line again and again, but is searched once
  bool isListed = false;  ///< for a choice of codecs: the list names it
  bool chosen = false;
};

/// A format where it stands in the m-line.
struct Occurrence {
  const char* begin;  ///< of the blanks in front of it
  Index separatorLength;
  Index formatLength;
  Index entry;

  std::string_view separator() const { return {begin, separatorLength}; }
  std::string_view format() const { return {begin + separatorLength, formatLength}; }
  const char* end() const { return begin + separatorLength + formatLength; }
};

/// Someone who waits, and the next who waits for the same.
struct Waiting {
  Index entry;
  Index next;
};

class FormatTable {
 public:
  void reserve(std::size_t formats, std::size_t sections);
  /// How many formats of how many sections it holds without an allocation.
  bool hasRoomFor(std::size_t formats, std::size_t sections) const {
    return formats <= allOccurrences_.size() && sections < places_.size();
  }
  /// Forgets all sections.
  void forget() {
    sections_.clear();
    current_ = kNone;
  }
  /// Makes a readable section the one that the table is about, and reads it unless that was done.
  void read(const Model& model, const Part& section);

  /// The entry of a payload type; kNone when the m-line has no such.
  /// @param payload eight characters must be readable there, whatever its length
  Index find(std::string_view payload);

  std::span<FormatEntry> entries;
  std::span<const Occurrence> occurrences;
  Index feedbackOfAll = kNone;  ///< the first `a=rtcp-fb:*` line, from which `next` leads on
  std::vector<Waiting> waiting;
  std::vector<Index> news;

 private:
  /// A section that was read, and where its share of all entries begins.
  struct Section {
    Index part;
    std::size_t firstEntry;
    std::size_t firstOccurrence;
    std::size_t entryCount = 0;
    std::size_t occurrenceCount = 0;
    Index feedbackOfAll = kNone;
    bool hasOthers = false;  ///< payload types that are no short numbers
  };

  void use(const Section& section);
  void readFormats(const Part& section);
  void readLines(const Model& model, const Part& section);
  Index entryOrNew(std::uint16_t number, std::string_view payload);
  /// The entry of a payload type that is not kOtherPayload.
  Index entryOf(std::uint16_t number) const {
    const Place& place = short_[number];
    return place.stamp == stamp_ ? place.entry : kNone;
  }
  Index entryOf(std::uint16_t number, std::string_view payload) {
    if (number != kOtherPayload) return entryOf(number);
    return hasOthers_ ? slotOf(number, payload) : kNone;
  }
  FormatEntry* entryAt(Index entry);
  Index& slotOf(std::uint16_t number, std::string_view payload);
  void beginFinding();
  void findEntries();

  std::vector<FormatEntry> allEntries_;     ///< of which entryCount_ are in use
  std::vector<Occurrence> allOccurrences_;  ///< of which occurrenceCount_ are in use
  std::size_t entryCount_ = 0;
  std::size_t occurrenceCount_ = 0;
  std::vector<Section> sections_;  ///< in the order in which they were read
  std::vector<Index> places_;      ///< there, by section; of no meaning where another section stands there
  Index current_ = kNone;          ///< the section that the table is about
  bool hasOthers_ = false;

  Index found_ = kNone;  ///< the section whose entries are found by their payload types
  /// An entry of the section that had the stamp.
  struct Place {
    Index entry = kNone;
    Index stamp = 0;
  };
  std::array<Place, kShortPayloads> short_{};
  Index stamp_ = 0;  ///< of the section whose entries are found
  TextSlots slots_;  ///< of other payload types
};

/// What stands behind the payload type in a line that the table has chained.
std::string_view behindPayload(const Line& line);
/// The payload type that `apt` of a format's fmtp names (RFC 4588, section 8.1); empty without one.
std::string_view aptOf(const Model& model, FormatEntry& entry);

/// The most formats that a text of an m-line may have.
std::size_t mostFormatsOf(std::string_view formats);

}  // namespace sdp::core

#endif
