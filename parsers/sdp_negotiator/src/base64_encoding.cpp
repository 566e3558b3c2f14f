#include "base64_encoding.h"

#include <algorithm>

const char base64_alphabet[65] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

namespace sdpneg {
namespace {

constexpr char kPad = '=';
constexpr unsigned long kGroupBytes = 3;
constexpr unsigned long kGroupCharacters = 4;

}  // namespace
}  // namespace sdpneg

void base64_encodeblock(const unsigned char* in, char* out, unsigned long len) {
  const auto byte = [in, len](unsigned long i) { return i < len ? unsigned{in[i]} : 0U; };
  const unsigned int bits = byte(0) << 16U | byte(1) << 8U | byte(2);
  out[0] = base64_alphabet[bits >> 18U];
  out[1] = base64_alphabet[bits >> 12U & 63U];
  out[2] = len < 2 ? sdpneg::kPad : base64_alphabet[bits >> 6U & 63U];
  out[3] = len < 3 ? sdpneg::kPad : base64_alphabet[bits & 63U];
}

int base64_encode(const unsigned char* in, unsigned long inLen, char* out, unsigned long outCap) {
  if (out == nullptr || (in == nullptr && inLen != 0)) return 0;
  while (inLen != 0) {
    if (outCap < sdpneg::kGroupCharacters) return 0;
    const unsigned long taken = std::min(inLen, sdpneg::kGroupBytes);
    base64_encodeblock(in, out, taken);
    in += taken;
    inLen -= taken;
    out += sdpneg::kGroupCharacters;
    outCap -= sdpneg::kGroupCharacters;
  }
  if (outCap == 0) return 0;
  *out = '\0';
  return 1;
}
