#include "requestTestSupport.h"

// Removal of m-lines of port 0 from an object's body.

namespace {

using M = sdpModifications;

const std::string crypto =
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:WVNfX19zZW1jdGwgKCkgewkyMjA7fQp9CnVubGVz\r\n";
const std::string plainAudio = "m=audio 5004 RTP/AVP 0\r\n";
const std::string plainVideo = "m=video 5008 RTP/AVP 31\r\n";

/// Removes port 0; 0 stands for the status that the request has not.
RequestCase removeZeroPorts(const std::string& before, const std::string& after) {
  return {"RemoveZeroPorts",
          [](cSdpNegotiator& o) -> unsigned short {
            o.sdpRemoveMlinesZeroPort();
            return 0;
          },
          M::sdpRemoveMlinesZeroPort,
          before,
          after,
          {{1, 1, "sdpRemoveMlinesZeroPort():Request to remove zero port m-lines"}},
          {{1, 1, "Exiting sdpRemoveMlinesZeroPort()"}}};
}

const RequestCase removeZeroVideo = removeZeroPorts(
    session + plainAudio + "m=video 0 RTP/SAVP 31\r\n" + crypto + "a=label:1\r\n" + plainVideo,
    session + plainAudio + "a=label:1\r\n" + plainVideo);

// Deliberate: the attributes of an m-line that went join the section in front of it.
TEST(ZeroPortRemoval, EditsTheTextAndParsesItAgain) {
  expectEditedAndParsed(removeZeroVideo);
  expectEditedAndParsed(removeZeroPorts(session + plainAudio, session + plainAudio));
}

TEST(ZeroPortRemoval, FailsWithoutATextThatCanBeRead) { expectFailsWithoutText(removeZeroVideo, 0); }
TEST(ZeroPortRemoval, LeavesTheObjectEmptyWhenTheTextCannotBeStored) {
  expectEmptiedWhenNotStored(removeZeroVideo, 0);
}

TEST(ZeroPortRemoval, LeavesTheObjectWhenTheEditFails) {
  expectFailedEdit(removeZeroPorts(session, session), 0);
  expectFailedEdit(removeZeroPorts(session + "m=audio 0 RTP/AVP 0\r\nm=video\r\n", ""), 0);
}

}  // namespace
