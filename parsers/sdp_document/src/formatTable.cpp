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

std::optional<std::uint32_t> clockOf(std::string_view digits) {
  if (!isDigits(digits)) return std::nullopt;
  return sdpneg::numberOrZero<std::uint32_t>(digits);
}

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
  const std::optional<std::uint32_t> clock = clockOf(text.substr(0, second));
  if (!clock) return std::nullopt;
  encoding.clock = *clock;
  if (second == std::string_view::npos) return encoding;
  const std::optional<std::uint32_t> channels = clockOf(text.substr(second + 1));
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
  slots_.reserve(formats);
}

Index FormatTable::find(std::string_view payload) {
  return slots_.slotOf(payload, [&](Index entry) { return entries[entry].payload == payload; });
}

void FormatTable::read(const Model& model, const Part& section) {
  if (part_ == model.indexOf(section)) return;
  part_ = model.indexOf(section);
  readFormats(section);
  feedbackOfAll = kNone;
  Index lastOfAll = kNone;
  forEach(model, section, kindsOf(Kind::rtpmap, Kind::fmtp, Kind::rtcpFb), [&](Index i) {
    const Line& line = model.lines[i];
    if (line.kind == Kind::rtpmap) return readEncoding(line);
    if (line.kind == Kind::fmtp) return readFmtp(line, i);
    readFeedback(model, i, lastOfAll);
  });
  for (FormatEntry& entry : entries) {
    if (entry.name.empty()) give(entry, staticEncodingOf(entry.payload));
    entry.role = entry.name.empty() ? Role::codec : roleOf(entry.name);
  }
}

void FormatTable::readFormats(const Part& section) {
  entries.clear();
  occurrences.clear();
  const std::string_view formats = section.m.formats;
  // What separates the first format stands in front of them.
  const char* behind = section.m.transport.data() + section.m.transport.size();
  slots_.reset(formats.size() / 2 < entries.capacity() ? formats.size() / 2 + 1 : formatCount(formats));
  FieldReader fields(formats);
  for (std::string_view format = fields.next(); !format.empty(); format = fields.next()) {
    Index& slot = slots_.slotOf(format, [&](Index entry) { return entries[entry].payload == format; });
    if (slot == kNone) {
      slot = static_cast<Index>(entries.size());
      entries.emplace_back().payload = format;
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

void FormatTable::readEncoding(const Line& line) {
  const std::optional<std::string_view> value = valueOf(line);
  if (!value) return;
  FieldReader fields(*value);
  const Index found = find(fields.next());
  if (found == kNone || !entries[found].name.empty()) return;
  give(entries[found], readEncodingText(fields.next()));
}

void FormatTable::readFmtp(const Line& line, Index index) {
  const std::optional<std::string_view> value = valueOf(line);
  if (!value) return;
  FieldReader fields(*value);
  const Index found = find(fields.next());
  if (found == kNone) return;
  FormatEntry& entry = entries[found];
  if (entry.fmtp == kNone) entry.fmtp = index;
  if (entry.apt.empty()) entry.apt = aptIn(fields.rest());
}

void FormatTable::readFeedback(const Model& model, Index index, Index& lastOfAll) {
  std::vector<Line>& lines = model.lines;
  lines[index].next = kNone;
  const std::string_view payload = firstFieldOf(lines[index]);
  Index* first = &feedbackOfAll;
  Index* last = &lastOfAll;
  if (payload != "*") {
    const Index found = find(payload);
    if (found == kNone) return;
    first = &entries[found].feedback;
    last = &entries[found].lastFeedback;
  }
  (*last == kNone ? *first : lines[*last].next) = index;
  *last = index;
}

}  // namespace sdp::core
