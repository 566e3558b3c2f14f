#include "requestTestSupport.h"
#include "sdpRefusal.h"

// Dummy answers and acknowledgements that are made of the other side's body.

namespace {

using M = sdpModifications;

const char* const ownAddress = "192.0.2.50";
constexpr unsigned short ownPort = 6000;

TraceLine requested(const std::string& kind, const std::string& hold) {
  return {1, 1, "Request to create a dummy " + kind + ", holdFlag=" + hold};
}

TraceLine failed(const std::string& kind) { return {4, 3, "Failed to create a dummy SDP " + kind}; }

struct Flags {
  bool answer;
  bool hold;
  bool third;
  bool modifyOLine;
};

unsigned short edit(char* text, const Flags& flags, const char* ip) {
  int length = 0;
  unsigned short oLineEnd = 0;
  return M::sdpCreateDummy(text, flags.answer, flags.hold, flags.third, ip, ownPort, length, oLineEnd,
                           flags.modifyOLine);
}

const std::string video = "m=video 5006 RTP/AVP 31\r\n";

/// The other side's body: its session with a c-line, audio, and video.
const std::string received = session + "m=audio 5004 RTP/AVP 0 8\r\na=sendonly\r\n" + video;

/// What is made of it, with attributes of the session, of audio and of video.
std::string dummy(const std::string& ofSession, const std::string& ofAudio, const std::string& ofVideo,
                  const std::string& oLine = "o=a 1 1 IN IP4 192.0.2.1") {
  return "v=0\r\n" + oLine + "\r\ns=-\r\nc=IN IP4 192.0.2.50\r\nt=0 0\r\n" + ofSession +
         "m=audio 5004 RTP/AVP 0 8\r\n" + ofAudio + "m=video 0 RTP/AVP 31\r\n" + ofVideo;
}

const std::string sendOnly = "a=sendonly\r\n";
const std::string receiveOnly = "a=recvonly\r\n";
const std::string inactive = "a=inactive\r\n";

struct DummyCase {
  const char* name;
  Request request;
  Flags flags;
  std::string after;
  TraceLine entry;
};

Request full(const Flags& flags) {
  return [flags](cSdpNegotiator& object) {
    return object.createDummy(flags.answer, flags.hold, flags.third, ownAddress, ownPort, flags.modifyOLine);
  };
}

const TraceLine answerHeld = requested("Answer", "true");
const TraceLine answerFree = requested("Answer", "false");
const TraceLine ackHeld = requested("Ack", "true");
const TraceLine ackFree = requested("Ack", "false");

const std::string heldAnswer = dummy(inactive, inactive, inactive);
// A request to receive only adds no line to the session.
const std::string heldAck = dummy("", inactive, receiveOnly);
const std::string heldThirdAck = dummy("", receiveOnly, "");
const std::string freeDummy = dummy("", inactive, "");

constexpr bool yes = true;
constexpr bool no = false;

std::vector<DummyCase> dummies() {
  return {
      {"HeldAnswer", full({yes, yes, no, no}), {yes, yes, no, no}, heldAnswer, answerHeld},
      {"FreeAnswer", full({yes, no, no, no}), {yes, no, no, no}, freeDummy, answerFree},
      {"HeldThirdAnswer", full({yes, yes, yes, no}), {yes, yes, yes, no}, heldAnswer, answerHeld},
      {"HeldAck", full({no, yes, no, no}), {no, yes, no, no}, heldAck, ackHeld},
      {"HeldThirdAck", full({no, yes, yes, no}), {no, yes, yes, no}, heldThirdAck, ackHeld},
      {"FreeThirdAck", full({no, no, yes, no}), {no, no, yes, no}, freeDummy, ackFree},
      {"WithOLine", full({yes, yes, no, yes}), {yes, yes, no, yes}, heldAnswer, answerHeld},
      {"ShortAnswer",
       [](cSdpNegotiator& o) { return o.createDummy(true, true, ownAddress, ownPort); },
       {yes, yes, no, yes},
       heldAnswer,
       answerHeld},
      {"ShortAck",
       [](cSdpNegotiator& o) { return o.createDummy(false, true, ownAddress, ownPort); },
       {no, yes, no, yes},
       heldAck,
       ackHeld},
      {"NamedAnswer",
       [](cSdpNegotiator& o) { return o.createDummyAnswer(false, ownAddress, ownPort); },
       {yes, no, no, yes},
       freeDummy,
       answerFree},
      {"NamedAck",
       [](cSdpNegotiator& o) { return o.createDummyAck(true, ownAddress, ownPort); },
       {no, yes, yes, yes},
       heldThirdAck,
       ackHeld},
  };
}

class Dummy : public testing::TestWithParam<DummyCase> {};

void PrintTo(const DummyCase& each, std::ostream* out) { *out << each.name; }

TEST_P(Dummy, TakesThePlaceOfTheReceivedBody) {
  const DummyCase& each = GetParam();
  const bool timed = each.flags.modifyOLine;
  const auto shown = [&](const Traces& traces) { return timed ? withoutNumbers(traces) : traces; };
  for (const bool deflated : {false, true}) {
    const std::string before = deflated ? padded(received) : received;
    cSdpNegotiator object = parsedObject(before);
    object.setBandwidth(64);  // lost: the summary is that of the new text
    const Traces traces = tracesOf([&] { EXPECT_EQ(each.request(object), 0); });
    std::string after = deflated ? padded(each.after) : each.after;
    if (timed) after = withTimedOLine(after, textOf(object), std::string("IP4 ") + ownAddress);
    EXPECT_EQ(textOf(object), after);
    EXPECT_TRUE(sameBytes(object, parsedObject(after)));
    const auto made = [&](char* text) { return edit(text, each.flags, ownAddress); };
    EXPECT_EQ(shown(traces), shown(Traces{each.entry} + tracesOfEdit(made, before) + tracesOfParse(after)));
  }
}

INSTANTIATE_TEST_SUITE_P(Requests, Dummy, testing::ValuesIn(dummies()),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(DummyPort, IsThatOfSecureAudioWhichStandsAlone) {
  cSdpNegotiator object = parsedObject(session + "m=audio 5004 RTP/SAVP 0\r\n");
  EXPECT_EQ(object.createDummy(true, false, false, ownAddress, ownPort, false), 0);
  const std::string after =
      "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.50\r\nt=0 0\r\nm=audio 6000 RTP/SAVP 0\r\n";
  EXPECT_TRUE(sameBytes(object, parsedObject(after))) << textOf(object);
}

struct Refusal {
  const char* name;
  cSdpNegotiator before;
  const char* ip;
  Flags flags;
  unsigned short status;
};

/// The traces of the edit and of what follows it; none where the text cannot be read.
Traces tracesOfRefusal(const Refusal& each) {
  std::vector<char> text(MAX_SDP_PROTOCOL_DATA_SIZE);
  if (each.before.getRawSDP(text.data(), MAX_SDP_PROTOCOL_DATA_SIZE) != 0) return {};
  return tracesOf([&] {
    if (edit(text.data(), each.flags, each.ip) != 0) return;
    cSdpNegotiator object;
    object.sdpParse(text.data(), SDP_TYPE_UNKNOWN);
  });
}

TEST(FailedDummy, LeavesBodyAndSummaryAsTheyWere) {
  const Flags plain = {yes, no, no, no};
  std::vector<Refusal> refusals = {
      {"no address", parsedObject(received), nullptr, plain, 1},
      {"an invalid address", parsedObject(received), "192.0.2.300", plain, 1},
      {"an invalid address for the o-line", parsedObject(received), "x", {yes, no, no, yes}, 1},
      {"no o-line", objectWithText("v=0\r\nm=audio 5004 RTP/AVP 0\r\n"), ownAddress, {no, no, yes, yes}, 1},
      {"an m-line without port", objectWithText(session + "m=audio\r\n"), ownAddress, plain, 1},
      {"no room", parsedObject(paddedTo(20479)), ownAddress, {yes, yes, no, no}, 1},
      {"a text that does not parse", objectWithText("no body\r\n"), ownAddress, plain, 1},
      {"a text that cannot be stored", objectHardToStore(received), ownAddress, plain, 2},
      {"no text", emptyObject(), ownAddress, plain, 1},
      {"no text and no address", emptyObject(), nullptr, plain, 1},
  };
  for (const cSdpNegotiator& each : unreadableObjects()) {
    refusals.push_back({"a text that cannot be read", each, ownAddress, plain, 1});
  }
  for (const Refusal& each : refusals) {
    cSdpNegotiator before = each.before;
    before.setBandwidth(64);
    cSdpNegotiator object = before;
    const std::string kind = each.flags.answer ? "Answer" : "Ack";
    const Traces traces = tracesOf([&] {
      EXPECT_EQ(object.createDummy(each.flags.answer, each.flags.hold, each.flags.third, each.ip, ownPort,
                                   each.flags.modifyOLine),
                each.status)
          << each.name;
    });
    const Traces expected = Traces{requested(kind, each.flags.hold ? "true" : "false")} +
                            tracesOfRefusal(each) + Traces{failed(kind)};
    EXPECT_EQ(withoutNumbers(traces), withoutNumbers(expected)) << each.name;
    EXPECT_TRUE(sameBytes(object, before)) << each.name;
  }
}

// Lines are looked at in blocks where the text goes on far enough.
const std::string tails[] = {"", "a=tool:" + std::string(64, 'x') + "\r\n"};

// What the codec refuses may stand in lines that the dummy lacks or has others for.
TEST(DummyOfRefusedBody, TellsTheRefusal) {
  const std::string withAudio = sessionLines() + "m=audio 5004 RTP/AVP 0\r\n";
  const std::string ours =
      "v=0\r\no=alice 1 1 IN IP4 192.0.2.9\r\ns=-\r\nc=IN IP4 192.0.2.50\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\n";
  const std::pair<std::string, std::string> cases[] = {
      {withAudio + "c=IN\r\n", ours + "c=IN IP4 192.0.2.50\r\n"},
      {withAudio + "a=candidate:1\rx\r\n", ours},
      {withAudio + "a=key-mgmt:mikey\rx\r\n", ours},
      {withAudio + "c=IN IP4 /127\r\n", ours + "c=IN IP4 192.0.2.50\r\n"},
      {withAudio + "c=IN  IP4\r\n", ours + "c=IN IP4 192.0.2.50\r\n"},
      {withAudio + "c=IN IP4 192.0.2.1 x\r\n", ours + "c=IN IP4 192.0.2.50\r\n"},
      {withAudio + "c=IN IP4 192.0\r.2.1\n", ours + "c=IN IP4 192.0.2.50\r\n"},
  };
  for (const auto& [body, wanted] : cases) {
    for (const auto& [tail, traced] : {std::pair(tails[0], false), {tails[0], true}, {tails[1], false}}) {
      cSdpNegotiator object = objectWithText(body + tail);
      const unsigned int before = sdpLastRefusal().number;
      const auto request = [&] {
        EXPECT_EQ(object.createDummy(true, false, false, ownAddress, ownPort, false), 0);
      };
      if (traced) {
        tracesOf(request);
      } else {
        request();
      }
      EXPECT_EQ(textOf(object), wanted + tail);
      EXPECT_EQ(sdpLastRefusal().number, before + 1) << body;
      EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_BODY);
      EXPECT_EQ(sdpLastRefusal().line, 7);
    }
  }
}

TEST(DummyOfRefusedOriginLine, TellsTheRefusal) {
  const std::string rest = std::string("s=-\r\nt=0 0\r\nm=audio 5004 RTP/AVP 0\r\n") + tails[1];
  for (const char* line : {"o=- 1 1 IN IP4\r\n", "o=- 1 1 IN  IP4\r\n", "o=- 1 1 IN  IP4 \r\n", "o=\n",
                           "o=- 1 1 IN\rIP4 192.0.2.1\r\n"}) {
    cSdpNegotiator object = objectWithText("v=0\r\n" + std::string(line) + rest);
    const unsigned int before = sdpLastRefusal().number;
    EXPECT_EQ(object.createDummy(true, false, false, ownAddress, ownPort, true), 0);
    const std::string after =
        withTimedOLine("v=0\r\no=x\r\n" + rest, textOf(object), std::string("IP4 ") + ownAddress);
    EXPECT_EQ(textOf(object), after) << line;
    EXPECT_EQ(sdpLastRefusal().number, before + 1) << line;
    EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_BODY) << line;
    EXPECT_EQ(sdpLastRefusal().line, 2) << line;
  }
}

// The codec accepts them, however they are written.
TEST(DummyOfUnusualLines, TellsNoRefusal) {
  const std::string begin = "v=0\r\n";
  const std::string end = "t=0 0\r\nm=audio 5004 RTP/AVP 0\r\n" + tails[1];
  const std::string ours = "c=IN IP4 192.0.2.50\r\n";
  const std::string longName(70, 'x');
  const std::pair<std::string, std::string> cases[] = {
      {"o=- 1 1 IN IP4 192.0.2.9\r\n", "c=IN  IP4 192.0.2.1\r\n"},
      {"o=-  1 1 IN IP4 192.0.2.9\n", "c=IN\tIP4 192.0.2.1 \r\n"},
      {"o=" + longName + " 1 1 IN IP4 192.0.2.9\r\n", "c=IN IP4 192.0.2.1/127\n"},
      {"o=" + longName + " 1\t1 IN IP4 192.0.2.9 x\r\n", "c= IN IP4 " + longName + "\n"},
  };
  for (const auto& [oLine, cLine] : cases) {
    cSdpNegotiator object = objectWithText(begin + oLine + "s=-\r\n" + cLine + end);
    const unsigned int before = sdpLastRefusal().number;
    EXPECT_EQ(object.createDummy(true, false, false, ownAddress, ownPort, true), 0);
    const std::string after = withTimedOLine(begin + "o=x\r\ns=-\r\n" + ours + end, textOf(object),
                                             std::string("IP4 ") + ownAddress);
    EXPECT_EQ(textOf(object), after) << cLine;
    EXPECT_EQ(sdpLastRefusal().number, before) << cLine;
  }
}

TEST(FailedDummy, IsToldByTheShortFormsToo) {
  const cSdpNegotiator before = parsedObject(received);
  cSdpNegotiator object = before;
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.createDummyAnswer(true, nullptr, ownPort), 1); }).back(),
            failed("Answer"));
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.createDummyAck(true, nullptr, ownPort), 1); }).back(),
            failed("Ack"));
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.createDummyAck(true, nullptr, ownPort, "PCMA"), 1); }).back(),
            failed("Ack"));
  EXPECT_TRUE(sameBytes(object, before));
}

/// A body with four codecs, of 0 PCMU, 8 PCMA, 18 G729 and 4 G723.
const std::string fourCodecs = session + "m=audio 5004 RTP/AVP 0 8 18 4\r\n";

std::string withFormats(const std::string& formats) {
  return "v=0\r\no=-\r\ns=-\r\nc=IN IP4 192.0.2.50\r\nt=0 0\r\nm=audio 5004 RTP/AVP" + formats + "\r\n";
}

std::string repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

TEST(DummyAckWithCodecs, KeepsTheNamedCodecsInTheirOrder) {
  const std::pair<std::string, std::string> cases[] = {
      {"PCMA", " 8"},
      {"G729,PCMU", " 18 0"},
      {"pcma,g723", " 8 4"},
      {"unheard-of,PCMA", " 8"},
      {"PCMA,unheard-of,PCMU", " 8 0"},
      {std::string(40, 'P') + ",PCMA", " 8"},
      {std::string(20000, 'P') + ",PCMA", " 8"},
      // Deliberate: an empty name repeats the codec in front of it, at the end too.
      {"PCMU,,G729", " 0 0 18"},
      {"PCMU,,,G729", " 0 0 0 18"},
      {"PCMU,", " 0 0"},
      {",PCMU", " 0"},
      {"unheard-of,,PCMU", " 0"},
      {"PCMU,unheard-of,,G729", " 0 18"},
      // Blanks are part of a name.
      {"PCMU, G729", " 0"},
      // No more than 20 are taken, repetitions and all.
      {repeated("PCMA,", 30), repeated(" 8", 20)},
      {repeated("PCMA,", 19) + "PCMU,G729", repeated(" 8", 19) + " 0"},
      {repeated("opus,", 20) + "PCMA", " 0 8 18 4"},
      {repeated("unheard-of,", 30) + "PCMA", " 8"},
      // Nothing in common restricts nothing.
      {"", " 0 8 18 4"},
      {",,,", " 0 8 18 4"},
      {"opus", " 0 8 18 4"},
      {"unheard-of", " 0 8 18 4"},
  };
  for (const auto& [names, formats] : cases) {
    cSdpNegotiator object = parsedObject(fourCodecs);
    EXPECT_EQ(object.createDummyAck(true, ownAddress, ownPort, names.c_str()), 0);
    const std::string text = textOf(object);
    EXPECT_EQ(text, withTimedOLine(withFormats(formats), text, std::string("IP4 ") + ownAddress))
        << names.substr(0, 100);
    EXPECT_TRUE(sameBytes(object, parsedObject(text)));
  }
}

TEST(DummyAckWithCodecs, RestrictsBehindTheDummy) {
  const TraceLine restricting{8, 4, "Request to restrict audio codecs from the SDP."};
  const TraceLine nothingCommon{2, 2, "No common codecs found. Don't restrict any codec."};
  for (const char* names : {static_cast<const char*>(nullptr), "", "unheard-of"}) {
    cSdpNegotiator object = parsedObject(fourCodecs);
    const Traces traces =
        tracesOf([&] { EXPECT_EQ(object.createDummyAck(true, ownAddress, ownPort, names), 0); });
    ASSERT_GE(traces.size(), 2U);
    EXPECT_EQ(traces.front(), ackHeld);
    EXPECT_EQ(traces[traces.size() - 2], restricting);
    EXPECT_EQ(traces.back(), nothingCommon);
    EXPECT_NE(textOf(object).find("RTP/AVP 0 8 18 4\r\n"), std::string::npos);
  }
}

}  // namespace
