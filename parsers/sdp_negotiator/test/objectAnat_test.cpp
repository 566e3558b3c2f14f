#include "requestTestSupport.h"

// Requests that remove the media of an address version, and those that put removed m-lines back in their places.

namespace {

using M = sdpModifications;

constexpr std::size_t cleared = 26;

const std::string ipv6 = "c=IN IP6 2001:db8::1\r\n";
const std::string ipv4 = "c=IN IP4 192.0.2.2\r\n";
const std::string audio4 = "m=audio 5004 RTP/AVP 0\r\n" + ipv4;
const std::string audio6 = "m=audio 5006 RTP/AVP 0\r\n" + ipv6;
const std::string video4 = "m=video 5008 RTP/SAVP 31\r\n" + ipv4;
const std::string video6 = "m=video 5010 RTP/SAVP 31\r\n" + ipv6;

/// The session's lines without c-line; all media bring their own.
const std::string head = "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\n";

std::string mid(int number) { return "a=mid:" + std::to_string(number) + "\r\n"; }

const std::string anatBody =
    head + "a=group:ANAT 1 2 3 4\r\n" + audio4 + mid(1) + audio6 + mid(2) + video4 + mid(3) + video6 + mid(4);
const std::string without6 = head + audio4 + mid(1) + video4 + mid(3);
const std::string without4 = head + audio6 + mid(2) + video6 + mid(4);

const TraceLine anat6Request{8, 4, "Request to remove ANAT media net_type=IP6."};
const TraceLine anat4Request{8, 4, "Request to remove ANAT media net_type=IP4."};
const TraceLine noGroup{8, 4, "group ANAT attribute is not present, nothing to remove."};

TraceLine output(const std::string& codes) { return {8, 4, "sdpRemoveANAT output is [" + codes + "]"}; }

RequestCase removeAnat(const std::string& name, eIPAddressVersion version, bool flag,
                       const std::string& before, const std::string& after, const Traces& entry,
                       const std::string& codes) {
  return {name,
          [=](cSdpNegotiator& o) {
            RemovedRecord removed;
            return o.sdpRemoveANAT(version, removed.data(), flag);
          },
          [=](char* text) {
            char removed[cleared] = {};
            unsigned short oLineEnd = 0;
            return M::sdpRemoveAnat(text, version, removed, oLineEnd, flag);
          },
          before,
          after,
          entry,
          {output(codes)},
          flag ? "IP4 0.0.0.0" : ""};
}

std::vector<RequestCase> removals() {
  return {
      removeAnat("IPv6", IP_VERSION_6, false, anatBody, without6, {anat6Request}, "2,157"),
      removeAnat("IPv4", IP_VERSION_4, false, anatBody, without4, {anat4Request}, "1,156"),
      removeAnat("IPv6WithOLine", IP_VERSION_6, true, anatBody, without6, {anat6Request}, "2,157"),
      removeAnat("TheGroupAlone", IP_VERSION_6, false, head + "a=group:ANAT 1\r\n" + audio4, head + audio4,
                 {anat6Request}, ""),
  };
}

class AnatRemoval : public testing::TestWithParam<RequestCase> {};

TEST_P(AnatRemoval, EditsTheTextAndParsesItAgain) { expectEditedAndParsed(GetParam()); }
// The result is that of a trace call.
TEST_P(AnatRemoval, LeavesTheObjectEmptyWhenTheTextCannotBeStored) {
  expectEmptiedWhenNotStored(GetParam(), 0);
}

INSTANTIATE_TEST_SUITE_P(Versions, AnatRemoval, testing::ValuesIn(removals()), caseName);

TEST(AnatRemoval, RecordsTheMLinesThatWent) {
  cSdpNegotiator object = parsedObject(anatBody);
  RemovedRecord removed;
  EXPECT_EQ(object.sdpRemoveANAT(IP_VERSION_6, removed.data(), false), 0);
  removed.expect({2, 128 + 25 + 4}, cleared);
}

TEST(AnatRemoval, WithoutARecordShowsNone) {
  cSdpNegotiator object = parsedObject(anatBody);
  const Traces traces = tracesOf([&] { object.sdpRemoveANAT(IP_VERSION_6, nullptr, false); });
  EXPECT_EQ(traces.back(), output(""));
  EXPECT_TRUE(sameBytes(object, parsedObject(without6)));
}

// 25 codes of up to three digits are more than the 75 characters that are shown.
TEST(AnatRemoval, ShowsSeventyFiveCharactersOfTheCodes) {
  std::string body = head + "a=group:ANAT 1\r\n";
  std::string codes;
  std::vector<int> bytes;
  for (int i = 1; i <= 25; ++i) {
    body += video6;
    bytes.push_back(128 + 25 + i);
    codes += (i == 1 ? "" : ",") + std::to_string(bytes.back());
  }
  cSdpNegotiator object = objectWithText(body + audio4);
  RemovedRecord removed;
  const Traces traces = tracesOf([&] { object.sdpRemoveANAT(IP_VERSION_6, removed.data(), false); });
  removed.expect(bytes, cleared);
  EXPECT_EQ(codes.size(), 99U);
  EXPECT_EQ(traces.back(), output(codes.substr(0, 75)));
  EXPECT_TRUE(sameBytes(object, parsedObject(head + audio4)));
}

// The results are those of trace calls, 0 while tracing is off.
TEST(AnatRemoval, OfAnotherVersionClearsTheRecordOnly) {
  for (const int version : {0, 1, 4, 6, -1, 2147483647}) {
    const cSdpNegotiator before = parsedObject(anatBody);
    cSdpNegotiator object = before;
    RemovedRecord removed;
    const auto request = [&](char* record) {
      return object.sdpRemoveANAT(static_cast<eIPAddressVersion>(version), record, true);
    };
    EXPECT_EQ(request(removed.data()), 0);
    removed.expect({}, cleared);
    EXPECT_EQ(tracesOf([&] { request(nullptr); }),
              (Traces{{8, 4, "Request to remove ANAT media net_type=INVALID."},
                      {8, 4,
                       "removeAddrVersion(=" + std::to_string(version) +
                           ") is not IP4 or IP6. exiting sdpRemoveANAT."}}));
    EXPECT_TRUE(sameBytes(object, before));
  }
}

TEST(AnatRemoval, WithoutAGroupClearsTheRecordOnly) {
  for (const cSdpNegotiator& before :
       {emptyObject(), parsedObject(head + audio4 + mid(1) + audio6 + mid(2))}) {
    cSdpNegotiator object = before;
    RemovedRecord removed;
    EXPECT_EQ(object.sdpRemoveANAT(IP_VERSION_4, removed.data(), true), 0);
    removed.expect({}, cleared);
    EXPECT_EQ(tracesOf([&] { object.sdpRemoveANAT(IP_VERSION_4, nullptr, true); }),
              (Traces{anat4Request, noGroup}));
    EXPECT_TRUE(sameBytes(object, before));
  }
}

TEST(AnatRemoval, OfATextThatCannotBeReadChangesNothing) {
  const cSdpNegotiator before = parsedObject(paddedTo(20480, anatBody));
  cSdpNegotiator object = before;
  RemovedRecord removed;
  EXPECT_EQ(tracesOf([&] { object.sdpRemoveANAT(IP_VERSION_6, removed.data(), true); }),
            (Traces{anat6Request, buildingText, output("")}));
  removed.expect({}, cleared);
  EXPECT_TRUE(sameBytes(object, before));
}

char secureVideoCode() { return static_cast<char>(128 + 25 + 4); }

RequestCase reinsertAnat(const std::string& name, const std::string& codes, bool flag,
                         const std::string& before, const std::string& after) {
  return {name,
          [=](cSdpNegotiator& o) {
            std::string record = codes;
            return o.sdpReInsertANAT(record.data(), flag);
          },
          [=](char* text) {
            unsigned short oLineEnd = 0;
            return M::sdpReInsertAnat(text, codes.c_str(), oLineEnd, flag);
          },
          before,
          after,
          {{8, 4, "Request to re-insert the ANAT media."}},
          {},
          flag ? "IP4 0.0.0.0" : ""};
}

/// The m-lines of version 4 with those of version 6 put back as dummies.
const std::string reinserted = head + "a=group:ANAT 1 3\r\n" + audio4 + mid(1) + "m=audio 0 RTP/AVP 0\r\n" +
                               mid(2) + video4 + mid(3) + "m=video 0 RTP/SAVP 31\r\n" + mid(4);

RequestCase restoreTransport(const std::string& name, const std::string& codes, bool flag,
                             const std::string& before, const std::string& after) {
  return {name,
          [=](cSdpNegotiator& o) {
            std::string record = codes;
            return o.sdpReplaceTransportProtocol(record.data(), flag);
          },
          [=](char* text) {
            std::string record = codes;
            unsigned short oLineEnd = 0;
            return M::sdpReplaceTransProtocol(text, record.data(), oLineEnd, flag);
          },
          before,
          after,
          {{8, 4, "Request to restore the RTP/SAVP."}},
          {},
          flag ? "IP4 0.0.0.0" : ""};
}

const std::string dummyAudio = "m=audio 0 RTP/SAVP 0\r\n";
const std::string dummyVideo = "m=video 0 RTP/SAVP 31\r\n";

std::vector<RequestCase> requests() {
  const std::string record = {2, secureVideoCode()};
  return {
      reinsertAnat("ReinsertAnat", record, false, head + audio4 + video4, reinserted),
      reinsertAnat("ReinsertAnatWithOLine", record, true, head + audio4 + video4, reinserted),
      reinsertAnat("ReinsertNothing", "", false, head + audio4,
                   head + "a=group:ANAT 1\r\n" + audio4 + mid(1)),
      restoreTransport("RestoreInFront", "\x01", false, head + audio4, head + dummyAudio + audio4),
      restoreTransport("RestoreBehind", {1, 25 + 3}, true, head + audio4,
                       head + dummyAudio + audio4 + dummyVideo),
      restoreTransport("RestoreNothing", "", true, head + audio4, head + audio4),
  };
}

class ReturnOfMLines : public testing::TestWithParam<RequestCase> {};

TEST_P(ReturnOfMLines, EditsTheTextAndParsesItAgain) {
  RequestCase each = GetParam();
  if (each.name == "RestoreNothing") each.timedAddress = "";  // the o-line stays with an empty record
  expectEditedAndParsed(each);
}
TEST_P(ReturnOfMLines, FailsWithoutATextThatCanBeRead) { expectFailsWithoutText(GetParam()); }
TEST_P(ReturnOfMLines, LeavesTheObjectEmptyWhenTheTextCannotBeStored) {
  expectEmptiedWhenNotStored(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Requests, ReturnOfMLines, testing::ValuesIn(requests()), caseName);

// The result is that of a trace call, 0 while tracing is off.
TEST(ReturnOfMLines, NeedsARecord) {
  const cSdpNegotiator before = parsedObject(audioBody());
  cSdpNegotiator object = before;
  EXPECT_EQ(object.sdpReplaceTransportProtocol(nullptr, true), 0);
  EXPECT_EQ(object.sdpReInsertANAT(nullptr, true), 0);
  EXPECT_EQ(tracesOf([&] { object.sdpReplaceTransportProtocol(nullptr, true); }),
            (Traces{{8, 4, "Request to restore the RTP/SAVP."},
                    {4, 3, "The request to restore the RTP/SAVP is invalid."}}));
  EXPECT_EQ(tracesOf([&] { object.sdpReInsertANAT(nullptr, true); }),
            (Traces{{8, 4, "Request to re-insert the ANAT media."},
                    {4, 3, "The Request to re-insert the ANAT is invalid."}}));
  EXPECT_TRUE(sameBytes(object, before));
}

// Deliberate: without room the edit leaves m-lines out, and its status does not count.
TEST(ReturnOfMLines, WithoutRoomIsParsedAsItIs) {
  const cSdpNegotiator before = parsedObject(paddedTo(20479));
  cSdpNegotiator object = before;
  char record[] = "\x01";
  EXPECT_EQ(object.sdpReplaceTransportProtocol(record, false), 0);
  EXPECT_EQ(object.sdpReInsertANAT(record, false), 0);
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(ReturnOfMLines, OfATextThatDoesNotParseLeavesTheObjectEmpty) {
  for (const RequestCase& each : requests()) {
    cSdpNegotiator object = objectWithText("no body\r\n");
    EXPECT_EQ(each.request(object), 1) << each.name;
    EXPECT_TRUE(sameBytes(object, emptyObject())) << each.name;
  }
}

}  // namespace
