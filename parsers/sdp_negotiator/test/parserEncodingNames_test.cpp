#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include "parserTestSupport.h"
#include "sdpNegotiatorParser.h"

// The encoding names of formats, from rtpmap values, media descriptions and text.

namespace {

using P = sdpParserMessage;
using Name = std::optional<std::string>;

/// Calls an operation with an exactly sized buffer, which must stay as it was when nothing is found.
template <class Operation>
Name nameBy(unsigned int size, const Operation& operation) {
  const auto buffer = std::make_unique_for_overwrite<char[]>(size);
  std::memset(buffer.get(), '#', size);
  if (operation(buffer.get(), size)) return std::string(buffer.get());
  EXPECT_EQ(std::string(buffer.get(), size), std::string(size, '#'));
  return std::nullopt;
}

Name nameIn(const std::string& value, const std::string& format = "97", unsigned int size = 600) {
  const ExactText valueText(value);
  const ExactText formatText(format);
  return nameBy(size, [&](char* name, unsigned int room) {
    return P::isEncodingDefinedInAline(valueText, formatText, name, room);
  });
}

Name nameInText(const char* begin, const char* end, const std::string& format = "97",
                unsigned int size = 33) {
  const ExactText formatText(format);
  return nameBy(size, [&](char* name, unsigned int room) {
    return P::getEncodingName(begin, end, formatText, name, room);
  });
}

Name nameInText(const std::string& body, const std::string& format = "97", unsigned int size = 33) {
  const ExactText text(body);
  return nameInText(text, text.end(), format, size);
}

Name nameInMedia(const std::vector<std::string>& attributes, const std::string& format = "97",
                 unsigned int size = 33) {
  const auto media = usedRecord<mDescription>();
  setAttributes(media->aLine, attributes);
  const ExactText formatText(format);
  return nameBy(size, [&](char* name, unsigned int room) {
    return P::getEncodingName(media.get(), formatText, name, room);
  });
}

const std::string section =
    "m=video 5006 RTP/AVP 97 98\r\na=rtpmap:97 H264/90000\r\na=rtpmap:98 VP8/90000\r\nm=audio 5004 RTP/AVP 99\r\n"
    "a=rtpmap:99 iLBC/8000\r\n";

}  // namespace

TEST(RtpmapValue, DefinesAFormat) {
  const struct {
    const char* value;
    Name name;
  } rows[] = {
      {"97 H264/90000", "H264/90000"},
      {"97\tH264/90000", "H264/90000"},
      {"97 H264/90000\r\na=rtpmap:98 VP8/90000\r\n", "H264/90000"},
      {"97 H264/90000\na=x\n", "H264/90000"},
      {"97 H264/90000\r", "H264/90000"},
      {" \t 97 \t H264/90000", "H264/90000"},
      {"97 opus/48000/2 more words", "opus/48000/2 more words"},
      {"97 x ", "x "},
      {"97 \xE4\xFF", "\xE4\xFF"},
      {"97 %s%n%s", "%s%n%s"},
  };
  for (const auto& row : rows) EXPECT_EQ(nameIn(row.value), row.name) << row.value;
}

TEST(RtpmapValue, DefinesAnotherFormatOrNone) {
  for (const char* value : {"98 H264/90000",
                            "9 H264",
                            "970 H264",
                            "097 H264",
                            "+97 H264",
                            "97H264",
                            "97/H264",
                            "H264 97",
                            "97",
                            "97 ",
                            "97\t \t",
                            "97 \r\n",
                            "97\r\n",
                            "97\r\na=rtpmap:98 VP8",
                            "97 \r\na=rtpmap:98 VP8",
                            "\r\n97 H264",
                            "",
                            " ",
                            "\t",
                            "\r\n",
                            "\x80",
                            "97\xFF H264",
                            "\2717 H264",
                            "4294967393 H264"}) {
    EXPECT_EQ(nameIn(value), std::nullopt) << value;
  }
}

TEST(RtpmapValue, TheFormatIsComparedAsAWholeWord) {
  EXPECT_EQ(nameIn("97 H264", "9"), std::nullopt);
  EXPECT_EQ(nameIn("97 H264", "970"), std::nullopt);
  EXPECT_EQ(nameIn("97 H264", ""), std::nullopt);
  EXPECT_EQ(nameIn("", ""), std::nullopt);
  EXPECT_EQ(nameIn(" H264", ""), std::nullopt);
  EXPECT_EQ(nameIn("97 H264 x", "97 H264"), std::nullopt);
  EXPECT_EQ(nameIn("t38 x", "t38"), "x");
  EXPECT_EQ(nameIn("t38 x", "T38"), std::nullopt);
}

TEST(RtpmapValue, CharactersBehindThe512thDoNotCount) {
  const std::string blanks(508, ' ');
  EXPECT_EQ(nameIn(blanks + "97 XY"), "X");
  EXPECT_EQ(nameIn(blanks + " 97 X"), std::nullopt);
  EXPECT_EQ(nameIn(blanks + "  97 X"), std::nullopt);
  EXPECT_EQ(nameIn(blanks + "   97 X"), std::nullopt);
  EXPECT_EQ(nameIn(blanks + "   97 X", "9"), std::nullopt);
  EXPECT_EQ(nameIn("97 " + std::string(509, 'x')), std::string(509, 'x'));
  EXPECT_EQ(nameIn("97 " + std::string(510, 'x')), std::string(509, 'x'));
  EXPECT_EQ(nameIn("97 " + std::string(60000, 'x')), std::string(509, 'x'));
  EXPECT_EQ(nameIn(std::string(60000, '9')), std::nullopt);
  EXPECT_EQ(nameIn(std::string(60000, ' ') + "97 x"), std::nullopt);
}

TEST(RtpmapValue, The512CharactersNeedNoNul) {
  const auto exact = std::make_unique_for_overwrite<char[]>(512);
  std::memset(exact.get(), 'x', 512);
  std::memcpy(exact.get(), "97 ", 3);
  char name[600];
  EXPECT_TRUE(P::isEncodingDefinedInAline(exact.get(), "97", name, sizeof name));
  EXPECT_EQ(std::string(name), std::string(509, 'x'));
}

TEST(RtpmapValue, TheNameIsCutToTheBuffer) {
  const std::string value = "97 H264/90000";
  EXPECT_EQ(nameIn(value, "97", 12), "H264/90000");
  EXPECT_EQ(nameIn(value, "97", 11), "H264/90000");
  EXPECT_EQ(nameIn(value, "97", 10), "H264/9000");
  EXPECT_EQ(nameIn(value, "97", 2), "H");
  EXPECT_EQ(nameIn(value, "97", 1), "");
  EXPECT_EQ(nameIn("97 " + std::string(32, 'x'), "97", 33), std::string(32, 'x'));
  EXPECT_EQ(nameIn("97 " + std::string(33, 'x'), "97", 33), std::string(32, 'x'));
}

TEST(RtpmapValue, NoBuffer) {
  EXPECT_TRUE(P::isEncodingDefinedInAline("97 H264", "97", nullptr, 33));
  EXPECT_TRUE(P::isEncodingDefinedInAline("97 H264", "97", nullptr, 0));
  EXPECT_FALSE(P::isEncodingDefinedInAline("98 H264", "97", nullptr, 33));
  char untouched = '#';
  EXPECT_TRUE(P::isEncodingDefinedInAline("97 H264", "97", &untouched, 0));
  EXPECT_EQ(untouched, '#');
}

TEST(RtpmapValue, NullTexts) {
  EXPECT_FALSE(P::isEncodingDefinedInAline(nullptr, "97", nullptr, 0));
  EXPECT_FALSE(P::isEncodingDefinedInAline("97 H264", nullptr, nullptr, 0));
}

TEST(MediaEncodingName, TheFirstRtpmapLineOfTheFormat) {
  EXPECT_EQ(nameInMedia({"rtpmap:96 VP8/90000", "rtpmap:97 H264/90000", "rtpmap:97 H263/90000"}),
            "H264/90000");
  EXPECT_EQ(nameInMedia({"rtpmap", "rtpmap:", "rtpmap:97", "rtpmap:97 H264/90000"}), "H264/90000");
  EXPECT_EQ(nameInMedia({"rtpmap:96 VP8/90000"}), std::nullopt);
  EXPECT_EQ(nameInMedia({}), std::nullopt);
}

TEST(MediaEncodingName, TheAttributeNameMustBeExact) {
  for (const char* name : {"rtpmapX", "rtpma", "RTPMAP", " rtpmap", "fmtp", ""}) {
    EXPECT_EQ(nameInMedia({std::string(name) + ":97 H264/90000"}), std::nullopt) << name;
  }
}

TEST(MediaEncodingName, TheNameIsCutToTheBuffer) {
  EXPECT_EQ(nameInMedia({"rtpmap:97 H264/90000"}, "97", 5), "H264");
  EXPECT_EQ(nameInMedia({"rtpmap:97 " + std::string(400, 'x')}), std::string(32, 'x'));
  EXPECT_EQ(nameInMedia({"rtpmap:97 " + std::string(400, 'x')}, "97", 600), std::string(346, 'x'));
}

TEST(MediaEncodingName, NullArgumentsAndCorruptCounts) {
  EXPECT_FALSE(P::getEncodingName(nullptr, "97", nullptr, 0));
  const auto media = usedRecord<mDescription>();
  std::vector<std::string> lines(SDP_ATTRIBUTE_CAPACITY, "rtpmap:98 VP8/90000");
  lines.back() = "rtpmap:97 H264/90000";
  setAttributes(media->aLine, lines);
  EXPECT_FALSE(P::getEncodingName(media.get(), nullptr, nullptr, 0));
  media->aLine.count = 1000;
  EXPECT_TRUE(P::getEncodingName(media.get(), "97", nullptr, 0));
  EXPECT_FALSE(P::getEncodingName(media.get(), "96", nullptr, 0));
  media->aLine.count = -1;
  EXPECT_FALSE(P::getEncodingName(media.get(), "97", nullptr, 0));
}

TEST(MediaEncodingName, AgreesWithTheTextForm) {
  const std::string body =
      "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n" + section;
  const auto description = usedRecord<sDescription>();
  unsigned short start = 0;
  unsigned short end = 0;
  ASSERT_EQ(sdp_decodeOpt_r(description.get(), body.c_str(), SDP_TYPE_OFFER, nullptr, false, start, end), 0);
  char name[33];
  ASSERT_TRUE(P::getEncodingName(&description->media[0], "98", name, sizeof name));
  EXPECT_EQ(nameInText(body, "98"), name);
  EXPECT_FALSE(P::getEncodingName(&description->media[0], "99", name, sizeof name));
  EXPECT_EQ(nameInText(body, "99"), "iLBC/8000");
}

TEST(TextEncodingName, TheFirstRtpmapLineOfTheFormat) {
  EXPECT_EQ(nameInText(section, "97"), "H264/90000");
  EXPECT_EQ(nameInText(section, "98"), "VP8/90000");
  EXPECT_EQ(nameInText(section, "99"), "iLBC/8000");
  EXPECT_EQ(nameInText(section, "100"), std::nullopt);
  EXPECT_EQ(nameInText("m\na=rtpmap:97 A\na=rtpmap:97 B\n"), "A");
}

TEST(TextEncodingName, LinesNeedALineFeedBeforeThem) {
  EXPECT_EQ(nameInText("a=rtpmap:97 A\r\n"), std::nullopt);
  EXPECT_EQ(nameInText("\na=rtpmap:97 A"), "A");
  EXPECT_EQ(nameInText("\n\na=rtpmap:97 A"), "A");
  EXPECT_EQ(nameInText("m\ra=rtpmap:97 A\r"), std::nullopt);
  EXPECT_EQ(nameInText("m a=rtpmap:97 A\r\n"), std::nullopt);
}

TEST(TextEncodingName, OtherLinesAreNoRtpmapLines) {
  for (const char* line :
       {"a=rtpmap", "a=rtpmap:", "a=rtpmap 97 A", "a=rtpmapX:97 A", "a= rtpmap:97 A", "a=RTPMAP:97 A",
        "A=rtpmap:97 A", "b=rtpmap:97 A", " a=rtpmap:97 A", "a=x-rtpmap:97 A", "a=", "a", "a=\xF2tpmap:97 A",
        "\xE1=rtpmap:97 A", "a=rtpmap:\37797 A"}) {
    EXPECT_EQ(nameInText("m\r\n" + std::string(line) + "\r\n"), std::nullopt) << line;
    EXPECT_EQ(nameInText("m\r\n" + std::string(line) + "\r\na=rtpmap:97 B\r\n"), "B") << line;
    EXPECT_EQ(nameInText("m\r\n" + std::string(line)), std::nullopt) << line;
  }
}

TEST(TextEncodingName, ALineWithoutNameDoesNotTakeTheNextOne) {
  EXPECT_EQ(nameInText("m\r\na=rtpmap:97\r\na=rtpmap:98 A\r\n"), std::nullopt);
  EXPECT_EQ(nameInText("m\r\na=rtpmap:97 \r\na=rtpmap:98 A\r\n"), std::nullopt);
  EXPECT_EQ(nameInText("m\r\na=rtpmap: \r\n97 A\r\n"), std::nullopt);
}

TEST(TextEncodingName, OnlyLinesThatBeginBeforeTheEnd) {
  const ExactText text(section);
  const char* line = text + section.find("\na=rtpmap:98");
  EXPECT_EQ(nameInText(text, line, "98"), std::nullopt);
  // The line feed decides; the line itself may go on behind the end.
  EXPECT_EQ(nameInText(text, line + 1, "98"), "VP8/90000");
  EXPECT_EQ(nameInText(text, line + 5, "98"), "VP8/90000");
  EXPECT_EQ(nameInText(text, text, "97"), std::nullopt);
  EXPECT_EQ(nameInText(line, text, "98"), std::nullopt);
  EXPECT_EQ(nameInText(line, text.end(), "98"), "VP8/90000");
  EXPECT_EQ(nameInText(line + 1, text.end(), "98"), std::nullopt);
}

TEST(TextEncodingName, NothingBehindTheNulIsRead) {
  const char text[] = "m\r\na=x\r\n\0\na=rtpmap:97 A\r\n";
  EXPECT_EQ(nameInText(text, text + sizeof text - 1), std::nullopt);
  const char cut[] = "m\r\na=rtp\0map:97 A\r\n";
  EXPECT_EQ(nameInText(cut, cut + sizeof cut - 1), std::nullopt);
  const char noName[] = "m\r\na=rtpmap:97 \0A\r\n";
  EXPECT_EQ(nameInText(noName, noName + sizeof noName - 1), std::nullopt);
}

TEST(TextEncodingName, TextsCutAnywhere) {
  const std::string whole = "m=video 1 RTP/AVP 97\r\na=rtpmap:97 H264/90000\r\n";
  const std::size_t name = whole.find("H264");
  const std::size_t lineEnd = whole.rfind('\r');
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const Name expected =
        length > name ? Name(whole.substr(name, std::min(length, lineEnd) - name)) : std::nullopt;
    EXPECT_EQ(nameInText(whole.substr(0, length)), expected) << length;
  }
}

TEST(TextEncodingName, TheNameIsCutToTheBuffer) {
  EXPECT_EQ(nameInText(section, "97", 5), "H264");
  EXPECT_EQ(nameInText(section, "97", 1), "");
  EXPECT_EQ(nameInText("\na=rtpmap:97 " + std::string(60000, 'x')), std::string(32, 'x'));
  EXPECT_EQ(nameInText("\na=rtpmap:97 " + std::string(60000, 'x'), "97", 1000), std::string(509, 'x'));
}

TEST(TextEncodingName, AmongManyAndOverlongOtherLines) {
  std::string body = "m=video 1 RTP/SAVP 97\r\n";
  for (int i = 0; i < 300; ++i) body += "a=crypto:" + std::string(i % 2 == 0 ? 500 : 0, 'A') + "\r\n";
  body += "a=" + std::string(60000, 'x') + "\r\n" + "a=rtpmap:" + std::string(8000, '9') + "\r\n";
  EXPECT_EQ(nameInText(body), std::nullopt);
  EXPECT_EQ(nameInText(body + "a=rtpmap:97 H264/90000\r\n"), "H264/90000");
}

TEST(TextEncodingName, NullArguments) {
  const ExactText text(section);
  EXPECT_FALSE(P::getEncodingName(nullptr, text.end(), "97", nullptr, 0));
  EXPECT_FALSE(P::getEncodingName(text, nullptr, "97", nullptr, 0));
  EXPECT_FALSE(P::getEncodingName(text, text.end(), nullptr, nullptr, 0));
  EXPECT_TRUE(P::getEncodingName(text, text.end(), "97", nullptr, 33));
  char untouched = '#';
  EXPECT_TRUE(P::getEncodingName(text, text.end(), "97", &untouched, 0));
  EXPECT_EQ(untouched, '#');
}

TEST(ComparisonWithoutSpaces, TheTextBeginsWithThePattern) {
  const struct {
    std::string text;
    std::string pattern;
    int result;
  } rows[] = {
      {"18annexb:no", "18annexb:no", 0},
      {"18 annexb:no", "18annexb:no", 0},
      {"  1 8   annexb : no", "18annexb:no", 0},
      {"18 annexb:no;x", "18annexb:no", 0},
      {"18 annexb:n", "18annexb:no", -1},
      {"18 annexb=no", "18annexb:no", -1},
      {"18 Annexb:no", "18annexb:no", -1},
      {"18\tannexb:no", "18annexb:no", -1},
      {"118annexb:no", "18annexb:no", -1},
      {"", "x", -1},
      {"   ", "x", -1},
      {"", "", 0},
      {"x", "", 0},
      {"a b", "a b", -1},  // spaces are left out of the text only
      {"\xFF\x80", "\xFF", 0},
      {"\xFF", "\x7F", -1},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(P::strcmpwospaces(ExactText(row.text), ExactText(row.pattern)), row.result) << row.text;
  }
}

TEST(ComparisonWithoutSpaces, AHundredSpacesInARowAreTooMany) {
  const std::string most(99, ' ');
  EXPECT_EQ(P::strcmpwospaces(ExactText(most + "a" + most + "b"), "ab"), 0);
  EXPECT_EQ(P::strcmpwospaces(ExactText(most + " ab"), "ab"), -1);
  EXPECT_EQ(P::strcmpwospaces(ExactText("a" + most + " b"), "ab"), -1);
  EXPECT_EQ(P::strcmpwospaces(ExactText("ab" + most + " "), "ab"), 0);
  EXPECT_EQ(P::strcmpwospaces(ExactText(std::string(60000, ' ')), "ab"), -1);
}

TEST(ComparisonWithoutSpaces, PatternsOfMoreThanAHundredCharacters) {
  const std::string hundred(100, 'x');
  EXPECT_EQ(P::strcmpwospaces(ExactText(hundred), ExactText(hundred)), 0);
  EXPECT_EQ(P::strcmpwospaces(ExactText(hundred + "xx"), ExactText(hundred + "x")), -1);
  EXPECT_EQ(P::strcmpwospaces(ExactText(std::string(60000, 'x')), ExactText(hundred)), 0);
}

TEST(ComparisonWithoutSpaces, NullTexts) {
  EXPECT_EQ(P::strcmpwospaces(nullptr, "x"), -1);
  EXPECT_EQ(P::strcmpwospaces("x", nullptr), -1);
  EXPECT_EQ(P::strcmpwospaces(nullptr, nullptr), -1);
}
