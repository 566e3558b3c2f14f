#include "aLine.h"

#include "lineFormats.h"

// Attribute lines (RFC 4566 5.13).

namespace sdpcodec {

bool readAnyAttribute(std::string_view value, const char* readable, a_line::entry& entry) {
  const std::size_t colon = positionOf(':', value, readable);
  bool whole = copyField(entry.name, value.substr(0, colon), readable);
  entry.hasColon = colon != value.size() ? 1 : 0;
  entry.value[0] = '\0';
  if (entry.hasColon != 0) whole &= copyField(entry.value, value.substr(colon + 1), readable);
  return whole;
}

void writeAttributes(TextWriter& out, const a_line& line, int exactFrom) {
  for (int i = 0; i < usable(line.count, SDP_ATTRIBUTE_CAPACITY); ++i) {
    const a_line::entry& entry = line.entries[i];
    if (i == exactFrom) out.writeExactly();
    if (!out.reserve(sizeof entry + 16)) return;
    LineWriter text = out.line('a');
    text.put(entry.name);
    if (entry.hasColon != 0 || entry.value[0] != '\0') text.put(':').put(entry.value);
    out.endLine(text);
  }
}

}  // namespace sdpcodec

using namespace sdpcodec;

int sdp_AgetNoOfAs(const a_line* line) {
  return line != nullptr ? usable(line->count, SDP_ATTRIBUTE_CAPACITY) : 0;
}

const char* sdp_AgetAttributeField(const a_line* line, int index) {
  const a_line::entry* entry = entryAt(line, index);
  return entry != nullptr ? entry->name : nullptr;
}

const char* sdp_AgetAttributeValue(const a_line* line, int index) {
  const a_line::entry* entry = entryAt(line, index);
  return entry != nullptr && (entry->hasColon != 0 || entry->value[0] != '\0') ? entry->value : nullptr;
}

const char* sdp_AfindAttribute(const a_line* line, const char* name) {
  if (name == nullptr) return nullptr;
  for (int i = 0; i < sdp_AgetNoOfAs(line); ++i) {
    if (std::strcmp(line->entries[i].name, name) == 0) return line->entries[i].value;
  }
  return nullptr;
}

void sdp_Acopy(a_line* to, const a_line* from) {
  if (to == nullptr || from == nullptr || to == from) return;
  to->count = sdp_AgetNoOfAs(from);
  std::memcpy(to->entries, from->entries, sizeof(a_line::entry) * static_cast<std::size_t>(to->count));
}
