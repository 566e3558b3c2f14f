#ifndef SDP_OFFER_ANSWER_CODECS_H
#define SDP_OFFER_ANSWER_CODECS_H

// The formats of a section as codecs, and when those of two sections are the same.

#include <cstdint>
#include <optional>
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
  std::string_view name;  ///< of the encoding; empty when that is unknown
  std::uint32_t clockRate = 0;
  std::uint32_t channels = 1;
  std::optional<std::string_view> fmtp;
  Family family = Family::other;
  bool isCompanion = false;  ///< it serves other formats

  std::string_view parameters() const { return fmtp.value_or(std::string_view()); }
  /// The payload type that rtx repairs; empty without one.
  std::string_view apt() const;
  /// The payload types that red carries, with slashes between; empty without.
  std::string_view carried() const;
};

/// The payload types of a section, each once, in the order of its m-line.
class CodecList {
 public:
  CodecList() = default;
  /// @param section must outlive what is asked of the list
  explicit CodecList(const Section& section);

  std::size_t size() const { return codecs_.size(); }
  bool empty() const { return codecs_.empty(); }
  const Codec& operator[](std::size_t index) const { return codecs_[index]; }
  std::vector<Codec>::const_iterator begin() const { return codecs_.begin(); }
  std::vector<Codec>::const_iterator end() const { return codecs_.end(); }
  /// The codec of a payload type, which compares as a text; null where there is none.
  const Codec* find(std::string_view payload) const;

 private:
  std::vector<Codec> codecs_;
  std::vector<std::uint32_t> byPayload_;  ///< numbers of codecs, in the order of their payload types
};

/// Whether a format of one section is the same as one of another: encoding, clock rate, channels, and what their
/// parameters must have in common. Unknown formats equal nothing.
bool areSame(const CodecList& a, const Codec& x, const CodecList& b, const Codec& y);

/// Whether both have the encoding, clock rate and channels in common, whatever their parameters.
bool haveSameEncoding(const Codec& x, const Codec& y);

/// Calls `visit(std::string_view)` for each payload type that red carries, as long as it returns true.
/// @return whether it did for all
template <typename Visit>
bool forEachCarried(std::string_view carried, Visit visit) {
  while (!carried.empty()) {
    const std::size_t slash = carried.find('/') < carried.size() ? carried.find('/') : carried.size();
    if (!visit(carried.substr(0, slash))) return false;
    carried.remove_prefix(slash < carried.size() ? slash + 1 : slash);
  }
  return true;
}

}  // namespace sdp::exchange

#endif
