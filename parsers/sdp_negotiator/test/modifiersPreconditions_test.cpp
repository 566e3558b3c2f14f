#include <limits>

#include "modifiersTestSupport.h"
#include "traceCapture.h"

// Quality-of-service preconditions (RFC 3312).

namespace {

using Lines = std::vector<TraceLine>;
using List = std::vector<sSdpPrecondions>;

const TraceLine added{8, 4, "Precondition attributes have been added to the SDP."};
const TraceLine noAudio{4, 3, "No audio <mline> found."};
const TraceLine tooLarge{4, 3, "The new sdpLength is larger than allowedSdpSize."};
const TraceLine entering{8, 4, "Entering sdpDelPreconditions() method."};

constexpr unsigned int allowed = 20480;
constexpr unsigned int largest = std::numeric_limits<unsigned int>::max();

TraceLine unusable(const std::string& operation) {
  return {4, 3, operation + "(): The SDP buffer is null or holds no end of text. Exiting."};
}
TraceLine invalid(const std::string& field) { return {4, 3, "Invalid precondition " + field + "."}; }
TraceLine total(int count) {
  return {8, 4,
          "Total precondition attributes removed from the SDP = " + std::to_string(count) + ". Exiting..."};
}

unsigned short insert(char* sdp, const List& list, unsigned int allowedSize = allowed) {
  return sdpModifications::sdpInsertPrecondions(sdp, allowedSize, 1, static_cast<int>(list.size()),
                                                list.data());
}

// The shortest line, of 21 characters, and one of 24.
const sSdpPrecondions shortest{1, 0, 0, 0, 0};
const std::string shortestLine = "a=curr:qos e2e none\r\n";
const sSdpPrecondions longer{1, 0, 0, 2, 0};
const std::string longerLine = "a=curr:qos remote none\r\n";

TEST(InsertPreconditions, WritesEachValueOfEachField) {
  struct Value {
    sSdpPrecondions record;
    const char* line;
  };
  const Value values[] = {
      {{1, 0, 0, 0, 0}, "a=curr:qos e2e none\r\n"},
      {{3, 0, 0, 2, 3}, "a=conf:qos remote sendrecv\r\n"},
      {{1, 1, 0, 1, 1}, "a=curr:token local send\r\n"},
      {{3, 1, 0, 2, 2}, "a=conf:token remote recv\r\n"},
      {{2, 0, 0, 0, 3}, "a=des:qos mandatory e2e sendrecv\r\n"},
      {{2, 0, 1, 1, 0}, "a=des:qos optional local none\r\n"},
      {{2, 1, 2, 2, 1}, "a=des:token none remote send\r\n"},
      {{2, 0, 3, 0, 2}, "a=des:qos failure e2e recv\r\n"},
      {{2, 1, 4, 1, 3}, "a=des:token unknown local sendrecv\r\n"},
      // Only desired lines have a strength, so that it is not looked at elsewhere.
      {{1, 0, 5, 0, 0}, "a=curr:qos e2e none\r\n"},
      {{3, 0, largest, 2, 3}, "a=conf:qos remote sendrecv\r\n"},
  };
  for (const Value& each : values) {
    EditBuffer buffer(session + audio);
    TraceCapture trace;
    EXPECT_EQ(insert(buffer.data(), {each.record}), 0) << each.line;
    buffer.expect(session + audio + each.line);
    EXPECT_EQ(trace.takeLines(), Lines{added});
  }
}

TEST(InsertPreconditions, StopsAtTheFirstInvalidField) {
  struct Invalid {
    List list;
    const char* field;
  };
  const Invalid cases[] = {
      {{{0, 0, 0, 0, 0}}, "status"},
      {{{4, 0, 0, 0, 0}}, "status"},
      {{{largest, 0, 0, 0, 0}}, "status"},
      {{{1, 2, 0, 0, 0}}, "type"},
      {{{1, largest, 0, 0, 0}}, "type"},
      {{{2, 0, 5, 0, 0}}, "strength tag"},
      {{{2, 0, largest, 0, 0}}, "strength tag"},
      {{{1, 0, 0, 3, 0}}, "status type"},
      {{{3, 0, 0, largest, 0}}, "status type"},
      {{{1, 0, 0, 0, 4}}, "direction tag"},
      {{{2, 1, 4, 2, largest}}, "direction tag"},
      // The fields are looked at in the order in which they are written.
      {{{4, 2, 5, 3, 4}}, "status"},
      {{{2, 2, 5, 3, 4}}, "type"},
      {{{2, 1, 5, 3, 4}}, "strength tag"},
      {{{2, 1, 4, 3, 4}}, "status type"},
      {{shortest, {1, 0, 0, 3, 0}, {4, 0, 0, 0, 0}}, "status type"},
  };
  for (const Invalid& each : cases) {
    EditBuffer buffer(session + audio);
    TraceCapture trace;
    EXPECT_EQ(insert(buffer.data(), each.list), 1) << each.field;
    buffer.expect(session + audio);
    EXPECT_EQ(trace.takeLines(), Lines{invalid(each.field)});
  }
}

TEST(InsertPreconditions, GoToTheVeryEndOfTheText) {
  const std::string lines = shortestLine + longerLine;
  const std::pair<std::string, std::string> cases[] = {
      {session + audio, lines},
      {session + audio + video, lines},  // whosever section that is
      {"v=0\nm=audio 1 RTP/AVP 0\n", lines},
      {"v=0\r\ns=m=audio\r\n", lines},          // deliberate: audio in a value counts
      {session + audio + shortestLine, lines},  // present ones too
      {session + audio + "a=x", "\r\n" + lines},
      {session + audio + "a=x\r", "\r\n" + lines},
      {session + "m=audio 1 RTP/AVP 0", "\r\n" + lines},
      {"m=audio", "\r\n" + lines},
  };
  for (const auto& [before, behind] : cases) {
    EditBuffer buffer(before);
    EXPECT_EQ(insert(buffer.data(), {shortest, longer}), 0) << before;
    buffer.expect(before + behind, before);
  }
}

TEST(InsertPreconditions, WithoutRecordsOnlyALineEndIsAdded) {
  for (const int count : {0, -1, std::numeric_limits<int>::min()}) {
    for (const std::string end : {"\r\n", ""}) {
      const std::string before = session + "m=audio 1 RTP/AVP 0" + end;
      EditBuffer buffer(before);
      TraceCapture trace;
      EXPECT_EQ(sdpModifications::sdpInsertPrecondions(buffer.data(), allowed, 1, count, nullptr), 0);
      buffer.expect(before + (end.empty() ? "\r\n" : ""));
      EXPECT_EQ(trace.takeLines(), Lines{added});
    }
  }
}

// Deliberate: the success is traced although nothing was added.
TEST(InsertPreconditions, DisabledDoesNothing) {
  std::vector<char> unended = unterminatedBuffer();
  for (const int enable : {0, 2, -1}) {
    EditBuffer buffer(session + video);
    TraceCapture trace;
    for (char* const sdp : {buffer.data(), unended.data(), static_cast<char*>(nullptr)}) {
      EXPECT_EQ(sdpModifications::sdpInsertPrecondions(sdp, 0, enable, 1, &shortest), 0);
      EXPECT_EQ(trace.takeLines(), Lines{added});
    }
    buffer.expect(session + video);
  }
  EXPECT_EQ(unended, unterminatedBuffer());
}

TEST(InsertPreconditions, NeedAnAudioSection) {
  for (const std::string& text : {session + video, session + "m=Audio 1 RTP/AVP 0\r\n", std::string()}) {
    EditBuffer buffer(text);
    TraceCapture trace;
    EXPECT_EQ(insert(buffer.data(), {{4, 0, 0, 0, 0}}), 1);  // which is not looked at
    buffer.expect(text);
    EXPECT_EQ(trace.takeLines(), Lines{noAudio});
  }
}

TEST(InsertPreconditions, StayTwoCharactersBelowTheAllowedSize) {
  for (const std::string& before : {session + audio, session + "m=audio 1 RTP/AVP 0"}) {
    const auto length = static_cast<unsigned int>(before.size() + shortestLine.size());
    const bool ended = before.back() == '\n';
    for (const unsigned int size : {0U, 1U, length, length + 2, length + 3, length + 4, largest}) {
      EditBuffer buffer(before);
      TraceCapture trace;
      const bool fits = length + 2 < size;
      EXPECT_EQ(insert(buffer.data(), {shortest}, size), fits ? 0 : 1) << size;
      buffer.expect(fits ? before + (ended ? "" : "\r\n") + shortestLine : before);
      EXPECT_EQ(trace.takeLines(), Lines{fits ? added : tooLarge});
    }
  }
}

// An allowed size beyond the buffer's is no room: the text ends in NUL within the buffer.
TEST(InsertPreconditions, StayInsideTheBufferWhateverSizeIsAllowed) {
  for (const unsigned int size : {allowed, allowed + 2, allowed + 3, largest}) {
    const std::size_t most = size == allowed ? 20477 : 20479;  // of the result
    for (const std::string tail : {"", "b=AS:64"}) {
      const std::string behind = (tail.empty() ? "" : "\r\n") + shortestLine;
      // The line end counts towards the two characters below the allowed size.
      const std::size_t fitting = size == allowed && !tail.empty() ? most + 2 : most;
      for (const std::size_t length : {fitting - 1, fitting, fitting + 1}) {
        const std::string before = paddedTo(length - behind.size() - tail.size(), session + audio) + tail;
        EditBuffer buffer(before);
        TraceCapture trace;
        const bool fits = length <= fitting;
        EXPECT_EQ(insert(buffer.data(), {shortest}, size), fits ? 0 : 1) << size << ' ' << length;
        buffer.expect(fits ? before + behind : before);
        EXPECT_EQ(trace.takeLines(), Lines{fits ? added : tooLarge});
      }
    }
  }
}

TEST(InsertPreconditions, TogetherHaveAtMost255Characters) {
  struct Last {
    sSdpPrecondions record;
    std::string line;
    bool fits;
  };
  // Eleven lines of 21 characters, 231 together, and one more of 23 to 26.
  const Last lasts[] = {{{1, 0, 0, 1, 0}, "a=curr:qos local none\r\n", true},
                        {longer, longerLine, true},
                        {{1, 0, 0, 0, 3}, "a=curr:qos e2e sendrecv\r\n", false},
                        {{1, 1, 0, 2, 0}, "a=curr:token remote none\r\n", false}};
  for (const Last& each : lasts) {
    List list(11, shortest);
    list.push_back(each.record);
    std::string after = session + audio;
    for (int i = 0; i < 11; ++i) after += shortestLine;
    EditBuffer buffer(session + audio);
    TraceCapture trace;
    EXPECT_EQ(insert(buffer.data(), list), each.fits ? 0 : 1) << each.line;
    buffer.expect(each.fits ? after + each.line : session + audio);
    EXPECT_EQ(trace.takeLines(), Lines{each.fits ? added : tooLarge});
  }
  EditBuffer buffer(session + audio);
  EXPECT_EQ(insert(buffer.data(), List(100000, shortest)), 1);
  buffer.expect(session + audio);
}

TEST(InsertPreconditions, TellAnInvalidRecordBehindAFullAreaAsInvalid) {
  // Twelve lines of 21 characters leave no room for another.
  for (const std::size_t valid : {12U, 13U, 1000U}) {
    List list(valid, shortest);
    list.push_back({1, 0, 0, 3, 0});
    list.push_back({4, 0, 0, 0, 0});
    EditBuffer buffer(session + audio);
    TraceCapture trace;
    EXPECT_EQ(insert(buffer.data(), list), 1);
    buffer.expect(session + audio);
    EXPECT_EQ(trace.takeLines(), Lines{invalid("status type")});
  }
}

TEST(InsertPreconditions, NeedATextAndAList) {
  TraceCapture trace;
  EXPECT_EQ(insert(nullptr, {shortest}), 1);
  EXPECT_EQ(trace.takeLines(), Lines{unusable("sdpInsertPrecondions")});
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(insert(text.data(), {shortest}), 1);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), Lines{unusable("sdpInsertPrecondions")});
  EditBuffer buffer(session + audio);
  EXPECT_EQ(sdpModifications::sdpInsertPrecondions(buffer.data(), allowed, 1, 1, nullptr), 1);
  buffer.expect(session + audio);
  EXPECT_EQ(trace.takeLines(),
            (Lines{{4, 3, "sdpInsertPrecondions(): There is no list of preconditions. Exiting."}}));
}

struct Removal {
  const char* name;
  std::string before;
  std::string after;
  int count;
};

const std::string curr = "a=curr:qos e2e none\r\n";
const std::string des = "a=des:qos mandatory e2e sendrecv\r\n";
const std::string conf = "a=conf:qos e2e recv\r\n";

const Removal removals[] = {
    {"three in a row", session + audio + curr + des + conf, session + audio, 3},
    {"in the session and in each section",
     session + curr + audio + "a=x\r\n" + des + video + conf + "b=AS:1\r\n",
     session + audio + "a=x\r\n" + video + "b=AS:1\r\n", 3},
    {"with nothing behind the colon", session + "a=curr:\r\na=des:\na=conf:\r\n" + audio, session + audio, 3},
    {"none", session + audio + video, session + audio + video, 0},
    {"other attributes", session + audio + "a=current:1\r\na=des\r\na=confx:\r\na= curr:\r\na=\r\n",
     session + audio + "a=current:1\r\na=des\r\na=confx:\r\na= curr:\r\na=\r\n", 0},
    {"another case", session + audio + "a=CURR:qos\r\nA=des:qos\r\n",
     session + audio + "a=CURR:qos\r\nA=des:qos\r\n", 0},
    {"in a value", session + "i=a=curr:qos\r\na=note:a=des:qos\r\n",
     session + "i=a=curr:qos\r\na=note:a=des:qos\r\n", 0},
    {"behind a lone CR", session + "i=x\ra=curr:qos\r\n", session + "i=x\ra=curr:qos\r\n", 0},
    {"bare line feeds", "v=0\na=curr:qos\na=des:qos\nm=audio 1 x 0\na=x\na=conf:qos\n",
     "v=0\nm=audio 1 x 0\na=x\n", 3},
    // The line end in front stays, and that of the line goes but for its LF, which was in front of the next.
    {"behind CR LF, ended by LF", "v=0\r\na=curr:qos\nm=x\n", "v=0\r\nm=x\n", 1},
    {"behind LF, ended by CR LF", "v=0\na=curr:qos\r\nm=x\n", "v=0\nm=x\n", 1},
    {"empty lines around", "v=0\r\n\r\na=curr:qos\r\n\r\nm=x\r\n", "v=0\r\n\r\n\r\nm=x\r\n", 1},
    {"nothing else", "\na=curr:qos\n", "\n", 1},
    // Deliberate: the first line and a line without LF are not seen.
    {"in the first line", "a=curr:qos\r\na=des:qos\r\nm=x\r\n", "a=curr:qos\r\nm=x\r\n", 1},
    {"without LF", session + "a=curr:qos", session + "a=curr:qos", 0},
    {"the last of three without LF", session + curr + des + "a=conf:qos\r", session + "a=conf:qos\r", 2},
    {"cut short", "v=0\r\na=curr", "v=0\r\na=curr", 0},
    {"an empty text", "", "", 0},
};

TEST(RemovePreconditions, TakesEveryLineOut) {
  for (const Removal& each : removals) {
    EditBuffer buffer(each.before);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::sdpDelPreconditions(buffer.data()), 0) << each.name;
    buffer.expect(each.after, each.name);
    EXPECT_EQ(trace.takeLines(), (Lines{entering, total(each.count)})) << each.name;
  }
}

TEST(RemovePreconditions, OfAFullBuffer) {
  const std::string line = "a=des:\n";
  std::string before = "v=0\n";
  int count = 0;
  for (; before.size() + line.size() < EditBuffer::capacity; ++count) before += line;
  EditBuffer buffer(before);
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::sdpDelPreconditions(buffer.data()), 0);
  buffer.expect("v=0\n");
  EXPECT_EQ(trace.takeLines(), (Lines{entering, total(count)}));
}

TEST(RemovePreconditions, TakesOutWhatWasInserted) {
  EditBuffer buffer(session + audio);
  EXPECT_EQ(insert(buffer.data(), {shortest, {2, 0, 0, 0, 3}, {3, 0, 0, 2, 3}}), 0);
  EXPECT_EQ(sdpModifications::sdpDelPreconditions(buffer.data()), 0);
  buffer.expect(session + audio);
}

TEST(RemovePreconditions, WithoutATextFindsNone) {
  TraceCapture trace;
  const Lines traces{entering, unusable("sdpDelPreconditions"), total(0)};
  EXPECT_EQ(sdpModifications::sdpDelPreconditions(nullptr), 0);
  EXPECT_EQ(trace.takeLines(), traces);
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(sdpModifications::sdpDelPreconditions(text.data()), 0);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), traces);
}

}  // namespace
