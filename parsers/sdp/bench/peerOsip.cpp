#include "peers.h"

#ifdef HAVE_OSIP

#include <osipparser2/osip_parser.h>
#include <osipparser2/sdp_message.h>

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
  static const Peer peer{"osip2", run};
  return &peer;
}

#else

const Peer* peerOsip() { return nullptr; }

#endif
