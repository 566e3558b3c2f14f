#ifndef SDP_NEGOTIATOR_REQUEST_H
#define SDP_NEGOTIATOR_REQUEST_H

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "refusal.h"
#include "sdpDataDefinitions.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/parse.h"
#include "text/sdpText.h"

// The pattern that requests follow: the stored text goes into a buffer, an edit changes it, and the result is kept.

namespace sdpneg {

/// How a request keeps an edited text.
struct Keep {
  enum class Way : std::uint8_t {
    parse,  ///< parsed and stored; a text that does not parse or cannot be stored leaves the object empty
    store,  ///< stored, and the summary stays; for what a text that cannot be stored leaves see `setRawSDP`
    storeOrStay  ///< stored, and the summary stays; an object that cannot store the text stays as it was
  };

  Way way;
  bool counts = true;                           ///< whether the status of keeping it is the request's
  eSdpRefusal notStored = SDP_REFUSED_NOTHING;  ///< what is traced of an object that stays as it was
};

// All ways that there are.
inline constexpr Keep kParsed = {.way = Keep::Way::parse};
inline constexpr Keep kParsedWhateverComes = {.way = Keep::Way::parse, .counts = false};
inline constexpr Keep kStored = {.way = Keep::Way::store};
inline constexpr Keep kStoredOrAsBefore = {.way = Keep::Way::storeOrStay,
                                           .notStored = SDP_REFUSED_EDITED_NOT_STORED};
inline constexpr Keep kWithoutVideo = {.way = Keep::Way::storeOrStay};
inline constexpr Keep kWithAddedVideo = {.way = Keep::Way::storeOrStay,
                                         .notStored = SDP_REFUSED_VIDEO_NOT_STORED};
inline constexpr Keep kWithRestrictedVideo = {.way = Keep::Way::storeOrStay,
                                              .notStored = SDP_REFUSED_RESTRICTED_NOT_STORED};

/// Keeps a text.
/// @return the status of parsing or storing it, 0 where that does not count
unsigned short keepText(cSdpNegotiator& object, const char* text, const Keep& keep);

/// Stores a text whose o-line has a new end. The recorded end moves with it, unless the text stays as it was.
/// @param oLineEnd the end that the object has recorded
/// @return the status of storing
unsigned short storeWithEnd(cSdpNegotiator& object, const char* text, unsigned short end,
                            std::uint16_t& oLineEnd);

/// The result of an edit as a status: tells a refusal. What gives none always succeeds.
template <typename Edit, typename... Arguments>
unsigned short statusOfEdit(Edit& edit, Arguments&... arguments) {
  using Result = std::invoke_result_t<Edit&, Arguments&...>;
  if constexpr (std::is_void_v<Result>) {
    edit(arguments...);
    return 0;
  } else if constexpr (std::is_same_v<Result, Refusal>) {
    return statusOf(edit(arguments...));
  } else {
    return edit(arguments...);
  }
}

/// Takes an object's text and has it edited and kept.
/// @param edit takes the text as an `SdpText`, the one time that its buffer is adopted
/// @param keep takes the edited text and gives a status
/// @return the first status that is not 0; the object is unchanged when it is not that of `keep`
template <typename Edit, typename KeepText>
unsigned short editText(const cSdpNegotiator& object, Edit edit, KeepText keep) {
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (const unsigned short expanded = object.getSDP(buffer, sizeof buffer); expanded != 0) return expanded;
  SdpText text(buffer);
  const unsigned short edited = statusOfEdit(edit, text);
  return edited != 0 ? edited : keep(buffer);
}

/// Runs a request.
/// @param edit takes the text
/// @return as `editText`
template <typename Edit>
unsigned short editAndKeep(cSdpNegotiator& object, const Keep& keep, Edit edit) {
  return editText(object, edit, [&](const char* text) { return keepText(object, text, keep); });
}

/// Runs a request that parses what comes of it.
/// @param of   the object's own
/// @param edit takes the text
/// @return as `editText`
template <typename Edit>
unsigned short editAndParse(const ParseTarget& of, Edit edit) {
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  std::size_t length = 0;
  if (const unsigned short fetched = fetchSdp(of.data, of.store, buffer, length); fetched != 0)
    return fetched;
  SdpText text = SdpText::ofLength(buffer, length);
  const unsigned short edited = statusOfEdit(edit, text);
  return edited != 0 ? edited : parseKnown(of, text.view(), SDP_TYPE_UNKNOWN);
}

/// Runs a request whose edit also moves the end of the o-line. It gets a copy of what the summary has, which the parse
/// then tells anew.
/// @param edit takes the text and the end; its status does not count
/// @return as `editText`
template <typename Edit>
unsigned short editWithOLineAndParse(cSdpNegotiator& object, Edit edit) {
  unsigned short end = object.getParsedData().oLineEnd;
  return editAndKeep(object, kParsed, [&](SdpText& text) { edit(text, end); });
}

/// Runs a request for the o-line: the text is stored and the end that the object has recorded moves.
/// @param oLineEnd that end
/// @param edit     takes the text and the end
/// @return as `editText`
template <typename Edit>
unsigned short editOriginLine(cSdpNegotiator& object, std::uint16_t& oLineEnd, Edit edit) {
  unsigned short end = oLineEnd;
  return editText(
      object, [&](SdpText& text) { return edit(text, end); },
      [&](const char* text) { return storeWithEnd(object, text, end, oLineEnd); });
}

/// The result of a trace call where it is a request's status.
inline unsigned short asStatus(int traceResult) { return static_cast<unsigned short>(traceResult); }

/// Empties a caller's record of removed m-lines, which may be null, before a request fills it.
inline void clearRecord(char* removed, std::size_t size) {
  if (removed != nullptr) std::memset(removed, 0, size);
}

}  // namespace sdpneg

#endif
