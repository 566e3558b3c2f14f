#include "documentTestSupport.h"

// The edits of one section: the least bytes change, and what is refused changes nothing.

namespace {

using documentTest::documentBehindHead;
using documentTest::documentOf;
using documentTest::expectRefusal;
using documentTest::kHead;
using documentTest::withEnds;
using sdp::Direction;
using sdp::Document;
using sdp::Reason;

struct Edit {
  const char* what;
  const char* before;  ///< behind the head, as what follows
  const char* after;
  std::function<sdp::Refusal(Document&)> edit;
};

void expectEdits(std::initializer_list<Edit> edits) {
  for (const Edit& edit : edits) {
    for (const std::string_view end : {"\n", "\r\n"}) {
      SCOPED_TRACE(std::string(edit.what) + (end.size() == 1 ? ", LF" : ", CR LF"));
      Document document = documentOf(withEnds(std::string(kHead).append(edit.before), end));
      EXPECT_FALSE(edit.edit(document));
      EXPECT_EQ(document.text(), withEnds(std::string(kHead).append(edit.after), end));
    }
  }
}

TEST(SetPort, ChangesThePortAlone) {
  expectEdits({
      {"a port", "m=audio 9 RTP/AVP 0|a=x|", "m=audio 5004 RTP/AVP 0|a=x|",
       [](Document& d) { return d.setPort(1, 5004); }},
      {"the count stays", "m=audio\t 9/2  RTP/AVP\t0 |", "m=audio\t 65535/2  RTP/AVP\t0 |",
       [](Document& d) { return d.setPort(1, 65535); }},
      {"zero", "m=audio 9 RTP/AVP 0|m=video 00010 RTP/AVP 31|", "m=audio 9 RTP/AVP 0|m=video 0 RTP/AVP 31|",
       [](Document& d) { return d.setPort(2, 0); }},
      {"a media name that looks like a port", "m=9 9 9 9|", "m=9 8 9 9|",
       [](Document& d) { return d.setPort(1, 8); }},
  });
}

TEST(SetTransport, ChangesTheTransportAlone) {
  expectEdits({
      {"another", "m=audio 9  RTP/AVP\t0 |", "m=audio 9  UDP/TLS/RTP/SAVPF\t0 |",
       [](Document& d) { return d.setTransport(1, "UDP/TLS/RTP/SAVPF"); }},
      {"the same", "m=audio 9 RTP/AVP 0|", "m=audio 9 RTP/AVP 0|",
       [](Document& d) { return d.setTransport(1, "RTP/AVP"); }},
  });
}

TEST(SetFormats, ChangesTheFormatsAlone) {
  expectEdits({
      {"others", "m=audio 9 RTP/AVP  0\t8 9 |a=rtpmap:0 PCMU/8000|",
       "m=audio 9 RTP/AVP  96 0|a=rtpmap:0 PCMU/8000|", [](Document& d) { return d.setFormats(1, "96 0"); }},
      {"blanks are brought to one", "m=audio 9 RTP/AVP 0|", "m=audio 9 RTP/AVP 8 9 10|",
       [](Document& d) { return d.setFormats(1, " 8\t9  10 "); }},
      {"many single characters", "m=audio 9 RTP/AVP 0|", "m=audio 9 RTP/AVP 1 2 3 4 5 6 7 8 9|",
       [](Document& d) { return d.setFormats(1, "1 2 3 4 5 6 7 8 9"); }},
  });
}

TEST(Edits, LeaveWhatIsSoAlready) {
  expectEdits({
      {"a port with leading zeros", "m=audio 05004 RTP/AVP 0|", "m=audio 05004 RTP/AVP 0|",
       [](Document& d) { return d.setPort(1, 5004); }},
      {"a port with leading zeros and a count", "m=audio  009/2 RTP/AVP 0 |", "m=audio  009/2 RTP/AVP 0 |",
       [](Document& d) { return d.setPort(1, 9); }},
      {"zeros", "m=audio 000 RTP/AVP 0|", "m=audio 000 RTP/AVP 0|",
       [](Document& d) { return d.setPort(1, 0); }},
      {"a transport between blanks", "m=audio 9 \tRTP/AVP\t 0|", "m=audio 9 \tRTP/AVP\t 0|",
       [](Document& d) { return d.setTransport(1, "RTP/AVP"); }},
      {"formats with blanks between and behind them", "m=audio 9 RTP/AVP  0\t8  9 |",
       "m=audio 9 RTP/AVP  0\t8  9 |", [](Document& d) { return d.setFormats(1, "  0 8\t9"); }},
      {"a c-line with further blanks", "m=audio 9 RTP/AVP 0|c= IN  IP4\t192.0.2.7 |",
       "m=audio 9 RTP/AVP 0|c= IN  IP4\t192.0.2.7 |",
       [](Document& d) { return d.setConnection(1, "192.0.2.7"); }},
      {"the session's c-line", "c=IN  IP6 ::1|m=audio 9 RTP/AVP 0|", "c=IN  IP6 ::1|m=audio 9 RTP/AVP 0|",
       [](Document& d) { return d.setConnection(0, "::1"); }},
  });
}

TEST(Edits, ChangeWhatIsOtherwise) {
  expectEdits({
      {"a format more", "m=audio 9 RTP/AVP 0  8|", "m=audio 9 RTP/AVP 0 8 9|",
       [](Document& d) { return d.setFormats(1, "0 8 9"); }},
      {"a format less", "m=audio 9 RTP/AVP 0  8  9|", "m=audio 9 RTP/AVP 0 8|",
       [](Document& d) { return d.setFormats(1, "0 8"); }},
      {"the formats in another order", "m=audio 9 RTP/AVP 0  8|", "m=audio 9 RTP/AVP 8 0|",
       [](Document& d) { return d.setFormats(1, "8 0"); }},
      {"a format in another spelling", "m=audio 9 RTP/AVP 08|", "m=audio 9 RTP/AVP 8|",
       [](Document& d) { return d.setFormats(1, "8"); }},
      {"an address in another spelling", "m=audio 9 RTP/AVP 0|c=IN IP6 2001:DB8::1|",
       "m=audio 9 RTP/AVP 0|c=IN IP6 2001:db8::1|",
       [](Document& d) { return d.setConnection(1, "2001:db8::1"); }},
      {"another network", "m=audio 9 RTP/AVP 0|c=ATM IP4 192.0.2.7|",
       "m=audio 9 RTP/AVP 0|c=IN IP4 192.0.2.7|",
       [](Document& d) { return d.setConnection(1, "192.0.2.7"); }},
      {"another type", "m=audio 9 RTP/AVP 0|c=IN IP6 192.0.2.7|", "m=audio 9 RTP/AVP 0|c=IN IP4 192.0.2.7|",
       [](Document& d) { return d.setConnection(1, "192.0.2.7"); }},
      {"a time to live", "m=audio 9 RTP/AVP 0|c=IN IP4 224.2.1.1/127|",
       "m=audio 9 RTP/AVP 0|c=IN IP4 224.2.1.1|",
       [](Document& d) { return d.setConnection(1, "224.2.1.1"); }},
      {"a field too many", "m=audio 9 RTP/AVP 0|c=IN IP4 192.0.2.7 x|",
       "m=audio 9 RTP/AVP 0|c=IN IP4 192.0.2.7|",
       [](Document& d) { return d.setConnection(1, "192.0.2.7"); }},
      {"a field too few", "m=audio 9 RTP/AVP 0|c=IN IP4|", "m=audio 9 RTP/AVP 0|c=IN IP4 192.0.2.7|",
       [](Document& d) { return d.setConnection(1, "192.0.2.7"); }},
      {"the session's says the same as what a section gets", "c=IN IP4 192.0.2.7|m=audio 9 RTP/AVP 0|",
       "c=IN IP4 192.0.2.7|m=audio 9 RTP/AVP 0|c=IN IP4 192.0.2.7|",
       [](Document& d) { return d.setConnection(1, "192.0.2.7"); }},
  });
}

TEST(SetConnection, ReplacesTheFirstOrAddsOne) {
  expectEdits({
      {"the first of two", "m=audio 9 RTP/AVP 0|c=IN IP4 1.1.1.1|c=IN IP4 2.2.2.2|",
       "m=audio 9 RTP/AVP 0|c=IN IP6 2001:db8::1|c=IN IP4 2.2.2.2|",
       [](Document& d) { return d.setConnection(1, "2001:db8::1"); }},
      {"none: behind the m-line and its i-lines", "m=audio 9 RTP/AVP 0|i=a|i=b|b=AS:1|i=c|",
       "m=audio 9 RTP/AVP 0|i=a|i=b|c=IN IP4 192.0.2.7|b=AS:1|i=c|",
       [](Document& d) { return d.setConnection(1, "192.0.2.7"); }},
      {"of the session", "c=IN IP4 1.1.1.1|m=audio 9 RTP/AVP 0|", "c=IN IP4 192.0.2.7|m=audio 9 RTP/AVP 0|",
       [](Document& d) { return d.setConnection(0, "192.0.2.7"); }},
      {"the session's stays when a section gets one", "c=IN IP4 1.1.1.1|m=audio 9 RTP/AVP 0|",
       "c=IN IP4 1.1.1.1|m=audio 9 RTP/AVP 0|c=IN IP4 192.0.2.7|",
       [](Document& d) { return d.setConnection(1, "192.0.2.7"); }},
  });
  Document document = documentOf("v=0\no=x\ns=-\ni=x\nu=x\ne=x\np=x\nb=AS:1\nt=0 0\nm=audio 9 RTP/AVP 0\n");
  EXPECT_FALSE(document.setConnection(0, "::1"));
  EXPECT_EQ(document.text(),
            "v=0\no=x\ns=-\ni=x\nu=x\ne=x\np=x\nc=IN IP6 ::1\nb=AS:1\nt=0 0\nm=audio 9 RTP/AVP 0\n");
}

TEST(SetDirection, ReplacesTheFirstAndRemovesTheOthers) {
  expectEdits({
      {"two", "m=audio 9 RTP/AVP 0|a=sendonly|a=x|a=recvonly|", "m=audio 9 RTP/AVP 0|a=inactive|a=x|",
       [](Document& d) { return d.setDirection(1, Direction::inactive); }},
      {"none, and it is so already", "m=audio 9 RTP/AVP 0|", "m=audio 9 RTP/AVP 0|",
       [](Document& d) { return d.setDirection(1, Direction::sendrecv); }},
      {"none", "m=audio 9 RTP/AVP 0|a=x||m=video 9 RTP/AVP 31|",
       "m=audio 9 RTP/AVP 0|a=x|a=recvonly||m=video 9 RTP/AVP 31|",
       [](Document& d) { return d.setDirection(1, Direction::recvonly); }},
  });
}

TEST(SetAttribute, ReplacesTheFirstOrAddsOne) {
  expectEdits({
      {"the first of two", "m=audio 9 RTP/AVP 0|a=ptime:20|a=x|a=ptime:30|",
       "m=audio 9 RTP/AVP 0|a=ptime:40|a=x|a=ptime:30|",
       [](Document& d) { return d.setAttribute(1, "ptime", "40"); }},
      {"without a value", "m=audio 9 RTP/AVP 0|a=ptime:20|", "m=audio 9 RTP/AVP 0|a=ptime|",
       [](Document& d) { return d.setAttribute(1, "ptime"); }},
      {"an empty value", "m=audio 9 RTP/AVP 0|a=ptime|", "m=audio 9 RTP/AVP 0|a=ptime:|",
       [](Document& d) { return d.setAttribute(1, "ptime", ""); }},
      {"none", "m=audio 9 RTP/AVP 0|m=audio 9 RTP/AVP 0|a=ptime:1|",
       "m=audio 9 RTP/AVP 0|a=ptime:20|m=audio 9 RTP/AVP 0|a=ptime:1|",
       [](Document& d) { return d.setAttribute(1, "ptime", "20"); }},
      {"of the session", "a=tool:x|m=audio 9 RTP/AVP 0|a=tool:y|", "a=tool:z|m=audio 9 RTP/AVP 0|a=tool:y|",
       [](Document& d) { return d.setAttribute(0, "tool", "z"); }},
      {"none of the session", "|m=audio 9 RTP/AVP 0|a=tool:y|", "a=tool:z||m=audio 9 RTP/AVP 0|a=tool:y|",
       [](Document& d) { return d.setAttribute(0, "tool", "z"); }},
      {"a value with blanks and colons", "m=audio 9 RTP/AVP 0|", "m=audio 9 RTP/AVP 0|a=ssrc: 1 cname:x\t|",
       [](Document& d) { return d.setAttribute(1, "ssrc", " 1 cname:x\t"); }},
  });
}

TEST(AddAttribute, PutsItBehindTheLastLineThatIsNotEmpty) {
  expectEdits({
      {"at the end", "m=audio 9 RTP/AVP 0|a=x|", "m=audio 9 RTP/AVP 0|a=x|a=x:1|",
       [](Document& d) { return d.addAttribute(1, "x", "1"); }},
      {"in front of empty lines", "m=audio 9 RTP/AVP 0|||", "m=audio 9 RTP/AVP 0|a=x|||",
       [](Document& d) { return d.addAttribute(1, "x"); }},
      {"a line of blanks is not empty", "m=audio 9 RTP/AVP 0| |", "m=audio 9 RTP/AVP 0| |a=x|",
       [](Document& d) { return d.addAttribute(1, "x"); }},
  });
}

TEST(RemoveAttributes, TakesAllOfAName) {
  expectEdits({
      {"several", "a=x|m=audio 9 RTP/AVP 0|a=x|a=xx|a=x:1|a=X|", "a=x|m=audio 9 RTP/AVP 0|a=xx|a=X|",
       [](Document& d) { return d.removeAttributes(1, "x"); }},
      {"of the session", "a=x|m=audio 9 RTP/AVP 0|a=x|", "m=audio 9 RTP/AVP 0|a=x|",
       [](Document& d) { return d.removeAttributes(0, "x"); }},
      {"none", "m=audio 9 RTP/AVP 0|a=x|", "m=audio 9 RTP/AVP 0|a=x|",
       [](Document& d) { return d.removeAttributes(1, "y"); }},
  });
}

TEST(AddedLines, TakeTheEndOfTheLineInFront) {
  struct Case {
    std::string_view before;
    std::string_view after;
  };
  const Case cases[] = {
      {"v=0\r\nm=audio 9 RTP/AVP 0\n", "v=0\r\nm=audio 9 RTP/AVP 0\na=x\n"},
      {"v=0\nm=audio 9 RTP/AVP 0\r\n", "v=0\nm=audio 9 RTP/AVP 0\r\na=x\r\n"},
      {"v=0\nm=audio 9 RTP/AVP 0", "v=0\nm=audio 9 RTP/AVP 0\r\na=x\r\n"},
      {"v=0\nm=audio 9 RTP/AVP 0\r", "v=0\nm=audio 9 RTP/AVP 0\r\na=x\r\n"},
      {"m=audio 9 RTP/AVP 0\n\r\n\r\n", "m=audio 9 RTP/AVP 0\na=x\n\r\n\r\n"},
      {"m=audio 9 RTP/AVP 0\r\n\r", "m=audio 9 RTP/AVP 0\r\na=x\r\n\r"},
  };
  for (const Case& c : cases) {
    Document document = documentOf(c.before);
    EXPECT_FALSE(document.addAttribute(1, "x"));
    EXPECT_EQ(document.text(), c.after);
  }
}

TEST(ReplacedLines, KeepTheirOwnEnd) {
  for (const std::string_view end : {"", "\r", "\n", "\r\n"}) {
    Document document = documentOf("m=audio 9 RTP/AVP 0" + std::string(end));
    EXPECT_FALSE(document.setPort(1, 10));
    EXPECT_EQ(document.text(), "m=audio 10 RTP/AVP 0" + std::string(end));
  }
}

TEST(SectionEdits, FollowOneAnother) {
  Document document = documentBehindHead("m=audio 9/2 RTP/AVP 0|m=video 9 RTP/AVP 31|");
  EXPECT_FALSE(document.addAttribute(1, "x", "1"));
  EXPECT_FALSE(document.setPort(1, 5004));
  EXPECT_FALSE(document.setAttribute(1, "x", "2"));
  EXPECT_FALSE(document.setTransport(2, "RTP/AVPF"));
  EXPECT_FALSE(document.addAttribute(1, "y"));
  EXPECT_FALSE(document.setFormats(1, "8"));
  EXPECT_FALSE(document.removeAttributes(1, "x"));
  EXPECT_FALSE(document.setConnection(1, "192.0.2.7"));
  EXPECT_EQ(
      document.text(),
      withEnds(std::string(kHead) + "m=audio 5004/2 RTP/AVP 8|c=IN IP4 192.0.2.7|a=y|m=video 9 RTP/AVPF 31|",
               "\n"));
  EXPECT_EQ(document.section(1).port(), 5004);
  EXPECT_EQ(document.section(1).connection()->address, "192.0.2.7");
  EXPECT_TRUE(document.section(1).has("y"));
  EXPECT_FALSE(document.section(1).has("x"));
}

TEST(SectionEdits, MayTakeTextsOfTheDocumentItself) {
  Document document = documentBehindHead("m=audio 9 RTP/AVP 0 8|a=mid:abc|m=video 9 RTP/SAVPF 31|");
  EXPECT_FALSE(document.setTransport(1, document.section(2).transport()));
  EXPECT_FALSE(document.addAttribute(2, "x", document.section(1).mid()));
  EXPECT_FALSE(document.setFormats(2, document.section(1).attribute("mid")->name));
  EXPECT_EQ(
      document.text(),
      withEnds(std::string(kHead) + "m=audio 9 RTP/SAVPF 0 8|a=mid:abc|m=video 9 RTP/SAVPF mid|a=x:abc|",
               "\n"));
}

struct Refused {
  const char* what;
  Reason reason;
  std::uint32_t section;
  std::size_t line;
  const char* explanation;
  std::function<sdp::Refusal(Document&)> edit;
};

TEST(SectionEdits, ThatAreRefusedChangeNothing) {
  const std::string text = withEnds(std::string(kHead) + "m=audio 9 RTP/AVP 0|a=x|m=video|a=y|", "\n");
  const Refused cases[] = {
      {"section 0", Reason::noSuchSection, 0, 0, "no such section",
       [](Document& d) { return d.setPort(0, 1); }},
      {"section 3", Reason::noSuchSection, 0, 0, "no such section",
       [](Document& d) { return d.setPort(3, 1); }},
      {"the last number", Reason::noSuchSection, 0, 0, "no such section",
       [](Document& d) { return d.removeAttributes(4294967295U, "x"); }},
      {"the session has no transport", Reason::noSuchSection, 0, 0, "no such section",
       [](Document& d) { return d.setTransport(0, "RTP/AVP"); }},
      {"the session has no formats", Reason::noSuchSection, 0, 0, "no such section",
       [](Document& d) { return d.setFormats(0, "0"); }},
      {"the session's direction", Reason::noSuchSection, 0, 0, "no such section",
       [](Document& d) { return d.setDirection(0, Direction::sendonly); }},
      {"unreadable", Reason::unreadableSection, 2, 7, "section 2 (video): unreadable m-line",
       [](Document& d) { return d.addAttribute(2, "x"); }},
      {"unreadable", Reason::unreadableSection, 2, 7, "section 2 (video): unreadable m-line",
       [](Document& d) { return d.setConnection(2, "192.0.2.1"); }},
      {"unreadable", Reason::unreadableSection, 2, 7, "section 2 (video): unreadable m-line",
       [](Document& d) { return d.removeAttributes(2, "y"); }},
      {"no transport", Reason::wrongText, 1, 5, "section 1 (audio): a text that does not fit its line",
       [](Document& d) { return d.setTransport(1, ""); }},
      {"two transports", Reason::wrongText, 1, 5, "section 1 (audio): a text that does not fit its line",
       [](Document& d) { return d.setTransport(1, "RTP/AVP 0"); }},
      {"a transport and a line", Reason::wrongText, 1, 5,
       "section 1 (audio): a text that does not fit its line",
       [](Document& d) { return d.setTransport(1, "RTP/AVP\na=z"); }},
      {"no format", Reason::wrongText, 1, 5, "section 1 (audio): a text that does not fit its line",
       [](Document& d) { return d.setFormats(1, " \t"); }},
      {"a format and a line", Reason::wrongText, 1, 5, "section 1 (audio): a text that does not fit its line",
       [](Document& d) { return d.setFormats(1, "0\ra=z"); }},
      {"a NUL", Reason::wrongText, 1, 5, "section 1 (audio): a text that does not fit its line",
       [](Document& d) { return d.setFormats(1, std::string_view("0\0 8", 4)); }},
      {"a name for an address", Reason::wrongAddress, 1, 5, "section 1 (audio): not an IPv4 or IPv6 address",
       [](Document& d) { return d.setConnection(1, "host.example"); }},
      {"an address with a ttl", Reason::wrongAddress, 0, 0, "not an IPv4 or IPv6 address",
       [](Document& d) { return d.setConnection(0, "192.0.2.1/127"); }},
      {"no name", Reason::wrongText, 1, 5, "section 1 (audio): a text that does not fit its line",
       [](Document& d) { return d.addAttribute(1, ""); }},
      {"a colon in a name", Reason::wrongText, 1, 5, "section 1 (audio): a text that does not fit its line",
       [](Document& d) { return d.setAttribute(1, "x:y"); }},
      {"a blank in a name", Reason::wrongText, 1, 5, "section 1 (audio): a text that does not fit its line",
       [](Document& d) { return d.addAttribute(1, "x y"); }},
      {"a line in a value", Reason::wrongText, 0, 0, "a text that does not fit its line",
       [](Document& d) { return d.addAttribute(0, "z", "1\nm=audio 1 RTP/AVP 0"); }},
      {"a CR in the value of one that is there", Reason::wrongText, 1, 5,
       "section 1 (audio): a text that does not fit its line",
       [](Document& d) { return d.setAttribute(1, "x", "\r"); }},
  };
  for (const Refused& c : cases) {
    SCOPED_TRACE(c.what);
    Document document = documentOf(text);
    expectRefusal(c.edit(document), c.reason, c.section, c.line);
    EXPECT_EQ(document.text(), text);
    EXPECT_EQ(document.explanation(), c.explanation);
    EXPECT_FALSE(document.setPort(1, 9));
    EXPECT_EQ(document.explanation(), "") << "of what was refused before";
  }
}

TEST(SectionEdits, FindNoPlaceInASessionWithoutLines) {
  Document document = documentOf("m=audio 9 RTP/AVP 0\n");
  EXPECT_TRUE(document.setConnection(0, "192.0.2.1"));
  EXPECT_EQ(document.text(), "m=audio 9 RTP/AVP 0\n");
}

TEST(SectionEdits, OfTheSessionHoldForItsSections) {
  Document document = documentBehindHead("m=audio 9 RTP/AVP 0|");
  EXPECT_FALSE(document.session().direction());
  EXPECT_FALSE(document.section(1).connection());
  EXPECT_FALSE(document.addAttribute(0, "inactive"));
  EXPECT_EQ(document.session().direction(), Direction::inactive);
  EXPECT_EQ(document.section(1).direction(), Direction::inactive);
  EXPECT_FALSE(document.setAttribute(0, "fingerprint", "sha-1 AA"));
  EXPECT_EQ(textOf(document.section(1).security()), "osrtp");
  EXPECT_FALSE(document.addAttribute(0, "ice-ufrag", "x"));
  EXPECT_TRUE(document.section(1).hasIce());
  EXPECT_FALSE(document.setConnection(0, "192.0.2.7"));
  ASSERT_TRUE(document.section(1).connection());
  EXPECT_EQ(document.section(1).connection()->address, "192.0.2.7");
}

TEST(SectionEdits, OfASectionSeeThoseOfTheSessionThoughNobodyAsked) {
  Document document = documentBehindHead("m=audio 9 RTP/AVP 0|m=video 9 RTP/AVP 31|");
  ASSERT_FALSE(document.addAttribute(0, "inactive"));
  ASSERT_FALSE(document.setDirection(1, Direction::sendrecv));
  ASSERT_FALSE(document.setDirection(2, Direction::inactive));
  EXPECT_EQ(
      document.text(),
      withEnds(std::string(kHead) + "a=inactive|m=audio 9 RTP/AVP 0|a=sendrecv|m=video 9 RTP/AVP 31|", "\n"));
}

TEST(SectionEdits, MayTakeTextsOfEditsBefore) {
  // So many that what edits have made is brought together in between.
  Document document = documentBehindHead("m=audio 9 RTP/AVP 0|a=x:0|a=y|");
  const std::string filling(3000, 'z');
  for (int n = 0; n < 60; ++n) {
    const std::string value = std::to_string(n) + filling;
    ASSERT_FALSE(document.setAttribute(1, "x", value));
    ASSERT_FALSE(document.setAttribute(1, "y", document.section(1).attribute("x")->value));
    ASSERT_EQ(document.section(1).attribute("y")->value, value);
    ASSERT_FALSE(document.setAttribute(1, "x", document.text().substr(0, 3)));
    ASSERT_EQ(document.section(1).attribute("x")->value, "v=0");
  }
}

TEST(SectionEdits, InGreatNumberLeaveTextAndLineNumbersAsTheyWere) {
  const std::string text = "v=0\r\na=gone\r\nm=audio 9 RTP/AVP 0\r\na=x\r\nodd\r\n";
  Document document;
  ASSERT_FALSE(document.read(text));
  ASSERT_FALSE(document.removeAttributes(0, "gone"));
  // Far more than what makes the document put its lines together anew.
  for (int i = 0; i < 5000; ++i) {
    ASSERT_FALSE(document.addAttribute(1, "label", "a label of some length"));
    ASSERT_FALSE(document.removeAttributes(1, "label"));
  }
  EXPECT_EQ(document.text(), "v=0\r\nm=audio 9 RTP/AVP 0\r\na=x\r\nodd\r\n");
  EXPECT_EQ(document.section(1).lineNumber(), 3U);
  EXPECT_EQ(canonicalise(document), (sdp::Refusal{Reason::noLine, 1, 5}));
}

TEST(SectionEdits, InGreatNumberLeaveGroupsKnown) {
  Document document =
      documentBehindHead("a=x|a=group:BUNDLE 0 1|m=audio 9 RTP/AVP 0|a=mid:0|m=audio 9 RTP/AVP 0|a=mid:1|");
  const std::string value(70000, 'y');
  for (int n = 0; n < 5; ++n) {
    // The text is put together anew behind one of these, and the one before is written over.
    ASSERT_EQ(document.section(2).bundle(), 0U);
    ASSERT_FALSE(document.setAttribute(0, "x", value.substr(static_cast<std::size_t>(n))));
    ASSERT_NE(document.text(), "");
    // Its second section would have another transport than its first.
    expectRefusal(setProfile(document, "RTP/AVPF", "1"), Reason::differentTransports, 2, 9);
  }
}

TEST(SectionEdits, AddLinesToManySectionsWithoutMovingEachLineForEachOfThem) {
  constexpr std::uint32_t kSections = 20000;
  std::string before = "v=0\r\n";
  std::string after = before;
  for (std::uint32_t n = 0; n < kSections; ++n) {
    before += "m=audio 9 RTP/AVP 0\r\n";
    after += "m=audio 9 RTP/AVP 0\r\na=one\r\na=two:2\r\n";
  }
  Document document;
  ASSERT_FALSE(document.read(before));
  // A document that moved its index each time would take minutes.
  for (std::uint32_t n = kSections; n > 0; --n) {
    ASSERT_FALSE(document.addAttribute(n, "one"));
    ASSERT_FALSE(document.addAttribute(n, "two", "2"));
  }
  EXPECT_EQ(document.text(), after);
}

TEST(SectionEdits, TakeNoAttributeWithoutANameThoughTheDocumentHasOne) {
  Document document = documentBehindHead("m=audio 9 RTP/AVP 0|a=:v|");
  const std::string before(document.text());
  expectRefusal(document.setAttribute(1, "", "w"), Reason::wrongText, 1, 5);
  EXPECT_EQ(document.text(), before);
}

}  // namespace
