#include "requestTestSupport.h"

// Requests about ICE and preconditions. Most of them store the text without parsing it.

namespace {

using M = sdpModifications;

const std::string candidates =
    "a=ice-ufrag:8hhY\r\na=ice-pwd:asd88fgpdd777uzjYhagZg\r\n"
    "a=candidate:1 1 UDP 2130706431 192.0.2.1 5004 typ host\r\n";
const std::string preconditions = "a=curr:qos local none\r\na=des:qos mandatory local sendrecv\r\n";
const std::string video = "m=video 5006 RTP/AVP 31\r\n";

/// The conditions that `preconditions` says.
const sSdpPrecondions conditions[] = {{SDP_PRECONDITION_CURRENT, 0, 0, 1, 0},
                                      {SDP_PRECONDITION_DESIRED, 0, 0, 1, 3}};

const RequestCase removeIce = {
    "RemoveIce",
    [](cSdpNegotiator& o) { return o.sdpRemoveIce(); },
    M::sdpRemoveICE,
    audioBody() + candidates + video + candidates + "a=sendonly\r\n",
    audioBody() + video + "a=sendonly\r\n",
    {{8, 4, "Request to remove the FICE attributes."}},
};

const RequestCase deletePreconditions = {
    "DeletePreconditions",  [](cSdpNegotiator& o) { return o.sdpDelPrecondions(); },
    M::sdpDelPreconditions, audioBody() + preconditions + video + preconditions,
    audioBody() + video,    {{8, 4, "Request to delete preconditions attributes."}},
};

/// The object with another text and its own summary.
cSdpNegotiator withText(cSdpNegotiator object, const std::string& text) {
  EXPECT_EQ(object.setRawSDP(text.c_str()), 0);
  return object;
}

cSdpNegotiator withoutIceBits(cSdpNegotiator object) {
  object.setSdpAttributes(object.getParsedData().sdpAttributes & ~0x18U);
  return object;
}

/// The text is edited and stored, and of the summary only the bits of ICE change.
void expectEditedAndStored(const RequestCase& each) {
  for (const bool deflated : {false, true}) {
    const std::string before = deflated ? padded(each.before) : each.before;
    const std::string after = deflated ? padded(each.after) : each.after;
    cSdpNegotiator object = parsedObject(before);
    object.setBandwidth(64);  // stays: the text is not parsed
    const cSdpNegotiator expected = withoutIceBits(withText(object, after));
    EXPECT_EQ(tracesOf([&] { EXPECT_EQ(each.request(object), 0); }),
              each.entry + Traces{buildingText} + tracesOfEdit(each.edit, before));
    EXPECT_TRUE(sameBytes(object, expected));
  }
}

TEST(StoringRequest, EditsTheTextAndKeepsTheSummary) {
  expectEditedAndStored(removeIce);
  expectEditedAndStored(deletePreconditions);
}

TEST(StoringRequest, StoresATextThatDoesNotParse) {
  cSdpNegotiator object = objectWithText("no body\r\na=curr:qos e2e none\r\n");
  EXPECT_EQ(object.sdpDelPrecondions(), 0);
  EXPECT_TRUE(sameBytes(object, objectWithText("no body\r\n")));
}

TEST(PreconditionRemoval, FailsWithoutATextThatCanBeRead) { expectFailsWithoutText(deletePreconditions); }

TEST(PreconditionRemoval, LeavesAnObjectThatCannotStoreTheTextAsItWas) {
  const cSdpNegotiator before = objectHardToStore(deletePreconditions.before);
  cSdpNegotiator object = before;
  const Traces traces = tracesOf([&] { EXPECT_EQ(object.sdpDelPrecondions(), 2); });
  EXPECT_EQ(traces.back(), staysUnstored);
  EXPECT_TRUE(sameBytes(object, before));
}

TEST(IceRemoval, NeedsABitOfIce) {
  const cSdpNegotiator before = parsedObject(audioBody());
  cSdpNegotiator object = before;
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpRemoveIce(), 1); }), removeIce.entry);
  EXPECT_TRUE(sameBytes(object, before));
}

// Deliberate: the bits decide, and not the text.
TEST(IceRemoval, IsAskedOfTheBits) {
  cSdpNegotiator unmarked = withoutIceBits(parsedObject(removeIce.before));
  EXPECT_EQ(unmarked.sdpRemoveIce(), 1);
  EXPECT_EQ(textOf(unmarked), removeIce.before);
  for (const unsigned int bits : {0x8U, 0x10U, 0x18U, 0xffffffffU}) {
    cSdpNegotiator object = parsedObject(audioBody());
    object.setSdpAttributes(bits);
    EXPECT_EQ(object.sdpRemoveIce(), 0);
    EXPECT_EQ(object.getParsedData().sdpAttributes, bits & ~0x18U);
    EXPECT_EQ(textOf(object), audioBody());
  }
}

// Deliberate: a failure is no failure here. The bits stay, as the lines do.
TEST(IceRemoval, SucceedsAlsoWhenTheTextCannotBeReadOrStored) {
  const auto marked = [](cSdpNegotiator object) {
    object.setSdpAttributes(0x18);
    return object;
  };
  std::vector<cSdpNegotiator> objects = unreadableObjects();
  objects.push_back(emptyObject());
  objects.push_back(objectHardToStore(removeIce.before));
  for (const cSdpNegotiator& each : objects) {
    cSdpNegotiator object = marked(each);
    EXPECT_EQ(object.sdpRemoveIce(), 0);
    EXPECT_TRUE(sameBytes(object, marked(each)));
  }
  cSdpNegotiator unstored = marked(objectHardToStore(removeIce.before));
  EXPECT_EQ(tracesOf([&] { unstored.sdpRemoveIce(); }).back(), staysUnstored);
}

const TraceLine insertRequest{1, 1, "Request to insert  precondition attributes."};
const TraceLine inserted{2, 2, "Preconditions attributes have added to the SDP."};
const TraceLine tooLarge{
    4, 3,
    "Preconditions attributes cannot add to the buffer,since it exceeds the MAX_SDP_PROTOCOL_DATA_SIZE"};

Traces tracesOfInsertion(const std::string& text, int enable, int count) {
  return tracesOfEdit(
      [=](char* sdp) { return M::sdpInsertPrecondions(sdp, 20480, enable, count, conditions); }, text);
}

TEST(PreconditionRequest, AddsTheLinesAndKeepsTheSummary) {
  for (const std::string& before : {audioBody(), padded(audioBody())}) {
    cSdpNegotiator object = parsedObject(before);
    object.setBandwidth(64);
    const cSdpNegotiator expected = withText(object, before + preconditions);
    EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpInsertPrecondions(1, 2, conditions), 0); }),
              Traces{insertRequest} + tracesOfInsertion(before, 1, 2) + Traces{inserted});
    EXPECT_TRUE(sameBytes(object, expected));
  }
}

TEST(PreconditionRequest, NeedsRecords) {
  const cSdpNegotiator before = parsedObject(audioBody());
  cSdpNegotiator object = before;
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpInsertPrecondions(1, 2, nullptr), 1); }),
            (Traces{insertRequest, {4, 3, "The preconditions buffer is empty."}}));
  EXPECT_TRUE(sameBytes(object, before));
}

// Whatever the edit refuses is said to be for want of room.
TEST(PreconditionRequest, LeavesTheObjectWhenTheEditFails) {
  const sSdpPrecondions invalid[] = {{4, 0, 0, 0, 0}};
  const std::string longest = paddedTo(20480 - preconditions.size() - 2);
  struct Case {
    std::string text;
    int count;
    const sSdpPrecondions* records;
  };
  const Case cases[] = {
      {audioBody(), 1, invalid}, {sessionLines() + video, 2, conditions}, {longest, 2, conditions}};
  for (const Case& each : cases) {
    const cSdpNegotiator before = parsedObject(each.text);
    cSdpNegotiator object = before;
    const Traces traces =
        tracesOf([&] { EXPECT_EQ(object.sdpInsertPrecondions(1, each.count, each.records), 1); });
    EXPECT_EQ(traces.front(), insertRequest);
    EXPECT_EQ(traces.back(), tooLarge);
    EXPECT_TRUE(sameBytes(object, before));
  }
  cSdpNegotiator fits = parsedObject(paddedTo(20480 - preconditions.size() - 3));
  EXPECT_EQ(fits.sdpInsertPrecondions(1, 2, conditions), 0);
}

// Deliberate: whether there is a text is not asked.
TEST(PreconditionRequest, OfAnEmptyObjectIsRefusedByTheEditOnly) {
  cSdpNegotiator object = emptyObject();
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpInsertPrecondions(1, 2, conditions), 1); }),
            Traces{insertRequest} + tracesOfInsertion("", 1, 2) + Traces{tooLarge});
  EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpInsertPrecondions(0, 2, conditions), 0); }),
            Traces{insertRequest} + tracesOfInsertion("", 0, 2) + Traces{inserted});
  EXPECT_TRUE(sameBytes(object, emptyObject()));
}

TEST(PreconditionRequest, OfATextThatCannotBeReadFails) {
  for (const cSdpNegotiator& before : unreadableObjects()) {
    cSdpNegotiator object = before;
    EXPECT_EQ(tracesOf([&] { EXPECT_EQ(object.sdpInsertPrecondions(1, 2, conditions), 1); }),
              Traces{insertRequest});
    EXPECT_TRUE(sameBytes(object, before));
  }
}

TEST(PreconditionRequest, LeavesAnObjectThatCannotStoreTheTextAsItWas) {
  const cSdpNegotiator before = objectHardToStore(audioBody());
  cSdpNegotiator object = before;
  const Traces traces = tracesOf([&] { EXPECT_EQ(object.sdpInsertPrecondions(1, 2, conditions), 2); });
  EXPECT_EQ(traces.back(), staysUnstored);
  EXPECT_TRUE(sameBytes(object, before));
}

const RequestCase removeDualStack = {
    "RemoveCandidates",
    [](cSdpNegotiator& o) { return o.sdpRemoveDualStackIce(); },
    M::sdpRemoveDualStackIce,
    session + "m=audio 5004 RTP/AVP 0\r\na=candidate:1 1 UDP 2130706431 192.0.2.1 5004 typ host\r\n" +
        "a=candidate:2 1 UDP 2130706430 2001:db8::1 5004 typ host\r\na=ptime:20\r\n",
    session + "m=audio 5004 RTP/AVP 0\r\na=candidate:1 1 UDP 2130706431 192.0.2.1 5004 typ host\r\n" +
        "a=ptime:20\r\n",
    {{8, 4, "Request to remove Invalid Candidates."}},
};

TEST(CandidateRemoval, EditsTheTextAndParsesItAgain) { expectEditedAndParsed(removeDualStack); }

// Deliberate: no failure but the parse's is told.
TEST(CandidateRemoval, SucceedsWithoutATextThatCanBeRead) { expectFailsWithoutText(removeDualStack, 0); }

TEST(CandidateRemoval, OfABodyThatDoesNotParseLeavesTheObjectEmpty) {
  std::string text = removeDualStack.before;
  text.replace(text.find("5004 RTP"), 4, "80");  // a port that is refused
  cSdpNegotiator object = objectWithText(text);
  EXPECT_EQ(object.sdpRemoveDualStackIce(), 1);
  EXPECT_TRUE(sameBytes(object, emptyObject()));
}

TEST(CandidateRemoval, WithNothingToRemoveLeavesTheObject) {
  RequestCase nothing = removeDualStack;
  for (const std::string& text : {removeDualStack.after, session, std::string("no body\r\n"),
                                  session + "m=audio 5004 RTP/AVP 0\r\na=candidate:1 1 UDP\r\n"}) {
    nothing.before = text;
    expectFailedEdit(nothing, 0);
  }
}

}  // namespace
