#ifndef SDP_DOCUMENT_VIEWS_H
#define SDP_DOCUMENT_VIEWS_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>

#include "sdpDocumentExport.h"
#include "sdpDocumentFields.h"

// What a document is asked: views of the session, of sections and of what stands in them.

namespace sdp {

namespace core {
struct Model;
struct Part;
}  // namespace core

class Document;
class FormatCursor;
class Section;
class Session;

/// Who sends media, as seen by who wrote the body (RFC 3264, section 5.1).
enum class Direction : std::uint8_t {
  sendrecv,  ///< both; also what holds where nothing is said
  sendonly,  ///< the writer only
  recvonly,  ///< the reader only
  inactive   ///< nobody
};

/// The word of a direction, as it stands in an attribute.
SDP_DOCUMENT_API std::string_view textOf(Direction direction) noexcept;
/// The direction of a word; nothing when it is none.
SDP_DOCUMENT_API std::optional<Direction> directionOf(std::string_view word) noexcept;

/// How media are protected.
enum class Security : std::uint8_t {
  plain,    ///< not at all
  keyless,  ///< a secure profile, but no keys
  sdes,     ///< keys in `a=crypto` (RFC 4568)
  mikey,    ///< keys in `a=key-mgmt` (RFC 4567)
  dtls,     ///< DTLS, with SRTP or without (RFC 5763)
  osrtp     ///< keys beside a profile that is not secure (RFC 8643)
};

/// "plain", "keyless", "sdes", "mikey", "dtls", "osrtp".
SDP_DOCUMENT_API std::string_view textOf(Security security) noexcept;

/// A line of the text.
struct Line {
  std::string_view content;  ///< without its end
  std::string_view end;      ///< CR LF, LF, a CR at the text's end, or nothing
};

/// An attribute line (RFC 4566, section 5.13).
struct Attribute {
  std::string_view name;                  ///< up to the first colon
  std::optional<std::string_view> value;  ///< behind it; nothing where there is none

  /// The fields of the value.
  Fields fields() const noexcept { return Fields(value.value_or(std::string_view())); }
};

/// A bandwidth line (RFC 4566, section 5.8).
struct Bandwidth {
  std::string_view type;  ///< "AS", "TIAS", "CT", ...
  /// In the unit of the type: kilobits a second for AS and CT, bits a second for TIAS, RS and RR. Nothing when it is no
  /// number.
  std::optional<std::uint64_t> value;
};

/// What a c-line says (RFC 4566, section 5.7). A field that is not there is empty.
struct Connection {
  std::string_view addressType;  ///< "IP4" or "IP6"
  std::string_view address;      ///< a literal or a name, with `/ttl` where that stands
};

/// Where RTCP goes (RFC 3605).
struct Rtcp {
  std::optional<std::uint64_t> port;  ///< nothing when it is no number
  std::string_view address;           ///< empty without one
};

/// A crypto attribute (RFC 4568), without its keys, so that it may be logged. Section::attributes("crypto") has them.
struct Crypto {
  std::optional<std::uint64_t> tag;  ///< nothing when it is no number
  std::string_view suite;            ///< "AES_CM_128_HMAC_SHA1_80"; empty where the keys stand in its place
};

/// What a payload type stands for (RFC 4566, section 6). Numbers beyond their type are told as its largest.
struct Encoding {
  std::string_view name;    ///< as it is written; names compare without regard to case
  std::uint32_t clockRate;  ///< in Hz
  std::uint32_t channels;   ///< 1 where none are told
};

/// A range that is asked of the document, without an allocation. It finds its elements while one goes through it, so
/// each pass searches anew. They stay valid until the next edit, request or reading.
/// @tparam Cursor finds one element after the other
template <typename Cursor>
class Range {
 public:
  /// Goes from element to element. An input iterator: what it refers to is its own, and is replaced as it goes on.
  class Iterator {
   public:
    /// @cond What every iterator has.
    using value_type = typename Cursor::Element;
    using difference_type = std::ptrdiff_t;

    Iterator() noexcept = default;
    explicit Iterator(Cursor cursor) noexcept : cursor_(cursor) { ++*this; }
    const value_type& operator*() const noexcept { return element_; }
    const value_type* operator->() const noexcept { return &element_; }
    Iterator& operator++() noexcept {
      left_ = cursor_.next(element_);
      return *this;
    }
    Iterator operator++(int) noexcept {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(std::default_sentinel_t) const noexcept { return !left_; }
    /// @endcond

   private:
    Cursor cursor_;
    value_type element_{};
    bool left_ = false;
  };

  /// @cond Ranges are given by the document.
  explicit Range(Cursor cursor) noexcept : cursor_(cursor) {}
  /// @endcond

  /// The first element; equal to end() where there is none.
  Iterator begin() const noexcept { return Iterator(cursor_); }
  /// Behind the last element.
  static std::default_sentinel_t end() noexcept { return {}; }
  /// Whether it has no element.
  bool empty() const noexcept { return begin() == end(); }
  /// How many elements it has; they are counted each time.
  std::size_t size() const noexcept {
    std::size_t count = 0;
    for (Iterator element = begin(); element != end(); ++element) ++count;
    return count;
  }

 private:
  Cursor cursor_;
};

/// Finds lines of the session or of a section.
class SDP_DOCUMENT_API LineCursor {
 public:
  /// @cond How a Range goes on; not for callers.
  using Element = Line;
  LineCursor() noexcept = default;
  bool next(Line& line) noexcept;
  /// @endcond

 private:
  friend class Session;
  friend class Section;
  LineCursor(const core::Model& model, const core::Part& part) noexcept;

  const core::Model* model_ = nullptr;
  std::uint32_t at_ = 0;
  std::uint32_t end_ = 0;
};

/// Finds attributes, all or those of a name.
class SDP_DOCUMENT_API AttributeCursor {
 public:
  /// @cond How a Range goes on; not for callers.
  using Element = Attribute;
  AttributeCursor() noexcept = default;
  bool next(Attribute& attribute) noexcept;
  /// @endcond

 private:
  friend class Session;
  friend class Section;
  AttributeCursor(const core::Model& model, const core::Part& part,
                  std::optional<std::string_view> name) noexcept;

  const core::Model* model_ = nullptr;
  std::uint32_t at_ = 0;
  std::uint32_t end_ = 0;
  std::uint64_t kinds_ = 0;
  bool isOther_ = false;  ///< the name is none that the library knows
  std::string_view name_;
};

/// Finds bandwidth lines.
class SDP_DOCUMENT_API BandwidthCursor {
 public:
  /// @cond How a Range goes on; not for callers.
  using Element = Bandwidth;
  BandwidthCursor() noexcept = default;
  bool next(Bandwidth& bandwidth) noexcept;
  /// @endcond

 private:
  friend class Session;
  friend class Section;
  explicit BandwidthCursor(LineCursor lines) noexcept : lines_(lines) {}

  LineCursor lines_;
};

/// Finds crypto attributes.
class SDP_DOCUMENT_API CryptoCursor {
 public:
  /// @cond How a Range goes on; not for callers.
  using Element = Crypto;
  CryptoCursor() noexcept = default;
  bool next(Crypto& crypto) noexcept;
  /// @endcond

 private:
  friend class Section;
  explicit CryptoCursor(AttributeCursor attributes) noexcept : attributes_(attributes) {}

  AttributeCursor attributes_;
};

/// Finds the feedback that a format may have (RFC 4585): of its own and of all formats, in the order of lines.
class SDP_DOCUMENT_API FeedbackCursor {
 public:
  /// @cond How a Range goes on; not for callers.
  using Element = std::string_view;
  FeedbackCursor() noexcept = default;
  bool next(std::string_view& value) noexcept;
  /// @endcond

 private:
  friend class FormatCursor;
  FeedbackCursor(const core::Model& model, std::uint32_t own, std::uint32_t ofAll) noexcept;

  static constexpr std::uint32_t kNoLine = std::numeric_limits<std::uint32_t>::max();

  const core::Model* model_ = nullptr;
  std::uint32_t own_ = kNoLine;
  std::uint32_t ofAll_ = kNoLine;
};

/// A format of an m-line; in an RTP section a payload type, with what the section's attributes say of it. In other
/// sections only `format` is told.
struct Format {
  std::string_view format;           ///< as it stands in the m-line
  std::optional<Encoding> encoding;  ///< of its rtpmap, else of RFC 3551's table; nothing when it is unknown
  std::optional<std::string_view> fmtp;  ///< what stands behind the payload type in its first fmtp
  std::optional<std::uint64_t> apt;      ///< the payload type that it repairs or carries (`apt` of its fmtp)
  bool isCompanion = false;       ///< it serves other formats (rtx, red, CN, telephone-event and the like)
  FeedbackCursor feedbackCursor;  ///< what feedback() goes by

  /// The values of its rtcp-fb attributes ("nack pli"), those for `*` included.
  Range<FeedbackCursor> feedback() const noexcept { return Range<FeedbackCursor>(feedbackCursor); }
};

/// Finds the formats of a section.
class SDP_DOCUMENT_API FormatCursor {
 public:
  /// @cond How a Range goes on; not for callers.
  using Element = Format;
  FormatCursor() noexcept = default;
  bool next(Format& format) noexcept;
  /// @endcond

 private:
  friend class Section;
  FormatCursor(const core::Model& model, const core::Part& section) noexcept;

  const core::Model* model_ = nullptr;
  const core::Part* section_ = nullptr;
  std::string_view rest_;       ///< of the formats of a section without RTP
  std::size_t occurrence_ = 0;  ///< in an RTP section
};

/// A group of sections (RFC 5888).
struct Group {
  std::string_view semantics;  ///< "BUNDLE", "LS"; empty where it is missing
  Fields mids;                 ///< of its members
};

/// Finds the groups of the session.
class SDP_DOCUMENT_API GroupCursor {
 public:
  /// @cond How a Range goes on; not for callers.
  using Element = Group;
  GroupCursor() noexcept = default;
  bool next(Group& group) noexcept;
  /// @endcond

 private:
  friend class Session;
  explicit GroupCursor(AttributeCursor attributes) noexcept : attributes_(attributes) {}

  AttributeCursor attributes_;
};

/// What stands before the first section. A view: it and all that it gives stay valid until the next edit or reading of
/// the document.
class SDP_DOCUMENT_API Session {
 public:
  /// All its lines, in their order and with their ends.
  Range<LineCursor> lines() const noexcept;
  /// All its attributes, in their order.
  Range<AttributeCursor> attributes() const noexcept;
  /// The attributes of a name, which is compared exactly. The name must outlive the range.
  Range<AttributeCursor> attributes(std::string_view name) const noexcept;
  /// The first attribute of a name; nothing where there is none.
  std::optional<Attribute> attribute(std::string_view name) const noexcept;
  /// Whether an attribute of a name is there.
  bool has(std::string_view name) const noexcept;
  /// Its b-lines, in their order; of two of one type the first counts.
  Range<BandwidthCursor> bandwidths() const noexcept;

  /// Its first c-line.
  std::optional<Connection> connection() const noexcept;
  /// Its first direction attribute.
  std::optional<Direction> direction() const noexcept;
  /// Its groups (RFC 5888), in their order.
  Range<GroupCursor> groups() const noexcept;

 private:
  friend class Document;
  explicit Session(const core::Model& model) noexcept : model_(&model) {}

  const core::Model* model_;
};

/// A section: an m-line and what follows it up to the next one. A view: it and all that it gives stay valid until the
/// next edit or reading of the document. Of an unreadable section index(), lineNumber(), lines and attributes count,
/// the rest is empty.
class SDP_DOCUMENT_API Section {
 public:
  /// An unreadable section of no document.
  Section() noexcept;

  /// All its lines, the m-line first, in their order and with their ends.
  Range<LineCursor> lines() const noexcept;
  /// All its attributes, in their order, and none of the session's.
  Range<AttributeCursor> attributes() const noexcept;
  /// The attributes of a name, which is compared exactly. The name must outlive the range.
  Range<AttributeCursor> attributes(std::string_view name) const noexcept;
  /// The first attribute of a name; nothing where there is none.
  std::optional<Attribute> attribute(std::string_view name) const noexcept;
  /// Whether an attribute of a name is there.
  bool has(std::string_view name) const noexcept;
  /// Its b-lines, in their order; of two of one type the first counts.
  Range<BandwidthCursor> bandwidths() const noexcept;

  /// Its number in the document, from 1.
  std::uint32_t index() const noexcept;
  /// The number of its m-line, from 1, as the text was read.
  std::size_t lineNumber() const noexcept;
  /// False when its m-line lacks a field, its port is no number from 0 to 65535 or its count none from 1. No request
  /// changes such a section.
  bool isReadable() const noexcept;

  std::string_view media() const noexcept;      ///< "audio", as it is written
  std::uint16_t port() const noexcept;          ///< from 0 to 65535
  std::uint64_t portCount() const noexcept;     ///< 1 without a count
  std::string_view transport() const noexcept;  ///< "UDP/TLS/RTP/SAVPF", as it is written
  bool isRtp() const noexcept;                  ///< `RTP/` stands in its transport
  /// Port 0 without `a=bundle-only`.
  bool isDisabled() const noexcept;

  /// Its first c-line's, else the session's.
  std::optional<Connection> connection() const noexcept;
  /// Its first direction attribute's, else the session's, else sendrecv.
  Direction direction() const noexcept;
  /// How its media are protected, by its transport and the keys that are there. Keys in SDES count in the section
  /// alone, those of MIKEY and DTLS also in the session.
  Security security() const noexcept;

  /// Its formats, in the m-line's order; one that stands there twice is told twice. What the section says of them is read
  /// when they are asked for first, and kept for each section until the next edit, request or reading, so that formats
  /// of several sections may be compared one by one.
  Range<FormatCursor> formats() const noexcept;
  /// The first format that is this text ("111"); payload types compare as texts, so "08" is not "8".
  std::optional<Format> format(std::string_view payloadType) const noexcept;

  std::string_view mid() const noexcept;    ///< RFC 5888; empty without one
  std::string_view label() const noexcept;  ///< RFC 4574; empty without one
  bool isBundleOnly() const noexcept;       ///< RFC 8843
  /// The number, from 0 among all groups of the session, of the first BUNDLE group that names its mid.
  std::optional<std::uint32_t> bundle() const noexcept;
  /// Its `a=rtcp`; nothing without one.
  std::optional<Rtcp> rtcp() const noexcept;
  bool hasRtcpMux() const noexcept;  ///< RFC 5761
  /// Its crypto attributes: tags and suites, no keys.
  Range<CryptoCursor> crypto() const noexcept;
  /// The name of the hash of its fingerprint or the session's (RFC 8122); empty without one.
  std::string_view fingerprintHash() const noexcept;
  /// Its DTLS role or the session's (RFC 5763: active, passive, actpass, holdconn); empty without one.
  std::string_view setup() const noexcept;
  /// An ice-ufrag stands in it or in the session (RFC 8839).
  bool hasIce() const noexcept;
  /// How many candidate attributes it has (RFC 8839); the session has none.
  std::size_t candidateCount() const noexcept;
  /// An ice-options attribute of it or of the session has the word "trickle" (RFC 8840).
  bool usesTrickleIce() const noexcept;

 private:
  friend class Document;
  friend class SectionCursor;
  Section(const core::Model& model, const core::Part& section) noexcept : model_(&model), part_(&section) {}

  const core::Model* model_;
  const core::Part* part_;
};

/// Finds the sections of a document.
class SDP_DOCUMENT_API SectionCursor {
 public:
  /// @cond How a Range goes on; not for callers.
  using Element = Section;
  SectionCursor() noexcept = default;
  bool next(Section& section) noexcept;
  /// @endcond

 private:
  friend class Document;
  explicit SectionCursor(const core::Model& model) noexcept : model_(&model) {}

  const core::Model* model_ = nullptr;
  std::uint32_t index_ = 0;
};

}  // namespace sdp

#endif
