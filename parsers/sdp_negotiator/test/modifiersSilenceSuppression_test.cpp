#include "modifiersTestSupport.h"
#include "traceCapture.h"

// Silence suppression and its voice-band-data companion.

namespace {

using Lines = std::vector<TraceLine>;

const TraceLine entering{8, 4, "Entering sdpInsertSilenceSuppression() method."};
const TraceLine added{8, 4, "The silence suppression attributes have been added to the SDP. Exiting."};
const TraceLine noRoom{
    2, 2,
    "The silence suppression attributes have NOT been added. Possibility to overflow the buffer size. Exiting."};
const TraceLine noAudio{4, 3, "No audio <mline> found."};
const TraceLine invalid{4, 3, "Invalid silence suppression entry. Exiting."};
const TraceLine unusable{
    4, 3, "sdpInsertSilenceSuppression(): The SDP buffer is null or holds no end of text. Exiting."};

sSdpParsedData withFirstCodec(int codec) {
  sSdpParsedData data;
  data.init();
  data.audioCodec[0] = static_cast<std::uint8_t>(codec);
  data.audioCodec[1] = 3;  // no other slot is read
  return data;
}

struct Case {
  const char* name;
  std::string before;
  unsigned char mode;
  int codec;
  unsigned short status;
  std::string behind;  ///< what the text gains
  Lines traces;
};

const std::string on = "a=silenceSupp:on - - - -\r\n";
const std::string off = "a=silenceSupp:off - - - -\r\n";
const Lines success{entering, added};

const Case cases[] = {
    {"on", session + audio, 1, 3, 0, on, success},
    {"off with PCMU", session + audio, 2, 3, 0, off + "a=gpmd:0 vbd=yes\r\n", success},
    {"off with PCMA", session + audio, 2, 1, 0, off + "a=gpmd:8 vbd=yes\r\n", success},
    {"off with G.729", session + audio, 2, 10, 0, off + "a=gpmd: vbd=yes\r\n", success},
    {"off with the other PCMU rate", session + audio, 2, 4, 0, off + "a=gpmd: vbd=yes\r\n", success},
    {"off without codec", session + audio, 2, 0, 0, off + "a=gpmd: vbd=yes\r\n", success},
    {"off with an unknown codec", session + audio, 2, 255, 0, off + "a=gpmd: vbd=yes\r\n", success},
    {"at the end of the text, whosever section that is", session + audio + video, 1, 3, 0, on, success},
    {"on beside on", session + audio + on, 1, 3, 0, "", success},
    {"on beside off", session + audio + off, 1, 3, 0, "", success},
    {"off beside on", session + audio + on, 2, 3, 0, "a=gpmd:0 vbd=yes\r\n", success},
    {"off beside off, PCMA", session + audio + off, 2, 1, 0, "a=gpmd:8 vbd=yes\r\n", success},
    {"off beside off and voice-band data", session + audio + off + "a=gpmd:0 vbd=yes\r\n", 2, 3, 0,
     "a=gpmd:0 vbd=yes\r\n", success},
    // Deliberate: the two texts count anywhere, in a value and in front of the media too.
    {"present in the session", session + "a=silenceSupp\r\n" + audio, 1, 3, 0, "", success},
    {"present in a value", session + audio + "a=note:a=silenceSuppx\r\n", 1, 3, 0, "", success},
    {"another case is another attribute", session + audio + "a=silencesupp:on\r\n", 1, 3, 0, on, success},
    {"audio in a value", "v=0\r\ns=m=audio\r\n", 1, 3, 0, on, success},
    {"audio at the text's start", "m=audio", 1, 3, 0, on, success},
    {"bare line feeds", "v=0\ns=-\nm=audio 5004 RTP/AVP 0\n", 2, 3, 0, off + "a=gpmd:0 vbd=yes\r\n", success},
    // Deliberate: no line end is put in front of what is added.
    {"a last line without end", session + "m=audio 5004 RTP/AVP 0", 1, 3, 0, on, success},
    {"no audio", session + video, 1, 3, 1, "", {entering, noAudio}},
    {"audio in another case", session + "m=AUDIO 5004 RTP/AVP 0\r\n", 1, 3, 1, "", {entering, noAudio}},
    {"an empty text", "", 1, 3, 1, "", {entering, noAudio}},
    {"no audio and another mode", session, 3, 3, 1, "", {entering, noAudio}},
    {"mode 0", session + audio, 0, 3, 1, "", {entering, invalid}},
    {"mode 3", session + audio, 3, 3, 1, "", {entering, invalid}},
    {"mode 255 beside a line", session + audio + on, 255, 3, 1, "", {entering, invalid}},
};

TEST(SilenceSuppression, IsAddedAtTheEnd) {
  for (const Case& each : cases) {
    EditBuffer buffer(each.before);
    const sSdpParsedData data = withFirstCodec(each.codec);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpInsertSilenceSuppression(buffer.data(), each.mode, data), each.status)
        << each.name;
    buffer.expect(each.before + each.behind, each.name);
    EXPECT_EQ(trace.takeLines(), each.traces) << each.name;
  }
}

struct Added {
  unsigned char mode;
  std::string before;
  std::string lines;
};

// What fits goes in whole, and of what does not fit nothing goes in.
TEST(SilenceSuppression, FitsWithItsNulOrIsRefused) {
  const std::string body = session + audio;
  const Added all[] = {
      {1, body, on},
      {2, body, off + "a=gpmd:0 vbd=yes\r\n"},
      {2, body + on, "a=gpmd:0 vbd=yes\r\n"},
  };
  for (const Added& each : all) {
    for (const int spare : {-1, 0, 1}) {  // one less than enough, exactly enough, one more
      const std::size_t length = EditBuffer::capacity - 1 - each.lines.size();
      const std::string before =
          paddedTo(static_cast<std::size_t>(static_cast<int>(length) - spare), each.before);
      EditBuffer buffer(before);
      TraceCapture trace;
      const bool fits = spare >= 0;
      EXPECT_EQ(sdpModifications::sdpInsertSilenceSuppression(buffer.data(), each.mode, withFirstCodec(3)),
                fits ? 0 : 1)
          << each.lines << spare;
      buffer.expect(fits ? before + each.lines : before);
      EXPECT_EQ(trace.takeLines(), (Lines{entering, fits ? added : noRoom}));
    }
  }
}

TEST(SilenceSuppression, WithNothingToAddAFullTextWillDo) {
  const std::string before = paddedTo(EditBuffer::capacity - 1, session + audio + on);
  EditBuffer buffer(before);
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpInsertSilenceSuppression(buffer.data(), 1, withFirstCodec(3)), 0);
  buffer.expect(before);
  EXPECT_EQ(trace.takeLines(), success);
}

TEST(SilenceSuppression, NeedsAText) {
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpInsertSilenceSuppression(nullptr, 1, withFirstCodec(3)), 1);
  EXPECT_EQ(trace.takeLines(), (Lines{entering, unusable}));
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(sdpModifications::sdpInsertSilenceSuppression(text.data(), 1, withFirstCodec(3)), 1);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), (Lines{entering, unusable}));
}

TEST(SilenceSuppression, NothingBehindTheTextsNulIsRead) {
  const std::string before = session + audio;
  EditBuffer buffer(before + std::string(1, '\0') + "a=silenceSupp:on");
  EXPECT_EQ(sdpModifications::sdpInsertSilenceSuppression(buffer.data(), 1, withFirstCodec(3)), 0);
  buffer.expect(before + on);
}

}  // namespace
