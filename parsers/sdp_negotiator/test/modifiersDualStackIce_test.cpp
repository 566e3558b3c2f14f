#include "modifiersTestSupport.h"
#include "sdpCapacities.h"

// ICE candidates of the address version that a media section does not use.

namespace {

using M = sdpModifications;

const std::string head = "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\n";
const std::string time0 = "t=0 0\r\n";
const std::string connection4 = "c=IN IP4 192.0.2.1\r\n";
const std::string connection6 = "c=IN IP6 2001:db8::1\r\n";
const std::string host4 = "a=candidate:1 1 UDP 2130706431 192.0.2.1 5004 typ host\r\n";
const std::string host6 = "a=candidate:2 1 UDP 2130706430 2001:db8::1 5004 typ host\r\n";
const std::string other4 = "a=candidate:3 2 UDP 2130706429 198.51.100.7 5005 typ host\r\n";
const std::string hostName = "a=candidate:4 1 UDP 1 host.example 5004 typ host\r\n";
const std::string ptime = "a=ptime:20\r\n";

const TraceLine entering{8, 4, "Entering sdpRemoveDualStackIce() method."};
const TraceLine removedTrace{2, 2, "Dual stack ice candidates have been removed from the SDP"};
const TraceLine session4{8, 4, "Session level IP version 4"};
const TraceLine incomplete{4, 3,
                           "sdpRemoveDualStackIce(): The SDP holds more than its description can. Exiting."};
const TraceLine noRoom{4, 3,
                       "sdpRemoveDualStackIce(): The encoded SDP does not fit the SDP buffer. Exiting."};

/// All that is traced of one media section but what its attributes leave.
Traces around(int media, const Traces& attributes) {
  Traces all{{8, 4, "Processing Media number " + std::to_string(media)}};
  all.insert(all.end(), attributes.begin(), attributes.end());
  all.push_back({1, 1, "Modified index of MD " + std::to_string(media + 1)});
  return all;
}
TraceLine processing(int line, int media) {
  return {8, 4, "Processing Aline " + std::to_string(line) + " of Media number " + std::to_string(media)};
}
const Traces fourSpaces{{1, 1, "Found space in iteration 0"},
                        {1, 1, "Found space in iteration 1"},
                        {1, 1, "Found space in iteration 2"},
                        {1, 1, "Found 4th space..ip should follow"}};

Traces operator+(Traces a, const Traces& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

struct Case {
  const char* name;
  std::string before;
  unsigned short status;
  std::string after;
};

const Case cases[] = {
    {"IPv4 section", head + time0 + audio + connection4 + host4 + host6, 0,
     head + time0 + audio + connection4 + host4},
    {"IPv6 section", head + time0 + audio + connection6 + host4 + host6, 0,
     head + time0 + audio + connection6 + host6},
    {"other attributes stay in their order",
     head + time0 + audio + connection4 + host6 + ptime + host4 + "a=sendrecv\r\n" + host6 + other4 +
         "a=x:\r\n",
     0, head + time0 + audio + connection4 + ptime + host4 + "a=sendrecv\r\n" + other4 + "a=x:\r\n"},
    {"the session's version", head + connection6 + time0 + audio + host4 + host6 + video + host6 + host4, 0,
     head + connection6 + time0 + audio + host6 + video + host6},
    {"a section's own version first", head + connection6 + time0 + audio + connection4 + host4 + host6, 0,
     head + connection6 + time0 + audio + connection4 + host4},
    {"the first of several c-lines", head + time0 + audio + connection4 + connection6 + host4 + host6, 0,
     head + time0 + audio + connection4 + connection6 + host4},
    {"each section by its own",
     head + time0 + audio + connection4 + host4 + host6 + audio + connection6 + host4 + host6, 0,
     head + time0 + audio + connection4 + host4 + audio + connection6 + host6},
    {"one section is enough", head + connection4 + time0 + audio + host4 + video + host6, 0,
     head + connection4 + time0 + audio + host4 + video},
    {"the session's attributes stay", head + connection4 + time0 + host6 + audio + host6, 0,
     head + connection4 + time0 + host6 + audio},
    {"a host name goes as well", head + connection4 + time0 + audio + hostName + host6 + host4, 0,
     head + connection4 + time0 + audio + host4},
    {"in the codec's form",
     "v=0\ns=-\no=a  1 1 IN IP4 192.0.2.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n" + host6 + "c=IN IP4 192.0.2.1\n",
     0, head + time0 + audio + connection4},

    // Nothing of the other version: the text gets the codec's form, and the status is 1.
    {"only its own version", head + connection4 + time0 + audio + host4 + other4, 1,
     head + connection4 + time0 + audio + host4 + other4},
    {"only a host name", head + connection4 + time0 + audio + hostName, 1,
     head + connection4 + time0 + audio},
    {"an empty address", head + connection4 + time0 + audio + "a=candidate:1 1 UDP 1  5004 typ\r\n", 1,
     head + connection4 + time0 + audio},
    {"without any c-line", head + time0 + audio + host4 + host6 + ptime, 1, head + time0 + audio + ptime},
    {"no candidate", "v=0\no=a 1 1 IN IP4 192.0.2.1\ns=-\nt=0 0\nm=audio 5004 RTP/AVP 0\n", 1,
     head + time0 + audio},
    {"no media", "v=0\no=a 1 1 IN IP4 192.0.2.1\ns=-\nt=0 0\n", 1, head + time0},
    {"other names",
     head + connection4 + time0 + audio + "a=Candidate:1 1 UDP 1 ::1 5 typ\r\na=candidates:x\r\n", 1,
     head + connection4 + time0 + audio + "a=Candidate:1 1 UDP 1 ::1 5 typ\r\na=candidates:x\r\n"},
};

TEST(RemoveDualStackIce, KeepsTheCandidatesOfTheSectionsVersion) {
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    TraceCapture trace;
    expectEdit(each.before, &M::sdpRemoveDualStackIce, each.status, each.after);
    EXPECT_EQ(trace.has(2, 2, removedTrace.text), each.status == 0);
  }
}

TEST(RemoveDualStackIce, TracesEveryStepOfAnIpv4Section) {
  SdpBuffer buffer(head + connection4 + time0 + audio + host4 + ptime + host6 + hostName);
  TraceCapture trace;
  EXPECT_EQ(M::sdpRemoveDualStackIce(buffer.data()), 0);
  // The two numbers of the second line stand in each other's place.
  const Traces attributes = Traces{processing(0, 0)} + fourSpaces +
                            Traces{{1, 1, "Ipv4 adding ipv4 a line"},
                                   processing(1, 0),
                                   {8, 4, "Not found a=candidate in media 1 aline 0"},
                                   processing(2, 0)} +
                            fourSpaces + Traces{{1, 1, "Ipv4 Bypassing ipv6 a line"}, processing(3, 0)} +
                            fourSpaces;
  const Traces wanted = Traces{entering, session4} + around(0, attributes) + Traces{removedTrace};
  EXPECT_EQ(trace.takeLines(), wanted);
}

TEST(RemoveDualStackIce, TracesEveryStepOfAnIpv6Section) {
  SdpBuffer buffer(head + time0 + audio + ptime + audio + connection6 + host4 + host6);
  TraceCapture trace;
  EXPECT_EQ(M::sdpRemoveDualStackIce(buffer.data()), 0);
  const Traces first{processing(0, 0), {8, 4, "Not found a=candidate in media 0 aline 0"}};
  const Traces second = Traces{processing(0, 1)} + fourSpaces +
                        Traces{{1, 1, "Ipv6 Bypassing ipv4 a line"}, processing(1, 1)} + fourSpaces +
                        Traces{{1, 1, "Ipv6 adding ipv6 a line"}};
  const Traces wanted = Traces{entering} + around(0, first) + Traces{{8, 4, "IP version 6"}} +
                        around(1, second) + Traces{removedTrace};
  EXPECT_EQ(trace.takeLines(), wanted);
}

TEST(RemoveDualStackIce, TracesTheVersionOfTheSession) {
  SdpBuffer withoutMedia(head + connection4 + time0);
  TraceCapture trace;
  EXPECT_EQ(M::sdpRemoveDualStackIce(withoutMedia.data()), 1);
  EXPECT_EQ(trace.takeLines(), (Traces{entering, session4}));
  SdpBuffer buffer(head + connection6 + time0 + audio + host6);
  EXPECT_EQ(M::sdpRemoveDualStackIce(buffer.data()), 1);
  const Traces attributes = Traces{processing(0, 0)} + fourSpaces + Traces{{1, 1, "Ipv6 adding ipv6 a line"}};
  const Traces wanted = Traces{entering, {8, 4, "Session level IP version 6"}} + around(0, attributes);
  EXPECT_EQ(trace.takeLines(), wanted);
}

TEST(RemoveDualStackIce, DropsWithoutATraceWhereNoVersionIsKnown) {
  SdpBuffer buffer(head + time0 + audio + host4 + host6);
  TraceCapture trace;
  EXPECT_EQ(M::sdpRemoveDualStackIce(buffer.data()), 1);
  buffer.expectText(head + time0 + audio);
  const Traces attributes = Traces{processing(0, 0)} + fourSpaces + Traces{processing(1, 0)} + fourSpaces;
  EXPECT_EQ(trace.takeLines(), Traces{entering} + around(0, attributes));
}

struct Refusal {
  const char* name;
  std::string text;
  Traces behindEntering;
};

const Refusal refusals[] = {
    {"no SDP", "hello\r\n", {{2, 2, "Decoding Error 1"}}},
    {"an empty text", "", {{2, 2, "Decoding Error 1"}}},
    {"an unknown session address type",
     head + "c=IN IP5 x\r\n" + time0 + audio + connection4 + host4 + host6,
     {{2, 2, "Session level invalid address type"}}},
    {"the same without media",
     head + "c=IN ip4 192.0.2.1\r\n" + time0,
     {{2, 2, "Session level invalid address type"}}},
    {"an unknown media address type",
     head + time0 + audio + "c=IN ATM x\r\n" + host4 + host6,
     {{2, 2, "Error : invalid first address type in media ATM"}}},
    // What was dropped before is not written.
    {"the same in the second section",
     head + time0 + audio + connection4 + host6 + audio + "c=IN IP44 192.0.2.1\r\n",
     Traces{{8, 4, "IP version 4"}} +
         around(0, Traces{processing(0, 0)} + fourSpaces + Traces{{1, 1, "Ipv4 Bypassing ipv6 a line"}}) +
         Traces{{2, 2, "Error : invalid first address type in media IP44"}}},
};

TEST(RemoveDualStackIce, RefusesWhatItCannotJudge) {
  for (const Refusal& each : refusals) {
    SCOPED_TRACE(each.name);
    TraceCapture trace;
    expectUntouched(each.text, &M::sdpRemoveDualStackIce, 1);
    const Traces once = Traces{entering} + each.behindEntering;
    EXPECT_EQ(trace.takeLines(), once + once);
  }
}

TEST(RemoveDualStackIce, RefusesACandidateWithoutAnEndedAddressField) {
  struct Short {
    std::string value;
    std::size_t traces;  ///< of the four spaces
  };
  const Short shorts[] = {
      {"", 0}, {":", 0}, {":1", 0}, {":1 1", 0}, {":1 1 UDP", 1}, {":1 1 UDP 2", 2}, {":1 1 UDP 2 ::1", 4}};
  for (const Short& each : shorts) {
    SCOPED_TRACE(each.value);
    const std::string text = head + connection4 + time0 + audio + "a=candidate" + each.value + "\r\n" + host6;
    TraceCapture trace;
    expectUntouched(text, &M::sdpRemoveDualStackIce, 1);
    Traces once{entering, session4, {8, 4, "Processing Media number 0"}, processing(0, 0)};
    once.insert(once.end(), fourSpaces.begin(),
                fourSpaces.begin() + static_cast<std::ptrdiff_t>(each.traces));
    EXPECT_EQ(trace.takeLines(), once + once);
  }
}

// Writing an incomplete description again would lose lines.
TEST(RemoveDualStackIce, RefusesWhatTheDescriptionCannotHold) {
  const std::string body = head + connection4 + time0 + audio + host6;
  std::string full = head + connection4 + time0 + audio;
  for (int i = 1; i < SDP_ATTRIBUTE_CAPACITY; ++i) full += ptime;
  const std::string texts[] = {body + "y=unknown\r\n", full + host6 + host4,
                               body + "a=x:" + std::string(SDP_ATTRIBUTE_VALUE_SIZE, 'x') + "\r\n"};
  for (const std::string& text : texts) {
    TraceCapture trace;
    expectUntouched(text, &M::sdpRemoveDualStackIce, 1);
    EXPECT_EQ(trace.takeLines(), (Traces{entering, incomplete, entering, incomplete}));
  }
  // As many attributes as are held.
  expectEdit(full + host6, &M::sdpRemoveDualStackIce, 0, full);
}

// The first attribute's LF becomes CR LF.
TEST(RemoveDualStackIce, StaysInTheBuffer) {
  for (const bool fits : {true, false}) {
    const std::string before = completeBody(kLongestBody - (fits ? 1 : 0));
    std::string after = before;
    if (fits) after.replace(after.find("a=n\n"), 4, "a=n\r\n");
    SdpBuffer buffer(before);
    TraceCapture trace;
    EXPECT_EQ(M::sdpRemoveDualStackIce(buffer.data()), 1);
    buffer.expectText(after);
    EXPECT_EQ(trace.has(noRoom.flag, noRoom.level, noRoom.text), !fits);
  }
}

TEST(RemoveDualStackIce, RefusesABufferWithoutText) {
  const Traces traces{
      entering, {4, 3, "sdpRemoveDualStackIce(): The SDP buffer is null or holds no end of text. Exiting."}};
  TraceCapture trace;
  EXPECT_EQ(M::sdpRemoveDualStackIce(nullptr), 1);
  EXPECT_EQ(trace.takeLines(), traces);
  std::vector<char> text = unterminatedBuffer();
  EXPECT_EQ(M::sdpRemoveDualStackIce(text.data()), 1);
  EXPECT_EQ(text, unterminatedBuffer());
  EXPECT_EQ(trace.takeLines(), traces);
}

}  // namespace
