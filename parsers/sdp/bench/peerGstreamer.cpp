#include "peers.h"

#ifdef HAVE_GST

// The other parser's headers do not keep to this project's warnings.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wcast-qual"
#include <gst/sdp/gstsdpmessage.h>
#pragma GCC diagnostic pop

static bool run(const std::string& body, bool encode) {
  GstSDPMessage* message = nullptr;
  gst_sdp_message_new(&message);
  bool done = gst_sdp_message_parse_buffer(reinterpret_cast<const guint8*>(body.data()),
                                           static_cast<guint>(body.size()), message) == GST_SDP_OK;
  if (done && encode) {
    gchar* text = gst_sdp_message_as_text(message);
    done = text != nullptr;
    g_free(text);
  }
  gst_sdp_message_free(message);
  return done;
}

const Peer* peerGstreamer() {
  static const Peer peer{"GStreamer", [](const std::string& body) { return run(body, false); },
                         [](const std::string& body) { return run(body, true); }};
  return &peer;
}

#else

const Peer* peerGstreamer() { return nullptr; }

#endif
