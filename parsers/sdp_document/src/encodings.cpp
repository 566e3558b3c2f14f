// Reading encodings, those of RFC 3551, and which of them serve others.

#include "encodings.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>

#include "attributeNames.h"
#include "payloads.h"
#include "scan.h"

namespace sdp::core {
namespace {

constexpr std::uint64_t kMostNumber = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t kAtOnce = 8;  ///< characters

constexpr EncodingParts encodingOf(std::string_view name, std::uint32_t clock, std::uint32_t channels = 1) {
  return {EncodingName(name), clock, channels};
}

/// RFC 3551, section 6; by payload type.
constexpr EncodingParts kStaticEncodings[] = {
    encodingOf("PCMU", 8000),
    {},
    {},
    encodingOf("GSM", 8000),
    encodingOf("G723", 8000),
    encodingOf("DVI4", 8000),
    encodingOf("DVI4", 16000),
    encodingOf("LPC", 8000),
    encodingOf("PCMA", 8000),
    encodingOf("G722", 8000),
    encodingOf("L16", 44100, 2),
    encodingOf("L16", 44100),
    encodingOf("QCELP", 8000),
    encodingOf("CN", 8000),
    encodingOf("MPA", 90000),
    encodingOf("G728", 8000),
    encodingOf("DVI4", 11025),
    encodingOf("DVI4", 22050),
    encodingOf("G729", 8000),
    {},
    {},
    {},
    {},
    {},
    {},
    encodingOf("CelB", 90000),
    encodingOf("JPEG", 90000),
    {},
    encodingOf("nv", 90000),
    {},
    {},
    encodingOf("H261", 90000),
    encodingOf("MPV", 90000),
    encodingOf("MP2T", 90000),
    encodingOf("H263", 90000),
};

struct Companion {
  EncodingName name;
  Role role = Role::codec;
};

constexpr Companion kCompanions[] = {
    {EncodingName("rtx"), Role::rtx},
    {EncodingName("red"), Role::red},
    {EncodingName("CN"), Role::comfortNoise},
    {EncodingName("telephone-event"), Role::telephoneEvent},
    {EncodingName("ulpfec"), Role::otherCompanion},
    {EncodingName("flexfec"), Role::otherCompanion},
    {EncodingName("flexfec-03"), Role::otherCompanion},
    {EncodingName("parityfec"), Role::otherCompanion},
    {EncodingName("1d-interleaved-parityfec"), Role::otherCompanion},
    {EncodingName("raptorfec"), Role::otherCompanion},
    {EncodingName("rtploopback"), Role::otherCompanion},
    {EncodingName("encaprtp"), Role::otherCompanion},
    {EncodingName("tone"), Role::otherCompanion},
};

/// Companions have slots of their own, which the making of the table checks.
constexpr unsigned kSlotBits = 5;
constexpr std::size_t slotOf(std::uint64_t head) { return (head * 0x1600A35A099950D9U) >> (64U - kSlotBits); }

constexpr std::array<Companion, std::size_t{1} << kSlotBits> makeCompanionSlots() {
  std::array<Companion, std::size_t{1} << kSlotBits> slots{};
  for (const Companion& companion : kCompanions) {
    Companion& slot = slots[slotOf(companion.name.head())];
    if (slot.role != Role::codec) throw "two names share a slot";
    slot = companion;
  }
  return slots;
}
constexpr auto kCompanionSlots = makeCompanionSlots();

/// Where the name ends that begins at `at`.
const char* nameEnd(const char* at, const char* end, const char* readableEnd) {
  if (readableEnd - end >= std::ptrdiff_t{kScanWidth}) return findBlankOr('/', at, end);
  return std::find_if(at, end, [](char c) { return c == '/' || Fields::isBlank(c); });
}

/// Up to eight digits, the first in the lowest byte, as a number.
std::uint32_t numberIn(std::uint64_t digits, std::size_t count) {
  const std::uint64_t aligned = digits << (64U - 8U * count);
  const std::uint64_t pairs = aligned * 10 + (aligned >> 8U);
  return static_cast<std::uint32_t>(((pairs & 0x000000FF000000FFU) * 0x000F424000000064U +
                                     (pairs >> 16U & 0x000000FF000000FFU) * 0x0000271000000001U) >>
                                    32U);
}

/// Takes a slash and the digits behind it.
/// @return false when there is no slash, or no digit
bool takeNumber(const char*& at, const char* end, const char* readableEnd, std::uint32_t& number) {
  if (at == end || *at != '/') return false;
  const char* const first = ++at;
  if (readableEnd - at >= std::ptrdiff_t{kAtOnce}) {
    const std::uint64_t digits = loadDigits(at);
    const std::size_t count = std::min(leadingDigits(digits), static_cast<std::size_t>(end - at));
    if (count == 0) return false;
    if (count < kAtOnce) {
      number = numberIn(digits, count);
      at += count;
      return true;
    }
  }
  std::uint64_t value = 0;
  for (; at != end && sdpneg::isDigit(*at); ++at) {
    value = std::min<std::uint64_t>(value * 10 + static_cast<std::uint64_t>(*at - '0'), kMostNumber);
  }
  number = static_cast<std::uint32_t>(value);
  return at != first;
}

}  // namespace

EncodingName EncodingName::ofRoomy(std::string_view text) noexcept {
  EncodingName name;
  name.text_ = text;
  const std::uint64_t head = frontOf(load(text.data()), text.size());
  // What is a letter in upper case gets the bit that it has in lower case.
  const std::uint64_t sevenBits = head & 0x7F7F7F7F7F7F7F7FU;
  const std::uint64_t fromA = sevenBits + 0x3F3F3F3F3F3F3F3FU;
  const std::uint64_t behindZ = sevenBits + 0x2525252525252525U;
  name.head_ = head | ((fromA & ~behindZ & ~head & 0x8080808080808080U) >> 2U);
  return name;
}

bool readEncoding(std::string_view text, std::size_t room, EncodingParts& encoding) {
  const char* at = text.data();
  const char* const end = at + text.size();
  const char* const readableEnd = end + room;
  at = skipBlanks(at, end);
  const char* const begin = at;
  at = nameEnd(at, end, readableEnd);
  const std::string_view name(begin, static_cast<std::size_t>(at - begin));
  std::uint32_t clock = 0;
  std::uint32_t channels = 1;
  if (name.empty() || !takeNumber(at, end, readableEnd, clock)) return false;
  if (at != end && *at == '/' && !takeNumber(at, end, readableEnd, channels)) return false;
  if (at != end && !Fields::isBlank(*at)) return false;
  const bool isRoomy = readableEnd - begin >= std::ptrdiff_t{kAtOnce};
  encoding = {isRoomy ? EncodingName::ofRoomy(name) : EncodingName(name), clock, channels};
  return true;
}

const EncodingParts* staticEncodingOf(std::uint16_t payload) {
  // Payload types of one digit are their number, those of two are ten more; "08" is none.
  const std::size_t number = payload < 10 ? payload : payload - std::size_t{10};
  const bool isShortest = payload < 10 || number >= 10;
  if (!isShortest || number >= std::size(kStaticEncodings)) return nullptr;
  const EncodingParts& encoding = kStaticEncodings[number];
  return encoding.name.text().empty() ? nullptr : &encoding;
}

Role roleOf(const EncodingName& name) {
  const Companion& companion = kCompanionSlots[slotOf(name.head())];
  return companion.name == name ? companion.role : Role::codec;
}

}  // namespace sdp::core
