// A phone calls a desk, holds it and resumes. Each side keeps a dialog; the bodies go between them by SIP.

#include <sdpDialog.h>

#include "show.h"

namespace {

constexpr std::string_view kPhone = R"(v=0
o=phone 3890 1 IN IP4 192.0.2.5
s=-
c=IN IP4 192.0.2.5
t=0 0
m=audio 40000 RTP/AVP 9 8 101
a=rtpmap:9 G722/8000
a=rtpmap:8 PCMA/8000
a=rtpmap:101 telephone-event/8000
a=fmtp:101 0-15
)";

constexpr std::string_view kDesk = R"(v=0
o=desk 77 1 IN IP4 198.51.100.9
s=-
c=IN IP4 198.51.100.9
t=0 0
m=audio 30000 RTP/AVP 8 9 96
a=rtpmap:8 PCMA/8000
a=rtpmap:9 G722/8000
a=rtpmap:96 telephone-event/8000
a=fmtp:96 0-15
)";

/// Carries an offer of the phone to the desk, and the answer back.
bool exchange(sdp::Dialog& phone, const sdp::LocalBody& offer, sdp::Dialog& desk) {
  if (!offer) return false;
  const sdp::ReceivedOffer received = desk.receiveOffer(offer.text);
  if (!received) return false;
  const sdp::LocalBody answer = desk.answer(kDesk);
  if (!answer || !phone.receiveAnswer(answer.text)) return false;
  std::cout << "  offer:  " << lineOf(offer.text, "o=") << ", " << textOf(received.origin) << ", "
            << textOf(received.sections[0].change) << ", " << textOf(received.sections[0].direction) << '\n';
  const sdp::AgreedSection agreed = phone.agreed(1);
  std::cout << "  answer: " << lineOf(answer.text, "o=") << '\n';
  std::cout << "  the phone: " << textOf(agreed.direction) << ", " << agreed.remote.codecs[0].name << " to "
            << agreed.remote.address << ':' << agreed.remote.port << '\n';
  return true;
}

}  // namespace

int main() {
  sdp::Dialog phone;
  sdp::Dialog desk;
  std::cout << "call\n";
  if (!exchange(phone, phone.offer(kPhone), desk)) return 1;
  std::cout << "hold\n";
  if (!exchange(phone, phone.hold(), desk)) return 1;
  std::cout << "resume\n";
  if (!exchange(phone, phone.resume(), desk)) return 1;
  show(phone.local());
  return 0;
}
