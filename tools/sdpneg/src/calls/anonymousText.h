#ifndef SDPNEG_ANONYMOUS_TEXT_H
#define SDPNEG_ANONYMOUS_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

#include "calls/anonymousAddresses.h"
#include "calls/anonymousNames.h"
#include "calls/anonymousNumbers.h"

// Replacing in any text what tells who speaks and where. Whatever a place is, its text goes out through here, so addresses
// and what is known to be somebody's are found everywhere.

namespace tool {

/// What takes the place of what.
struct Replacements {
  explicit Replacements(const HashKey& hashKey)
      : key(hashKey), addresses(hashKey), numbers(hashKey), names(hashKey) {}

  HashKey key;
  AnonymousAddresses addresses;
  AnonymousNumbers numbers;
  AnonymousNames names;

  /// Grows with each value that is known from now on.
  std::size_t known() const { return numbers.size() + names.size(); }
};

/// What a place is, from the one where most is of the protocol to the one where nothing is. Addresses and known names,
/// hosts and numbers are replaced in all of them.
enum class Care {
  protocol,  ///< words and numbers of the protocol: numbers of up to five digits are ports and the like
  opaque,    ///< made by programs to be unique: numbers of five digits and more go, and hosts behind an @
  product,   ///< programs and their versions: hosts and numbers go
  open,      ///< anything: hosts, numbers of five digits and more, and words that are none of the protocol go
  prose,     ///< for people: all but words of the protocol goes, and is known from then on
  name       ///< of somebody: all goes, and is known from then on
};

/// Writes a text, also one with escaped characters (%41).
void writeText(Replacements& replacements, std::string_view text, Care care, std::string& out);
/// Writes a host where one stands: a name or an address, that maybe in brackets.
void writeHost(Replacements& replacements, std::string_view host, std::string& out);
/// Writes a user's number, if it is one: digits, a plus in front, and what makes them readable, all but the digits as it is.
/// @return false, with nothing written, for any other text
bool writeNumber(Replacements& replacements, std::string_view user, std::string& out);
/// Writes another secret with as many digits, hexadecimal ones for such, and what stands between them as it is. The same
/// secret becomes the same one.
void writeSecret(const Replacements& replacements, std::string_view secret, std::string& out);
/// Writes an x for each character but those that end lines.
void writeHidden(std::string_view text, std::string& out);

/// A text without escapes (%41). What is known may stand behind a % that is none.
std::string unescaped(const Replacements& replacements, std::string_view text);
/// Writes a text with escapes for all but letters, digits and these marks.
void writeEscaped(std::string_view text, std::string_view marks, std::string& out);
/// What need not be escaped wherever escapes are (RFC 3261 25.1).
inline constexpr std::string_view kUnreservedMarks = "-_.!~*'()";

}  // namespace tool

#endif
