#include <map>

#include "dialogTestSupport.h"
#include "sdpDocument.h"
#include "testFiles.h"

// Dialogs with all bodies at hand, as the peer's and as one's own.

namespace {

using namespace dialogTest;
using sdp::Document;

const std::string kPhone = ours(
    "1",
    "m=audio 4000 RTP/AVP 8 0 96 101|a=rtpmap:96 opus/48000/2|a=rtpmap:101 telephone-event/8000|"
    "m=video 4002 RTP/AVP 97|a=rtpmap:97 H264/90000|a=fmtp:97 profile-level-id=42e01f|m=image 4004 udptl t38|");
const std::string kBrowser = ours(
    "1",
    "a=group:BUNDLE x y z|m=audio 9 UDP/TLS/RTP/SAVPF 96 0|c=IN IP4 0.0.0.0|a=mid:x|a=rtcp-mux|a=rtpmap:96 opus/48000/2|"
    "a=fingerprint:sha-256 AA|a=setup:actpass|a=ice-ufrag:abcd|a=ice-pwd:abcdefghijklmnopqrstuv|"
    "m=video 9 UDP/TLS/RTP/SAVPF 97 98 99|c=IN IP4 0.0.0.0|a=mid:y|a=rtcp-mux|a=rtpmap:97 VP8/90000|a=rtpmap:98 rtx/90000|a=fmtp:98 apt=97|"
    "a=rtpmap:99 H264/90000|a=fmtp:99 profile-level-id=42e01f;packetization-mode=1|"
    "a=fingerprint:sha-256 AA|a=setup:actpass|a=ice-ufrag:abcd|a=ice-pwd:abcdefghijklmnopqrstuv|"
    "m=application 9 UDP/DTLS/SCTP webrtc-datachannel|c=IN IP4 0.0.0.0|a=mid:z|a=sctp-port:5000|a=fingerprint:sha-256 AA|"
    "a=setup:actpass|a=ice-ufrag:abcd|a=ice-pwd:abcdefghijklmnopqrstuv|");

std::vector<std::string> bodies() {
  std::vector<std::string> texts;
  for (const std::string& folder :
       {std::string(SDP_TEST_SOURCE_DIR "/parsers/sdp_document/test/bodies"), corpusFolder()}) {
    if (folder.empty()) continue;
    for (const auto& file : sdpFilesBelow(folder)) texts.push_back(readBytes(file));
  }
  return texts;
}

Document documentOf(std::string_view text) {
  Document document;
  EXPECT_FALSE(document.read(text));
  return document;
}

std::map<std::string, std::string> meaningsOf(const sdp::Section& section) {
  std::map<std::string, std::string> meanings;
  for (const sdp::Format& format : section.formats()) {
    if (!format.encoding) continue;
    meanings.emplace(format.format,
                     std::string(format.encoding->name) + "/" + std::to_string(format.encoding->clockRate));
  }
  return meanings;
}

/// Whether media keep their places, and numbers their meanings.
void expectPlaces(std::string_view before, std::string_view peers, std::string_view after) {
  const Document was = documentOf(before);
  const Document theirs = documentOf(peers);
  const Document is = documentOf(after);
  ASSERT_GE(is.sectionCount(), was.sectionCount());
  for (const sdp::Section& section : was.sections()) {
    const sdp::Section now = is.section(section.index());
    EXPECT_TRUE(now.isReadable());
    const sdp::Section remote = theirs.section(section.index());
    if (section.isDisabled() || remote.isDisabled() || !remote.isReadable()) continue;
    EXPECT_EQ(now.media(), section.media());
    if (!now.mid().empty() && !section.mid().empty()) {
      EXPECT_EQ(now.mid(), section.mid());
    }
    std::map<std::string, std::string> meanings = meaningsOf(section);
    for (const auto& [number, meaning] : meaningsOf(now)) {
      const auto known = meanings.find(number);
      if (known == meanings.end()) continue;
      EXPECT_TRUE(std::equal(meaning.begin(), meaning.end(), known->second.begin(), known->second.end(),
                             [](char a, char b) { return std::tolower(a) == std::tolower(b); }))
          << number << ": " << known->second << ", " << meaning;
    }
  }
}

TEST(DialogBodies, ThePeersAreAnsweredAndOfferedAgain) {
  std::size_t answers = 0;
  for (const std::string& body : bodies()) {
    for (const std::string& description : {kPhone, kBrowser}) {
      Dialog dialog;
      if (!dialog.receiveOffer(body)) continue;
      const sdp::LocalBody answer = dialog.answer(description);
      if (!answer) continue;
      ++answers;
      SCOPED_TRACE(body);
      const sdp::LocalBody same = dialog.offer(dialog.local());
      ASSERT_EQ(textOf(same), answer.text);
      EXPECT_TRUE(same.isRefresh);
      ASSERT_TRUE(dialog.rollback());
      const sdp::LocalBody again = dialog.offer(description);
      expectPlaces(answer.text, body, textOf(again));
      expectRoundTrip(dialog);
      ASSERT_TRUE(dialog.rollback());
      const sdp::LocalBody held = dialog.hold();
      const Document heldBody = documentOf(textOf(held));
      for (const sdp::Section& section : heldBody.sections()) {
        const bool isQuiet =
            section.direction() == Direction::sendonly || section.direction() == Direction::inactive;
        EXPECT_TRUE(section.isDisabled() || isQuiet || !section.isRtp());
      }
      expectPlaces(answer.text, body, held.text);
      if (HasFailure()) return;
    }
  }
  EXPECT_GT(answers, 5U);
}

TEST(DialogBodies, OnesOwnAreTheSameWhenOfferedAgain) {
  std::size_t agreements = 0;
  for (const std::string& body : bodies()) {
    for (const std::string& peers : {kPhone, kBrowser}) {
      SCOPED_TRACE(body);
      Dialog dialog;
      const sdp::LocalBody offer = dialog.offer(body);
      if (!offer) continue;
      Dialog peer;
      ASSERT_TRUE(peer.receiveOffer(offer.text));
      const sdp::LocalBody answer = peer.answer(peers);
      if (!answer) continue;
      ++agreements;
      ASSERT_TRUE(dialog.receiveAnswer(answer.text));
      const sdp::LocalBody again = dialog.offer(body);
      ASSERT_EQ(textOf(again), offer.text);
      EXPECT_TRUE(again.isRefresh);
      expectRoundTrip(dialog);
      ASSERT_TRUE(dialog.rollback());
      expectPlaces(offer.text, answer.text, textOf(dialog.offer(peers)));
      if (HasFailure()) return;
    }
  }
  EXPECT_GT(agreements, 5U);
}

}  // namespace
