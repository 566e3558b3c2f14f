// Reading lists of codecs, and what they name.

#include "requests/codecList.h"

#include <algorithm>

#include "fieldReader.h"

namespace sdp::core {
namespace {

bool isBlankOrControl(char c) { return c == ' ' || sdpneg::isControl(c); }

std::optional<CodecListEntry> entryOf(std::string_view text) {
  if (text.empty()) return std::nullopt;
  CodecListEntry entry;
  entry.isPayload = true;
  std::size_t slashes = 0;
  for (const char c : text) {
    if (isBlankOrControl(c)) return std::nullopt;
    entry.isPayload = entry.isPayload && sdpneg::isDigit(c);
    if (c == '/') ++slashes;
  }
  if (slashes == 0) {
    entry.name = EncodingName(text);
    return entry;
  }
  EncodingParts encoding;
  if (!readEncoding(text, 0, encoding)) return std::nullopt;
  entry.name = encoding.name;
  entry.clock = encoding.clock;
  if (slashes == 2) entry.channels = encoding.channels;
  return entry;
}

/// Calls `visit(const CodecListEntry&)` for each entry; ends at one that has another form.
/// @return whether all were entries
template <typename Visit>
bool forEachEntry(std::string_view list, Visit visit) {
  for (;;) {
    const std::size_t comma = list.find(',');
    const std::optional<CodecListEntry> entry = entryOf(list.substr(0, comma));
    if (!entry) return false;
    visit(*entry);
    if (comma == std::string_view::npos) return true;
    list.remove_prefix(comma + 1);
  }
}

}  // namespace

bool CodecListEntry::names(const FormatEntry& format) const {
  if (isPayload) return format.payload == name.text();
  const EncodingParts& encoding = format.encoding;
  return encoding.name == name && clock.value_or(encoding.clock) == encoding.clock &&
         channels.value_or(encoding.channels) == encoding.channels;
}

bool readCodecList(std::string_view list, std::vector<CodecListEntry>& entries) {
  entries.clear();
  return forEachEntry(list, [&entries](const CodecListEntry& entry) { entries.push_back(entry); });
}

bool isCodecList(std::string_view list) {
  return forEachEntry(list, [](const CodecListEntry&) {});
}

std::size_t placeIn(const std::vector<CodecListEntry>& entries, const FormatEntry& format) {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [&format](const CodecListEntry& entry) { return entry.names(format); });
  return static_cast<std::size_t>(found - entries.begin());
}

}  // namespace sdp::core
