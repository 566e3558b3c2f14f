#include <random>

#include "modifiersTestSupport.h"
#include "traceCapture.h"

// Removal of the media sections of a transport, with a record of which ones went.

namespace {

constexpr std::size_t kRecordSize = 25;

/// A caller's record of removed m-lines, filled with 0, with nothing behind its 25 codes.
struct RemovedRecord {
  std::unique_ptr<char[]> codes = std::make_unique<char[]>(kRecordSize);

  char* data() { return codes.get(); }
  std::vector<int> list() const {
    std::vector<int> all(codes.get(), codes.get() + kRecordSize);
    while (!all.empty() && all.back() == 0) all.pop_back();
    return all;
  }
};

using Codes = std::vector<int>;

const std::string start = "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\n";
const std::string audioPlain = "m=audio 1 RTP/AVP 0\r\na=a\r\n";
const std::string audioSecure = "m=audio 2 RTP/SAVP 0\r\na=b\r\n";
const std::string videoPlain = "m=video 3 RTP/AVP 31\r\na=c\r\n";
const std::string videoSecure = "m=video 4 RTP/SAVP 31\r\na=d\r\n";

struct Removed {
  const char* what;
  std::string before;
  std::string after;
  Codes codes;
};

using Removal = std::function<void(char* sdp, char* removed, unsigned short& oLineEnd)>;

Removal removeMline(const char* transport, bool modifyOLine = false) {
  return [=](char* sdp, char* removed, unsigned short& oLineEnd) {
    sdpModifications::sdpRemoveMline(sdp, removed, oLineEnd, transport, modifyOLine);
  };
}

Removal removeSecurity(bool modifyOLine = false) {
  return [=](char* sdp, char* removed, unsigned short& oLineEnd) {
    sdpModifications::sdpRemoveSecurity(sdp, removed, oLineEnd, modifyOLine);
  };
}

void expectRemoved(const Removed& each, const Removal& removal) {
  SCOPED_TRACE(each.what);
  SdpBuffer buffer(each.before);
  RemovedRecord record;
  unsigned short oLineEnd = 77;
  TraceCapture trace;
  removal(buffer.data(), record.data(), oLineEnd);
  buffer.expectText(each.after);
  EXPECT_EQ(record.list(), each.codes);
  EXPECT_EQ(oLineEnd, 77);
  EXPECT_EQ(trace.lines(), Traces{});
}

TEST(RemoveMline, RemovesTheSectionsOfATransportAndRecordsTheirMLines) {
  const std::string media = audioPlain + audioSecure + videoPlain + videoSecure;
  const Removed cases[] = {
      {"the first and the third", start + media, start + audioSecure + videoSecure, {1, 28}},
      {"none", start + audioSecure, start + audioSecure, {}},
      {"all", start + audioPlain + videoPlain, start, {1, 27}},
      {"no media", start, start, {}},
      {"an empty text", "", "", {}},
      {"a feedback profile", start + "m=audio 1 RTP/AVPF 0\r\n", start, {1}},
      {"another letter case", start + "m=audio 1 rtp/avp 0\r\n", start + "m=audio 1 rtp/avp 0\r\n", {}},
      {"the text behind the m-line",
       start + audioSecure + "a=RTP/AVP\r\n",
       start + audioSecure + "a=RTP/AVP\r\n",
       {}},
      {"anywhere on the m-line", start + "m=audio 1 udp 0 xRTP/AVPx\r\n", start, {1}},
      {"bare line feeds", "v=0\nm=audio 1 RTP/AVP 0\na=a\nm=video 2 udp 1\n", "v=0\nm=video 2 udp 1\n", {1}},
      {"an m-line without LF", start + "m=audio 1 RTP/AVP 0", start, {1}},
      {"one without LF that stays", start + "m=audio 1 udp 0", start + "m=audio 1 udp 0", {}},
      // A section without LF goes to the text's end, so that the second "m=" is none of its own.
      {"two in a line without LF", start + "m=audio 1 udp m=video 2 RTP/AVP", start, {1}},
      {"the text's first line", audioPlain + videoSecure, videoSecure, {1}},
  };
  for (const Removed& each : cases) expectRemoved(each, removeMline("RTP/AVP"));
}

// The first of the words that stands anywhere on the m-line tells the medium, in the order audio, video,
// application, image. Each m-line counts as a position.
TEST(RemoveMline, RecordsByTheWordsOnTheMLine) {
  const Removed cases[] = {
      {"a word in the formats", "m=video 1 RTP/AVP audio\r\n", "", {1}},
      {"inside another word", "m=xvideox 1 RTP/AVP 0\r\n", "", {26}},
      {"application", "m=audio 1 udp 0\r\nm=application 1 RTP/AVP 0\r\n", "m=audio 1 udp 0\r\n", {52}},
      {"application behind video", "m=application 1 RTP/AVP video\r\n", "", {26}},
      {"image is not recorded", "m=image 1 RTP/AVP t38\r\nm=audio 1 RTP/AVP 0\r\n", "", {2}},
      {"no word", "m=message 1 RTP/AVP 0\r\nm=video 1 RTP/AVP 0\r\n", "", {27}},
      {"the word stands in the next line", "m=text 1 RTP/AVP 0\r\na=audio\r\n", "", {}},
  };
  for (const Removed& each : cases) expectRemoved(each, removeMline("RTP/AVP"));
}

// "m=" begins a section wherever it stands, on purpose.
TEST(RemoveMline, SeesMLinesInsideValues) {
  const Removed cases[] = {
      {"a piece of a value goes",
       start + "a=x:m=audio RTP/AVP\r\n" + audioSecure,
       start + "a=x:" + audioSecure,
       {1}},
      {"a value counts as a position",
       start + "a=fmtp:96 prm=1\r\n" + audioPlain,
       start + "a=fmtp:96 prm=1\r\n",
       {2}},
      {"a value ends the section",
       start + audioPlain + "a=fmtp:96 prm=1\r\n" + audioSecure,
       start + "m=1\r\n" + audioSecure,
       {1}},
      // The search goes on where the section stood: what is joined there is not taken for another one.
      {"no m-line across a seam",
       start + "a=mm=audio RTP/AVP\r\n=audio RTP/AVP\r\nm=video udp\r\n",
       start + "a=mm=video udp\r\n",
       {1}},
  };
  for (const Removed& each : cases) expectRemoved(each, removeMline("RTP/AVP"));
}

TEST(RemoveMline, TakesAnyTextAsTransport) {
  const std::string body = start + "m=audio 1 TCP/MSRP *\r\n" + audioPlain;
  expectRemoved({"one", body, start + audioPlain, {1}}, removeMline("TCP/MSRP"));
  expectRemoved({"an empty one stands on every m-line", body, start, {1, 2}}, removeMline(""));
}

TEST(RemoveSecurity, RemovesSecureSectionsAndRecordsImagesToo) {
  const std::string imageSecure = "m=image 4 RTP/SAVP t38\r\n";
  const std::string media = audioPlain + audioSecure + videoPlain + videoSecure;
  const Removed cases[] = {
      {"the second and the fourth", start + media, start + audioPlain + videoPlain, {2, 29}},
      {"a feedback profile", start + "m=audio 1 RTP/SAVPF 0\r\n", start, {1}},
      {"DTLS", start + "m=audio 1 UDP/TLS/RTP/SAVPF 0\r\n", start, {1}},
      {"an image", start + audioPlain + imageSecure, start + audioPlain, {77}},
      {"application", start + "m=application 1 RTP/SAVP 0\r\n" + audioSecure, start, {51, 2}},
      {"no word", start + "m=text 1 RTP/SAVP 0\r\n" + imageSecure, start, {77}},
      {"none", start + audioPlain, start + audioPlain, {}},
  };
  for (const Removed& each : cases) expectRemoved(each, removeSecurity());
}

TraceLine notRecorded(const std::string& operation, int position) {
  return {2, 2,
          operation + "(): The removed m-line at position " + std::to_string(position) +
              " is not recorded. There are 25 codes of at most 127."};
}

std::string repeated(const std::string& section, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += section;
  return all;
}

// Deliberate: behind the 25th position a code reads as one of the next media kind.
TEST(RemovedRecord, CountsThePositionsOnBehindTwentyFive) {
  const std::string kept = start + repeated("m=audio 1 udp 0\r\n", 24);
  const std::string audio = "m=audio 1 RTP/SAVP 0\r\n";
  const std::string video = "m=video 1 RTP/SAVP 31\r\n";
  const std::string image = "m=image 1 RTP/SAVP 0\r\n";
  const std::string other = "m=text 1 RTP/SAVP 0\r\n";
  const Removed cases[] = {
      {"25 and 26", kept + image + audio + other, kept, {100, 26}},
      {"26 to 28", kept + other + audio + video + image, kept, {26, 52, 103}},
  };
  for (const Removed& each : cases) expectRemoved(each, removeSecurity());
  expectRemoved({"26", kept + other + "m=audio 1 RTP/AVP 0\r\n", kept + other, {26}}, removeMline("RTP/AVP"));
}

// The codes above would say that the m-line was secure where that is told.
TEST(RemovedRecord, HasCodesUpTo127) {
  const std::string image = "m=image 1 RTP/SAVP 0\r\n";
  const std::string kept = start + repeated("m=text 1 udp 0\r\n", 51);
  SdpBuffer buffer(kept + image + image + "m=audio 1 RTP/SAVP 0\r\n");
  RemovedRecord record;
  unsigned short oLineEnd = 0;
  TraceCapture trace;
  sdpModifications::sdpRemoveSecurity(buffer.data(), record.data(), oLineEnd, false);
  buffer.expectText(kept);
  EXPECT_EQ(record.list(), (Codes{127, 54}));
  EXPECT_EQ(trace.lines(), Traces{notRecorded("sdpRemoveSecurity", 53)});
}

TEST(RemovedRecord, HoldsTwentyFiveCodesAndNothingBehind) {
  for (const int kept : {0, 1, 26}) {
    Codes wanted;
    for (int i = 1; i <= 25; ++i) wanted.push_back(kept + i);
    const std::string left = start + repeated("m=audio 1 udp 0\r\n", kept);
    for (const int removed : {25, 26, 28}) {
      SdpBuffer buffer(left + repeated("m=audio 1 RTP/AVP 0\r\n", removed));
      RemovedRecord record;
      unsigned short oLineEnd = 0;
      TraceCapture trace;
      sdpModifications::sdpRemoveMline(buffer.data(), record.data(), oLineEnd, "RTP/AVP", false);
      buffer.expectText(left);
      EXPECT_EQ(record.list(), wanted);
      Traces unrecorded;
      for (int i = 26; i <= removed; ++i) unrecorded.push_back(notRecorded("sdpRemoveMline", kept + i));
      EXPECT_EQ(trace.lines(), unrecorded);
    }
  }
}

/// Whether the text is the session with an o-line of a new id, and the media.
void expectNewOriginLine(SdpBuffer& buffer, const std::string& media, unsigned short oLineEnd) {
  const std::string text = buffer.data();
  const std::string before = "v=0\r\no=ZEV ";
  const std::string after = " IN IP4 0.0.0.0\r\n";
  ASSERT_EQ(text.substr(0, before.size()), before);
  const std::size_t idEnd = text.find(' ', before.size());
  const std::string id = text.substr(before.size(), idEnd - before.size());
  EXPECT_GE(id.size(), 7U);
  EXPECT_EQ(id.find_first_not_of("0123456789"), std::string::npos);
  const std::string head = before + id + " " + id + after;
  buffer.expectText(head + "s=-\r\nt=0 0\r\n" + media);
  EXPECT_EQ(oLineEnd, head.size());
}

TEST(MediaRemoval, RebuildsTheOriginLineWhenAskedToAndSomethingWasRecorded) {
  const std::string unrecorded = "m=text 1 RTP/AVP 0\r\nm=text 1 RTP/SAVP 0\r\n";
  struct Case {
    Removal asked;
    Removal notAsked;
    std::string left;
    std::string leftUnrecorded;
  };
  const Case cases[] = {
      {removeMline("RTP/AVP", true), removeMline("RTP/AVP"), audioSecure, "m=text 1 RTP/SAVP 0\r\n"},
      {removeSecurity(true), removeSecurity(), audioPlain, "m=text 1 RTP/AVP 0\r\n"},
  };
  for (const Case& each : cases) {
    RemovedRecord record;
    unsigned short oLineEnd = 77;
    SdpBuffer buffer(start + audioPlain + audioSecure);
    each.asked(buffer.data(), record.data(), oLineEnd);
    expectNewOriginLine(buffer, each.left, oLineEnd);
    expectRemoved({"nothing recorded", start + unrecorded, start + each.leftUnrecorded, {}}, each.asked);
    expectRemoved({"nothing removed", start + "m=audio 1 udp 0\r\n", start + "m=audio 1 udp 0\r\n", {}},
                  each.asked);
    oLineEnd = 77;
    SdpBuffer notAsked(start + audioPlain + audioSecure);
    each.notAsked(notAsked.data(), record.data(), oLineEnd);
    notAsked.expectText(start + each.left);
    EXPECT_EQ(oLineEnd, 77);
  }
}

// A record that is null takes nothing, so that the o-line has no reason to change.
TEST(MediaRemoval, WithoutARecordRemovesAllTheSame) {
  unsigned short oLineEnd = 77;
  SdpBuffer buffer(start + audioPlain + audioSecure);
  sdpModifications::sdpRemoveMline(buffer.data(), nullptr, oLineEnd, "RTP/AVP", true);
  buffer.expectText(start + audioSecure);
  sdpModifications::sdpRemoveSecurity(buffer.data(), nullptr, oLineEnd, true);
  buffer.expectText(start);
  EXPECT_EQ(oLineEnd, 77);
}

TEST(MediaRemoval, RefusesATextThatIsNullOrHasNoEnd) {
  RemovedRecord record;
  unsigned short oLineEnd = 77;
  TraceCapture trace;
  removeMline("RTP/AVP", true)(nullptr, record.data(), oLineEnd);
  removeSecurity(true)(nullptr, record.data(), oLineEnd);
  EXPECT_EQ(trace.takeLines(), Traces{});
  const std::string reason = "(): The SDP buffer is null or holds no end of text. Exiting.";
  SdpBuffer endless(withoutNul(start + audioPlain + audioSecure));
  const std::string all = endless.all();
  removeMline("RTP/AVP", true)(endless.data(), record.data(), oLineEnd);
  EXPECT_EQ(trace.takeLines(), (Traces{{4, 3, "sdpRemoveMline" + reason}}));
  removeSecurity(true)(endless.data(), record.data(), oLineEnd);
  EXPECT_EQ(trace.takeLines(), (Traces{{4, 3, "sdpRemoveSecurity" + reason}}));
  EXPECT_TRUE(endless.all() == all);
  EXPECT_EQ(record.list(), Codes{});
  EXPECT_EQ(oLineEnd, 77);
}

TEST(MediaRemoval, ReadsNothingBehindTheText) {
  const std::string bodies[] = {"", "m=", "m=audio 1 RTP/", start + audioSecure, start + "m=audio 1 RTP/AV"};
  for (const std::string& body : bodies) {
    RemovedRecord record;
    unsigned short oLineEnd = 77;
    expectUntouched(
        body,
        [&](char* sdp) {
          removeMline("RTP/AVP", true)(sdp, record.data(), oLineEnd);
          return static_cast<unsigned short>(0);
        },
        0);
    EXPECT_EQ(record.list(), Codes{});
    EXPECT_EQ(oLineEnd, 77);
  }
}

TEST(MediaRemoval, RefusesANullTransport) {
  SdpBuffer buffer(start + audioPlain);
  const std::string all = buffer.all();
  RemovedRecord record;
  unsigned short oLineEnd = 77;
  TraceCapture trace;
  removeMline(nullptr, true)(buffer.data(), record.data(), oLineEnd);
  EXPECT_TRUE(buffer.all() == all);
  EXPECT_EQ(trace.lines(), (Traces{{4, 3, "sdpRemoveMline(): The transport is null. Exiting."}}));
}

/// Removes section after section, each time searching anew from where the last one stood.
Codes removeStepByStep(std::string& text, const std::string& transport) {
  Codes codes;
  int position = 1;
  std::size_t at = text.find("m=");
  while (at != std::string::npos) {
    const std::size_t lf = std::min(text.find('\n', at), text.size());
    const std::size_t next = std::min(text.find("m=", lf), text.size());
    const std::string mLine = text.substr(at, lf - at);
    if (mLine.find(transport) == std::string::npos) {
      ++position;
      at = text.find("m=", next);
      continue;
    }
    const std::string words[] = {"audio", "video", "application"};
    for (int i = 0; i < 3; ++i) {
      if (mLine.find(words[i]) == std::string::npos) continue;
      codes.push_back(position + 25 * i);
      break;
    }
    ++position;
    text.erase(at, next - at);
    at = text.find("m=", at);
  }
  return codes;
}

TEST(MediaRemoval, GivesWhatEachStepByItselfGives) {
  const std::vector<std::string> pieces = {"m=",
                                           "m",
                                           "=",
                                           "\n",
                                           "\r\n",
                                           "RTP/AVP",
                                           " 0 ",
                                           "audio",
                                           "video",
                                           "a=x",
                                           "image",
                                           "application",
                                           "RTP/",
                                           "AVP",
                                           "\nm=audio 1 RTP/AVP 0\r\n",
                                           "\nm=video 1 RTP/SAVP 0\r\n"};
  std::mt19937 random(8);
  int removed = 0;
  for (int round = 0; round < 10000; ++round) {
    std::string text;
    for (std::size_t n = random() % 16; n != 0; --n) text += pieces[random() % pieces.size()];
    std::string wanted = text;
    const Codes codes = removeStepByStep(wanted, "RTP/AVP");
    SCOPED_TRACE(text);
    SdpBuffer buffer(text);
    RemovedRecord record;
    unsigned short oLineEnd = 0;
    sdpModifications::sdpRemoveMline(buffer.data(), record.data(), oLineEnd, "RTP/AVP", false);
    buffer.expectText(wanted);
    ASSERT_EQ(record.list(), codes);
    ASSERT_FALSE(HasFailure());
    removed += wanted != text ? 1 : 0;
  }
  EXPECT_GT(removed, 3000);
}

const TraceLine entering{8, 4, "Entering sdpDisableSRTPMediaStreams() method."};
const TraceLine exiting{8, 4, "Exiting sdpDisableSRTPMediaStreams() method."};

TEST(DisableSrtp, RemovesKeyManagementAndSecureMedia) {
  SdpBuffer buffer(start + "a=key-mgmt:mikey x\r\n" + audioPlain + "a=key-mgmt:mikey y\r\n" + audioSecure);
  RemovedRecord record;
  unsigned short oLineEnd = 77;
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpDisableSRTPMediaStreams(buffer.data(), record.data(), oLineEnd), 0);
  expectNewOriginLine(buffer, audioPlain, oLineEnd);
  EXPECT_EQ(record.list(), Codes{2});
  ASSERT_GE(trace.lines().size(), 4U);
  EXPECT_EQ(trace.lines().front(), entering);
  EXPECT_TRUE(trace.has(2, 2, "The a=key-mgmt: attribute has been removed from the SDP. Exiting..."));
  EXPECT_TRUE(trace.has(2, 2, "The o-line has been changed. Exiting..."));
  EXPECT_EQ(trace.lines().back(), exiting);
}

TEST(DisableSrtp, LeavesPlainMediaAlone) {
  RemovedRecord record;
  unsigned short oLineEnd = 77;
  TraceCapture trace;
  expectUntouched(
      start + audioPlain,
      [&](char* sdp) {
        trace.takeLines();
        return sdpModifications::sdpDisableSRTPMediaStreams(sdp, record.data(), oLineEnd);
      },
      0);
  EXPECT_EQ(trace.lines(), (Traces{entering,
                                   {8, 4, "Entering sdpRemoveSecureAttributes() method."},
                                   {2, 2, "No a=key-mgmt: attribute found. Exiting."},
                                   exiting}));
  EXPECT_EQ(record.list(), Codes{});
  EXPECT_EQ(oLineEnd, 77);
}

TEST(DisableSrtp, ReturnsZeroForATextThatIsNullOrHasNoEnd) {
  unsigned short oLineEnd = 77;
  EXPECT_EQ(sdpModifications::sdpDisableSRTPMediaStreams(nullptr, nullptr, oLineEnd), 0);
  expectUntouched(
      withoutNul(start + audioSecure),
      [&](char* sdp) { return sdpModifications::sdpDisableSRTPMediaStreams(sdp, nullptr, oLineEnd); }, 0);
  EXPECT_EQ(oLineEnd, 77);
}

}  // namespace
