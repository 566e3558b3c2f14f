#include "modifiersTestSupport.h"

// What becomes of edits that write a description anew when there is no memory for its text. Takes the C library's
// allocator over, which the sanitizers do as well.
#ifndef SDP_TEST_SANITIZED

namespace {
thread_local bool memoryIsOut = false;
}  // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" void* __libc_realloc(void* memory, std::size_t size);

extern "C" void* realloc(void* memory, std::size_t size) {
  return memoryIsOut ? nullptr : __libc_realloc(memory, size);
}

namespace {

using M = sdpModifications;

const std::string body = session + "m=audio 5004 RTP/AVP 0 8\r\n";
const std::string candidates =
    "a=candidate:1 1 UDP 1 192.0.2.1 5004 typ host\r\na=candidate:2 1 UDP 1 2001:db8::1 5004 typ host\r\n";

unsigned short updateAnswer(char* sdp) {
  SdpBuffer oldOffer(body);
  SdpBuffer newOffer(session + audio);
  int length = 0;
  unsigned short oLineEnd = 0;
  return M::sdpUpdateSdp(sdp, oldOffer.data(), newOffer.data(), length, oLineEnd, false);
}

unsigned short addMLine(char* sdp) {
  SdpBuffer oldBody(body + video);
  return M::correctMLines(oldBody.data(), sdp, false, false);
}

unsigned short withCodecs(char* sdp, unsigned short (*edit)(char*, const unsigned char*)) {
  const unsigned char pcmu[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {
      cSdpNegotiator::getRtpMapAudioCodecValue("PCMU")};
  return edit(sdp, pcmu);
}

struct Edited {
  const char* operation;  ///< as traces name it
  unsigned short (*edit)(char* sdp);
};

constexpr Edited edits[] = {
    {"sdpRemoveCodecs", [](char* sdp) { return withCodecs(sdp, M::sdpRemoveCodecs); }},
    {"sdpCodecsReordering", [](char* sdp) { return withCodecs(sdp, M::sdpCodecsReordering); }},
    {"sdpRemoveDualStackIce", M::sdpRemoveDualStackIce},
    {"correctMLines", addMLine},
    {"sdpUpdateSdp", updateAnswer},
};

TEST(EncodingMemory, WithoutAnyTheTextStaysAndTheTraceSaysThatItCannotBeEncoded) {
  const std::string before = body + candidates;
  for (const Edited& each : edits) {
    SCOPED_TRACE(each.operation);
    SdpBuffer buffer(before);
    const std::string all = buffer.all();
    TraceCapture trace;
    unsigned short status = 0;
    memoryIsOut = true;
    status = each.edit(buffer.data());
    memoryIsOut = false;
    EXPECT_EQ(status, 1);
    EXPECT_TRUE(buffer.all() == all);
    EXPECT_EQ(
        trace.lines().back(),
        (TraceLine{4, 3, std::string(each.operation) + "(): The codec cannot encode the SDP. Exiting."}));
    EXPECT_EQ(each.edit(buffer.data()), 0);  // as soon as there is memory again
    EXPECT_FALSE(buffer.all() == all);
  }
}

}  // namespace

#endif
