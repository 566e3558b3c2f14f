#include "captures/textExport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "captures/packets.h"

namespace {

using packets::Collected;
using packets::invite;
using packets::response;
using Texts = std::vector<std::string>;

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}
std::string withLf(const std::string& text) { return replaced(text, "\r\n", "\n"); }
/// The same in front of each line.
std::string prefixed(const std::string& text, const std::string& prefix) {
  return prefix + replaced(text.substr(0, text.size() - 1), "\n", "\n" + prefix) + "\n";
}

/// Reads a text in pieces of all small sizes and at once, which makes no difference.
void expectTexts(const std::string& text, const Texts& expected) {
  for (std::size_t size = 1; size <= text.size(); size = size < 40 ? size + 1 : size * 2) {
    Collected collected;
    tool::TextExport reader(collected.output);
    for (std::size_t at = 0; at < text.size(); at += size)
      reader.take(std::string_view(text).substr(at, size));
    reader.flush();
    ASSERT_EQ(collected.texts(), expected) << size << "\n" << text;
  }
}

packets::Read readOne(const std::string& text) {
  Collected collected;
  tool::TextExport reader(collected.output);
  reader.take(text);
  reader.flush();
  EXPECT_EQ(collected.messages.size(), 1U);
  return collected.messages.empty() ? packets::Read{} : collected.messages[0];
}

const std::string kNoLength = replaced(invite(), "Content-Length: 87\r\n", "");

TEST(TextExport, ReadsMessagesOneAfterAnother) {
  const Texts crLf{invite("one"), response("two"), invite("three")};
  const Texts lf{withLf(invite("one")), withLf(response("two")), withLf(invite("three"))};
  for (const Texts& texts : {crLf, lf}) {
    for (const std::string between : {"", "\n", "\n\n\n", "\n-- 12 --\n", "some words\nof a log\n"}) {
      expectTexts(texts[0] + between + texts[1] + between + texts[2] + between, texts);
    }
  }
}

TEST(TextExport, CountsTheLengthWithAndWithoutLostLineEnds) {
  // The length fits the lines with LF as well as those with CR LF of a shorter body: SDP goes on.
  const std::string body = "v=0\na=1\nb=2\n";
  const std::string head = "SIP/2.0 200 OK\nContent-Type: application/sdp\nContent-Length: ";
  expectTexts(head + "12\n\n" + body + "INFO done\n", {head + "12\n\n" + body});
  expectTexts(head + "15\n\n" + body + "c=3\n", {head + "15\n\n" + body + "c=3\n"});
  expectTexts(head + "15\n\n" + body + "INFO done\n", {head + "15\n\n" + body});
  // A last line without an end gained one.
  expectTexts(head + "11\n\n" + body + "INFO done\n", {head + "11\n\n" + body});
  // The lines lost their CR, and the last one gained an end.
  expectTexts(head + "7\n\na\nb\nc\nINFO done\n", {head + "7\n\na\nb\nc\n"});
}

TEST(TextExport, CountsNoLineEndTwiceThatALogHas) {
  // The last line has no end of its own, so that the length is 6.
  const std::string message = "MESSAGE sip:b SIP/2.0\r\nContent-Length: 6\r\n\r\naaa\r\nb\r\n";
  expectTexts(prefixed(message, "p> ") + "p> c\r\n", {message});
}

TEST(TextExport, EndsABodyInsideALine) {
  const std::string message = "MESSAGE sip:b SIP/2.0\r\nContent-Length: 5\r\n\r\nhello";
  expectTexts(message + response("two") + message, {message, response("two"), message});
}

TEST(TextExport, EndsBodiesWithoutLength) {
  const std::string text = kNoLength;
  ASSERT_EQ(text.find("Length"), std::string::npos);
  expectTexts(text + response("two"), {text, response("two")});
  expectTexts(text + "\r\nother lines\r\n", {text});
  expectTexts(text, {text});
  const std::string words = "MESSAGE sip:b SIP/2.0\nContent-Type: text/plain\n\none\n\ntwo\n";
  expectTexts(words + "\n\n" + withLf(response()), {words, withLf(response())});
  expectTexts(words + "2024/01/02 10:11:12 192.0.2.1:5060 -> 192.0.2.2:5060\n" + withLf(response()),
              {words, withLf(response())});
  expectTexts("BYE sip:b SIP/2.0\nCall-ID: a\n\nnot of it\n", {"BYE sip:b SIP/2.0\nCall-ID: a\n\n"});
}

TEST(TextExport, TakesPrefixesAway) {
  const std::string one = withLf(invite("one"));
  const std::string two = withLf(response("two"));
  for (const std::string prefix : {"SIP> ", "2024-01-02 10:11:12.123 SIP> ", "  ", "[42] "}) {
    expectTexts(prefixed(one, prefix) + "other\n" + prefixed(two, prefix), {one, two});
    expectTexts(prefixed(invite("one"), prefix) + prefixed(response("two"), prefix),
                {invite("one"), response("two")});
  }
  // Times go on, and blanks are missing at line ends.
  std::string text;
  int time = 8;
  for (std::size_t at = 0; at < one.size();) {
    const std::size_t lf = one.find('\n', at);
    text += "[" + std::to_string(time++) + "]" + (lf == at ? "" : " ") + one.substr(at, lf + 1 - at);
    at = lf + 1;
  }
  expectTexts(text, {one});
}

TEST(TextExport, TakesAPrefixAwayThatStandsInFrontOfTheFirstLineAlone) {
  const std::string one = withLf(invite("one"));
  const std::string two = withLf(response("two"));
  const std::string log = "2024-01-02 10:11:12.123 received: ";
  expectTexts(log + one + log + two + "2024-01-02 10:11:13 something else\n", {one, two});
  expectTexts("\xEF\xBB\xBF" + one, {one});
}

TEST(TextExport, EndsAMessageWhereItsPrefixEnds) {
  const std::string prefix = "SIP> ";
  const std::string front = withLf(invite()).substr(0, withLf(invite()).find("Content-Length"));
  const packets::Read read = readOne(prefixed(front, prefix) + "ERR> broken\n");
  EXPECT_EQ(read.text, front);
  EXPECT_TRUE(read.isCut);
}

TEST(TextExport, DoesNotTakeALineOfAMessageForTheNextOne) {
  const std::string header = "INVITE sip:b SIP/2.0\nSubject: SIP/2.0 200 OK\nCall-ID: a\n\n";
  expectTexts(header, {header});
  const std::string fragment = "SIP/2.0 200 OK\r\n";
  const std::string notify =
      "NOTIFY sip:b SIP/2.0\r\nContent-Type: message/sipfrag\r\nContent-Length: 16\r\n\r\n";
  expectTexts(notify + fragment + response(), {notify + fragment, response()});
  const std::string cut = "MESSAGE sip:b SIP/2.0\r\nContent-Length: 50\r\n\r\nhello\r\n";
  expectTexts(notify + fragment + cut + response(), {notify + fragment, cut, response()});
}

TEST(TextExport, EndsABodyThatIsCutAtTheNextMessage) {
  const std::string front = invite().substr(0, invite().find("t=0"));
  Collected collected;
  tool::TextExport reader(collected.output);
  reader.take(front + response());
  reader.flush();
  EXPECT_EQ(collected.texts(), (Texts{front, response()}));
  EXPECT_TRUE(collected.messages[0].isCut);
  EXPECT_FALSE(collected.messages[1].isCut);
}

TEST(TextExport, TakesWordsAboutAMessageForNone) {
  expectTexts("sending INVITE sip:b SIP/2.0\nthen waiting\ngot SIP/2.0 200 OK\n", {});
  expectTexts("", {});
}

TEST(TextExport, ReadsAnExportWithALineOfAddresses) {
  const std::string line = "2024/01/02 10:11:12.123456 192.0.2.1:5060 -> 192.0.2.2:5062\n";
  const packets::Read read = readOne("\n" + line + invite() + "\n\n");
  EXPECT_EQ(read.text, invite());
  // 19724 days, and of the next one 10 hours, 11 minutes and 12 seconds.
  EXPECT_EQ(read.time, (19724 * 86400LL + 36672) * 1000000 + 123456);
  EXPECT_EQ(read.source, "192.0.2.1:5060");
  EXPECT_EQ(read.destination, "192.0.2.2:5062");
  EXPECT_EQ(read.transport, "unknown");
  EXPECT_FALSE(read.isCut);
}

TEST(TextExport, TakesTimeAndAddressesFromThePrefix) {
  const packets::Read read =
      readOne(prefixed(withLf(response()), "2024-01-02T10:11:12Z from UDP:192.0.2.1:5060 | "));
  EXPECT_EQ(read.text, withLf(response()));
  EXPECT_EQ(read.time, (19724 * 86400LL + 36672) * 1000000);
  EXPECT_EQ(read.source, "192.0.2.1:5060");
  EXPECT_EQ(read.destination, "unknown");
  EXPECT_EQ(read.transport, "UDP");
}

TEST(TextExport, TakesNothingFromAroundAnEarlierMessage) {
  Collected collected;
  tool::TextExport reader(collected.output);
  reader.take("2024/01/02 10:11:12 192.0.2.1:5060 -> 192.0.2.2:5062\n" + response("one") + response("two"));
  // Of the lines in front of a message, the last four count.
  reader.take("from 192.0.2.1\n1\n2\n3\n" + response("three") + "from 192.0.2.1\n1\n2\n3\n4\n" +
              response("four"));
  reader.flush();
  ASSERT_EQ(collected.messages.size(), 4U);
  EXPECT_EQ(collected.messages[0].source, "192.0.2.1:5060");
  EXPECT_EQ(collected.messages[1].source, "unknown");
  EXPECT_EQ(collected.messages[1].time, std::nullopt);
  EXPECT_EQ(collected.messages[2].source, "192.0.2.1");
  EXPECT_EQ(collected.messages[3].source, "unknown");
}

TEST(TextExport, KeepsNoMoreThanAMessageMayHave) {
  Collected collected;
  tool::TextExport reader(collected.output);
  reader.take("MESSAGE sip:b SIP/2.0\nContent-Type: text/plain\n\n");
  const std::string line(1000, 'x');
  for (int i = 0; i < 2000; ++i) {
    reader.take(line + "\n");
    ASSERT_LE(reader.size(), tool::kMaxMessageSize + 2000);
  }
  EXPECT_EQ(collected.output.count(tool::CaptureTrouble::messageTooLong), 1U);
  ASSERT_EQ(collected.messages.size(), 1U);
  EXPECT_TRUE(collected.messages[0].isCut);
  for (int i = 0; i < 2000; ++i) {
    reader.take(line);  // a line without end
    ASSERT_LE(reader.size(), std::size_t{70000});
  }
}

}  // namespace
