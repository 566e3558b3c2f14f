#include <numeric>

#include "modifiersAnatSupport.h"

// Alternative network address types (RFC 4091): grouping and removal of sections.

namespace {

using namespace anat;

unsigned short apply(char* sdp) {
  M::sdpApplyAnatAttributes(sdp);
  return 0;
}

/// Grouping

struct Case {
  const char* name;
  std::string before;
  std::string after;
};

const Case groupings[] = {
    {"two sections", head + audio4 + audio6,
     head + "a=group:ANAT 1 2\r\n" + audio4 + mid(1) + audio6 + mid(2)},
    {"one section", head + audio4, head + "a=group:ANAT 1\r\n" + audio4 + mid(1)},
    {"port 0 is not in the group", head + audio4 + "m=audio 0 RTP/AVP 0\r\n" + connection6,
     head + "a=group:ANAT 1\r\n" + audio4 + mid(1) + "m=audio 0 RTP/AVP 0\r\n" + connection6 + mid(2)},
    {"no port is in the group", head + "m=audio 0 RTP/AVP 0\r\n",
     head + "a=group:ANAT\r\nm=audio 0 RTP/AVP 0\r\n" + mid(1)},
    {"port 0 of another transport is", head + "m=image 0 udptl t38\r\n",
     head + "a=group:ANAT 1\r\nm=image 0 udptl t38\r\n" + mid(1)},
    {"a port that ends in 0 is", head + "m=audio 5000 RTP/AVP 0\r\n",
     head + "a=group:ANAT 1\r\nm=audio 5000 RTP/AVP 0\r\n" + mid(1)},
    // Deliberate: the group names the section by its number, whatever its mid line says.
    {"a mid line stays", head + audio4 + "a=mid:x\r\n" + audio6 + "a=mid:7\r\na=ptime:20\r\n" + video,
     head + "a=group:ANAT 1 2 3\r\n" + audio4 + "a=mid:x\r\n" + audio6 + "a=mid:7\r\na=ptime:20\r\n" + video +
         mid(3)},
    {"a mid line in a value counts", head + audio + "a=note:a=mid:\r\n",
     head + "a=group:ANAT 1\r\n" + audio + "a=note:a=mid:\r\n"},
    {"a session mid line does not", head + "a=mid:1\r\n" + audio,
     head + "a=mid:1\r\na=group:ANAT 1\r\n" + audio + mid(1)},
    {"a group line is added to one that is there", head + "a=group:ANAT 9\r\n" + audio,
     head + "a=group:ANAT 9\r\na=group:ANAT 1\r\n" + audio + mid(1)},
    {"LF only", "v=0\nm=a 1\nm=b 0 RTP\n", "v=0\na=group:ANAT 1\r\nm=a 1\na=mid:1\r\nm=b 0 RTP\na=mid:2\r\n"},
    {"the last line without LF", head + audio + "a=x",
     head + "a=group:ANAT 1\r\n" + audio + "a=x\r\n" + mid(1)},
    {"an m-line without LF", head + "m=audio 0 RTP/AVP 0",
     head + "a=group:ANAT\r\nm=audio 0 RTP/AVP 0\r\n" + mid(1)},
    {"an m-line cut short", head + "m=", head + "a=group:ANAT 1\r\nm=\r\n" + mid(1)},
    {"no m-line", head + time0, head + time0},
    {"an empty text", "", ""},
    // Deliberate: only what stands behind a line feed is an m-line.
    {"an m-line in the first line", "m=audio 1 RTP/AVP 0\r\n", "m=audio 1 RTP/AVP 0\r\n"},
    {"an m-line in a value", head + "a=x:m=audio\r\n", head + "a=x:m=audio\r\n"},
};

TEST(ApplyAnat, NumbersAndGroupsTheSections) {
  for (const Case& each : groupings) {
    SCOPED_TRACE(each.name);
    TraceCapture trace;
    expectEdit(each.before, apply, 0, each.after);
    EXPECT_EQ(trace.takeLines(), Traces{});
  }
}

TEST(ApplyAnat, NumbersAnyCountOfSections) {
  std::string before = head;
  std::string group = "a=group:ANAT";
  std::string sections;
  for (int i = 1; i <= 120; ++i) {
    const std::string mLine = i % 10 == 0 ? "m=audio 0 RTP/AVP 0\r\n" : audio;
    before += mLine;
    sections += mLine + mid(i);
    if (i % 10 != 0) group += " " + std::to_string(i);
  }
  expectEdit(before, apply, 0, head + group + "\r\n" + sections);
}

// The group line and two mid lines have 18 + 9 + 9 characters.
TEST(ApplyAnat, ChangesNothingWithoutRoomForAllLines) {
  const std::string added = "a=group:ANAT 1 2\r\n" + mid(1) + mid(2);
  ASSERT_EQ(added.size(), 36U);
  for (const std::size_t over : {std::size_t{0}, std::size_t{1}, added.size()}) {
    const std::string before = filledTo(kLongestBody - added.size() + over, head + audio4 + audio6);
    const std::string note = before.substr((head + audio4 + audio6).size());
    TraceCapture trace;
    if (over == 0) {
      expectEdit(before, apply, 0, head + "a=group:ANAT 1 2\r\n" + audio4 + mid(1) + audio6 + note + mid(2));
      EXPECT_EQ(trace.takeLines(), Traces{});
    } else {
      expectUntouched(before, apply, 0);
      EXPECT_EQ(trace.takeLines(), (Traces{noRoomForAttributes, noRoomForAttributes}));
    }
  }
}

TEST(ApplyAnat, RefusesABufferWithoutText) {
  TraceCapture trace;
  M::sdpApplyAnatAttributes(nullptr);
  EXPECT_EQ(trace.takeLines(), Traces{});
  std::vector<char> text = unterminatedBuffer();
  M::sdpApplyAnatAttributes(text.data());
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), Traces{unusable("sdpApplyAnatAttributes")});
}

/// Removal

const Traces removalBegin{{8, 4, "Entering sdpRemoveAnat() method."},
                          {8, 4, "Entering sdpRemoveAnatAttributes() method."},
                          {8, 4, "The ANAT attributes have been removed from the SDP. Exiting..."}};
const TraceLine sessionLineGone{
    2, 2, "Removed session level c-line because its IP type matches the removed media."};
const TraceLine removalEnd{8, 4, "Exiting sdpRemoveAnat() method."};

TraceLine notRecorded(int position) {
  return {2, 2,
          "sdpRemoveAnat(): The removed m-line at position " + std::to_string(position) +
              " is not recorded. There are 25 codes of at most 127."};
}

Traces removalTraces(const Traces& between) {
  Traces all = removalBegin;
  all.insert(all.end(), between.begin(), between.end());
  all.push_back(removalEnd);
  return all;
}

struct RemovalCase {
  const char* name;
  std::string before;
  eIPAddressVersion version;
  std::string after;
  std::vector<int> codes;
  Traces between = {};
};

const RemovalCase removals[] = {
    {"the IPv4 sections",
     head + connection4 + time0 + audio4 + audio6 + video4 + video6,
     v4,
     head + time0 + audio6 + video6,
     {1, 28},
     {sessionLineGone}},
    {"the IPv6 sections",
     head + connection4 + time0 + audio4 + audio6 + video4 + video6,
     v6,
     head + connection4 + time0 + audio4 + video4,
     {2, 29}},
    {"IPv6 by any other value",
     head + connection6 + audio4 + audio6,
     static_cast<eIPAddressVersion>(0),
     head + audio4,
     {2},
     {sessionLineGone}},
    {"secure ones", head + secureAudio4 + audio6 + secureVideo4, v4, head + audio6, {129, 156}},
    {"all media kinds",
     head + audio4 + video4 + "m=application 1 UDP x\r\n" + connection4 + "m=image 1 udptl t38\r\n" +
         connection4,
     v4,
     head,
     {1, 27, 53, 79}},
    {"none", head + audio6 + video6, v4, head + audio6 + video6, {}},
    {"no m-line", head + connection4 + time0, v4, head + connection4 + time0, {}},
    {"an empty text", "", v4, "", {}},
    // The session's c-line goes by its own version, whether or not a section does.
    {"only the session's c-line",
     head + connection4 + time0 + audio + video6,
     v4,
     head + time0 + audio + video6,
     {},
     {sessionLineGone}},
    {"only the first session c-line",
     head + connection4 + connection4 + audio6,
     v4,
     head + connection4 + audio6,
     {},
     {sessionLineGone}},
    {"the group but not the mids",
     head + "a=group:ANAT 1 2\r\n" + audio4 + mid(1) + audio6 + mid(2),
     v4,
     head + audio6 + mid(2),
     {1}},
    {"a section with two c-lines", head + audio6 + connection4 + audio6, v4, head + audio6, {1}},
    {"LF only",
     "v=0\nm=audio 1 RTP/AVP 0\nc=IN IP4 1.2.3.4\nm=audio 1 RTP/AVP 0\n",
     v4,
     "v=0\nm=audio 1 RTP/AVP 0\n",
     {1}},
    {"in the first line", audio4 + audio6, v4, audio6, {1}},
    {"an m-line without LF", head + "m=audio c=IN IP4", v4, head, {1}},
    {"a session c-line that ends on the m-line",
     "v=0\r\nc=IN IP4 m=audio 1\r\n" + audio,
     v4,
     "v=0\r\n" + audio,
     {},
     {sessionLineGone}},
    {"a session c-line without LF", "v=0\r\nc=IN IP4 m=audio", v4, "v=0\r\nc=IN IP4 m=audio", {}},
    // Deliberate: "m=" begins a section and the connection text counts wherever they stand.
    {"m= in a value", head + "a=x:m=y\r\n" + connection4 + audio4 + audio6, v4, head + "a=x:" + audio6, {2}},
    {"the connection in a value", head + audio + "a=x:c=IN IP4\r\n" + audio6, v4, head + audio6, {1}},
    {"the session's connection in a value",
     head + "a=x:c=IN IP4\r\n" + time0 + audio6,
     v4,
     head + "a=x:" + time0 + audio6,
     {},
     {sessionLineGone}},
    // Deliberate: the first name in the order audio, video, application, image that stands anywhere on the m-line.
    {"audio on a video m-line", head + "m=video 1 RTP/AVP audio\r\n" + connection4, v4, head, {1}},
    {"image on an application m-line", head + "m=application 1 image\r\n" + connection4, v4, head, {51}},
    // A section without code goes, counts as a position and leaves no code,
    {"another medium", head + "m=text 1 RTP/AVP 98\r\n" + connection4 + audio4, v4, head, {2}},
    // but when it was secure leaves that to the next one, or alone.
    {"another secure medium", head + "m=text 1 RTP/SAVP 98\r\n" + connection4 + audio4, v4, head, {130}},
    {"another secure medium last",
     head + audio4 + "m=text 1 RTP/SAVP 98\r\n" + connection4,
     v4,
     head,
     {1, 128}},
};

TEST(RemoveAnat, TakesTheSectionsOfAVersionAndRecordsThem) {
  for (const RemovalCase& each : removals) {
    SCOPED_TRACE(each.name);
    std::vector<char> record(25, '\0');
    unsigned short oLineEnd = 4711;
    TraceCapture trace;
    expectEdit(
        each.before,
        [&](char* sdp) { return M::sdpRemoveAnat(sdp, each.version, record.data(), oLineEnd, false); }, 0,
        each.after);
    EXPECT_EQ(record, recordOf(each.codes));
    EXPECT_EQ(oLineEnd, 4711);
    EXPECT_EQ(trace.takeLines(), removalTraces(each.between));
    // Once more in a block that ends behind its NUL.
    const auto exact = std::make_unique<char[]>(each.before.size() + 1);
    std::memcpy(exact.get(), each.before.c_str(), each.before.size() + 1);
    record = recordOf({});
    EXPECT_EQ(M::sdpRemoveAnat(exact.get(), each.version, record.data(), oLineEnd, false), 0);
    EXPECT_STREQ(exact.get(), each.after.c_str());
    EXPECT_EQ(record, recordOf(each.codes));
  }
}

std::string repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

// Positions count on behind the 25th m-line.
TEST(RemoveAnat, EndsWithTheTwentyFifthCode) {
  for (const int kept : {0, 1, 2, 30}) {
    for (const int removed : {25, 26, 27}) {
      std::vector<char> record(25, '\0');
      std::vector<int> codes(25);
      std::iota(codes.begin(), codes.end(), kept + 1);
      unsigned short oLineEnd = 0;
      TraceCapture trace;
      expectEdit(
          head + repeated(audio6, kept) + repeated(audio4, removed),
          [&](char* sdp) { return M::sdpRemoveAnat(sdp, v4, record.data(), oLineEnd, false); }, 0,
          head + repeated(audio6, kept) + repeated(audio4, removed - 25));
      EXPECT_EQ(record, recordOf(codes));
      EXPECT_EQ(trace.takeLines(), removalTraces({}));
    }
  }
}

// Deliberate: a code behind the 25th position reads as one of the next media kind. One above 127 would read as that of
// a secure m-line.
TEST(RemoveAnat, RecordsWhatFitsSevenBits) {
  const std::string image4 = "m=image 1 udptl t38\r\n" + connection4;
  const std::string secureImage4 = "m=image 1 RTP/SAVP t38\r\n" + connection4;
  const std::string text4 = "m=text 1 RTP/AVP 98\r\n" + connection4;
  struct Beyond {
    int kept;
    std::string last;
    std::vector<int> codes;
    Traces traces;
  };
  const Beyond cases[] = {
      {24, audio4 + audio4, {25, 26}, {}},
      {24, audio4 + video4, {25, 51}, {}},
      {24, audio4 + secureAudio4, {25, 154}, {}},
      {24, audio4 + text4, {25}, {}},
      {51, image4 + image4 + audio4, {127, 54}, {notRecorded(53)}},
      {51, secureImage4 + secureImage4 + audio4, {255, 54}, {notRecorded(53)}},
  };
  for (const Beyond& each : cases) {
    std::vector<char> record(25, '\0');
    unsigned short oLineEnd = 0;
    TraceCapture trace;
    expectEdit(
        head + repeated(audio6, each.kept) + each.last,
        [&](char* sdp) { return M::sdpRemoveAnat(sdp, v4, record.data(), oLineEnd, false); }, 0,
        head + repeated(audio6, each.kept));
    EXPECT_EQ(record, recordOf(each.codes));
    EXPECT_EQ(trace.takeLines(), removalTraces(each.traces));
  }
}

TEST(RemoveAnat, RebuildsTheOLineWhenACodeWasRecorded) {
  // The o-line grows by more than the session's c-line stands in front of the first m-line.
  EditBuffer buffer("v=0\r\no=- 1 1 IN IP4 1.1.1.1\r\ns=-\r\nc=IN IP4 x\n" + audio4 + audio6);
  std::vector<char> record(25, '\0');
  unsigned short oLineEnd = 0;
  TraceCapture trace;
  EXPECT_EQ(M::sdpRemoveAnat(buffer.data(), v4, record.data(), oLineEnd, true), 0);
  expectRebuiltOrigin(buffer, "v=0\r\n", oLineEnd, "s=-\r\n" + audio6);
  EXPECT_EQ(record, recordOf({1}));
  const Traces lines = trace.takeLines();
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_EQ(lines[4], (TraceLine{2, 2, "The o-line has been changed. Exiting..."}));
  EXPECT_EQ(lines[5], sessionLineGone);
}

// "o=" counts wherever it stands: the o-line's new length must not move the place of an m-line in front of it.
TEST(RemoveAnat, KnowsTheSessionsCLineWhenTheOLineStandsBehindTheFirstMLine) {
  struct Behind {
    const char* name;
    std::string front;
    std::string oLine;
    std::string after;  ///< in front of the o-line
    bool sessionLine;
  };
  const std::string longer = "o=" + std::string(100, 'u') + " 1 1 IN IP4 1.1.1.1\r\n";
  const Behind cases[] = {
      {"a shorter one", "v=0\r\n" + connection4 + audio4 + audio6, longer, "v=0\r\n" + audio6, true},
      {"a longer one, and a section that the full record left", "v=0\r\n" + repeated(audio4, 26), "o=1\r\n",
       "v=0\r\n" + audio4, false},
      {"one through the first m-line", "v=0\r\n" + connection4, longer + audio4 + audio6, "v=0\r\n", true},
  };
  for (const Behind& each : cases) {
    SCOPED_TRACE(each.name);
    EditBuffer buffer(each.front + each.oLine + "s=-\r\n");
    std::vector<char> record(25, '\0');
    unsigned short oLineEnd = 0;
    TraceCapture trace;
    EXPECT_EQ(M::sdpRemoveAnat(buffer.data(), v4, record.data(), oLineEnd, true), 0);
    EXPECT_EQ(trace.has(2, 2, sessionLineGone.text), each.sessionLine);
    const std::string text = buffer.text();
    EXPECT_EQ(text.substr(0, each.after.size() + 6), each.after + "o=ZEV ");
    EXPECT_EQ(text.substr(text.size() - 5), "s=-\r\n");
  }
}

TEST(RemoveAnat, LeavesTheOLineWhenNoCodeWasRecorded) {
  const std::string text = "m=text 1 RTP/AVP 98\r\n" + connection4;
  for (const std::string& before : {head + audio6, head + text + audio6}) {
    std::vector<char> record(25, '\0');
    unsigned short oLineEnd = 4711;
    expectEdit(
        before, [&](char* sdp) { return M::sdpRemoveAnat(sdp, v4, record.data(), oLineEnd, true); }, 0,
        head + audio6);
    EXPECT_EQ(oLineEnd, 4711);
  }
}

TEST(RemoveAnat, GoesOnWithoutAnOLineToRebuild) {
  std::vector<char> record(25, '\0');
  unsigned short oLineEnd = 4711;
  TraceCapture trace;
  expectEdit(
      "v=0\r\ns=-\r\n" + connection4 + audio4 + audio6,
      [&](char* sdp) { return M::sdpRemoveAnat(sdp, v4, record.data(), oLineEnd, true); }, 0,
      "v=0\r\ns=-\r\n" + audio6);
  EXPECT_EQ(record, recordOf({1}));
  EXPECT_EQ(oLineEnd, 4711);
  const Traces lines = trace.takeLines();
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_EQ(lines[4], (TraceLine{2, 2, "The o-line is not present within the SDP. Exiting..."}));
  EXPECT_EQ(lines[5], sessionLineGone);
}

TEST(RemoveAnat, EmptiesAFullBuffer) {
  const std::string section = "m=text\nc=IN IP4\n";
  std::string before = "v=0\n";
  while (before.size() + section.size() <= kLongestBody) before += section;
  std::vector<char> record(25, '\0');
  unsigned short oLineEnd = 0;
  expectEdit(
      before, [&](char* sdp) { return M::sdpRemoveAnat(sdp, v4, record.data(), oLineEnd, true); }, 0,
      "v=0\n");
  EXPECT_EQ(record, recordOf({}));
}

TEST(RemoveAnat, WorksWithoutARecord) {
  unsigned short oLineEnd = 0;
  expectEdit(
      head + secureAudio4 + audio6 + video4,
      [&](char* sdp) { return M::sdpRemoveAnat(sdp, v4, nullptr, oLineEnd, false); }, 0, head + audio6);
}

TEST(RemoveAnat, RefusesABufferWithoutText) {
  std::vector<char> record(25, '\0');
  unsigned short oLineEnd = 4711;
  TraceCapture trace;
  EXPECT_EQ(M::sdpRemoveAnat(nullptr, v4, record.data(), oLineEnd, true), 0);
  EXPECT_EQ(trace.takeLines(), removalTraces({}));
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(M::sdpRemoveAnat(text.data(), v4, record.data(), oLineEnd, true), 0);
  EXPECT_EQ(text, unterminatedBuffer());
  Traces wanted = removalTraces({unusable("sdpRemoveAnat")});
  wanted.insert(wanted.begin() + 2, unusable("sdpRemoveAnatAttributes"));
  EXPECT_EQ(trace.takeLines(), wanted);
  EXPECT_EQ(record, recordOf({}));
  EXPECT_EQ(oLineEnd, 4711);
}

}  // namespace
