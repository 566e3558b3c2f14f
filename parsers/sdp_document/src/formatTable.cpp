// The formats of a section: payload types, encodings, fmtp, apt and feedback.

#include "formatTable.h"

#include <algorithm>
#include <array>

#include "fieldReader.h"
#include "model.h"

namespace sdp::core {
namespace {

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
  EncodingParts encoding;
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos || slash == 0) return std::nullopt;
  encoding.name = text.substr(0, slash);
  text.remove_prefix(slash + 1);
  const std::size_t second = text.find('/');
  const std::optional<std::uint32_t> clock = numberOf<std::uint32_t>(text.substr(0, second));
  if (!clock) return std::nullopt;
  encoding.clock = *clock;
  if (second == std::string_view::npos) return encoding;
  const std::optional<std::uint32_t> channels = numberOf<std::uint32_t>(text.substr(second + 1));
  if (!channels) return std::nullopt;
  encoding.channels = *channels;
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
  for (const RoleName& companion : kCompanions) {
    if (sdpneg::equalNoCase(companion.name, encodingName)) return companion.role;
  }
  return Role::codec;
}

void FormatTable::reserve(std::size_t formats) {
  entries.reserve(formats);
  occurrences.reserve(formats);
  if (formats > kShortTexts) slots_.reserve(formats);
}

std::size_t FormatTable::shortIndexOf(std::string_view payload) {
  if (payload.empty() || payload.size() > 3) return kShortTexts;
  std::size_t value = 0;
  for (const char c : payload) {
    if (!sdpneg::isDigit(c)) return kShortTexts;
    value = value * 10 + static_cast<std::size_t>(c - '0');
  }
  constexpr std::size_t kBegins[] = {0, 10, 110};
  return kBegins[payload.size() - 1] + value;
}

Index& FormatTable::slotOf(std::string_view payload) {
  const std::size_t index = shortIndexOf(payload);
  if (index != kShortTexts) return short_[index];
  usesSlots_ = true;
  return slots_.slotOf(payload, [&](Index entry) { return entries[entry].payload == payload; });
}

Index FormatTable::find(std::string_view payload) {
  const std::size_t index = shortIndexOf(payload);
  if (index != kShortTexts) return short_[index];
  if (!usesSlots_) return kNone;
  return slots_.slotOf(payload, [&](Index entry) { return entries[entry].payload == payload; });
}

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
  FieldReader fields(section.m.formats);
  for (std::string_view format = fields.next(); !format.empty(); format = fields.next()) {
    if (!usesSlots_ && shortIndexOf(format) == kShortTexts) slots_.reset(formatCount(section.m.formats));
    Index& slot = slotOf(format);
    if (slot == kNone) {
      slot = static_cast<Index>(entries.size());
      FormatEntry& entry = entries.emplace_back();
      entry.payload = format;
      entry.shortIndex = static_cast<std::uint16_t>(shortIndexOf(format));
    }
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
  FieldReader fields(valueOf(line).value_or(std::string_view()));
  const std::string_view payload = fields.next();
  Index* first = &feedbackOfAll;
  Index* last = &lastOfAll;
  if (line.kind != Kind::rtcpFb || payload != "*") {
    const Index found = find(payload);
    if (found == kNone) return;
    FormatEntry& entry = entries[found];
    if (line.kind == Kind::rtpmap && entry.name.empty()) give(entry, readEncodingText(fields.next()));
    first = &entry.firstLine;
    last = &entry.lastLine;
  }
  (*last == kNone ? *first : lines[*last].next) = index;
  *last = index;
}

Index fmtpOf(const Model& model, const FormatEntry& entry) {
  Index line = entry.firstLine;
  while (line != kNone && model.lines[line].kind != Kind::fmtp) line = model.lines[line].next;
  return line;
}

std::string_view behindPayload(const Line& line) {
  FieldReader fields(valueOf(line).value_or(std::string_view()));
  fields.next();
  return fields.rest();
}

std::string_view aptOf(const Model& model, const FormatEntry& entry) {
  for (Index line = entry.firstLine; line != kNone; line = model.lines[line].next) {
    if (model.lines[line].kind != Kind::fmtp) continue;
    const std::string_view apt = aptIn(behindPayload(model.lines[line]));
    if (!apt.empty()) return apt;
  }
  return {};
}

}  // namespace sdp::core
