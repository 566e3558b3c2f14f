// The formats of a section: payload types, encodings, fmtp, apt and feedback.

#include "formatTable.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

#include "attributeNames.h"
#include "fieldReader.h"
#include "model.h"

namespace sdp::core {
namespace {

constexpr std::uint64_t kMostNumber = std::numeric_limits<std::uint32_t>::max();

struct StaticEncoding {
  std::string_view payload;
  EncodingParts encoding;
};

/// RFC 3551, section 6.
constexpr StaticEncoding kStaticEncodings[] = {
    {"0", {"PCMU", 8000, 1}},   {"3", {"GSM", 8000, 1}},    {"4", {"G723", 8000, 1}},
    {"5", {"DVI4", 8000, 1}},   {"6", {"DVI4", 16000, 1}},  {"7", {"LPC", 8000, 1}},
    {"8", {"PCMA", 8000, 1}},   {"9", {"G722", 8000, 1}},   {"10", {"L16", 44100, 2}},
    {"11", {"L16", 44100, 1}},  {"12", {"QCELP", 8000, 1}}, {"13", {"CN", 8000, 1}},
    {"14", {"MPA", 90000, 1}},  {"15", {"G728", 8000, 1}},  {"16", {"DVI4", 11025, 1}},
    {"17", {"DVI4", 22050, 1}}, {"18", {"G729", 8000, 1}},  {"25", {"CelB", 90000, 1}},
    {"26", {"JPEG", 90000, 1}}, {"28", {"nv", 90000, 1}},   {"31", {"H261", 90000, 1}},
    {"32", {"MPV", 90000, 1}},  {"33", {"MP2T", 90000, 1}}, {"34", {"H263", 90000, 1}},
};

struct RoleName {
  std::string_view name;
  Role role;
};

constexpr RoleName kCompanions[] = {
    {"rtx", Role::rtx},
    {"red", Role::red},
    {"CN", Role::comfortNoise},
    {"telephone-event", Role::telephoneEvent},
    {"ulpfec", Role::otherCompanion},
    {"flexfec", Role::otherCompanion},
    {"flexfec-03", Role::otherCompanion},
    {"parityfec", Role::otherCompanion},
    {"1d-interleaved-parityfec", Role::otherCompanion},
    {"raptorfec", Role::otherCompanion},
    {"rtploopback", Role::otherCompanion},
    {"encaprtp", Role::otherCompanion},
    {"tone", Role::otherCompanion},
};

/// Takes a slash and the digits behind it.
/// @return false when there is no slash, or no digit
bool takeNumber(const char*& at, const char* end, std::uint32_t& number) {
  if (at == end || *at != '/') return false;
  const char* const first = ++at;
  std::uint64_t value = 0;
  for (; at != end && sdpneg::isDigit(*at); ++at) {
    value = std::min<std::uint64_t>(value * 10 + static_cast<std::uint64_t>(*at - '0'), kMostNumber);
  }
  number = static_cast<std::uint32_t>(value);
  return at != first;
}

/// A letter, or any other character, as one of 32 bits.
constexpr std::uint32_t letterOf(char c) { return std::uint32_t{1} << (static_cast<unsigned char>(c) % 32U); }

/// What companions begin with. Most codecs begin with something else.
constexpr std::uint32_t kFirstLetters = [] {
  std::uint32_t letters = 0;
  for (const RoleName& companion : kCompanions) letters |= letterOf(companion.name.front());
  return letters;
}();

/// The payload type that `apt=` of a fmtp names (RFC 4588, section 8.1); empty when none does.
std::string_view aptIn(std::string_view fmtp) {
  while (!fmtp.empty()) {
    const std::size_t semicolon = std::min(fmtp.find(';'), fmtp.size());
    const std::string_view parameter = fmtp.substr(0, semicolon);
    fmtp.remove_prefix(std::min(semicolon + 1, fmtp.size()));
    const std::size_t equals = parameter.find('=');
    if (equals == std::string_view::npos) continue;
    FieldReader name(parameter.substr(0, equals));
    if (!sdpneg::equalNoCase(name.next(), "apt") || !name.next().empty()) continue;
    const std::string_view value = firstField(parameter.substr(equals + 1));
    if (isDigits(value)) return value;
  }
  return {};
}

}  // namespace

std::size_t formatCount(std::string_view formats) {
  std::size_t count = 0;
  for (FieldReader fields(formats); !fields.next().empty();) ++count;
  return count;
}

std::optional<EncodingParts> readEncodingText(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end && Fields::isBlank(*at)) ++at;
  const char* const begin = at;
  while (at != end && *at != '/' && !Fields::isBlank(*at)) ++at;
  EncodingParts encoding;
  encoding.name = {begin, static_cast<std::size_t>(at - begin)};
  if (at == begin || !takeNumber(at, end, encoding.clock)) return std::nullopt;
  if (at != end && *at == '/' && !takeNumber(at, end, encoding.channels)) return std::nullopt;
  if (at != end && !Fields::isBlank(*at)) return std::nullopt;
  return encoding;
}

std::optional<EncodingParts> staticEncodingOf(std::string_view payload) {
  const auto* const known =
      std::find_if(std::begin(kStaticEncodings), std::end(kStaticEncodings),
                   [payload](const StaticEncoding& encoding) { return encoding.payload == payload; });
  if (known == std::end(kStaticEncodings)) return std::nullopt;
  return known->encoding;
}

Role roleOf(std::string_view encodingName) {
  if (encodingName.empty() || (kFirstLetters & letterOf(encodingName[0])) == 0) return Role::codec;
  for (const RoleName& companion : kCompanions) {
    if (sdpneg::equalNoCase(companion.name, encodingName)) return companion.role;
  }
  return Role::codec;
}

void FormatTable::reserve(std::size_t formats) {
  entries.reserve(formats);
  slots_.reserve(formats);
  occurrences.reserve(formats);
}

FormatTable::Payload FormatTable::takePayload(std::string_view& text) {
  if (text.empty()) return {{}, kShortTexts};
  const Payload payload = takeShortPayload(text);
  if (payload.shortIndex != kShortTexts) return payload;
  const std::string_view field = Fields::takeField(text);
  std::string_view alone = field;
  return {field, takeShortPayload(alone).shortIndex};
}

/// Takes a text's beginning when that is a payload type of one to three digits, with a step for all of them.
FormatTable::Payload FormatTable::takeShortPayload(std::string_view& text) {
  const char* const begin = text.data();
  const std::uint64_t digits = load(begin) ^ 0x3030303030303030U;
  const std::uint64_t others =
      (((digits & 0x7F7F7F7F7F7F7F7FU) + 0x7676767676767676U) | digits) & 0x8080808080808080U;
  const auto length = std::min(static_cast<std::size_t>(std::countr_zero(others)) / 8, text.size());
  if (length - 1 >= kShortDigits || (length != text.size() && !Fields::isBlank(begin[length]))) {
    return {{}, kShortTexts};
  }
  // The last digit comes to stand in the highest byte, the others below it.
  const std::uint64_t aligned = digits << (64U - 8U * length);
  const std::uint64_t value =
      (aligned >> 56U) + (aligned >> 48U & 0xFFU) * 10 + (aligned >> 40U & 0xFFU) * 100;
  constexpr std::size_t kBegins[] = {0, 0, 10, 110};
  text.remove_prefix(length);
  return {{begin, length}, static_cast<std::uint16_t>(kBegins[length] + value)};
}

Index& FormatTable::slotOf(const Payload& payload) {
  if (payload.shortIndex != kShortTexts) return short_[payload.shortIndex];
  return slots_.slotOf(payload.text, [&](Index entry) { return entries[entry].payload == payload.text; });
}

Index FormatTable::find(const Payload& payload) {
  return payload.shortIndex != kShortTexts || usesSlots_ ? slotOf(payload) : kNone;
}

Index FormatTable::find(std::string_view payload) { return find(takePayload(payload)); }

void FormatTable::read(const Model& model, const Part& section) {
  if (part_ == model.indexOf(section)) return;
  readFormats(section);
  part_ = model.indexOf(section);
  feedbackOfAll = kNone;
  Index lastOfAll = kNone;
  forEach(model, section, kOfFormats, [&](Index i) { readLine(model, i, lastOfAll); });
  for (FormatEntry& entry : entries) {
    if (entry.name.empty()) give(entry, staticEncodingOf(entry.payload));
    entry.role = entry.name.empty() ? Role::codec : roleOf(entry.name);
  }
}

void FormatTable::readFormats(const Part& section) {
  // What the entries say may be of a text that is gone, but not where they stand.
  for (const FormatEntry& entry : entries) {
    if (entry.shortIndex != kShortTexts) short_[entry.shortIndex] = kNone;
  }
  entries.clear();
  occurrences.clear();
  usesSlots_ = false;
  // What separates the first format stands in front of them.
  const char* behind = section.m.transport.data() + section.m.transport.size();
  std::string_view rest = section.m.formats;
  for (Payload payload = takePayload(rest); !payload.text.empty(); payload = takePayload(rest)) {
    if (!usesSlots_ && payload.shortIndex == kShortTexts) {
      usesSlots_ = true;
      slots_.reset(formatCount(section.m.formats));
    }
    Index& slot = slotOf(payload);
    if (slot == kNone) {
      slot = static_cast<Index>(entries.size());
      FormatEntry& entry = entries.emplace_back();
      entry.payload = payload.text;
      entry.shortIndex = payload.shortIndex;
    }
    const std::string_view format = payload.text;
    occurrences.push_back({{behind, static_cast<std::size_t>(format.data() - behind)}, format, slot});
    behind = format.data() + format.size();
  }
}

void FormatTable::give(FormatEntry& entry, const std::optional<EncodingParts>& encoding) {
  if (!encoding) return;
  entry.name = encoding->name;
  entry.clock = encoding->clock;
  entry.channels = encoding->channels;
}

/// Chains a line behind the others that speak of its format, and takes the encoding from an rtpmap.
void FormatTable::readLine(const Model& model, Index index, Index& lastOfAll) {
  LineList& lines = model.lines;
  Line& line = lines[index];
  line.next = kNone;
  std::string_view text = textBehindColon(line);
  const Payload payload = takePayload(text);
  Index* first = &feedbackOfAll;
  Index* last = &lastOfAll;
  if (line.kind != Kind::rtcpFb || payload.text != "*") {
    const Index found = find(payload);
    if (found == kNone) return;
    FormatEntry& entry = entries[found];
    if (line.kind == Kind::rtpmap && entry.name.empty()) give(entry, readEncodingText(text));
    const bool isFeedback = line.kind == Kind::rtcpFb;
    first = isFeedback ? &entry.feedback : &entry.firstLine;
    last = isFeedback ? &entry.lastFeedback : &entry.lastLine;
  }
  (*last == kNone ? *first : lines[*last].next) = index;
  *last = index;
}

Index fmtpOf(const Model& model, FormatEntry& entry) {
  if (entry.fmtp) return *entry.fmtp;
  Index line = entry.firstLine;
  while (line != kNone && model.lines[line].kind != Kind::fmtp) line = model.lines[line].next;
  entry.fmtp = line;
  return line;
}

std::string_view behindPayload(const Line& line) {
  FieldReader fields(textBehindColon(line));
  fields.next();
  return fields.rest();
}

std::string_view aptOf(const Model& model, FormatEntry& entry) {
  if (entry.apt) return *entry.apt;
  std::string_view apt;
  for (Index line = fmtpOf(model, entry); line != kNone && apt.empty(); line = model.lines[line].next) {
    if (model.lines[line].kind == Kind::fmtp) apt = aptIn(behindPayload(model.lines[line]));
  }
  entry.apt = apt;
  return apt;
}

}  // namespace sdp::core
