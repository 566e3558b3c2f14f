#include "peers.h"

#ifdef HAVE_SOFIA

#include <sofia-sip/sdp.h>
#include <sofia-sip/su_alloc.h>

static bool run(const std::string& body, bool encode) {
  su_home_t home[1] = {SU_HOME_INIT(home)};
  su_home_init(home);
  sdp_parser_t* parser = sdp_parse(home, body.data(), static_cast<issize_t>(body.size()), 0);
  sdp_session_t* session = sdp_session(parser);
  bool done = session != nullptr;
  if (done && encode) {
    char text[32768];
    sdp_printer_t* printer = sdp_print(home, session, text, sizeof text, 0);
    done = sdp_message(printer) != nullptr;
    sdp_printer_free(printer);
  }
  sdp_parser_free(parser);
  su_home_deinit(home);
  return done;
}

const Peer* peerSofia() {
  static const Peer peer{"sofia-sip", run};
  return &peer;
}

#else

const Peer* peerSofia() { return nullptr; }

#endif
