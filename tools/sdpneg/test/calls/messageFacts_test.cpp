#include "calls/messageFacts.h"

#include <gtest/gtest.h>

namespace {

using tool::comparableUser;
using tool::factsOf;
using tool::MessageFacts;
using tool::SipView;
using tool::uriOf;
using tool::userOf;

TEST(MessageFacts, TellDialogAndTransaction) {
  const SipView view(
      "SIP/2.0 183 CallProgress\r\nv: SIP/2.0/TCP a;rport;branch=z9hG4bK1 , SIP/2.0/UDP b;branch=z9hG4bK2\r\n"
      "f: \"A <x>;tag=0\" <sip:a@b;tag=1>;TAG=2\r\nt: sip:c@d;x=y;tag=3\r\ni: one\r\n two \r\nCSeq: 0012 INVITE\r\n"
      "RSeq: 7\r\nRAck: 8 9 INVITE\r\n\r\n");
  const std::optional<MessageFacts> facts = factsOf(view);
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->callId, "one two");
  EXPECT_EQ(facts->method, "INVITE");
  EXPECT_EQ(facts->status, 183);
  EXPECT_EQ(facts->cseq, 12U);
  EXPECT_EQ(facts->fromTag, "2");
  EXPECT_EQ(facts->toTag, "3");
  EXPECT_EQ(facts->transaction.branch, "z9hG4bK1");
  EXPECT_EQ(facts->transaction.rseq, 7U);
  EXPECT_EQ(facts->transaction.ackRseq, 8U);
  EXPECT_EQ(facts->transaction.ackCseq, 9U);
}

TEST(MessageFacts, TakeTheBranchOfTheTopViaAlone) {
  const SipView view(
      "BYE sip:a SIP/2.0\r\nVia: SIP/2.0/UDP a, SIP/2.0/UDP b;branch=2\r\nCall-ID: x\r\nCSeq: 1 BYE\r\n\r\n");
  EXPECT_EQ(factsOf(view)->transaction.branch, "");
}

TEST(MessageFacts, NeedCallIdAndCSeq) {
  const auto hasFacts = [](const std::string& headers) {
    const std::string text = "INVITE sip:a SIP/2.0\r\n" + headers + "\r\n";
    return factsOf(SipView(text)).has_value();
  };
  EXPECT_TRUE(hasFacts("Call-ID: a\r\nCSeq: 1 INVITE\r\n"));
  EXPECT_FALSE(hasFacts("Call-ID: a\r\n"));
  EXPECT_FALSE(hasFacts("CSeq: 1 INVITE\r\n"));
  EXPECT_FALSE(hasFacts("Call-ID:\r\nCSeq: 1 INVITE\r\n"));
  EXPECT_FALSE(hasFacts("Call-ID: a\r\nCSeq: 1\r\n"));
  EXPECT_FALSE(hasFacts("Call-ID: a\r\nCSeq: INVITE\r\n"));
  EXPECT_FALSE(hasFacts("Call-ID: a\r\nCSeq: -1 INVITE\r\n"));
}

TEST(MessageFacts, CutNumbersAtTheirLargest) {
  const SipView view("INVITE sip:a SIP/2.0\r\nCall-ID: a\r\nCSeq: 99999999999999999999 INVITE\r\n\r\n");
  EXPECT_EQ(factsOf(view)->cseq, 18446744073709551615U);
}

TEST(MessageFacts, FindUris) {
  const struct {
    std::string_view value;
    std::string_view uri;
  } cases[] = {
      {"<sip:a@b>;tag=1", "sip:a@b"},
      {"sip:a@b;tag=1", "sip:a@b"},
      {"\"x \\\" <sip:no> \" <sip:a@b;user=phone>", "sip:a@b"},
      {"Name < sip:a@b?x=y>", "sip:a@b"},
      {"<sip:a;p=1@b;q=2>", "sip:a;p=1@b"},
      {"<tel:+1;phone-context=x>", "tel:+1"},
      {"<sip:a@b", "sip:a@b"},
      {"\"open <sip:a@b>", "sip:a@b"},
      {"", ""},
      {"<>", ""},
  };
  for (const auto& one : cases) EXPECT_EQ(uriOf(one.value), one.uri) << one.value;
}

TEST(MessageFacts, FindUsers) {
  EXPECT_EQ(userOf("sip:alice:secret@example.org"), "alice");
  EXPECT_EQ(userOf("sips:+1;npdi@example.org:5061"), "+1");
  EXPECT_EQ(userOf("tel:+1-2"), "+1-2");
  EXPECT_EQ(userOf("sip:example.org"), "");
  EXPECT_EQ(userOf("alice@example.org"), "");
  EXPECT_EQ(userOf(""), "");
}

TEST(MessageFacts, CompareNumbers) {
  const struct {
    std::string_view user;
    std::string_view comparable;
  } cases[] = {
      {"+49-(30) 1", "+49-(30) 1"},
      {"+49-(30)1", "49301"},
      {"004930.1", "49301"},
      {"49301", "49301"},
      {"0301", "0301"},
      {"+", "+"},
      {"alice", "alice"},
      {"a-b", "a-b"},
      {"1+2", "1+2"},
      {"", ""},
  };
  for (const auto& one : cases) EXPECT_EQ(comparableUser(one.user), one.comparable) << one.user;
}

}  // namespace
