#include "sdpNegotiator/request.h"

// How requests keep their results.

namespace sdpneg {

namespace {

/// Stores a text; an object that cannot store it stays as it was.
unsigned short storeOrStay(cSdpNegotiator& object, const char* text, eSdpRefusal notStored) {
  const cSdpNegotiator before = object;
  const unsigned short status = object.setRawSDP(text);
  if (status == 0) return 0;
  object = before;
  // Why it was not stored has been told.
  if (notStored != SDP_REFUSED_NOTHING) mention({.reason = notStored});
  return status;
}

unsigned short keepByWay(cSdpNegotiator& object, const char* text, const Keep& keep) {
  switch (keep.way) {
    case Keep::Way::parse:
      return object.sdpParse(text, SDP_TYPE_UNKNOWN);
    case Keep::Way::store:
      return object.setRawSDP(text);
    case Keep::Way::storeOrStay:
      break;
  }
  return storeOrStay(object, text, keep.notStored);
}

}  // namespace

unsigned short keepText(cSdpNegotiator& object, const char* text, const Keep& keep) {
  const unsigned short status = keepByWay(object, text, keep);
  return keep.counts ? status : 0;
}

unsigned short storeWithEnd(cSdpNegotiator& object, const char* text, unsigned short end,
                            std::uint16_t& oLineEnd) {
  constexpr unsigned short kUnchanged = 1;
  const unsigned short status = keepText(object, text, kStored);
  if (status != kUnchanged) oLineEnd = end;
  return status;
}

}  // namespace sdpneg
