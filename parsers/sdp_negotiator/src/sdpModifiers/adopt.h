#ifndef SDP_MODIFIERS_ADOPT_H
#define SDP_MODIFIERS_ADOPT_H

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "text/sdpText.h"
#include "text/search.h"
#include "trace.h"

namespace sdpneg {

inline void traceUnusable(const char* operation) {
  trace::error("%s(): The SDP buffer is null or holds no end of text. Exiting.", operation);
}

/// Whether a caller's buffer holds a text that can be edited; traces when it does not.
inline bool adopted(const SdpText& text, const char* operation) {
  if (!text.usable()) traceUnusable(operation);
  return text.usable();
}

/// The text of a caller's buffer that is only read; nothing, with a trace, for what could not be edited either.
inline std::optional<std::string_view> adoptedView(const char* text, const char* operation) {
  if (text != nullptr) {
    const std::size_t length = strnlen(text, MAX_SDP_PROTOCOL_DATA_SIZE);
    if (length < MAX_SDP_PROTOCOL_DATA_SIZE) return std::string_view(text, length);
  }
  traceUnusable(operation);
  return std::nullopt;
}

/// Whether texts of a caller may stand in a line. A control character in one could end the line, and make what follows
/// it a line of its own; that is traced.
inline bool areLineTexts(std::initializer_list<std::string_view> texts, const char* operation) {
  for (const std::string_view text : texts) {
    if (std::none_of(text.begin(), text.end(), isControl)) continue;
    trace::error("%s(): An argument holds a control character. Exiting.", operation);
    return false;
  }
  return true;
}

}  // namespace sdpneg

#endif
