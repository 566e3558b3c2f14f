// The formats of sections: payload types, encodings, fmtp, apt and feedback.

#include "formatTable.h"

#include <algorithm>
#include <utility>

#include "attributeNames.h"
#include "fieldReader.h"
#include "model.h"
#include "scan.h"

namespace sdp::core {
namespace {

std::size_t formatCount(std::string_view formats) {
  std::size_t count = 0;
  for (FieldReader fields(formats); !fields.next().empty();) ++count;
  return count;
}

/// The payload type that a line speaks of, and what stands behind it.
struct Spoken {
  std::string_view payload;
  std::string_view behind;
};
/// @param number of the payload type
Spoken spokenOf(const Line& line, std::uint16_t number) {
  std::string_view text = textBehindColon(line);
  if (number == kOtherPayload) {
    const std::string_view payload = Fields::takeField(text);
    return {payload, text};
  }
  const std::size_t digits = digitCountOf(number);
  return {text.substr(0, digits), text.substr(digits)};
}

/// A short payload type and the blank behind it, by which the next line that begins so is known.
class ShortField {
 public:
  ShortField() = default;
  ShortField(std::string_view text, std::uint16_t number) : number_(number) {
    if (number == kOtherPayload || digitCountOf(number) == text.size()) return;
    length_ = digitCountOf(number) + 1;
    characters_ = frontOf(load(text.data()), length_);
  }
  bool begins(std::string_view text) const {
    return length_ <= text.size() && length_ != 0 && frontOf(load(text.data()), length_) == characters_;
  }
  std::uint16_t number() const { return number_; }

 private:
  std::uint64_t characters_ = 0;
  std::size_t length_ = 0;
  std::uint16_t number_ = kOtherPayload;
};

/// The small number of a payload type, behind which eight characters are readable.
std::uint16_t shortNumberOf(std::string_view payload) {
  return payload.empty() ? kOtherPayload : payloadAt(payload.data(), payload.size());
}

/// The payload type that `apt=` of a fmtp names (RFC 4588, section 8.1); empty when none does.
std::string_view aptIn(std::string_view fmtp) {
  // As nearly everybody writes it.
  constexpr std::string_view kAlone = "apt=";
  if (fmtp.starts_with(kAlone) && isDigits(fmtp.substr(kAlone.size()))) return fmtp.substr(kAlone.size());
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

/// The encoding of the first rtpmap that has one, of those that speak of a format, else that of RFC 3551.
void readEncodingOf(const Model& model, FormatEntry& entry) {
  for (Index i = entry.firstLine; i != kNone; i = model.lines[i].next) {
    const Line& line = model.lines[i];
    if (line.kind == Kind::rtpmap &&
        readEncoding(spokenOf(line, line.detail).behind, kReadAhead, entry.encoding))
      return;
  }
  const EncodingParts* const encoding = staticEncodingOf(entry.number);
  if (encoding != nullptr) entry.encoding = *encoding;
}

}  // namespace

void FormatTable::reserve(std::size_t formats, std::size_t sections) {
  if (formats > allOccurrences_.size()) {
    const std::size_t most = std::max(formats, 2 * allOccurrences_.size());
    allEntries_.resize(most);
    slots_.reserve(most);
    allOccurrences_.resize(most);
  }
  if (sections >= places_.size()) {
    sections_.reserve(std::max(sections, 2 * places_.size()));
    places_.resize(sections_.capacity() + 1);
  }
  forget();
}

Index FormatTable::find(std::string_view payload) {
  if (found_ != current_) findEntries();
  return entryOf(shortNumberOf(payload), payload);
}

void FormatTable::read(const Model& model, const Part& section) {
  const Index part = model.indexOf(section);
  if (part == current_) return;
  const Index place = places_[part];
  if (place < sections_.size() && sections_[place].part == part) return use(sections_[place]);
  if (sections_.empty()) {
    entryCount_ = 0;
    occurrenceCount_ = 0;
  }
  use({part, entryCount_, occurrenceCount_});
  beginFinding();
  readFormats(section);
  readLines(model, section);
  for (FormatEntry& entry : entries) {
    readEncodingOf(model, entry);
    entry.role = roleOf(entry.encoding.name);
  }
  places_[part] = static_cast<Index>(sections_.size());
  sections_.push_back(
      {part, entryCount_, occurrenceCount_, entries.size(), occurrences.size(), feedbackOfAll, hasOthers_});
  entryCount_ += entries.size();
  occurrenceCount_ += occurrences.size();
}

void FormatTable::use(const Section& section) {
  current_ = section.part;
  entries = {allEntries_.data() + section.firstEntry, section.entryCount};
  occurrences = {allOccurrences_.data() + section.firstOccurrence, section.occurrenceCount};
  feedbackOfAll = section.feedbackOfAll;
  hasOthers_ = section.hasOthers;
}

/// Reads the formats behind those of the sections that were read before. There is room for them.
void FormatTable::readFormats(const Part& section) {
  // What separates the first format stands in front of them.
  const char* begin = section.m.transport.data() + section.m.transport.size();
  const char* at = section.m.formats.data();
  const char* const end = at + section.m.formats.size();
  Occurrence* occurrence = allOccurrences_.data() + occurrenceCount_;
  for (;;) {
    at = skipBlanks(at, end);
    if (at == end) break;
    const char* const format = at;
    const std::uint16_t number = payloadAt(at, static_cast<std::size_t>(end - at));
    if (number == kOtherPayload) {
      at = findBlank(at, end);
      if (!hasOthers_) slots_.reset(formatCount(section.m.formats));
      hasOthers_ = true;
    } else {
      at += digitCountOf(number);
    }
    *occurrence++ = {begin, static_cast<Index>(format - begin), static_cast<Index>(at - format),
                     entryOrNew(number, {format, static_cast<std::size_t>(at - format)})};
    begin = at;
  }
  occurrences = {occurrences.data(), occurrence};
}

Index FormatTable::entryOrNew(std::uint16_t number, std::string_view payload) {
  const Index found = entryOf(number, payload);
  if (found != kNone) return found;
  const std::size_t entry = entries.size();
  FormatEntry& added = allEntries_[entryCount_ + entry];
  added = {};
  added.payload = payload;
  added.number = number;
  entries = {entries.data(), entry + 1};
  slotOf(number, payload) = static_cast<Index>(entry);
  return static_cast<Index>(entry);
}

Index& FormatTable::slotOf(std::uint16_t number, std::string_view payload) {
  if (number == kOtherPayload) {
    return slots_.slotOf(payload, [&](Index entry) { return entries[entry].payload == payload; });
  }
  short_[number].stamp = stamp_;
  return short_[number].entry;
}

/// Entries are found of the current section from now on, of which none is known yet.
void FormatTable::beginFinding() {
  found_ = current_;
  if (++stamp_ != 0) return;
  short_.fill({});
  stamp_ = 1;
}

/// Lets the entries of a section that was read before be found again.
void FormatTable::findEntries() {
  beginFinding();
  if (hasOthers_) slots_.reset(entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    slotOf(entries[i].number, entries[i].payload) = static_cast<Index>(i);
  }
}

/// Chains the lines that speak of each format, from the last to the first.
void FormatTable::readLines(const Model& model, const Part& section) {
  if ((section.kinds & kOfFormats) == 0) return;
  Line* const lines = model.lines.begin();
  FormatEntry* entry = nullptr;
  ShortField field;  // the one that it was found by
  for (Index i = section.end; i-- > section.first;) {
    Line& line = lines[i];
    if (line.gone != 0 || !has(kOfFormats, line.kind)) continue;
    const std::string_view text = textBehindColon(line);
    const bool isFeedback = line.kind == Kind::rtcpFb;
    if (!field.begins(text)) {
      line.detail = text.empty() ? kOtherPayload : payloadAt(text.data(), text.size());
      entry = line.detail != kOtherPayload
                  ? entryAt(entryOf(line.detail))
                  : entryAt(entryOf(shortNumberOf(firstField(text)), firstField(text)));
      field = entry != nullptr ? ShortField(text, line.detail) : ShortField();
    }
    if (entry == nullptr) {
      if (isFeedback && firstField(text) == "*") line.next = std::exchange(feedbackOfAll, i);
      continue;
    }
    line.detail = field.number();
    Index& first = isFeedback ? entry->feedback : entry->firstLine;
    line.next = std::exchange(first, i);
    if (line.kind == Kind::fmtp) entry->fmtp = i;
  }
}

FormatEntry* FormatTable::entryAt(Index entry) { return entry == kNone ? nullptr : &entries[entry]; }

std::string_view behindPayload(const Line& line) {
  return withoutBlanksAround(spokenOf(line, line.detail).behind);
}

std::string_view aptOf(const Model& model, FormatEntry& entry) {
  for (Index i = entry.fmtp; !entry.knowsApt && i != kNone; i = model.lines[i].next) {
    if (model.lines[i].kind != Kind::fmtp) continue;
    entry.apt = aptIn(behindPayload(model.lines[i]));
    entry.knowsApt = !entry.apt.empty();
  }
  entry.knowsApt = true;
  return entry.apt;
}

std::size_t mostFormatsOf(std::string_view formats) {
  constexpr std::size_t kFew = 64;
  return formats.size() <= kFew ? (formats.size() + 1) / 2 : formatCount(formats);
}

}  // namespace sdp::core
