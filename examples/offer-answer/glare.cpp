// Two phones hold each other at the same time: their offers cross. Both refuse, one tries again first (RFC 3261, section
// 14.1), and then the other.

#include <sdpDialog.h>

#include "show.h"

namespace {

constexpr std::string_view kAnna = R"(v=0
o=anna 100 1 IN IP4 192.0.2.11
s=-
c=IN IP4 192.0.2.11
t=0 0
m=audio 40000 RTP/AVP 8
a=sendrecv
)";

constexpr std::string_view kBela = R"(v=0
o=bela 200 1 IN IP4 198.51.100.12
s=-
c=IN IP4 198.51.100.12
t=0 0
m=audio 50000 RTP/AVP 8
a=sendrecv
)";

/// One side of a call.
struct Phone {
  const char* name;
  std::string_view description;
  sdp::Dialog dialog;
};

/// What SIP answers to an offer that the dialog does not take.
int statusOf(sdp::DialogFailure failure) {
  if (failure == sdp::DialogFailure::glare) return 491;         // Request Pending
  if (failure == sdp::DialogFailure::offerPending) return 500;  // with Retry-After
  return 488;                                                   // Not Acceptable Here
}

/// The phone takes an offer that came by SIP. @return whether it answers
bool takes(Phone& phone, const sdp::LocalBody& offer, Phone& from) {
  if (const sdp::ReceivedOffer received = phone.dialog.receiveOffer(offer.text); !received) {
    std::cout << phone.name << " refuses with " << statusOf(received.failure) << ": "
              << textOf(received.failure) << '\n';
    return false;
  }
  const sdp::LocalBody answer = phone.dialog.answer(phone.description);
  if (!answer || !from.dialog.receiveAnswer(answer.text)) return false;
  std::cout << phone.name << " answers " << lineOf(answer.text, "o=") << ", " << lineOf(answer.text, "a=")
            << '\n';
  return true;
}

sdp::LocalBody holds(Phone& phone) {
  sdp::LocalBody offer = phone.dialog.hold();
  std::cout << phone.name << " offers " << lineOf(offer.text, "o=") << ", " << lineOf(offer.text, "a=")
            << '\n';
  return offer;
}

}  // namespace

int main() {
  Phone anna{"Anna", kAnna, {}};
  Phone bela{"Bela", kBela, {}};
  if (!takes(bela, anna.dialog.offer(kAnna), anna)) return 1;

  const sdp::LocalBody annas = holds(anna);
  const sdp::LocalBody belas = holds(bela);
  takes(bela, annas, anna);
  takes(anna, belas, bela);

  // Each gets its 491. Whoever began the dialog waits 2.1 to 4 seconds, the other up to 2.
  for (Phone* phone : {&anna, &bela}) {
    if (!phone->dialog.rollback()) return 1;
    std::cout << phone->name << " is " << textOf(phone->dialog.state()) << '\n';
  }
  if (!takes(anna, holds(bela), bela) || !takes(bela, holds(anna), anna)) return 1;
  std::cout << "now " << textOf(anna.dialog.agreed(1).direction) << '\n';
  return 0;
}
