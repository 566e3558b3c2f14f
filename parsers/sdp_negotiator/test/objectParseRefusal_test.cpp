#include "objectRefusalSupport.h"

// Why a body was not taken, and where.

namespace {

struct RefusedBody {
  const char* name;
  std::string body;
  Reason reason;
  unsigned short status = 1;
};

void PrintTo(const RefusedBody& refused, std::ostream* out) { *out << refused.name; }

const std::string head = "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\n";

Reason portReason(const std::string& media, const std::string& port, int section) {
  return {SDP_REFUSED_INVALID_PORT,
          SDP_REFUSAL_KIND_BODY,
          "Invalid port number found in m=" + media + ": " + port,
          true,
          section,
          SDP_REFUSAL_FIELD_PORT};
}

Reason addressReason(const std::string& address, int section) {
  return {SDP_REFUSED_INVALID_ADDRESS,
          SDP_REFUSAL_KIND_BODY,
          "Invalid ip address (" + address + ") found in c-line",
          true,
          section,
          SDP_REFUSAL_FIELD_ADDRESS};
}

Reason codecReason(const std::string& text, int line, int column) {
  return {
      SDP_REFUSED_NOT_DECODED, SDP_REFUSAL_KIND_BODY, text, true, 0, SDP_REFUSAL_FIELD_NONE, line, column};
}

const Reason addressType{
    SDP_REFUSED_SESSION_ADDRESS_TYPE,
    SDP_REFUSAL_KIND_BODY,
    "The c-line is malformed. There is no correspondance between IP address and IP type.",
    true,
    0,
    SDP_REFUSAL_FIELD_ADDRESS_TYPE};

std::string manyMedia(int count) {
  std::string body = sessionLines();
  for (int i = 0; i < count; ++i) body += "m=audio 5004 RTP/AVP 0\r\n";
  return body;
}

std::vector<RefusedBody> bodies() {
  const std::string audio = "m=audio 5004 RTP/AVP 0\r\n";
  const std::string noAudio = "m=audio 0 RTP/AVP 0\r\n";
  return {
      {"empty",
       "",
       {SDP_REFUSED_EMPTY_TEXT, SDP_REFUSAL_KIND_ARGUMENT, "Empty buffer. Nothing to be parsed."}},
      {"tooLong",
       std::string(20481, 'v'),
       {SDP_REFUSED_TEXT_TOO_LONG, SDP_REFUSAL_KIND_CAPACITY,
        "The SDP size=20481 exceeds MAX_SDP_PROTOCOL_DATA_SIZE=20480"}},
      {"noVersion", "m=audio 5004\r\n",
       codecReason("line 1, column 1: expected a first line \"v=\", found \"m=audio 5004\"", 1, 1)},
      {"noPort", head + "m=audio\r\n",
       codecReason("line 5, column 8: expected a port, found the end of the line", 5, 8)},
      {"addressOfAnotherType", sessionLines("2001:db8::1") + audio, addressType},
      {"tooManyMLines",
       manyMedia(26),
       {SDP_REFUSED_TOO_MANY_M_LINES, SDP_REFUSAL_KIND_CAPACITY, "The noOfMDs > 25; data corrupted!", true,
        26}},
      {"portOfFirst", sessionLines() + "m=audio 80 RTP/AVP 0\r\n", portReason("audio", "80", 1)},
      {"portAboveAll", sessionLines() + "m=audio 65536 RTP/AVP 0\r\n", portReason("audio", "65536", 1)},
      {"portBehindOneNotInUse", sessionLines() + noAudio + "m=audio 1023 RTP/AVP 0\r\n",
       portReason("audio", "1023", 2)},
      {"portOfVideo",
       sessionLines() + "m=text 5 RTP/AVP 98\r\nm=text 7 RTP/AVP 98\r\nm=video 9 RTP/AVP 31\r\n",
       portReason("video", "9", 3)},
      {"portOfImage", sessionLines() + "m=text 5 RTP/AVP 98\r\nm=image 1 udptl t38\r\n",
       portReason("image", "1", 2)},
      {"ownAddress", sessionLines() + noAudio + audio + "c=IN IP4 host.example\r\n",
       addressReason("host.example", 2)},
      {"ownAddressOfVideo", head + "m=video 5006 RTP/AVP 31\r\nc=IN IP4 \xc3\xa9\r\n",
       addressReason("\xc3\xa9", 1)},
      {"sessionsAddress", head + "c=IN HOST host.example\r\n" + audio, addressReason("host.example", 1)},
      {"unstorable",
       incompressibleBody(8000),
       {SDP_REFUSED_NOT_STORED, SDP_REFUSAL_KIND_STORAGE,
        "The text cannot be stored: it does not deflate into the room for it.", false},
       2},
  };
}

class RefusedBodies : public testing::TestWithParam<RefusedBody> {};

TEST_P(RefusedBodies, TellWhyAndWhere) {
  cSdpNegotiator object;
  expectRefused(GetParam().reason, [&] {
    EXPECT_EQ(object.sdpParse(GetParam().body.c_str(), SDP_TYPE_OFFER), GetParam().status);
  });
}

std::string bodyName(const testing::TestParamInfo<RefusedBody>& info) { return info.param.name; }
INSTANTIATE_TEST_SUITE_P(Bodies, RefusedBodies, testing::ValuesIn(bodies()), bodyName);

TEST(RefusedBody, ThatIsNullIsAnEmptyOne) {
  cSdpNegotiator object;
  expectRefused({SDP_REFUSED_EMPTY_TEXT, SDP_REFUSAL_KIND_ARGUMENT, "Empty buffer. Nothing to be parsed."},
                [&] { EXPECT_EQ(object.sdpParse(nullptr, SDP_TYPE_OFFER), 1); });
}

// What is wrong with it is traced, but it is taken.
TEST(TakenBody, LeavesTheLastReason) {
  cSdpNegotiator object;
  EXPECT_EQ(object.sdpParse("", SDP_TYPE_OFFER), 1);
  const unsigned int number = sdpLastRefusal().number;
  const std::string bodies[] = {audioBody(), audioBody() + "a=ptime:x\r\na=ptime:20\r\n",
                                head + "c=IN HOST host.example\r\n", manyMedia(25)};
  for (const std::string& body : bodies) {
    EXPECT_EQ(object.sdpParse(body.c_str(), SDP_TYPE_OFFER), 0) << body;
    EXPECT_EQ(sdpLastRefusal().number, number) << body;
    EXPECT_EQ(sdpLastRefusal().reason, SDP_REFUSED_EMPTY_TEXT) << body;
  }
  EXPECT_TRUE(std::ranges::any_of(
      tracesOf([&] { object.sdpParse(bodies[2].c_str(), SDP_TYPE_OFFER); }), [](const TraceLine& line) {
        return line == TraceLine{4, 3, "Invalid ip address (host.example) found in c-line"};
      }));
}

}  // namespace
