#include <functional>

#include "originLineTestSupport.h"

// Requests that rewrite the origin line in the stored text. They never parse: of the summary only the end of
// the o-line changes.

namespace {

using Request = std::function<unsigned short(cSdpNegotiator&)>;

struct RequestCase {
  const char* name;
  Request request;
  const char* line;  ///< what becomes of "o=alice 10 20 IN IP4 192.0.2.9"
  Traces first;      ///< traces in front of the expansion
  Traces then;       ///< and behind it
};

void PrintTo(const RequestCase& request, std::ostream* out) { *out << request.name; }

const std::string id64(64, '7');

TraceLine enteringModify(const std::string& id, const std::string& version, const std::string& ip) {
  return {
      8, 4,
      "Entering sdpModifyOLine() method. sessionId=[" + id + "] version=[" + version + "] ip=[" + ip + "]"};
}

TraceLine requestModify(const std::string& id, const std::string& version) {
  return {8, 4, "Request to set the session-id to:(" + id + ") and the version to:(" + version + ")."};
}

const Traces versionReplaced = {{8, 4, "Entering sdpReplaceVersionNumber() method."},
                                {8, 4, "The version of o-line has been replaced. Exiting..."}};
const Traces longVersionReplaced = {{8, 4, "Entering sdpReplaceVersionNumberLong() method."},
                                    {8, 4, "The version of o-line has been replaced. Exiting..."}};
const TraceLine lineChanged{2, 2, "The o-line has been changed. Exiting..."};
const TraceLine increaseRequest{8, 4, "Request to increase the version of o-line by 1."};
const Traces increased = {{8, 4, "Entering sdpIncVersion() method."},
                          {8, 4, "The version of o-line has been increased by one. Exiting..."}};

std::vector<RequestCase> requests() {
  return {{"Version",
           [](cSdpNegotiator& o) { return o.sdpSetVersionNumber(8); },
           "o=alice 10 8 IN IP4 192.0.2.9",
           {{8, 4, "Request to set the version of o-line to:8."}},
           versionReplaced},
          {"LargestVersion",
           [](cSdpNegotiator& o) { return o.sdpSetVersionNumber(4294967295U); },
           "o=alice 10 4294967295 IN IP4 192.0.2.9",
           {{8, 4, "Request to set the version of o-line to:4294967295."}},
           versionReplaced},
          {"LargestLongVersion",
           [](cSdpNegotiator& o) { return o.sdpSetVersionNumberLong(9223372036854775807LL); },
           "o=alice 10 9223372036854775807 IN IP4 192.0.2.9",
           {{8, 4, "Request to set the version of o-line to:9223372036854775807."}},
           longVersionReplaced},
          {"NegativeLongVersion",
           [](cSdpNegotiator& o) { return o.sdpSetVersionNumberLong(-1); },
           "o=alice 10 -1 IN IP4 192.0.2.9",
           {{8, 4, "Request to set the version of o-line to:-1."}},
           longVersionReplaced},
          {"IdAndVersion",
           [](cSdpNegotiator& o) { return o.sdpModifyOLine("33", "44"); },
           "o=ZEV 33 44 IN IP4 0.0.0.0",
           {requestModify("33", "44")},
           {enteringModify("33", "44", "(null)"), lineChanged}},
          {"IdVersionAndAddress",
           [](cSdpNegotiator& o) { return o.sdpModifyOLine("33", "44", "2001:db8::7"); },
           "o=ZEV 33 44 IN IP6 2001:db8::7",
           {requestModify("33", "44")},
           {enteringModify("33", "44", "2001:db8::7"), lineChanged}},
          {"NullAddress",
           [](cSdpNegotiator& o) { return o.sdpModifyOLine("", "", nullptr); },
           "o=ZEV   IN IP4 0.0.0.0",
           {requestModify("", "")},
           {enteringModify("", "", "(null)"), lineChanged}},
          {"PerCentInTexts",
           [](cSdpNegotiator& o) { return o.sdpModifyOLine("%s", "%n", "192.0.2.77"); },
           "o=ZEV %s %n IN IP4 192.0.2.77",
           {requestModify("%s", "%n")},
           {enteringModify("%s", "%n", "192.0.2.77"), lineChanged}},
          {"SameLengthIncrease",
           [](cSdpNegotiator& o) { return o.sdpIncVersion(); },
           "o=alice 10 21 IN IP4 192.0.2.9",
           {increaseRequest},
           increased}};
}

class OriginLineRequest : public testing::TestWithParam<RequestCase> {};

TEST_P(OriginLineRequest, RewritesTheLineAndMovesItsEnd) {
  const RequestCase& request = GetParam();
  const std::string line = request.line;
  for (const std::size_t size : {bodyWith(originLine).size(), std::size_t{4000}}) {
    const cSdpNegotiator before = parsedObject(paddedTo(size, bodyWith(originLine)));
    cSdpNegotiator object = before;
    TraceCapture trace;
    EXPECT_EQ(request.request(object), 0);
    Traces traces = request.first;
    traces.push_back(buildingTrace);
    traces.insert(traces.end(), request.then.begin(), request.then.end());
    EXPECT_EQ(trace.takeLines(), traces);
    EXPECT_EQ(textOf(object),
              paddedTo(size, bodyWith(originLine)).replace(lineStart, originLine.size(), line));
    EXPECT_EQ(endOf(object), lineStart + line.size() + 2);
    EXPECT_EQ(lineOf(object), line);
    EXPECT_TRUE(sameSummaryButForTheEnd(object, before));
  }
}

TEST_P(OriginLineRequest, OfAnEmptyObjectFails) {
  const RequestCase& request = GetParam();
  cSdpNegotiator object = emptyObject();
  TraceCapture trace;
  EXPECT_EQ(request.request(object), 1);
  Traces traces = request.first;
  traces.insert(traces.end(), {buildingTrace, noTextTrace});
  EXPECT_EQ(trace.takeLines(), traces);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
}

TEST_P(OriginLineRequest, LeavesATextThatCannotBeExpanded) {
  Record damaged(parsedObject(paddedTo(3000)));
  damaged.raw[20] = static_cast<char>(damaged.raw[20] ^ 0x55);
  for (const cSdpNegotiator& before : {damaged.object(), parsedObject(paddedTo(20480))}) {
    cSdpNegotiator object = before;
    EXPECT_EQ(GetParam().request(object), 1);
    EXPECT_TRUE(sameBytes(object, before));
  }
}

TEST_P(OriginLineRequest, LeavesATextThatTheEditRefuses) {
  const cSdpNegotiator before = parsedObject("v=0\r\ns=-\r\nt=0 0\r\n");  // no "o="
  cSdpNegotiator object = before;
  EXPECT_EQ(GetParam().request(object), 1);
  EXPECT_TRUE(sameBytes(object, before));
}

// The offsets of the summary play no part: the edits look for the line.
TEST_P(OriginLineRequest, DoesNotTrustTheOffsets) {
  cSdpNegotiator object = objectWithOffsets(bodyWith(originLine), 65535, 3);
  EXPECT_EQ(GetParam().request(object), 0);
  EXPECT_EQ(textOf(object), bodyWith(GetParam().line));
  EXPECT_EQ(object.getParsedData().oLineStart, 65535U);
  EXPECT_EQ(lineOf(object), "");
}

INSTANTIATE_TEST_SUITE_P(All, OriginLineRequest, testing::ValuesIn(requests()),
                         [](const auto& each) { return each.param.name; });

TEST(OriginLineRequests, LeaveTheSettings) {
  cSdpNegotiator object = parsedObject(bodyWith(originLine));
  object.setMediaPort(0);
  ASSERT_EQ(object.sdpSetVersionNumber(8), 0);
  ASSERT_EQ(object.sdpModifyOLine("1", "2"), 0);
  ASSERT_EQ(object.sdpModifyOLine(), 0);
  ASSERT_EQ(object.sdpIncVersion(), 0);
  EXPECT_EQ(object.getParsedData().port, 0U);  // a parse would give 5004
}

// The text no longer deflates into its store: it is destroyed, and the recorded end is the new one.
TEST(OriginLineRequests, GiveTheStatusOfStoring) {
  // The longest part of a body that still fits.
  std::string body = incompressibleBody(6000);
  while (emptyObject().setRawSDP(body.c_str()) != 0) body.pop_back();
  ASSERT_GT(body.size(), 3000U);
  cSdpNegotiator object = parsedObject(body);
  const unsigned int stored = object.getParsedData().storedSdpLength;
  const std::string id = "qL7xWv0ZkR3uTfB9sYhJ2nMcP5dGaE8oI6iKmX4zQyVwCrUeHtNlS1jDbFgOpA";
  EXPECT_EQ(object.sdpModifyOLine(id.c_str(), id.c_str()), 2);
  EXPECT_EQ(object.getParsedData().storedSdpLength, stored);
  EXPECT_EQ(endOf(object), lineStart + std::string("o=ZEV   IN IP4 0.0.0.0\r\n").size() + 2 * id.size());
}

TEST(OriginLineModification, RefusesIdsOfMoreThan64CharactersAndNull) {
  const std::string id65 = id64 + "7";
  const char* const refused[][2] = {{nullptr, "1"},      {"1", nullptr},      {nullptr, nullptr},
                                    {id65.c_str(), "1"}, {"1", id65.c_str()}, {id65.c_str(), id65.c_str()}};
  const cSdpNegotiator before = parsedObject(bodyWith(originLine));
  for (const auto& [id, version] : refused) {
    cSdpNegotiator object = before;
    // The status is what the trace facility gives: 0, and no more when tracing is on.
    EXPECT_EQ(object.sdpModifyOLine(id, version), 0);
    TraceCapture trace;
    EXPECT_EQ(object.sdpModifyOLine(id, version), 0);
    EXPECT_EQ(object.sdpModifyOLine(id, version, "192.0.2.1"), 0);
    const TraceLine invalid{4, 3, "The input values of session id or the session version are invalid."};
    EXPECT_EQ(trace.takeLines(), (Traces{invalid, invalid}));
    EXPECT_TRUE(sameBytes(object, before));
  }
}

TEST(OriginLineModification, TakesIdsOf64Characters) {
  cSdpNegotiator object = parsedObject(bodyWith(originLine));
  const std::string address = "2001:db8:1111:2222:3333:4444:5555:6666";
  EXPECT_EQ(object.sdpModifyOLine(id64.c_str(), id64.c_str(), address.c_str()), 0);
  EXPECT_EQ(lineOf(object), "o=ZEV " + id64 + " " + id64 + " IN IP6 " + address);
}

// The description holds such a line whole, so that edits that need all of it go on.
TEST(OriginLineModification, WithIdsOf64CharactersLeavesABodyThatIsHeldWhole) {
  const std::string host4 = "a=candidate:1 1 UDP 2 192.0.2.1 5004 typ host\r\n";
  const std::string host6 = "a=candidate:2 1 UDP 1 2001:db8::1 5004 typ host\r\n";
  cSdpNegotiator object = parsedObject(bodyWith(originLine) + host4 + host6);
  ASSERT_EQ(object.sdpModifyOLine(id64.c_str(), id64.c_str()), 0);
  EXPECT_EQ(object.sdpRemoveDualStackIce(), 0);
  EXPECT_EQ(textOf(object), bodyWith("o=ZEV " + id64 + " " + id64 + " IN IP4 0.0.0.0") + host4);
}

TEST(OriginLineModification, RefusesAnAddressThatIsNone) {
  const cSdpNegotiator before = parsedObject(bodyWith(originLine));
  for (const char* ip : {"", "abc", "192.0.2.300", "192.0.2.1 ", "2001:db8::1%eth0"}) {
    cSdpNegotiator object = before;
    TraceCapture trace;
    EXPECT_EQ(object.sdpModifyOLine("1", "2", ip), 1) << ip;
    EXPECT_TRUE(trace.has(2, 3, "sdpModifyOLine(): The provided IP is not valid, exiting"));
    EXPECT_TRUE(sameBytes(object, before));
  }
}

TEST(OriginLineModification, WithoutAnAddressKeepsTheAddressType) {
  cSdpNegotiator object = parsedObject(bodyWith("o=alice 1 2 IN IP6 2001:db8::9"));
  EXPECT_EQ(object.sdpModifyOLine("3", "4"), 0);
  EXPECT_EQ(lineOf(object), "o=ZEV 3 4 IN IP6 ::");
}

TEST(OriginLineModification, ByTimeUsesOneIdForBoth) {
  for (const bool ipv6 : {false, true}) {
    cSdpNegotiator object = parsedObject(bodyWith(ipv6 ? "o=a 1 2 IN IP6 2001:db8::9" : originLine));
    TraceCapture trace;
    EXPECT_EQ(object.sdpModifyOLine(), 0);
    o_line record;
    object.getOLine(record);
    const std::string id = record.sessionId;
    EXPECT_TRUE(id.size() >= 7 && id.size() <= 9 && id.find_first_not_of("0123456789") == std::string::npos)
        << id;
    EXPECT_EQ(textOf(object), bodyWith("o=ZEV " + id + " " + id + (ipv6 ? " IN IP6 ::" : " IN IP4 0.0.0.0")));
    EXPECT_EQ(trace.takeLines(), (Traces{{8, 4, "Request to modify the o-line based on the timestamp."},
                                         buildingTrace,
                                         enteringModify(id, id, "(null)"),
                                         lineChanged}));
  }
}

TEST(OriginLineModification, ByTimeOfAnEmptyObjectFails) {
  cSdpNegotiator object = emptyObject();
  EXPECT_EQ(object.sdpModifyOLine(), 1);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
}

// Deliberate: the recorded end stays where it was when the version gains a digit. With CR LF it is then the
// LF that stands behind it, and the line comes back whole; with a bare LF its last character is missing.
TEST(OriginLineIncrease, KeepsTheRecordedEndWhenTheVersionGainsADigit) {
  for (const std::string end : {"\r\n", "\n"}) {
    const std::string line = "o=alice 10 9 IN IP4 192.0.2.9";
    const std::string raised = "o=alice 10 10 IN IP4 192.0.2.9";
    cSdpNegotiator object = parsedObject(bodyWith(line, end));
    const unsigned int before = endOf(object);
    EXPECT_EQ(object.sdpIncVersion(), 0);
    EXPECT_EQ(textOf(object), bodyWith(raised, end));
    EXPECT_EQ(endOf(object), before);
    EXPECT_EQ(lineOf(object), end == "\r\n" ? raised : raised.substr(0, raised.size() - 1));
    EXPECT_EQ(object.sdpIncVersion(), 0);  // looks for the line, not at its recorded end
    EXPECT_EQ(textOf(object), bodyWith("o=alice 10 11 IN IP4 192.0.2.9", end));
    EXPECT_EQ(object.sdpSetVersionNumber(12), 0);  // which records the end anew
    EXPECT_EQ(lineOf(object), "o=alice 10 12 IN IP4 192.0.2.9");
  }
}

TEST(OriginLineIncrease, LeavesALineOfTwoFields) {
  const cSdpNegotiator before = objectWithLine("o=a 1");
  cSdpNegotiator object = before;
  EXPECT_EQ(object.sdpIncVersion(), 0);
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(OriginLineIncrease, RefusesAVersionWithoutASuccessor) {
  for (const char* line :
       {"o=a 1 9223372036854775807 IN IP4 h", "o=a 1 9999999999999999999999999999999999999999 IN IP4 h"}) {
    const cSdpNegotiator before = objectWithLine(line);
    cSdpNegotiator object = before;
    EXPECT_EQ(object.sdpIncVersion(), 1) << line;
    EXPECT_TRUE(sameBytes(object, before));
  }
}

}  // namespace
