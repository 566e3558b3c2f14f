#ifndef SDP_MODIFIERS_ADOPT_H
#define SDP_MODIFIERS_ADOPT_H

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "refusal.h"
#include "text/sdpText.h"
#include "text/search.h"

// What edits refuse before they look at a text: a buffer that holds none, and values that no line can hold.

namespace sdpneg {

/// A buffer, which may be null, as an empty text, whatever it holds.
inline SdpText emptied(char* buffer) {
  if (buffer != nullptr) buffer[0] = '\0';
  return SdpText(buffer);
}

/// The refusal of a buffer that holds no text; none when its text can be edited.
inline Refusal refusalOfBuffer(const SdpText& text, const char* operation) {
  if (text.usable()) return {};
  return {.reason = SDP_REFUSED_UNUSABLE_BUFFER, .operation = operation};
}

/// Whether a caller's buffer holds a text that can be edited; tells when it does not.
inline bool adopted(const SdpText& text, const char* operation) {
  return statusOf(refusalOfBuffer(text, operation)) == 0;
}

/// The text of a caller's buffer that is only read; nothing, with a trace, for what could not be edited either.
inline std::optional<std::string_view> adoptedView(const char* text, const char* operation) {
  if (text != nullptr) {
    const std::size_t length = strnlen(text, MAX_SDP_PROTOCOL_DATA_SIZE);
    if (length < MAX_SDP_PROTOCOL_DATA_SIZE) return std::string_view(text, length);
  }
  tell({.reason = SDP_REFUSED_UNUSABLE_BUFFER, .operation = operation});
  return std::nullopt;
}

/// Whether a control character is among those of a text, which is short.
inline bool holdsControl(std::string_view text) {
  bool holds = false;
  for (const char c : text) holds |= isControl(c);
  return holds;
}

/// The refusal of texts of a caller that may not stand in a line. A control character in one could end the line, and
/// make what follows it a line of its own.
inline Refusal refusalOfLineTexts(std::initializer_list<std::string_view> texts, const char* operation) {
  for (const std::string_view text : texts) {
    if (!holdsControl(text)) continue;
    return {.reason = SDP_REFUSED_CONTROL_CHARACTER, .operation = operation};
  }
  return {};
}

/// Whether texts of a caller may stand in a line; tells when they may not.
inline bool areLineTexts(std::initializer_list<std::string_view> texts, const char* operation) {
  return statusOf(refusalOfLineTexts(texts, operation)) == 0;
}

}  // namespace sdpneg

#endif
