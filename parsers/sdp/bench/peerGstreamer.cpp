#include "peers.h"

#ifdef HAVE_GST

#include <gst/sdp/gstsdpmessage.h>

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
  static const Peer peer{"GStreamer", run};
  return &peer;
}

#else

const Peer* peerGstreamer() { return nullptr; }

#endif
