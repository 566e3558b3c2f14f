#ifndef SDP_NEGOTIATOR_REQUEST_H
#define SDP_NEGOTIATOR_REQUEST_H

#include "sdpDataDefinitions.h"
#include "sdpNegotiator.h"
#include "trace.h"

namespace sdpneg {

/// The result of a trace call where it is a request's status.
inline unsigned short asStatus(int traceResult) { return static_cast<unsigned short>(traceResult); }

/// The pattern that requests follow: the stored text goes into a buffer, an edit changes it, and the result
/// is kept.
/// @param edit takes the text and gives its status
/// @param keep takes the edited text and gives its status
/// @return the first status that is not 0; the stored text is unchanged when it is not that of `keep`
template <typename Edit, typename Keep>
unsigned short editText(const cSdpNegotiator& object, Edit edit, Keep keep) {
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  const unsigned short expanded = object.getSDP(text, sizeof text);
  if (expanded != 0) return expanded;
  const unsigned short edited = edit(text);
  return edited != 0 ? edited : keep(text);
}

/// The edited text is parsed and stored; a text that does not parse leaves the object empty.
template <typename Edit>
unsigned short editAndParse(cSdpNegotiator& object, Edit edit) {
  return editText(object, edit, [&](const char* text) { return object.sdpParse(text, SDP_TYPE_UNKNOWN); });
}

/// The same for an edit whose status does not count.
template <typename Edit>
unsigned short editAnywayAndParse(cSdpNegotiator& object, Edit edit) {
  return editAndParse(object, [&](char* text) -> unsigned short {
    edit(text);
    return 0;
  });
}

/// The same for an edit that also moves the end of the o-line. It gets a copy of what the summary has, which the
/// parse then tells anew.
template <typename Edit>
unsigned short editWithOLineAndParse(cSdpNegotiator& object, Edit edit) {
  unsigned short oLineEnd = object.getParsedData().oLineEnd;
  return editAnywayAndParse(object, [&](char* text) { edit(text, oLineEnd); });
}

/// The edited text is stored, and the summary stays as it is.
template <typename Edit>
unsigned short editAndStore(cSdpNegotiator& object, Edit edit) {
  return editText(object, edit, [&](const char* text) { return object.setRawSDP(text); });
}

/// Stores a text; an object that cannot store it stays as it was.
/// @return the status of storing
inline unsigned short storeOrKeep(cSdpNegotiator& object, const char* text) {
  const cSdpNegotiator before = object;
  const unsigned short status = object.setRawSDP(text);
  if (status != 0) object = before;
  return status;
}

/// The same with a trace of a failure.
inline unsigned short storeOrStay(cSdpNegotiator& object, const char* text) {
  const unsigned short status = storeOrKeep(object, text);
  if (status != 0) {
    trace::error("The edited SDP cannot be stored. The SDP is left as it was.");
  }
  return status;
}

/// The edited text is stored, and the summary stays as it is; so does the text when the edited one finds no room.
template <typename Edit>
unsigned short editAndStoreOrStay(cSdpNegotiator& object, Edit edit) {
  return editText(object, edit, [&](const char* text) { return storeOrStay(object, text); });
}

}  // namespace sdpneg

#endif
