#include "objectTestSupport.h"
#include "traceCapture.h"

// Texts that are written from values.

namespace {

using Traces = std::vector<TraceLine>;

/// A caller's buffer without any NUL, with guard bytes behind it.
class Output {
 public:
  Output() : bytes_(MAX_SDP_PROTOCOL_DATA_SIZE + 8, '\x5b') {}
  char* text() { return bytes_.data(); }
  bool isUntouched() const { return bytes_ == std::vector<char>(bytes_.size(), '\x5b'); }
  /// Whether nothing was written behind the NUL of a text of that length.
  bool endsAt(std::size_t length) const {
    return bytes_[length] == '\0' && std::all_of(bytes_.begin() + static_cast<std::ptrdiff_t>(length) + 1,
                                                 bytes_.end(), [](char c) { return c == '\x5b'; });
  }

 private:
  std::vector<char> bytes_;
};

cSdpNegotiator objectWithSettings() {
  cSdpNegotiator object = emptyObject();
  const unsigned char codecs[] = {3, 1, 29};
  const unsigned char periods[] = {20};
  object.setAudioCodecs(codecs, 3);
  object.setPacketizationPeriod(periods, 1);
  sSDPDescriptor descriptor;
  descriptor.address.setIPAddress("192.0.2.77");
  descriptor.port = 5004;
  object.setSdpDescriptor(descriptor);
  return object;
}

TEST(Encoding, WritesTheObjectsOwnSummary) {
  const cSdpNegotiator object = objectWithSettings();
  const std::string expected =
      "v=0\r\ns=-\r\nt=0 0\r\no=- 7 7 IN IP4 192.0.2.77\r\nc=IN IP4 192.0.2.77\r\n"
      "m=audio 5004 RTP/AVP 0 8 102\r\n"
      "a=rtpmap:0 PCMU/8000\r\na=rtpmap:8 PCMA/8000\r\na=rtpmap:102 telephone-event/8000\r\na=ptime:20\r\n";
  Output out;
  int length = -1;
  TraceCapture trace;
  EXPECT_EQ(object.sdpEncode(out.text(), 7, length), 0);
  EXPECT_EQ(out.text(), expected);
  EXPECT_EQ(static_cast<std::size_t>(length), expected.size());
  EXPECT_TRUE(out.endsAt(expected.size()));
  EXPECT_EQ(trace.takeLines(), (Traces{{8, 4, "Entering sdpEncode() method."},
                                       {8, 4, "The encoding of the SDP succesfully built"}}));
}

TEST(Encoding, LeavesTheObject) {
  cSdpNegotiator object = objectWithSettings();
  const cSdpNegotiator before = object;
  Output out;
  int length = 0;
  object.sdpEncode(out.text(), 1, length);
  EXPECT_TRUE(sameBytes(object, before));
}

// Of an object without settings: the address stands for none, the port is what 0xFFFFFFFF reads as.
TEST(Encoding, OfAnEmptyObjectHasNoFormats) {
  const std::string expected =
      "v=0\r\ns=-\r\nt=0 0\r\no=- -1 -1 IN IP4 0.0.0.0\r\nc=IN IP4 0.0.0.0\r\nm=audio -1 RTP/AVP \r\n";
  Output out;
  int length = 0;
  EXPECT_EQ(emptyObject().sdpEncode(out.text(), -1, length), 0);
  EXPECT_EQ(out.text(), expected);
  EXPECT_EQ(static_cast<std::size_t>(length), expected.size());
}

TEST(Encoding, WithoutABufferGivesNoLength) {
  int length = 99;
  EXPECT_EQ(objectWithSettings().sdpEncode(nullptr, 1, length), 0);
  EXPECT_EQ(length, 0);
}

TEST(UserMessage, IsWrittenForAnAddressPortAndCodecs) {
  const auto message = [](const std::string& ip, const std::string& port, const std::string& end) {
    return "v=0\r\no=- 0 0 IN IP4 " + ip + "\r\ns=-\r\nc=IN IP4 " + ip + "\r\nt=0 0\r\nm=audio " + port +
           " RTP/AVP " + end;
  };
  struct Case {
    const char* ip;
    unsigned int port;
    const char* codecs;
    bool inactive;
    std::string expected;
  };
  const Case cases[] = {
      {"192.0.2.1", 5004, "PCMA", false, message("192.0.2.1", "5004", "8\r\na=rtpmap:8 PCMA/8000\r\n")},
      {"192.0.2.1", 0, "", true, message("192.0.2.1", "0", "0\r\na=rtpmap:0 PCMU/8000\r\na=inactive\r\n")},
      {"192.0.2.1", 1024, "foo", false, message("192.0.2.1", "1024", "0\r\na=rtpmap:0 PCMU/8000\r\n")},
      {"2001:db8::1", 65535, "G729,G723", false,
       message("2001:db8::1", "65535", "18 4\r\na=rtpmap:18 G729/8000\r\na=rtpmap:4 G723/8000\r\n")}};
  for (const Case& each : cases) {
    Output out;
    const TraceCapture trace;
    EXPECT_EQ(cSdpNegotiator::sdpCreateMessage(out.text(), each.ip, each.port, each.codecs, each.inactive),
              0);
    EXPECT_EQ(out.text(), each.expected);
    EXPECT_TRUE(out.endsAt(each.expected.size()));
    EXPECT_TRUE(trace.lines().empty());
  }
}

TEST(UserMessage, NeedsAnAddress) {
  for (const char* ip : {static_cast<const char*>(nullptr), "", "abc", "192.0.2.256", "192.0.2.1 ", "::g"}) {
    Output out;
    TraceCapture trace;
    // The address is looked at first: the port is invalid as well.
    EXPECT_EQ(cSdpNegotiator::sdpCreateMessage(out.text(), ip, 80, "PCMU", false), 1);
    EXPECT_EQ(trace.takeLines(), (Traces{{4, 3, "Invalid IP address. Cannot create SDP message. Exiting."}}));
    EXPECT_TRUE(out.isUntouched());
  }
}

TEST(UserMessage, NeedsAPortThatIsZeroOrUnprivileged) {
  const std::pair<unsigned int, const char*> ports[] = {
      {1, "1"}, {1023, "1023"}, {65536, "65536"}, {0x80000000U, "-2147483648"}, {0xFFFFFFFFU, "-1"}};
  for (const auto& [port, shown] : ports) {
    Output out;
    TraceCapture trace;
    EXPECT_EQ(cSdpNegotiator::sdpCreateMessage(out.text(), "192.0.2.1", port, "PCMU", false), 1);
    EXPECT_EQ(trace.takeLines(), (Traces{{4, 3, "Invalid port number (" + std::string(shown) + ") entry."}}));
    EXPECT_TRUE(out.isUntouched());
  }
}

// The status of what writes the text is not looked at.
TEST(UserMessage, WithoutCodecsOrBufferIsNotWrittenYetSucceeds) {
  const Traces refused = {{2, 2, "Invalid input arguments. Cannot create SDP message."}};
  Output out;
  TraceCapture trace;
  EXPECT_EQ(cSdpNegotiator::sdpCreateMessage(out.text(), "192.0.2.1", 5004, nullptr, false), 0);
  EXPECT_TRUE(out.isUntouched());
  EXPECT_EQ(trace.takeLines(), refused);
  EXPECT_EQ(cSdpNegotiator::sdpCreateMessage(nullptr, "192.0.2.1", 5004, "PCMU", false), 0);
  EXPECT_EQ(trace.takeLines(), refused);
}

std::string disabledSection(const std::string& transport) {
  return "m=audio 0 " + transport +
         " 8 0 18 4 96 98 99\r\n"
         "a=rtpmap:8 PCMA/8000\r\n"
         "a=rtpmap:0 PCMU/8000\r\n"
         "a=rtpmap:18 G729/8000\r\n"
         "a=rtpmap:4 G723/8000\r\n"
         "a=rtpmap:96 CLEARMODE/8000\r\n"
         "a=rtpmap:98 telephone-event/8000\r\n"
         "a=rtpmap:99 red/8000\r\n"
         "a=silenceSupp:off - - - -\r\n"
         "a=fmtp:18 annexb=yes\r\n"
         "a=fmtp:4 annexa=no\r\n"
         "a=fmtp:98 0-15,32-36,49\r\n"
         "a=fmtp:99 98\r\n";
}

TEST(DummyAnswer, AcceptsNothing) {
  const std::pair<int, const char*> versions[] = {
      {2, "IP4 0.0.0.0"}, {10, "IP6 ::"}, {0, "IP4 0.0.0.0"}, {6, "IP4 0.0.0.0"}, {-1, "IP4 0.0.0.0"}};
  for (const auto& [version, address] : versions) {
    const std::string session = "v=0\r\no=QnSIP 0 1 IN " + std::string(address) + "\r\ns=SIP Call\r\nc=IN " +
                                address + "\r\nt=0 0\r\n";
    for (const bool sessionOnly : {true, false}) {
      const std::string expected =
          sessionOnly ? session : session + disabledSection("RTP/SAVP") + disabledSection("RTP/AVP");
      Output out;
      int length = -1;
      TraceCapture trace;
      EXPECT_EQ(cSdpNegotiator::generateDummyAnswer(out.text(), sessionOnly, length,
                                                    static_cast<eIPAddressVersion>(version)),
                0);
      EXPECT_EQ(out.text(), expected);
      EXPECT_EQ(static_cast<std::size_t>(length), expected.size());
      EXPECT_TRUE(out.endsAt(expected.size()));
      EXPECT_EQ(trace.takeLines(), (Traces{{8, 4, "A dummy SDP message has been created."}}));
    }
  }
}

TEST(DummyAnswer, IsABodyWithPortZero) {
  Output out;
  int length = 0;
  cSdpNegotiator::generateDummyAnswer(out.text(), false, length, IP_VERSION_4);
  const cSdpNegotiator object = parsedObject(out.text());
  EXPECT_EQ(object.getParsedData().port, 0U);
  EXPECT_EQ(object.compareSdpOLine("o=QnSIP 0 1 IN IP4 0.0.0.0"), 0);
}

TEST(DummyAnswer, WithoutABufferGivesNoLength) {
  int length = 99;
  EXPECT_EQ(cSdpNegotiator::generateDummyAnswer(nullptr, false, length, IP_VERSION_4), 0);
  EXPECT_EQ(length, 0);
}

}  // namespace
