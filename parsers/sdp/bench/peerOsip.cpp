#include "peers.h"

#ifdef HAVE_OSIP

// The other parser's headers do not keep to this project's warnings.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wcast-qual"
#include <osipparser2/osip_parser.h>
#include <osipparser2/sdp_message.h>
#pragma GCC diagnostic pop

static bool run(const std::string& body, bool encode) {
  sdp_message_t* message = nullptr;
  if (sdp_message_init(&message) != 0) return false;
  bool done = sdp_message_parse(message, body.c_str()) == 0;
  if (done && encode) {
    char* text = nullptr;
    done = sdp_message_to_str(message, &text) == 0;
    osip_free(text);
  }
  sdp_message_free(message);
  return done;
}

const Peer* peerOsip() {
  static const Peer peer{"osip2", [](const std::string& body) { return run(body, false); },
                         [](const std::string& body) { return run(body, true); }};
  return &peer;
}

#else

const Peer* peerOsip() { return nullptr; }

#endif
