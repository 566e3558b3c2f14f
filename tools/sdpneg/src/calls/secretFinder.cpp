#include "calls/secretFinder.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "calls/secretLines.h"
#include "text/search.h"

namespace tool {
namespace {

using sdpneg::equalNoCase;
using sdpneg::npos;

enum class Kind : std::uint8_t {
  none,
  crypto,       ///< tag, suite, keys, parameters
  inlineKey,    ///< a key that stands anywhere
  keyMgmt,      ///< protocol, data
  password,     ///< all of it
  fingerprint,  ///< hash, value
  keyLine,      ///< method, key
  token,        ///< up to a semicolon
  credentials,  ///< scheme, parameters
  challenge,    ///< the same, of which some are no secrets
  uri           ///< its password
};

struct KnownName {
  std::string_view name;
  Kind kind;
  bool isHeader;
};

constexpr std::array<KnownName, 18> kNames = {{
    {"crypto", Kind::crypto, false},
    {"inline", Kind::inlineKey, false},
    {"key-mgmt", Kind::keyMgmt, false},
    {"ice-pwd", Kind::password, false},
    {"fingerprint", Kind::fingerprint, false},
    {"identity", Kind::token, false},
    {"Authorization", Kind::credentials, true},
    {"Proxy-Authorization", Kind::credentials, true},
    {"Authentication-Info", Kind::credentials, true},
    {"Proxy-Authentication-Info", Kind::credentials, true},
    {"WWW-Authenticate", Kind::challenge, true},
    {"Proxy-Authenticate", Kind::challenge, true},
    {"X-Authorization", Kind::credentials, true},
    {"y", Kind::token, true},
    {"Cookie", Kind::password, true},
    {"Set-Cookie", Kind::password, true},
    {"sip", Kind::uri, false},
    {"sips", Kind::uri, false},
}};

constexpr std::size_t kLongestName = 25;

class SecretFinder {
 public:
  explicit SecretFinder(std::string_view text) : text_(text) {}

  std::vector<SecretPlace> find() {
    for (std::size_t at = 0; at < text_.size();)
      at = text_[at] == ':' || text_[at] == '=' ? lookBehind(at, at + 1) : at + 1;
    return std::move(places_);
  }

 private:
  /// Looks at a colon or equals sign, in front of which a name may stand.
  /// @return where to go on
  std::size_t lookBehind(std::size_t sign, std::size_t value) {
    std::size_t nameEnd = sign;
    while (nameEnd > floor_ && isGap(text_[nameEnd - 1])) --nameEnd;
    std::size_t nameBegin = nameEnd;
    while (nameBegin > floor_ && nameEnd - nameBegin <= kLongestName &&
           isNameCharacter(text_[nameBegin - 1])) {
      --nameBegin;
    }
    floor_ = value;
    const std::string_view name = text_.substr(nameBegin, nameEnd - nameBegin);
    const Kind kind = kindOf(name, nameBegin, text_[sign] == '=');
    if (kind == Kind::none) return value;
    if (kind == Kind::uri) return lookIntoUri(value);
    const std::size_t end = endOf(kind, nameBegin, value);
    mask(kind, value, end);
    floor_ = end;
    return end;
  }

  /// Masks the password of "alice:password@example.org" (RFC 3261 19.1.1).
  /// @return where to go on
  std::size_t lookIntoUri(std::size_t begin) {
    constexpr std::size_t kLongestUser = 512;
    const std::string_view rest = text_.substr(begin, kLongestUser);
    const std::size_t end = std::min(rest.find_first_of("@ \t\r\n<>\","), rest.size());
    const std::size_t colon = rest.substr(0, end).find(':');
    if (end == rest.size() || rest[end] != '@' || colon == npos) return begin;
    maskTokens(text_, begin + colon + 1, begin + end, places_);
    return floor_ = begin + end;
  }

  Kind kindOf(std::string_view name, std::size_t begin, bool isLineType) const {
    if (isLineType) return equalNoCase(name, "k") && isAtLineBegin(begin) ? Kind::keyLine : Kind::none;
    const auto found =
        std::ranges::find_if(kNames, [&](const KnownName& known) { return equalNoCase(known.name, name); });
    if (found == kNames.end() || (found->isHeader && !isAtLineBegin(begin))) return Kind::none;
    if (found->kind == Kind::token && !isAtLineBegin(begin) && !isOfAttributeLine(begin)) return Kind::none;
    return found->kind;
  }

  /// Whether only gaps stand in front on the line.
  bool isAtLineBegin(std::size_t at) const {
    while (at > 0 && isGap(text_[at - 1])) --at;
    return at == 0 || isLineEnd(text_[at - 1]);
  }

  /// Where the value ends: with its line and those that continue it, or in a text with other rules before what may end
  /// a string there.
  std::size_t endOf(Kind kind, std::size_t nameBegin, std::size_t value) const {
    const bool isOfLine = isAtLineBegin(nameBegin) || kind == Kind::keyLine || isOfAttributeLine(nameBegin);
    if (!isOfLine || kind == Kind::inlineKey) {
      std::size_t begin = value;
      while (begin < text_.size() && isGap(text_[begin])) ++begin;
      const std::string_view ends = kind == Kind::inlineKey ? kKeyEnds : kStringEnds;
      return std::min(text_.find_first_of(ends, begin), text_.size());
    }
    const std::size_t end = endOfLines(text_, value);
    return kind == Kind::token ? value + std::min(text_.substr(value, end - value).find(';'), end - value)
                               : end;
  }

  /// Whether a line begins with "a=". The names looked for stand near its beginning.
  bool isOfAttributeLine(std::size_t at) const {
    constexpr std::size_t kNear = 128;
    const std::size_t least = at > kNear ? at - kNear : 0;
    std::size_t begin = at;
    while (begin > least && !isLineEnd(text_[begin - 1])) --begin;
    const auto skipGaps = [&] {
      while (begin < at && isGap(text_[begin])) ++begin;
    };
    skipGaps();
    if (begin == at || sdpneg::lower(text_[begin]) != 'a') return false;
    ++begin;
    skipGaps();
    return begin < at && text_[begin] == '=';
  }

  void mask(Kind kind, std::size_t begin, std::size_t end) {
    switch (kind) {
      case Kind::crypto:
        return maskCrypto(text_, begin, end, places_);
      case Kind::keyMgmt:
        return maskBehind(text_, begin, end, isKeyProtocol, places_);
      case Kind::fingerprint:
        return maskBehind(text_, begin, end, isHashName, places_);
      case Kind::keyLine:
        return maskKeyLine(text_, begin, end, places_);
      case Kind::credentials:
        return maskCredentials(text_, begin, end, false, places_);
      case Kind::challenge:
        return maskCredentials(text_, begin, end, true, places_);
      case Kind::token:
      case Kind::password:
      case Kind::inlineKey:
        return maskTokens(text_, begin, end, places_);
      case Kind::none:
      case Kind::uri:
        break;
    }
  }

  static constexpr std::string_view kKeyEnds = " \t\r\n|;,\"'\\<>";
  static constexpr std::string_view kStringEnds = "\r\n\"'\\<>";

  std::string_view text_;
  std::size_t floor_ = 0;  ///< what lies in front was looked at
  std::vector<SecretPlace> places_;
};

}  // namespace

std::vector<SecretPlace> findSecrets(std::string_view text) { return SecretFinder(text).find(); }

}  // namespace tool
