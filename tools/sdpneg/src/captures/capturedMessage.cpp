#include "captures/capturedMessage.h"

namespace tool {

std::string_view textOf(Transport transport) {
  switch (transport) {
    case Transport::udp:
      return "UDP";
    case Transport::tcp:
      return "TCP";
    case Transport::webSocket:
      return "WS";
    case Transport::unknown:
      break;
  }
  return "unknown";
}

std::string_view textOf(CaptureTrouble trouble) {
  switch (trouble) {
    case CaptureTrouble::badPacket:
      return "packets whose headers cannot be read";
    case CaptureTrouble::fragmentsMissing:
      return "packets of which fragments are missing";
    case CaptureTrouble::fragmentsDropped:
      return "packets in more or larger fragments than are kept";
    case CaptureTrouble::bytesMissing:
      return "places in TCP streams where bytes are missing";
    case CaptureTrouble::streamsDropped:
      return "TCP streams that were given up while more of them were open than are kept";
    case CaptureTrouble::streamUnreadable:
      return "places in TCP streams where something else follows a message";
    case CaptureTrouble::streamEncrypted:
      return "TCP streams with TLS";
    case CaptureTrouble::messageCut:
      return "messages whose end was not captured";
    case CaptureTrouble::messageTooLong:
      return "messages that are too long";
    case CaptureTrouble::frameCompressed:
      return "compressed WebSocket frames";
    case CaptureTrouble::hepUnreadable:
      return "HEP packets that cannot be read";
  }
  return "unknown";
}

}  // namespace tool
