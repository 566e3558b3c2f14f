// Any bytes as a dialog: refused, or a dialog that makes the same bytes again. Also with a good check sum.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "../test/dialog/dialogBytesSupport.h"
#include "sdpDialog.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void tryToRestore(std::string_view bytes) {
  sdp::Dialog dialog;
  if (!dialog.restore(bytes)) return require(dialog == sdp::Dialog());
  require(dialog.serialise().bytes == bytes);
  require(static_cast<bool>(dialog.agreed()));
  sdp::Dialog next = dialog;
  (void)next.rollback();
  (void)next.hold();
  (void)next.rollback();
  (void)next.offer(
      "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\nm=audio 4000 RTP/AVP 96\r\na=rtpmap:96 opus/48000/2\r\n");
  sdp::Dialog again;
  const sdp::DialogBytes made = next.serialise();
  require(made && again.restore(made.bytes) && again == next);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  tryToRestore(bytes);
  tryToRestore(dialogBytes::withSum(bytes));
  return 0;
}
