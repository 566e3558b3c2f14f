// A meeting server took a call without its camera. Now it adds video by a new offer: in the place that it had refused, by
// the payload numbers that the caller knows.

#include <sdpDialog.h>

#include "show.h"

namespace {

constexpr std::string_view kCaller = R"(v=0
o=room 6006 1 IN IP4 192.0.2.44
s=-
c=IN IP4 192.0.2.44
t=0 0
m=audio 46000 RTP/AVP 111 101
a=rtpmap:111 opus/48000/2
a=rtpmap:101 telephone-event/8000
m=video 46002 RTP/AVPF 120
a=rtpmap:120 VP8/90000
a=rtcp-fb:120 nack pli
)";

constexpr std::string_view kAudio = R"(v=0
o=meeting 8 1 IN IP4 203.0.113.8
s=-
c=IN IP4 203.0.113.8
t=0 0
m=audio 20000 RTP/AVP 96 97
a=rtpmap:96 opus/48000/2
a=rtpmap:97 telephone-event/8000
a=ptime:20
)";

/// The media stack numbers its formats as it likes; the dialog sees to it that the offer has those of the call.
constexpr std::string_view kAudioAndVideo = R"(v=0
o=meeting 8 1 IN IP4 203.0.113.8
s=-
c=IN IP4 203.0.113.8
t=0 0
m=video 20002 RTP/AVPF 98
a=rtpmap:98 VP8/90000
a=rtcp-fb:98 nack pli
m=audio 20000 RTP/AVP 96 97
a=rtpmap:96 opus/48000/2
a=rtpmap:97 telephone-event/8000
a=ptime:20
)";

constexpr std::string_view kCallersAnswer = R"(v=0
o=room 6006 2 IN IP4 192.0.2.44
s=-
c=IN IP4 192.0.2.44
t=0 0
m=audio 46000 RTP/AVP 111 101
a=rtpmap:111 opus/48000/2
a=rtpmap:101 telephone-event/8000
m=video 46002 RTP/AVPF 120
a=rtpmap:120 VP8/90000
a=rtcp-fb:120 nack pli
)";

void start(const sdp::AgreedSection& section) {
  std::cout << section.media << ": ";
  if (!section.isAccepted) {
    std::cout << "none\n";
    return;
  }
  std::cout << textOf(section.direction) << ", from port " << section.local.port << " to "
            << section.remote.address << ':' << section.remote.port << '\n';
  for (const sdp::AgreedCodec& codec : section.remote.codecs) {
    std::cout << "  sends " << codec.payload << ' ' << codec.name << '/' << codec.clockRate;
    for (const std::string& feedback : codec.feedback) std::cout << ", " << feedback;
    std::cout << '\n';
  }
}

}  // namespace

int main() {
  sdp::Dialog call;
  if (!call.receiveOffer(kCaller) || !call.answer(kAudio)) return 1;
  for (const sdp::AgreedSection& section : call.agreed().sections) start(section);

  // Another process of the cluster takes the call over meanwhile.
  const sdp::DialogBytes stored = call.serialise();
  sdp::Dialog takenOver;
  if (!stored || !takenOver.restore(stored.bytes)) return 1;

  const sdp::LocalBody offer = takenOver.offer(kAudioAndVideo);
  if (!offer) return 1;
  std::cout << '\n';
  show(offer.text);
  std::cout << '\n';
  if (!takenOver.receiveAnswer(kCallersAnswer)) return 1;
  for (const sdp::AgreedSection& section : takenOver.agreed().sections) start(section);
  return 0;
}
