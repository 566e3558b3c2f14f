#ifndef SDP_OFFER_ANSWER_ORIGINS_H
#define SDP_OFFER_ANSWER_ORIGINS_H

// O-lines of bodies: sessions and their versions (RFC 4566, section 5.2; RFC 3264, section 8).

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace sdp::exchange {

/// An o-line. Views into its body.
struct Origin {
  std::string_view line;     ///< without its end
  std::string_view version;  ///< decimal digits, of any number

  /// What stands in front of the version and behind it.
  std::string_view before() const {
    return line.substr(0, static_cast<std::size_t>(version.data() - line.data()));
  }
  std::string_view behind() const { return line.substr(before().size() + version.size()); }
  /// Whether both have the same user name, session id and address, whatever blanks stand between.
  bool isSameSession(const Origin& other) const;
};

/// The first o-line in front of the sections; nothing when there is none, or its version is no number.
std::optional<Origin> originOf(std::string_view body);

/// A number of digits without zeros in front.
std::string_view withoutZeros(std::string_view digits);
/// Compares numbers of any length by their digits.
std::strong_ordering compareVersions(std::string_view a, std::string_view b);
/// The next number, without leading zeros.
std::string raisedVersion(std::string_view version);

/// Whether both have the same lines but for the first o-line of the session, however they end; empty ones do not count.
bool haveSameLines(std::string_view a, std::string_view b);

/// The body that is sent after another one: that one again when nothing but the o-line differs, else one with its o-line
/// and the next version. Where either has no o-line, the body as it is.
std::string following(std::string_view body, std::string_view sent);

}  // namespace sdp::exchange

#endif
