#include "sdpModifiers/sdes.h"

#include <sys/time.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <string_view>

#include "base64_encoding.h"
#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/mLineFields.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// Crypto attributes of SDES (RFC 4568): keys for them, and whether they alone secure a text.

namespace sdpneg {

namespace {

/// The suites that a suite has to sort at or behind one of to get a key.
constexpr std::string_view kLeastSuites[] = {"AES_CM_128_HMAC_SHA1", "AES_CM_256_HMAC_SHA1"};

/// A master key and its salt, and their text with its NUL.
constexpr std::size_t kKeyBytes = 30;
constexpr std::size_t kKeyTextSize = kKeyBytes / 3 * 4 + 1;

/// The state of the C library's default random numbers.
constexpr std::size_t kRandomStateSize = 128;

/// Fills a key with what the C library's random numbers are for a seed. They are taken from a state of their own,
/// so that the process' numbers go on undisturbed.
void fillKey(unsigned char (&key)[kKeyBytes], unsigned int seed) {
  constexpr std::size_t kLongBytes = 8;
  alignas(std::int32_t) char state[kRandomStateSize] = {};
  random_data generator{};
  initstate_r(seed, state, sizeof state, &generator);
  std::int32_t number = 0;
  for (std::size_t i = 0; i < kKeyBytes; ++i) {
    const std::size_t byte = i % kLongBytes;
    if (byte == 0) random_r(&generator, &number);
    // The numbers have 31 bits and stand as 64 in the key, the lowest byte first.
    key[i] = static_cast<unsigned char>(static_cast<std::uint64_t>(number) >> (8 * byte) & 0xFFU);
  }
}

/// A crypto attribute that has a tag and a suite with a space behind each.
struct CryptoLine {
  Line line;
  std::string_view tag;
  std::string_view suite;
  std::size_t parameters;  ///< behind the blanks that follow the suite
};

std::optional<CryptoLine> cryptoLineAt(std::string_view text, std::size_t begin) {
  const Line line = lineAt(text, begin);
  if (!line.terminated) return std::nullopt;
  const std::string_view all = text.substr(0, line.lf);
  const auto behindBlanks = [all](std::size_t from) {
    return orEnd(all.find_first_not_of(" \t", from), all);
  };
  const std::size_t tag = begin + kCrypto.size();
  const std::size_t tagEnd = all.find(' ', tag);
  if (tagEnd == npos) return std::nullopt;
  const std::size_t suite = behindBlanks(tagEnd);
  const std::size_t suiteEnd = all.find(' ', suite);
  if (suiteEnd == npos) return std::nullopt;
  return CryptoLine{line, all.substr(tag, tagEnd - tag), all.substr(suite, suiteEnd - suite),
                    behindBlanks(suiteEnd)};
}

/// Whether a suite sorts at or behind a name, letters compared without regard to case and no further than the
/// suite goes.
bool sortsFrom(std::string_view suite, std::string_view name) {
  for (std::size_t i = 0; i < suite.size(); ++i) {
    const auto character = static_cast<unsigned char>(lower(suite[i]));
    const auto least = static_cast<unsigned char>(i < name.size() ? lower(name[i]) : '\0');
    if (character != least) return character > least;
  }
  return true;
}

bool mayHaveKey(std::string_view suite) {
  return std::any_of(std::begin(kLeastSuites), std::end(kLeastSuites),
                     [suite](std::string_view name) { return sortsFrom(suite, name); });
}

/// A key and the second that it is for. One that is made again within its second is the same.
struct KeyOfSecond {
  bool made = false;
  unsigned int second = 0;
  unsigned char bytes[kKeyBytes] = {};
};

/// @return as `base64_encode`
int writeKey(char* out, unsigned long outCap) {
  thread_local KeyOfSecond key;
  timeval now{};
  gettimeofday(&now, nullptr);
  const auto second = static_cast<unsigned int>(now.tv_sec);
  if (!key.made || key.second != second) {
    fillKey(key.bytes, second);
    key.second = second;
    key.made = true;
  }
  return base64_encode(key.bytes, sizeof key.bytes, out, outCap);
}

/// Puts a new key in the place of all that follows a suite.
Edit putKey(SdpText& text, const CryptoLine& crypto) {
  trace::info("Creating SDES crypto line with tag [%.*s] and suite [%.*s]",
              static_cast<int>(crypto.tag.size()), crypto.tag.data(), static_cast<int>(crypto.suite.size()),
              crypto.suite.data());
  char key[kKeyTextSize];
  writeKey(key, sizeof key);
  const auto parameters = FixedText<kKeyTextSize + 9>().add("inline:").add(key).add("\r\n");
  return text.replace({crypto.parameters, crypto.line.next()}, parameters.view());
}

/// A media section. Its end does not move with the text: what comes to stand in front of it belongs to the
/// section, what comes to stand behind it does not.
struct SdesSection {
  std::size_t mLine;
  std::size_t end;
};

/// One pass of removals through a section's crypto attributes. It ends at one that gets a key.
class CryptoPass {
 public:
  CryptoPass(const SdesSection& section, std::size_t from, bool keyed)
      : sectionEnd_(section.end), from_(from), keyed_(keyed), mLine_(section.mLine) {}

  std::optional<Span> next(std::string_view text, std::size_t rest) {
    const std::size_t at = findAnywhere(text, kCrypto, std::max(rest, from_));
    if (at == npos || at - erased_ >= sectionEnd_) return std::nullopt;
    const std::optional<CryptoLine> crypto = cryptoLineAt(text, at);
    refusal_ = crypto ? readPort(text) : Refusal{.reason = SDP_REFUSED_CRYPTO_NOT_READ};
    if (refusal_) return std::nullopt;
    if (!keyed_ && port_ != 0 && mayHaveKey(crypto->suite)) {
      keyAt_ = at - erased_;
      return std::nullopt;
    }
    return remove(*crypto);
  }

  const Refusal& refusal() const { return refusal_; }
  /// Where the attribute stands that gets the key, once the pass is done.
  std::size_t keyAt() const { return keyAt_; }

 private:
  Refusal readPort(std::string_view text) {
    if (firstWordEnd_ != npos) return {};
    firstWordEnd_ = static_cast<std::size_t>(
        std::find_if(text.begin() + static_cast<std::ptrdiff_t>(mLine_ + 1), text.end(), isSpace) -
        text.begin());
    const std::optional<unsigned short> port = portAt(text, mLine_);
    port_ = port.value_or(port_);
    return port ? Refusal() : Refusal{.reason = SDP_REFUSED_PORT_NOT_READ};
  }

  Span remove(const CryptoLine& crypto) {
    trace::info("Removing SDES crypto line with tag [%.*s] and suite [%.*s]",
                static_cast<int>(crypto.tag.size()), crypto.tag.data(), static_cast<int>(crypto.suite.size()),
                crypto.suite.data());
    const Span gone{crypto.line.begin, crypto.line.next()};
    if (gone.begin < firstWordEnd_) continueFirstWordAt(gone);
    erased_ += gone.end - gone.begin;
    return gone;
  }

  /// An attribute that stood in the m-line's first word took the port with it; the word goes on behind the attribute,
  /// and another port follows. Of what is kept of the word, the port's reader needs one character, whichever it is.
  void continueFirstWordAt(const Span& gone) {
    mLine_ = gone.end + mLine_ - std::min(gone.begin, mLine_ + 1);
    firstWordEnd_ = npos;
  }

  std::size_t sectionEnd_;
  std::size_t from_;
  bool keyed_;
  std::size_t mLine_;                ///< where the port is read
  std::size_t firstWordEnd_ = npos;  ///< of the m-line, once the port was read
  std::size_t erased_ = 0;
  std::size_t keyAt_ = npos;
  unsigned short port_ = 0;
  Refusal refusal_;
};

/// What makes a text other than secured by crypto attributes alone.
struct Keys {
  std::size_t management;  ///< the first key management, which counts for all sections behind it
  std::size_t lastCrypto;  ///< may stand in any later section than the one that it counts for
};

/// Whether a section is inactive, or secured by crypto attributes alone.
bool isSdesOnlyAt(std::string_view text, const Span& section, const Keys& keys) {
  if (portAt(text, section.begin).value_or(0) == 0) return true;
  if (keys.management < section.end) return false;
  if (keys.lastCrypto == npos || keys.lastCrypto < section.begin) return false;
  return !contains(text.substr(section.begin, section.end - section.begin), kPlainTransport);
}

}  // namespace

Refusal addSdesLine(SdpText& text, std::size_t mediaStart) {
  const std::size_t next = nextMLine(text.view(), mediaStart + 1);
  const SdesSection section{mediaStart + 1, next != npos ? next - 1 : text.size()};
  std::size_t from = mediaStart;
  bool keyed = false;
  while (true) {
    CryptoPass pass(section, from, keyed);
    text.eraseEach([&](std::string_view view, std::size_t rest) { return pass.next(view, rest); });
    if (pass.keyAt() == npos) return pass.refusal();
    const std::optional<CryptoLine> crypto = cryptoLineAt(text.view(), pass.keyAt());
    if (!crypto || putKey(text, *crypto) != Edit::done) {
      return {.reason = SDP_REFUSED_NO_ROOM, .operation = "addSDESLine", .what = "new key"};
    }
    keyed = true;
    from = pass.keyAt() + 1;
  }
}

bool isSdesOnly(std::string_view text, const Notes& notes) {
  const Keys keys{notes.find(Noted::keyManagement, 0), notes.last(Noted::crypto)};
  for (std::size_t mLine = nextMLine(notes); mLine != npos;) {
    const std::size_t next = nextMLine(notes, mLine);
    if (!isSdesOnlyAt(text, {mLine, orEnd(next, text)}, keys)) return false;
    mLine = next;
  }
  return true;
}

}  // namespace sdpneg

using namespace sdpneg;

int sdpModifications::generateSDESKey(char* out, unsigned long outCap) { return writeKey(out, outCap); }

unsigned short sdpModifications::addSDESLine(char* mediaStart) {
  SdpText text(mediaStart);
  return adopted(text, "addSDESLine") ? statusOf(addSdesLine(text, 0)) : 1;
}

bool sdpModifications::isSDESonly(const char* sdp) {
  const auto text = adoptedView(sdp, "isSDESonly");
  return text && isSdesOnly(*text, Notes(*text));
}
