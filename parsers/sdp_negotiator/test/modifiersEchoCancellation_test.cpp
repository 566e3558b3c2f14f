#include "modifiersTestSupport.h"
#include "traceCapture.h"

// Echo cancellation at the end of the first audio section.

namespace {

using Lines = std::vector<TraceLine>;

const TraceLine entering{8, 4, "Entering sdpInsertEchoCancellation() method."};
const TraceLine added{8, 4, "The echo cancellation attributes have been added succesfully. Exiting..."};
const TraceLine noLineEnd{2, 2, "NewLine not found, will attempt to add one"};
const TraceLine endsTest{2, 2, "NewLine not found, breaking from loop"};
const TraceLine exists{4, 3, "Echo cancellation already exists in SDP. Exiting..."};
const TraceLine noAudio{4, 3, "No audio <mline> found. Exiting..."};
const TraceLine badSide{4, 3, "Invalid echo cancellation entry. Exiting."};
const TraceLine badState{4, 3, "Invalid echo cancellation direction entry. Exiting."};
const TraceLine noRoom{
    2, 2,
    "The echo cancellation attributes have NOT been added. Possibility to overflow the buffer size. Exiting."};
const TraceLine unusable{
    4, 3, "sdpInsertEchoCancellation(): The SDP buffer is null or holds no end of text. Exiting."};

const std::string ecan = "a=ecan:fb on -\r\n";  // of state 1 and side 3
const Lines success{entering, added};
const Lines endAdded{entering, noLineEnd, added};

struct Value {
  unsigned char state;
  unsigned char side;
  const char* line;
};

TEST(EchoCancellation, NamesSideAndState) {
  const Value values[] = {{1, 1, "a=ecan:f on -\r\n"},  {1, 2, "a=ecan:b on -\r\n"},
                          {1, 3, "a=ecan:fb on -\r\n"}, {2, 1, "a=ecan:f off -\r\n"},
                          {2, 2, "a=ecan:b off -\r\n"}, {2, 3, "a=ecan:fb off -\r\n"}};
  for (const Value& each : values) {
    EditBuffer buffer(session + audio + video);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(buffer.data(), each.state, each.side), 0);
    buffer.expect(session + audio + each.line + video);
    EXPECT_EQ(trace.takeLines(), success);
  }
}

TEST(EchoCancellation, RefusesOtherSidesAndStates) {
  struct Refusal {
    unsigned char state;
    unsigned char side;
    TraceLine trace;
  };
  // The side is looked at first, and both before the text is.
  const Refusal refusals[] = {{1, 0, badSide},   {1, 4, badSide},  {2, 255, badSide}, {0, 0, badSide},
                              {255, 4, badSide}, {0, 1, badState}, {3, 2, badState},  {255, 3, badState}};
  for (const Refusal& each : refusals) {
    EditBuffer buffer(session + audio);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(buffer.data(), each.state, each.side), 1);
    buffer.expect(session + audio);
    EXPECT_EQ(trace.takeLines(), (Lines{entering, each.trace}));
    EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(nullptr, each.state, each.side), 1);
    EXPECT_EQ(trace.takeLines(), (Lines{entering, each.trace}));
  }
}

struct Case {
  const char* name;
  std::string head;  ///< what stands in front of the insertion
  std::string tail;  ///< what stands behind it
  std::string inserted = ecan;
  Lines traces = success;
};

const Case insertions[] = {
    {"audio alone", session + audio, ""},
    {"behind the section's lines", session + audio + "a=ptime:20\r\nb=AS:64\r\n", video},
    {"in the first audio section only", session + audio, audio + video},
    {"audio behind video", session + video + audio, ""},
    {"bare line feeds", "v=0\nm=audio 1 RTP/AVP 0\na=x\n", "m=video 2 RTP/AVP 96\n"},
    {"audio at the text's start", "m=audio 1 RTP/AVP 0\n", ""},
    {"an m-line that ends at once", session + audio, "m="},
    {"an m-line without end behind", session + audio, "m=video 1 RTP/AVP 96"},
    {"a longer media name", session + "m=audiovisual 1 x 0\r\n", video},
    {"a line that ends before the word does", session + audio + "a=eca\r\na=\r\nn:x\r\n", ""},
    {"a line with a blank in front of the word", session + audio + "a= ecan:f on -\r\n", ""},
    {"lone carriage returns", session + audio + "a=x\ra=ecan\r\r\n", ""},
    {"bytes above 127", session + audio + "a=\xFF\xFE\x80\r\n\xC3=\r\n", video},
    // Only what stands behind the audio m-line counts.
    {"echo cancellation of the session", session + "a=ecan:f on -\r\n" + audio, ""},
    {"echo cancellation of a section in front", session + video + "a=ecan:f on -\r\n" + audio, ""},
    // The test goes on behind the LF of a line with a=, so that a second a= on it is not looked at.
    {"the word behind a second a=", session + audio + "a=note:a=ecan:f\r\n", video},
    // Deliberate: an m= in a value ends the section too, and the line is cut there.
    {"m= in a value", session + audio + "a=fmtp:0 ", "m=1\r\n" + video},
    // Deliberate: an m=audio in a value begins a section.
    {"m=audio in a value", "v=0\r\ns=m=audio\r\nt=0 0\r\n", video},
    {"m=audio in a value, then an audio section", "v=0\r\ns=m=audio\r\n", audio},
};

// Where the text does not end in LF, a line end goes in front.
const Case lineEndInsertions[] = {
    {"audio m-line without LF", session + "m=audio 1 RTP/AVP 0", "", "\r\n" + ecan, endAdded},
    {"nothing but the beginning of an m-line", "m=audio", "", "\r\n" + ecan, endAdded},
    {"audio m-line ended by CR only", session + "m=audio 1 RTP/AVP 0\r", "", "\r\n" + ecan, endAdded},
    {"a last line without LF", session + audio + "b=AS:64", "", "\r\n" + ecan, endAdded},
    {"a last a-line without LF",
     session + audio + "a=ptime:20",
     "",
     "\r\n" + ecan,
     {entering, noLineEnd, endsTest, added}},
    {"a last a-line that ends at once",
     session + audio + "a=",
     "",
     "\r\n" + ecan,
     {entering, noLineEnd, endsTest, added}},
    {"a last a-line of a later section",
     session + audio,
     "m=video 1 x 0\r\na=y",
     ecan,
     {entering, endsTest, added}},
};

void expectInserted(const Case& each) {
  EditBuffer buffer(each.head + each.tail);
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(buffer.data(), 1, 3), 0) << each.name;
  buffer.expect(each.head + each.inserted + each.tail, each.name);
  EXPECT_EQ(trace.takeLines(), each.traces) << each.name;
}

TEST(EchoCancellation, ClosesTheFirstAudioSection) {
  for (const Case& each : insertions) expectInserted(each);
}

TEST(EchoCancellation, AddsALineEndToATextThatHasNone) {
  for (const Case& each : lineEndInsertions) expectInserted(each);
}

struct Refused {
  const char* name;
  std::string text;
  Lines traces;
};

TEST(EchoCancellation, IsNotAddedTwiceNorWithoutAudio) {
  const Refused cases[] = {
      {"in the audio section", session + audio + "a=ecan:b off -\r\n", {entering, exists}},
      {"in another case", session + audio + "a=x\r\na=eCaN:f on -\r\n" + video, {entering, exists}},
      {"in the video section", session + audio + video + "a=ECAN:f on -\r\n", {entering, exists}},
      {"a longer word", session + audio + "a=ecanx\r\n", {entering, exists}},
      {"the word alone at the end", session + audio + "a=ecan", {entering, noLineEnd, exists}},
      // Deliberate: the first a= of a line counts wherever it stands.
      {"in a value", session + audio + "b=a=ecan\r\n", {entering, exists}},
      {"no audio", session + video, {entering, noAudio}},
      {"no audio but echo cancellation", session + video + ecan, {entering, noAudio}},
      {"audio in another case", session + "m=Audio 1 RTP/AVP 0\r\n", {entering, noAudio}},
      {"an empty text", "", {entering, noAudio}},
  };
  for (const Refused& each : cases) {
    EditBuffer buffer(each.text);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(buffer.data(), 1, 3), 1) << each.name;
    buffer.expect(each.text, each.name);
    EXPECT_EQ(trace.takeLines(), each.traces) << each.name;
  }
}

TEST(EchoCancellation, ASecondCallIsRefused) {
  EditBuffer buffer(session + audio + video);
  EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(buffer.data(), 1, 3), 0);
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(buffer.data(), 2, 1), 1);
  buffer.expect(session + audio + ecan + video);
  EXPECT_EQ(trace.takeLines(), (Lines{entering, exists}));
}

// What fits goes in whole, with the line end it needs; of what does not fit nothing goes in.
TEST(EchoCancellation, FitsWithItsNulOrIsRefused) {
  struct Full {
    std::string head;
    std::string tail;
    std::string inserted;
    Lines begin;
  };
  const std::string off = "a=ecan:fb off -\r\n";  // the longest line
  const Full all[] = {{session + audio, video, off, {entering}},
                      {session + audio, "", off, {entering}},
                      {session + audio, "b=AS:64", "\r\n" + off, {entering, noLineEnd}}};
  for (const Full& each : all) {
    for (const std::size_t length : {20478U, 20479U, 20480U}) {  // of the result
      const std::string head = paddedTo(length - each.inserted.size() - each.tail.size(), each.head);
      const bool atEnd = each.inserted != off;
      const std::string after = atEnd ? head + each.tail + each.inserted : head + each.inserted + each.tail;
      EditBuffer buffer(head + each.tail);
      TraceCapture trace;
      const bool fits = length < EditBuffer::capacity;
      EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(buffer.data(), 2, 3), fits ? 0 : 1) << length;
      buffer.expect(fits ? after : head + each.tail);
      Lines traces = each.begin;
      traces.push_back(fits ? added : noRoom);
      EXPECT_EQ(trace.takeLines(), traces);
    }
  }
}

TEST(EchoCancellation, NeedsAText) {
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(nullptr, 1, 3), 1);
  EXPECT_EQ(trace.takeLines(), (Lines{entering, unusable}));
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(text.data(), 1, 3), 1);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), (Lines{entering, unusable}));
}

TEST(EchoCancellation, NothingBehindTheTextsNulIsRead) {
  EditBuffer buffer(session + audio + std::string(1, '\0') + "\r\na=ecan:f on -\r\nm=video 1 x 0\r\n");
  EXPECT_EQ(sdpModifications::sdpInsertEchoCancellation(buffer.data(), 1, 3), 0);
  buffer.expect(session + audio + ecan);
}

}  // namespace
