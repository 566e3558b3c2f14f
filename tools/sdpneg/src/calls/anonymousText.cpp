#include "calls/anonymousText.h"

#include <algorithm>
#include <array>

#include "calls/protocolWords.h"
#include "text/search.h"

namespace tool {
namespace {

using sdpneg::isDigit;

constexpr std::size_t kNever = static_cast<std::size_t>(-1);
constexpr std::size_t kMostTelephoneDigits = 32;

/// What is done at places of a kind.
struct Rules {
  std::size_t numbersFrom;       ///< digits that a number has, which stands alone
  std::size_t innerNumbersFrom;  ///< digits within a word that has letters as well
  std::size_t knownNumbersFrom;
  bool hosts;     ///< whether all hosts are replaced
  bool words;     ///< whether words of letters are
  bool allWords;  ///< whether words with digits are as well
  bool protocol;  ///< whether words of the protocol stay
  bool learns;    ///< whether what is replaced is known from then on
};
constexpr std::array<Rules, 6> kRules = {{
    {kNever, kNever, 6, false, false, false, true, false},
    {5, 9, 5, false, false, false, true, false},
    {5, 5, 5, true, false, false, true, false},
    {5, 9, 5, true, true, false, true, false},
    {3, 3, 3, true, true, true, true, true},
    {1, 1, 3, true, true, true, false, true},
}};

bool isLetterWord(std::string_view word) { return std::ranges::none_of(word, isDigit); }
bool isNumber(std::string_view word) { return std::ranges::all_of(word, isDigit); }

/// Names that stand for having none (RFC 3323).
bool isNobody(std::string_view word) {
  constexpr std::array<std::string_view, 4> kNobody = {"anonymous", "unavailable", "restricted", "unknown"};
  return std::ranges::any_of(kNobody, [&](std::string_view one) { return sdpneg::equalNoCase(one, word); });
}

bool isHostCharacter(char c) { return isWordCharacter(c) || c == '-' || c == '_' || c == '.'; }

std::size_t sizeOf(std::string_view text, bool (*is)(char)) {
  return static_cast<std::size_t>(std::ranges::find_if_not(text, is) - text.begin());
}

/// Whether a name has a dot, and behind its last one what a top-level domain looks like.
bool isHostName(std::string_view name) {
  while (name.ends_with('.')) name.remove_suffix(1);
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos) return false;
  const std::string_view top = name.substr(dot + 1);
  return top.size() >= 2 && (isLetterWord(top) || top.starts_with("xn--")) && top.find('_') == sdpneg::npos;
}

/// Twelve digits of a hardware address.
bool isHardwareAddress(std::string_view word) {
  return word.size() == 12 && !isLetterWord(word) && std::ranges::all_of(word, [](char c) {
           return isDigit(c) || (sdpneg::lower(c) >= 'a' && sdpneg::lower(c) <= 'f');
         });
}

/// Goes through a text without escapes.
class Writer {
 public:
  Writer(Replacements& replacements, std::string_view text, Care care, std::string& out)
      : replacements_(replacements),
        text_(text),
        care_(care),
        rules_(kRules[static_cast<std::size_t>(care)]),
        out_(out) {}

  void write() {
    while (at_ < text_.size()) {
      if (writeAddress6() || writeTelephone()) continue;
      if (isWordCharacter(text_[at_])) {
        if (!writeHostName() && !writeUuid() && !writeDashedAddress()) writeWord();
        continue;
      }
      const char c = text_[at_++];
      out_ += c;
      if (c == '@') writeHostBehindAt();
    }
  }

 private:
  std::string_view rest() const { return text_.substr(at_); }
  bool isInsideWord() const { return at_ != 0 && isWordCharacter(text_[at_ - 1]); }

  void putAddress(const IpAddress& address) { out_ += replacements_.addresses.of(address).text(); }

  /// The port behind an address or a host is of the protocol.
  void writePort() {
    if (at_ == text_.size() || text_[at_] != ':') return;
    const std::size_t digits = sizeOf(text_.substr(at_ + 1), isDigit);
    const std::size_t end = at_ + 1 + digits;
    if (digits == 0 || digits > 5 || (end < text_.size() && isWordCharacter(text_[end]))) return;
    out_ += text_.substr(at_, end - at_);
    at_ = end;
  }

  bool writeAddress6() {
    const char c = text_[at_];
    if (isInsideWord() || (c == ':' ? !rest().starts_with("::") : !isWordCharacter(c))) return false;
    if (c != ':') {
      const std::size_t word = sizeOf(rest().substr(0, 5), isWordCharacter);
      if (word > 4 || at_ + word == text_.size() || text_[at_ + word] != ':') return false;
    }
    const std::optional<AddressInText> found = leadingIp6(rest());
    if (!found) return false;
    putAddress(found->address);
    at_ += found->size;
    return true;
  }

  /// A number as people write it: "+49 (30) 123-456".
  bool writeTelephone() {
    const bool isPlus = text_[at_] == '+';
    if (care_ == Care::protocol || care_ == Care::product || isInsideWord()) return false;
    if (!isPlus && (!rules_.learns || !isDigit(text_[at_]))) return false;
    std::size_t end = at_ + (isPlus ? 1 : 0);
    std::size_t digits = 0;
    for (std::size_t at = end, gap = 0; at < text_.size() && gap <= 2 && digits < kMostTelephoneDigits;
         ++at) {
      if (gap != 0 && leadingIp4(text_.substr(at))) break;
      if (isDigit(text_[at])) {
        ++digits;
        gap = 0;
        end = at + 1;
      } else if (std::string_view(" -.()/").find(text_[at]) != std::string_view::npos) {
        ++gap;
      } else {
        break;
      }
    }
    const bool isAddress = !isPlus && leadingIp4(rest());
    if (digits < 7 || isAddress || (end < text_.size() && isWordCharacter(text_[end]))) return false;
    writeNumber(replacements_, text_.substr(at_, end - at_), out_);
    at_ = end;
    return true;
  }

  bool writeHostName() {
    if (at_ < noHostBefore_ || isInsideWord()) return false;
    const std::size_t size = sizeOf(rest(), isHostCharacter);
    noHostBefore_ = at_ + size;
    const std::string_view name = rest().substr(0, size);
    if (!isHostName(name)) return false;
    if (!rules_.hosts && !replacements_.names.isKnownHost(name)) return false;
    if (leadingIp4(name)) return false;
    out_ += replacements_.names.host(name);
    at_ += size;
    writePort();
    return true;
  }

  void writeHostBehindAt() {
    const std::size_t size = sizeOf(rest(), isHostCharacter);
    const std::string_view name = rest().substr(0, size);
    if (size == 0 || !isWordCharacter(name.front()) || leadingIp4(name)) return;
    if (at_ + size < text_.size() && text_[at_ + size] == ':' && leadingIp6(rest())) return;
    if (care_ == Care::protocol && !replacements_.names.isKnownHost(name)) return;
    out_ += replacements_.names.host(name);
    at_ += size;
    writePort();
  }

  bool writeUuid() {
    if (isInsideWord() || rules_.allWords || !beginsWithUuid(rest())) return false;
    out_ += rest().substr(0, 36);
    at_ += 36;
    return true;
  }

  /// An IPv4 address in a token or a host's name, where dots cannot be.
  bool writeDashedAddress() {
    if (care_ == Care::protocol || isInsideWord() || !isDigit(text_[at_])) return false;
    for (const char separator : {'-', '_'}) {
      const std::optional<AddressInText> found = leadingIp4(rest(), separator);
      const std::size_t end = at_ + (found ? found->size : 0);
      if (!found || (end < text_.size() && isWordCharacter(text_[end]))) continue;
      std::string address = replacements_.addresses.of(found->address).text();
      std::ranges::replace(address, '.', separator);
      out_ += address;
      at_ += found->size;
      return true;
    }
    return false;
  }

  void writeWord() {
    const std::size_t size = sizeOf(rest(), isWordCharacter);
    const std::string_view word = rest().substr(0, size);
    // An address may begin in the midst of a word: its digits at the end are tried, three at most.
    const std::size_t digits = static_cast<std::size_t>(
        std::ranges::find_if_not(word.rbegin(), word.rend(), isDigit) - word.rbegin());
    if (digits != 0 && at_ + size < text_.size() && text_[at_ + size] == '.') {
      for (std::size_t taken = std::min<std::size_t>(digits, 3); taken != 0; --taken) {
        const std::optional<AddressInText> found = leadingIp4(rest().substr(size - taken));
        if (!found) continue;
        putWord(word.substr(0, size - taken));
        putAddress(found->address);
        at_ += size - taken + found->size;
        writePort();
        return;
      }
    }
    putWord(word);
    at_ += size;
  }

  void putWord(std::string_view word) {
    if (word.empty()) return;
    AnonymousNames& names = replacements_.names;
    if (isNumber(word)) return putNumber(word);
    const bool stays = (rules_.protocol && isProtocolWord(word)) || isNobody(word);
    const bool goes = !stays && rules_.words && (rules_.allWords || isLetterWord(word));
    if (goes && rules_.learns) names.learn(word);
    if (goes || names.isKnown(word) || (care_ == Care::product && isHardwareAddress(word))) {
      out_ += names.word(word);
    } else {
      putInnerNumbers(word);
    }
  }

  /// Whether a number is a value of its own, and no part of a longer token.
  bool isWholeToken(std::string_view number) const {
    constexpr std::string_view kAround = " \t\r\n\"'<>=,;";
    const std::size_t begin = static_cast<std::size_t>(number.data() - text_.data());
    const std::size_t end = begin + number.size();
    return (begin == 0 || kAround.find(text_[begin - 1]) != std::string_view::npos) &&
           (end == text_.size() || kAround.find(text_[end]) != std::string_view::npos);
  }

  void putNumber(std::string_view number) {
    AnonymousNumbers& numbers = replacements_.numbers;
    bool goes = number.size() >= rules_.numbersFrom;
    if (goes && rules_.learns && number.size() >= 3) numbers.learn(number);
    goes = goes || (number.size() >= rules_.knownNumbersFrom && numbers.isKnown(number));
    const bool isShort = number.size() == 3 || number.size() == 4;
    goes = goes || (care_ == Care::open && isShort && isWholeToken(number) && numbers.isKnown(number));
    out_ += goes ? numbers.of(number) : std::string(number);
  }

  void putInnerNumbers(std::string_view word) {
    for (std::size_t at = 0; at < word.size();) {
      const std::size_t digits = sizeOf(word.substr(at), isDigit);
      const std::string_view number = word.substr(at, digits);
      const bool isLong = digits >= rules_.innerNumbersFrom;
      if (isLong || (digits >= rules_.knownNumbersFrom && replacements_.numbers.isKnown(number))) {
        out_ += replacements_.numbers.of(number);
      } else {
        out_ += number;
      }
      at += digits;
      if (at < word.size()) out_ += word[at++];
    }
  }

  Replacements& replacements_;
  std::string_view text_;
  Care care_;
  const Rules& rules_;
  std::string& out_;
  std::size_t at_ = 0;
  std::size_t noHostBefore_ = 0;
};

int hexValue(char c) {
  const char small = sdpneg::lower(c);
  if (isDigit(small)) return small - '0';
  return small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

/// Whether an escape stands there, and not a % in front of what is known: an address, a number or a name may begin like one.
bool isEscape(const Replacements& replacements, std::string_view text, std::size_t at) {
  if (at + 2 >= text.size() || text[at] != '%') return false;
  if (hexValue(text[at + 1]) < 0 || hexValue(text[at + 2]) < 0) return false;
  const std::string_view behind = text.substr(at + 1);
  const std::string_view word = behind.substr(0, sizeOf(behind, isWordCharacter));
  const bool isKnown = isNumber(word) ? replacements.numbers.isKnown(word) : replacements.names.isKnown(word);
  return !isKnown && !leadingIp4(behind);
}

bool isUnreserved(char c) {
  return (isWordCharacter(c) && static_cast<unsigned char>(c) < 0x80) ||
         kUnreservedMarks.find(c) != std::string_view::npos;
}

/// What stands escaped is looked at without its escapes.
void writeComponent(Replacements& replacements, std::string_view escaped, Care care, std::string& out) {
  const std::string plain = unescaped(replacements, escaped);
  std::string written;
  Writer(replacements, plain, care, written).write();
  if (written == plain) {
    out += escaped;
  } else {
    writeEscaped(written, kUnreservedMarks, out);
  }
}

}  // namespace

void writeText(Replacements& replacements, std::string_view text, Care care, std::string& out) {
  std::size_t plainFrom = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t percent = text.find('%', at);
    if (percent == std::string_view::npos) break;
    at = percent + 1;
    if (!isEscape(replacements, text, percent)) continue;
    std::size_t begin = percent;
    while (begin > plainFrom && isUnreserved(text[begin - 1])) --begin;
    std::size_t end = percent;
    while (end < text.size() && (isUnreserved(text[end]) || isEscape(replacements, text, end)))
      end += text[end] == '%' ? std::size_t{3} : std::size_t{1};
    Writer(replacements, text.substr(plainFrom, begin - plainFrom), care, out).write();
    writeComponent(replacements, text.substr(begin, end - begin), care, out);
    plainFrom = at = end;
  }
  Writer(replacements, text.substr(plainFrom), care, out).write();
}

void writeHost(Replacements& replacements, std::string_view host, std::string& out) {
  const bool isName =
      !host.empty() && std::ranges::all_of(host, isHostCharacter) && isWordCharacter(host.front());
  const std::optional<AddressInText> address = leadingIp4(host);
  if (isName && !(address && address->size == host.size())) {
    out += replacements.names.host(host);
  } else {
    writeText(replacements, host, Care::name, out);
  }
}

bool writeNumber(Replacements& replacements, std::string_view user, std::string& out) {
  std::string digits;
  for (const char c : user) {
    if (isDigit(c)) {
      digits += c;
    } else if (std::string_view("+-.()*# /").find(c) == std::string_view::npos) {
      return false;
    }
  }
  if (digits.empty()) return false;
  if (digits.size() >= 3) replacements.numbers.learn(digits);
  const std::string given = replacements.numbers.of(digits);
  std::size_t next = 0;
  for (const char c : user) out += isDigit(c) ? given[next++] : c;
  return true;
}

void writeSecret(const Replacements& replacements, std::string_view secret, std::string& out) {
  constexpr std::string_view kDigits = "0123456789abcdefABCDEFGHIJKLMNOPQRSTUVWXYZghijklmnopqrstuvwxyz";
  constexpr std::string_view kCapitals = "0123456789ABCDEF";
  const auto isDigitOfBase64 = [](char c) {
    return isWordCharacter(c) && static_cast<unsigned char>(c) < 0x80;
  };
  const bool isHex =
      std::ranges::all_of(secret, [&](char c) { return !isDigitOfBase64(c) || hexValue(c) >= 0; });
  const bool isCapital = std::ranges::any_of(secret, [](char c) { return c >= 'A' && c <= 'F'; });
  const std::string_view digits = !isHex ? kDigits : isCapital ? kCapitals : kDigits.substr(0, 16);
  // In front of the padding of base64 stands a digit of which not all bits count.
  const std::size_t padding = isHex ? std::string_view::npos : secret.find('=');
  const std::uint64_t whole = keyedHash(replacements.key, secret);
  for (std::size_t i = 0; i < secret.size(); ++i) {
    const bool stays = !isDigitOfBase64(secret[i]) || (padding != std::string_view::npos && i + 1 == padding);
    const std::string place = std::to_string(whole) + ' ' + std::to_string(i);
    out += stays ? secret[i] : digits[keyedHash(replacements.key, place) % digits.size()];
  }
}

void writeHidden(std::string_view text, std::string& out) {
  for (const char c : text) out += c == '\r' || c == '\n' ? c : 'x';
}

std::string unescaped(const Replacements& replacements, std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (isEscape(replacements, text, at)) {
      plain += static_cast<char>(hexValue(text[at + 1]) * 16 + hexValue(text[at + 2]));
      at += 2;
    } else {
      plain += text[at];
    }
  }
  return plain;
}

void writeEscaped(std::string_view text, std::string_view marks, std::string& out) {
  constexpr std::string_view kHex = "0123456789ABCDEF";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((isWordCharacter(c) && byte < 0x80) || marks.find(c) != std::string_view::npos) {
      out += c;
    } else {
      out += '%';
      out += kHex[byte >> 4U];
      out += kHex[byte & 0xFU];
    }
  }
}

}  // namespace tool
