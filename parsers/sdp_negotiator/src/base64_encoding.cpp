#include "base64_encoding.h"

#include <algorithm>

// Base64 (RFC 4648 4).

const char base64_alphabet[65] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

namespace sdpneg {
namespace {

constexpr char kPad = '=';
constexpr unsigned long kGroupBytes = 3;
constexpr unsigned long kGroupCharacters = 4;

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

void base64_encodeblock(const unsigned char* in, char* out, unsigned long len) {
  const unsigned int first = in[0];
  const unsigned int second = in[1];
  const unsigned int third = len < 2 ? 0U : in[2];
  out[0] = base64_alphabet[first >> 2U];
  out[1] = base64_alphabet[(first & 3U) << 4U | second >> 4U];
  out[2] = len < 2 ? kPad : base64_alphabet[(second & 15U) << 2U | third >> 6U];
  out[3] = len < 3 ? kPad : base64_alphabet[third & 63U];
}

int base64_encode(const unsigned char* in, unsigned long inLen, char* out, unsigned long outCap) {
  if (out == nullptr || (in == nullptr && inLen != 0)) return 0;
  while (inLen != 0) {
    if (outCap < kGroupCharacters) return 0;
    const unsigned long taken = std::min(inLen, kGroupBytes);
    unsigned char group[kGroupBytes] = {};
    std::copy_n(in, taken, group);
    base64_encodeblock(group, out, taken);
    in += taken;
    inLen -= taken;
    out += kGroupCharacters;
    outCap -= kGroupCharacters;
  }
  if (outCap == 0) return 0;
  *out = '\0';
  return 1;
}
