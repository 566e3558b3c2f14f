#ifndef SDP_OFFER_ANSWER_CODECS_H
#define SDP_OFFER_ANSWER_CODECS_H

// The formats of a section as codecs, and when those of two sections are the same.

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sdpDocumentViews.h"

namespace sdp::exchange {

/// What a format's parameters mean.
enum class Family : std::uint8_t {
  other,  ///< nothing that makes two formats differ
  h264,
  h265,
  vp9,
  av1,
  amr,
  g729,
  ilbc,
  telephoneEvent,
  comfortNoise,
  rtx,
  red
};

/// A payload type of an RTP section.
struct Codec {
  std::string_view payload;
  std::string_view
      name;  ///< of the encoding; empty when that is unknown, and where the payload type is no number
  std::uint32_t clockRate = 0;
  std::uint32_t channels = 1;
  std::optional<std::string_view> fmtp;     ///< what stands behind the payload type in its first fmtp
  std::span<const std::string_view> fmtps;  ///< in all its fmtp, in the order of their lines
  std::string_view served;                  ///< what rtx and red tell of others, read from their fmtp once
  Family family = Family::other;
  bool isCompanion = false;  ///< it serves other formats

  std::string_view parameters() const { return fmtp.value_or(std::string_view()); }
  /// The value of a parameter, of the first fmtp that has it. One without a value counts as missing.
  std::optional<std::string_view> parameter(std::string_view wanted) const;
  /// Whether a parameter is there, with a value or without.
  bool hasParameter(std::string_view wanted) const;
  /// The payload type that rtx repairs; empty without one.
  std::string_view apt() const { return family == Family::rtx ? served : std::string_view(); }
  /// The payload types that red carries, with slashes between; empty without.
  std::string_view carried() const { return family == Family::red ? served : std::string_view(); }
};

/// The payload types of a section, each once, in the order of its m-line.
class CodecList {
 public:
  CodecList() = default;
  /// @param section must outlive what is asked of the list
  explicit CodecList(const Section& section);
  CodecList(CodecList&&) noexcept = default;
  CodecList& operator=(CodecList&&) noexcept = default;
  CodecList(const CodecList&) = delete;  // codecs point into it
  CodecList& operator=(const CodecList&) = delete;
  ~CodecList() = default;

  std::size_t size() const { return codecs_.size(); }
  /// Whether the m-line has one of them again.
  bool hasRepeated() const { return hasRepeated_; }
  bool empty() const { return codecs_.empty(); }
  const Codec& operator[](std::size_t index) const { return codecs_[index]; }
  std::vector<Codec>::const_iterator begin() const { return codecs_.begin(); }
  std::vector<Codec>::const_iterator end() const { return codecs_.end(); }
  /// The place of one of its codecs.
  std::size_t placeOf(const Codec& codec) const { return static_cast<std::size_t>(&codec - codecs_.data()); }
  /// The codec of a payload type, which compares as a text; null where there is none.
  const Codec* find(std::string_view payload) const;

 private:
  void readFormats(const Section& section);
  void readParameters(const Section& section);

  std::vector<Codec> codecs_;
  std::vector<std::string_view> fmtps_;   ///< of one payload type side by side
  std::vector<std::uint32_t> byPayload_;  ///< numbers of codecs, in the order of their payload types
  bool hasRepeated_ = false;
};

/// Whether a format of one section is the same as one of another: encoding, clock rate, channels, and what their
/// parameters must have in common. Unknown formats equal nothing.
bool areSame(const CodecList& a, const Codec& x, const CodecList& b, const Codec& y);

/// What is known of pairs of formats, 0 for nothing: a table, or where both sections have very many formats only the
/// pairs that were asked for.
class KnownPairs {
 public:
  /// @param count of all pairs, the same each time
  std::uint8_t& at(std::size_t pair, std::size_t count) {
    if (count > kMostInTable) return few_[pair];
    if (table_.empty()) table_.resize(count);
    return table_[pair];
  }

 private:
  static constexpr std::size_t kMostInTable = std::size_t{1} << 22U;
  std::vector<std::uint8_t> table_;
  std::map<std::size_t, std::uint8_t> few_;
};

/// Tells of two sections which formats are the same, and compares each two of them but once: many of one section may
/// serve one format. For a section of a peer and a small one of ours.
class Sameness {
 public:
  /// @param a must outlive this, as `b`
  Sameness(const CodecList& a, const CodecList& b) : a_(&a), b_(&b) {}
  /// As the function of this name.
  bool areSame(const Codec& x, const Codec& y);

 private:
  const CodecList* a_;
  const CodecList* b_;
  KnownPairs known_;  ///< by format of a and of b
};

/// The values of the parameters that formats of one encoding must both have to be the same, as a text that is the same
/// exactly when they are. Profiles of H264, and sets of which a common part suffices, are not among them.
std::string agreementOf(const Codec& codec);

/// Whether both have the encoding, clock rate and channels in common, whatever their parameters.
bool haveSameEncoding(const Codec& x, const Codec& y);

/// The payload types of what red carries: what there has digits alone.
class Payloads {
 public:
  explicit Payloads(std::string_view carried) : rest_(carried) {}
  /// The next one; empty when there is none left.
  std::string_view next();

 private:
  std::string_view rest_;
};

}  // namespace sdp::exchange

#endif
