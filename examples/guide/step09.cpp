// Moves an object to another process.

#include <memory>
#include <string>

#include "guide.h"

namespace {

/// What goes into a message or a database: the summary and what is in use of the text.
std::string pack(const cSdpNegotiator& object) {
  unsigned char* bytes = nullptr;
  unsigned int size = 0;
  if (object.compressObject(&bytes, size) != 0) return {};
  const std::unique_ptr<unsigned char[]> owner(bytes);
  return {reinterpret_cast<const char*>(bytes), size};
}

bool unpack(cSdpNegotiator& object, const std::string& bytes) {
  const auto* in = reinterpret_cast<const unsigned char*>(bytes.data());
  if (object.uncompressObject(in, static_cast<unsigned int>(bytes.size())) == 0) return true;
  object.sdpParse("", SDP_TYPE_UNKNOWN);  // a refusal leaves it as it was, a new one undefined: empty it
  return false;
}

}  // namespace

int main() {
  cSdpNegotiator offer;
  if (offer.sdpParse(kOffer, SDP_TYPE_OFFER) != 0) return 1;
  const std::string bytes = pack(offer);
  std::printf("%zu of %zu bytes travel\n", bytes.size(), sizeof offer);

  cSdpNegotiator taken;
  if (!unpack(taken, bytes)) return 1;
  std::printf("taken over: audio at port %u, body %s\n", taken.getParsedData().port,
              taken.compareSdpByBody(&offer) == 0 ? "the same" : "another");

  cSdpNegotiator damaged;
  std::printf("a byte short: %s\n", unpack(damaged, bytes.substr(0, bytes.size() - 1)) ? "taken" : "refused");
  return 0;
}
