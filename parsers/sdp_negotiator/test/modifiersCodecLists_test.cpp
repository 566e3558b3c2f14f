#include <memory>

#include "modifiersTestSupport.h"
#include "sdpCapacities.h"
#include "testFiles.h"
#include "traceCapture.h"

// Keeping and ordering the audio codecs of a text. Codecs: 1 PCMA, 3 PCMU, 5 G722, 10 G729, 11 G729A, 29 telephone
// events, 34 and 35 G722.1 at 24000 and 32000, 37 comfort noise, 38 Opus.

namespace {

using Lines = std::vector<TraceLine>;
using Operation = unsigned short (*)(char*, const unsigned char*);
/// 20 values in a heap buffer of just that size.
using CodecArray = std::unique_ptr<unsigned char[]>;

const TraceLine removed{8, 4, "The selected audio codecs have been removed from the SDP"};
const TraceLine reordered{8, 4, "The audio codecs reordering has been done"};

CodecArray listOf(const std::vector<unsigned char>& values) {
  auto list = std::make_unique<unsigned char[]>(MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  EXPECT_LE(values.size(), static_cast<std::size_t>(MAX_SDP_NEGOTIATOR_AUDIO_CODECS));
  std::copy(values.begin(), values.end(), list.get());
  return list;
}

struct Case {
  const char* name;
  std::string before;
  std::vector<unsigned char> list;
  std::string after;
};

void expectEdits(std::initializer_list<Case> cases, Operation operation, const TraceLine& done) {
  for (const Case& each : cases) {
    EditBuffer buffer(each.before);
    const CodecArray list = listOf(each.list);
    TraceCapture trace;
    EXPECT_EQ(operation(buffer.data(), list.get()), 0) << each.name;
    buffer.expect(each.after, each.name);
    EXPECT_EQ(trace.takeLines(), Lines{done}) << each.name;
    EXPECT_EQ(operation(buffer.data(), list.get()), 0) << each.name;
    buffer.expect(each.after, std::string(each.name) + ", a second time");
  }
}

void expectRemoved(std::initializer_list<Case> cases) {
  expectEdits(cases, sdpModifications::sdpRemoveCodecs, removed);
}

std::string audioLine(const std::string& formats) { return "m=audio 5004 RTP/AVP" + formats + "\r\n"; }

const std::string pcmu = "a=rtpmap:0 PCMU/8000\r\n";
const std::string pcma = "a=rtpmap:8 PCMA/8000\r\n";
const std::string g729 = "a=rtpmap:18 G729/8000\r\n";
const std::string g729fmtp = "a=fmtp:18 annexb=no\r\n";
const std::string events = "a=rtpmap:101 telephone-event/8000\r\n";
const std::string eventsFmtp = "a=fmtp:101 0-15\r\n";
const std::string others = "a=ptime:20\r\na=sendrecv\r\n";

TEST(RemoveCodecs, KeepsTheCodecsOfTheListWithTheirLines) {
  const std::string offer = session + audioLine(" 0 8 18 101") + pcmu + pcma + g729 + g729fmtp +
                            "a=ptime:20\r\n" + events + eventsFmtp;
  const std::string attributes = pcma + "a=ptime:20\r\n" + events + eventsFmtp;
  expectRemoved({
      {"one codec", offer, {1}, session + audioLine(" 8 101") + attributes},
      {"no codec", offer, {}, session + audioLine(" 101") + "a=ptime:20\r\n" + events + eventsFmtp},
      {"the list ends at its first 0", offer, {1, 0, 3, 10}, session + audioLine(" 8 101") + attributes},
      {"the body's order counts", session + audioLine(" 0 8 18"), {10, 3}, session + audioLine(" 0 18")},
      {"comfort noise stays", session + audioLine(" 0 13 8"), {1}, session + audioLine(" 13 8")},
      {"a format that stands twice", session + audioLine(" 8 0 8"), {1}, session + audioLine(" 8 8")},
      {"nothing stays", session + audioLine(" 0 8") + pcmu + others, {10}, session + audioLine("") + others},
      {"no formats", session + audioLine(""), {1}, session + audioLine("")},
      {"a disabled section", session + "m=audio 0 RTP/AVP 0 8\r\n", {1}, session + "m=audio 0 RTP/AVP 8\r\n"},
      {"no audio", session + video, {1}, session + video},
      {"no media", session, {1}, session},
  });
}

TEST(RemoveCodecs, ReadsAllTwentyValues) {
  const std::vector<unsigned char> full{2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 1};
  expectRemoved({{"the last value", session + audioLine(" 0 8"), full, session + audioLine(" 8")}});
}

TEST(RemoveCodecs, TellsCodecsByTheirOwnSection) {
  const std::string opus = "a=rtpmap:97 opus/48000/2\r\n";
  const std::string ilbc = "a=rtpmap:97 iLBC/8000\r\n";
  const std::string g7221 = "a=rtpmap:98 G7221/16000\r\na=fmtp:98 bitrate=32000\r\n";
  expectRemoved({
      {"each section has its own",
       session + audioLine(" 97") + opus + audioLine(" 97 8") + ilbc,
       {38},
       session + audioLine(" 97") + opus + audioLine("")},
      // Deliberate: the session's lines do not tell what a section's formats are.
      {"a line of the session",
       session + opus + audioLine(" 97 8"),
       {38, 1},
       session + opus + audioLine(" 8")},
      {"a rate by an fmtp line",
       session + audioLine(" 98") + g7221,
       {35},
       session + audioLine(" 98") + g7221},
      {"another rate", session + audioLine(" 98") + g7221, {34}, session + audioLine("")},
      {"no other section",
       session + "m=video 5006 RTP/AVP 0 97\r\n" + opus + audioLine(" 0"),
       {1},
       session + "m=video 5006 RTP/AVP 0 97\r\n" + opus + audioLine("")},
      {"another letter case is another medium",
       session + "m=AUDIO 5004 RTP/AVP 0\r\n",
       {1},
       session + "m=AUDIO 5004 RTP/AVP 0\r\n"},
      {"only a blank ends the medium",
       session + "m=audio\v 5004 RTP/AVP 0\r\n",
       {1},
       session + "m=audio\v 5004 RTP/AVP 0\r\n"},
      // A name that only begins with "rtpmap" tells a codec to the analysis, but is no line to remove.
      {"a longer name",
       session + audioLine(" 97 99") + "a=rtpmapx:97 opus/48000/2\r\n",
       {38},
       session + audioLine(" 97") + "a=rtpmapx:97 opus/48000/2\r\n"},
  });
}

TEST(RemoveCodecs, DropsWhatItDoesNotKnow) {
  expectRemoved({
      {"a static type",
       session + audioLine(" 3 8") + "a=rtpmap:3 GSM/8000\r\n",
       {17, 1},
       session + audioLine(" 8")},
      // Deliberate: such encodings are not recognised on dynamic payload types.
      {"PCMA as 97",
       session + audioLine(" 97 8") + "a=rtpmap:97 PCMA/8000\r\n",
       {1},
       session + audioLine(" 8")},
      {"lines without value",
       session + audioLine(" 8") + "a=rtpmap\r\na=rtpmap:\r\na=fmtp\r\na=fmtp:x\r\n",
       {1},
       session + audioLine(" 8")},
      {"a number beyond 32 bits", session + audioLine(" 4294967304 8 97x"), {1}, session + audioLine(" 8")},
      {"the least and the greatest number",
       session + audioLine(" -2147483648 8 2147483647 -2147483649") +
           "a=rtpmap:-2147483648 PCMA/8000\r\na=fmtp:2147483647 x\r\n",
       {1},
       session + audioLine(" 8")},
      {"a blank in front of the number of PCMU",
       session + audioLine(" 0") + "a=rtpmap: 0 PCMU/8000\r\n",
       {3},
       session + audioLine(" 0")},
      {"many blanks in front of a number",
       session + audioLine(" 8") + "a=rtpmap:" + std::string(60, ' ') + "8 A\r\n",
       {1},
       session + audioLine(" 8") + "a=rtpmap:" + std::string(60, ' ') + "8 A\r\n"},
  });
}

TEST(RemoveCodecs, LeavesOtherAttributesOfARemovedFormat) {
  const std::string feedback = "a=rtcp-fb:18 nack\r\na=rtpmapped:18\r\n";
  expectRemoved({{"feedback",
                  session + audioLine(" 8 18") + g729 + feedback,
                  {1},
                  session + audioLine(" 8") + feedback}});
}

// Deliberate: payload type 18 is G729 here, also where an fmtp line makes the summary say G729A.
TEST(RemoveCodecs, DoesNotKnowTheAnnexesOfG729) {
  const std::string annex = "a=fmtp:18 annexb:no\r\n";
  expectRemoved({
      {"G729A", session + audioLine(" 8 18") + g729 + annex, {1, 11}, session + audioLine(" 8")},
      {"G729", session + audioLine(" 8 18") + g729 + annex, {10}, session + audioLine(" 18") + g729 + annex},
  });
}

TEST(RemoveCodecs, GivesACompleteTextTheCodecsForm) {
  const std::string loose =
      "v=0\nt=0 0\no=a  1 1\tIN IP4 192.0.2.1\n\ns=-\nm=audio  5004 RTP/AVP  0  8\na=sendrecv\n"
      "b=AS:64\nc=IN IP4 192.0.2.1";
  const std::string written =
      "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\nm=audio 5004 RTP/AVP 8\r\n"
      "c=IN IP4 192.0.2.1\r\nb=AS:64\r\na=sendrecv\r\n";
  expectRemoved({{"loose", loose, {1}, written},
                 {"without line end", session + "m=audio 5004 RTP/AVP", {1}, session + audioLine("")}});
}

std::string manyAttributes(const std::string& end, int count = 41) {
  std::string lines;
  for (int i = 0; i < count; ++i) lines += "a=x-" + std::to_string(i) + ":" + end;
  return lines;
}

// What the codec cannot hold whole is not written by it.
TEST(RemoveCodecs, KeepsTheBytesOfAnIncompleteText) {
  const std::string odd = "v=0\nt=0 0\r\no=a  1 1\tIN IP4 192.0.2.1\n\ns=-\nq=?\n";
  const std::string overlong = "a=note:" + std::string(500, 'n') + "\n";
  const std::string longName = "a=" + std::string(80, 'n') + "\r\n";
  const std::string opusBehind = manyAttributes("\r\n") + "a=rtpmap:97 opus/48000/2\r\n";
  const std::string videoOdd = "m=video  5006 RTP/AVP 0  31\n" + pcmu;
  expectRemoved({
      {"41 attributes",
       odd + "m=audio\t5004 RTP/AVP 0 8\n" + manyAttributes("\n"),
       {1},
       odd + "m=audio\t5004 RTP/AVP 8\n" + manyAttributes("\n")},
      {"an overlong value",
       odd + audioLine(" 0 8") + pcmu + overlong + pcma + "c=IN  IP4 192.0.2.1",
       {1},
       odd + audioLine(" 8") + overlong + pcma + "c=IN  IP4 192.0.2.1"},
      {"an overlong name",
       session + audioLine(" 0 8") + longName + "b=AS:64\n",
       {1},
       session + audioLine(" 8") + longName + "b=AS:64\n"},
      {"an overlong value of another section",
       session + audioLine(" 0 8") + videoOdd + overlong,
       {1},
       session + audioLine(" 8") + videoOdd + overlong},
      {"a codec behind the lines that the codec holds",
       session + audioLine(" 97 0") + opusBehind,
       {38},
       session + audioLine(" 97") + opusBehind},
      {"a CR ends the text",
       session + "q=?\nm=audio 5004 RTP/AVP 0 8\na=rtpmap:0 PCMU/8000\na=sendrecv\r",
       {1},
       session + "q=?\nm=audio 5004 RTP/AVP 8\na=sendrecv\r"},
      {"the m-line is the last and ends in CR",
       session + "q=?\nm=audio 5004 RTP/AVP 0 8\r",
       {1},
       session + "q=?\nm=audio 5004 RTP/AVP 8\r"},
      {"the removed line is the last and has no end",
       session + "q=?\r\n" + audioLine(" 8 0") + "a=rtpmap:0 PCMU",
       {1},
       session + "q=?\r\n" + audioLine(" 8")},
      {"what looks like a line in a value",
       session + "i=m=audio 1 x 0\r\nq=?\r\ns=\nm=audio 5004 x 0 8\r\n",
       {1},
       session + "i=m=audio 1 x 0\r\nq=?\r\ns=\nm=audio 5004 x 8\r\n"},
  });
}

TEST(RemoveCodecs, EditsMoreSectionsAndFormatsThanTheCodecHolds) {
  std::string before = session;
  std::string after = session;
  for (int i = 0; i < 60; ++i) {
    before += audioLine(" 0 8 18") + pcmu + pcma;
    after += audioLine(" 8") + pcma;
  }
  std::string formats;
  for (int i = 0; i < 1000; ++i) formats += " 0";
  expectRemoved({{"60 sections", before, {1}, after},
                 {"1000 formats", session + audioLine(formats + " 8 0"), {1}, session + audioLine(" 8")}});
}

std::string without(std::string text, std::initializer_list<std::string> pieces) {
  for (const std::string& piece : pieces) {
    const std::size_t at = text.find(piece);
    EXPECT_NE(at, std::string::npos) << piece;
    if (at != std::string::npos) text.erase(at, piece.size());
  }
  return text;
}

TEST(RemoveCodecs, ABrowsersOfferLosesNothingElse) {
  const std::string offer = readBytes(SDP_TEST_SOURCE_DIR "/parsers/sdp/test/bodies/browserOffer.sdp");
  const std::string end = offer.substr(offer.find("v=0") + 3, offer[offer.find("v=0") + 3] == '\r' ? 2 : 1);
  const std::string after = without(
      offer, {"111 63 9 ", "a=rtpmap:111 opus/48000/2" + end, "a=fmtp:111 minptime=10;useinbandfec=1" + end,
              "a=rtpmap:63 red/48000/2" + end, "a=fmtp:63 111/111" + end, "a=rtpmap:9 G722/8000" + end});
  ASSERT_NE(after.find("m=audio 9 UDP/TLS/RTP/SAVPF 0 8 13 110 126" + end), std::string::npos);
  expectRemoved({{"offer", offer, {1, 3}, after}});
}

TEST(ReorderCodecs, OrdersFormatsAndTheirLinesByTheList) {
  const std::string offer = session + audioLine(" 0 8 18") + others + pcmu + pcma + g729fmtp + g729;
  const std::string twoEvents = "a=rtpmap:102 telephone-event/16000\r\n";
  expectEdits(
      {
          {"two of three", offer, {10, 3}, session + audioLine(" 18 0") + g729fmtp + g729 + pcmu + others},
          {"the list ends at its first 0", offer, {1, 0, 3}, session + audioLine(" 8") + pcma + others},
          {"telephone events that are not in the list",
           session + audioLine(" 8 101 13") + events + eventsFmtp,
           {1},
           session + audioLine(" 8")},
          {"telephone events in the list",
           session + audioLine(" 101 8") + events + eventsFmtp + pcma,
           {1, 29},
           session + audioLine(" 8 101") + pcma + events + eventsFmtp},
          // Deliberate: of the later formats of a codec the lines stay.
          {"two formats of a codec",
           session + audioLine(" 101 102") + events + twoEvents,
           {29},
           session + audioLine(" 101") + events + twoEvents},
          {"an empty list", offer, {}, session + audioLine("") + others},
          {"codecs that the body has not", offer, {38, 26}, session + audioLine("") + others},
          {"each section",
           offer + audioLine(" 0 8") + video,
           {1, 3},
           session + audioLine(" 8 0") + pcma + pcmu + others + audioLine(" 8 0") + video},
          {"lines of other kinds",
           session + audioLine(" 0 8") + "i=x\r\nc=IN IP4 192.0.2.2\r\nb=AS:64\r\n" + others,
           {1, 3},
           session + audioLine(" 8 0") + "i=x\r\nc=IN IP4 192.0.2.2\r\nb=AS:64\r\n" + others},
          {"no audio", session + video, {1}, session + video},
          {"bare line feeds",
           "v=0\ns=-\nm=audio 5004 RTP/AVP 0 8",
           {1, 3},
           "v=0\r\ns=-\r\n" + audioLine(" 8 0")},
      },
      sdpModifications::sdpCodecsReordering, reordered);
}

TEST(ReorderCodecs, LosesNothingOfAnIncompleteText) {
  const std::string overlong = "a=note:" + std::string(500, 'n') + "\n";
  const std::string odd = "v=0\nt=0 0\r\no=a  1 1\tIN IP4 192.0.2.1\n\nq=?\n";
  expectEdits(
      {
          {"41 attributes",
           odd + audioLine(" 0 8") + manyAttributes("\n") + pcma,
           {1, 3},
           odd + audioLine(" 8 0") + pcma + manyAttributes("\n")},
          {"60 attributes and more",
           odd + audioLine(" 0 8") + manyAttributes("\r\n", 60) + pcmu + pcma,
           {1, 3},
           odd + audioLine(" 8 0") + pcma + pcmu + manyAttributes("\r\n", 60)},
          {"an overlong value",
           odd + audioLine(" 0 8") + overlong + "c=IN  IP4 1.2.3.4\n" + pcma + video,
           {1},
           odd + audioLine(" 8") + "c=IN  IP4 1.2.3.4\n" + pcma + overlong + video},
          {"a last line without end",
           odd + audioLine(" 0 8") + overlong + "a=rtpmap:8 PCMA",
           {1},
           odd + audioLine(" 8") + "a=rtpmap:8 PCMA\r\n" + overlong},
          {"a last line that ends in CR",
           odd + audioLine(" 0 8") + overlong + "a=rtpmap:8 PCMA\r",
           {1},
           odd + audioLine(" 8") + "a=rtpmap:8 PCMA\r\n" + overlong},
          {"an m-line that ends in CR", odd + "m=audio 5004 RTP/AVP 0 8\r", {1}, odd + audioLine(" 8")},
          {"an m-line without end", odd + "m=audio 5004 RTP/AVP 0 8", {1}, odd + audioLine(" 8")},
      },
      sdpModifications::sdpCodecsReordering, reordered);
}

// Deliberate: each entry of the list is taken for itself, and the reordering stops at the attributes that a section of
// a description can have.
TEST(ReorderCodecs, AListThatNamesACodecTwiceRepeatsIt) {
  EditBuffer buffer(session + audioLine(" 0 8") + pcmu + others);
  EXPECT_EQ(sdpModifications::sdpCodecsReordering(buffer.data(), listOf({3, 1, 3}).get()), 0);
  buffer.expect(session + audioLine(" 0 8 0") + pcmu + pcmu + others);

  EditBuffer full(session + audioLine(" 0") + pcmu + g729 + pcmu + pcmu + others);
  const std::vector<unsigned char> twenty(20, 3);
  EXPECT_EQ(sdpModifications::sdpCodecsReordering(full.data(), listOf(twenty).get()), 0);
  std::string formats;
  std::string lines;
  for (int i = 0; i < 20; ++i) formats += " 0";
  for (int i = 0; i < SDP_ATTRIBUTE_CAPACITY && i < 60; ++i) lines += pcmu;
  full.expect(session + audioLine(formats) + lines + (SDP_ATTRIBUTE_CAPACITY >= 62 ? others : ""));
}

struct Edited {
  const char* name;
  Operation operation;
  TraceLine done;
};
const Edited operations[] = {{"sdpRemoveCodecs", sdpModifications::sdpRemoveCodecs, removed},
                             {"sdpCodecsReordering", sdpModifications::sdpCodecsReordering, reordered}};

TEST(CodecLists, ATextThatIsNoBodyStaysAsItIs) {
  const std::string refused[] = {"",
                                 "no body",
                                 audioLine(" 0 8"),
                                 session + "m=audio",
                                 session + "m=audio 5004",
                                 session + "m=audio -1 RTP/AVP 0 8\r\n",
                                 session + audioLine(" 0 8") + "b=AS\n" + pcmu,
                                 session + audioLine(" 0 8") + "%n%s\r\n",
                                 session + "q=?\rm=audio 5004 RTP/AVP 0 8\r\n",
                                 session + audioLine(" 0 8") + "a=x\ra=rtpmap:0 PCMU/8000\r\n",
                                 session + audioLine(" 0 8") + "a=x\r\r\n"};
  for (const Edited& each : operations) {
    for (const std::string& text : refused) {
      EditBuffer buffer(text);
      TraceCapture trace;
      EXPECT_EQ(each.operation(buffer.data(), listOf({1}).get()), 1) << each.name << text;
      buffer.expect(text, each.name);
      EXPECT_EQ(trace.takeLines(), Lines{}) << each.name << text;
    }
  }
}

TEST(CodecLists, NeedATextAndAList) {
  for (const Edited& each : operations) {
    const TraceLine unusable{
        4, 3, std::string(each.name) + "(): The SDP buffer is null or holds no end of text. Exiting."};
    TraceCapture trace;
    EXPECT_EQ(each.operation(nullptr, listOf({1}).get()), 1);
    EXPECT_EQ(trace.takeLines(), Lines{unusable});
    std::vector<char> text = unterminatedBuffer();
    EXPECT_EQ(each.operation(text.data(), listOf({1}).get()), 1);
    EXPECT_EQ(text, unterminatedBuffer());
    EXPECT_EQ(trace.takeLines(), Lines{unusable});
    EditBuffer buffer(session + audioLine(" 0 8"));
    EXPECT_EQ(each.operation(buffer.data(), nullptr), 1);
    buffer.expect(session + audioLine(" 0 8"));
  }
}

// The codec's form is longer by the CR that one line lacks.
TEST(CodecLists, TheCodecsFormFitsWithItsNulOrTheTextStays) {
  for (const Edited& each : operations) {
    for (const int spare : {-1, 0, 1}) {
      const std::string before = completeBody(static_cast<std::size_t>(20478 - spare));
      std::string after = before;
      if (spare >= 0) after.insert(after.find("a=n\n") + 3, "\r");
      EditBuffer buffer(before);
      TraceCapture trace;
      EXPECT_EQ(each.operation(buffer.data(), listOf({3}).get()), spare >= 0 ? 0 : 1) << each.name << spare;
      buffer.expect(after, each.name);
      const TraceLine noRoom{
          4, 3, std::string(each.name) + "(): The edited SDP does not fit the SDP buffer. Exiting."};
      EXPECT_EQ(trace.takeLines(), Lines{spare >= 0 ? each.done : noRoom}) << each.name << spare;
    }
  }
}

// The last line gets an end when it may have to move.
TEST(CodecLists, AnIncompleteTextFitsWithItsNulOrStays) {
  for (const int spare : {-1, 0, 1}) {
    const std::string whole = paddedTo(static_cast<std::size_t>(20479 - spare), session + audio);
    const std::string before = whole.substr(0, whole.size() - 2);
    EditBuffer buffer(before);
    EXPECT_EQ(sdpModifications::sdpCodecsReordering(buffer.data(), listOf({3}).get()), spare >= 0 ? 0 : 1);
    buffer.expect(spare >= 0 ? whole : before);
    EditBuffer kept(before);
    EXPECT_EQ(sdpModifications::sdpRemoveCodecs(kept.data(), listOf({3}).get()), 0);
    kept.expect(before);
  }
}

TEST(CodecLists, NothingBehindTheTextsNulIsRead) {
  for (const Edited& each : operations) {
    EditBuffer buffer(session + audioLine(" 0 8") + std::string(1, '\0') + "a=rtpmap:0 PCMU/8000\r\n");
    EXPECT_EQ(each.operation(buffer.data(), listOf({1}).get()), 0);
    buffer.expect(session + audioLine(" 8"), each.name);
  }
}

}  // namespace
