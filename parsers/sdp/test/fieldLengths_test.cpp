#include "codecTestSupport.h"

// Fields and lines of the lengths at which searches and copies take another step, at the text's end and in front of it.

namespace {

// What may follow a line, of which the text's end is the nearest.
const char* const kEnds[] = {"",
                             "\n",
                             "\r\n",
                             "\r",
                             "\r\na=y",
                             "\r\nk=0123456789\n",
                             "\r\nk=0123456789012345678901234567890123456789"};

struct Field {
  const char* name;
  std::string before;  // the line up to the field
  std::string after;   // the rest of the line
  std::size_t size;
  const char* (*read)(const sDescription&);
};

class FieldLength : public testing::TestWithParam<Field> {};

TEST_P(FieldLength, IsHeldWhole) {
  const Field& field = GetParam();
  for (const std::size_t length :
       {1U, 2U, 7U, 8U, 9U, 15U, 16U, 17U, 31U, 32U, 33U, 48U, 49U, 63U, 64U, 65U, 126U, 336U, 337U, 349U}) {
    if (length >= field.size) break;
    const std::string text = std::string("7").append(length - 1, '8');
    for (const std::string end : kEnds) {
      const Decoded d("v=0\n" + field.before + text + field.after + end);
      ASSERT_EQ(d.status, 0) << d.error;
      EXPECT_TRUE(d.complete());
      EXPECT_EQ(field.read(*d), text) << end;
    }
  }
}

#define READ(expression) [](const sDescription& d) -> const char* { return d.expression; }

INSTANTIATE_TEST_SUITE_P(
    Fields, FieldLength,
    testing::Values(
        Field{"attribute", "a=", "", SDP_ATTRIBUTE_NAME_SIZE, READ(aLine.entries[0].name)},
        Field{"attributeName", "a=", ":v", SDP_ATTRIBUTE_NAME_SIZE, READ(aLine.entries[0].name)},
        Field{"attributeNameAlone", "a=", ":", SDP_ATTRIBUTE_NAME_SIZE, READ(aLine.entries[0].name)},
        Field{"attributeValue", "a=x:", "", SDP_ATTRIBUTE_VALUE_SIZE, READ(aLine.entries[0].value)},
        Field{"valueOfALongName", "a=0123456789abcdef:", "", SDP_ATTRIBUTE_VALUE_SIZE,
              READ(aLine.entries[0].value)},
        Field{"session", "s=", "", SDP_TEXT_SIZE, READ(sLine.text)},
        Field{"time", "t=", "", SDP_TIME_SIZE, READ(tLine.entries[0].text)},
        Field{"user", "o=", " 1 1 IN IP4 x", SDP_USER_NAME_SIZE, READ(oLine.userName)},
        Field{"sessionId", "o=- ", " 1 IN IP4 x", SDP_SESSION_NUMBER_SIZE, READ(oLine.sessionId)},
        Field{"originNetwork", "o=- 1 1 ", " IP4 x", SDP_NETWORK_TYPE_SIZE, READ(oLine.networkType)},
        Field{"originAddress", "o=- 1 1 IN IP4 ", "", SDP_ORIGIN_ADDRESS_SIZE, READ(oLine.address)},
        Field{"addressType", "c=IN ", " x", SDP_ADDRESS_TYPE_SIZE, READ(cLine.entries[0].addressType)},
        Field{"address", "c=IN IP4 ", "", SDP_ADDRESS_SIZE, READ(cLine.entries[0].address)},
        Field{"addressWithSuffix", "c=IN IP4 ", "/127", SDP_ADDRESS_SIZE, READ(cLine.entries[0].address)},
        Field{"addressSuffix", "c=IN IP4 x/", "", SDP_ADDRESS_SUFFIX_SIZE - 1,
              READ(cLine.entries[0].suffix + 1)},
        Field{"bandwidthType", "b=", ":1", SDP_BANDWIDTH_TYPE_SIZE, READ(bLine.entries[0].type)},
        Field{"bandwidth", "b=AS:", "", SDP_BANDWIDTH_NUMBER_SIZE, READ(bLine.entries[0].number)},
        Field{"media", "m=", " 1 RTP/AVP 0", SDP_MEDIA_NAME_SIZE, READ(media[0].mLine.media)},
        Field{"port", "m=audio ", " RTP/AVP 0", SDP_PORT_SIZE, READ(media[0].mLine.port)},
        Field{"ports", "m=audio 1/", " RTP/AVP 0", SDP_PORT_SUFFIX_SIZE - 1,
              READ(media[0].mLine.portSuffix + 1)},
        Field{"transport", "m=audio 1 ", "", SDP_TRANSPORT_SIZE, READ(media[0].mLine.transport)},
        Field{"format", "m=audio 1 RTP/AVP ", "", SDP_FORMAT_SIZE, READ(media[0].mLine.formats[0])},
        Field{"formatOfSeveral", "m=audio 1 RTP/AVP 0 8 ", "\t101", SDP_FORMAT_SIZE,
              READ(media[0].mLine.formats[2])}),
    [](const auto& tested) { return tested.param.name; });

// A colon in the next line is none of this one.
TEST(AttributeLength, EndsWithItsLine) {
  for (std::size_t length = 0; length < SDP_ATTRIBUTE_NAME_SIZE; ++length) {
    const std::string name(length, 'n');
    const Decoded d("v=0\na=" + name + "\na=:\n");
    ASSERT_EQ(d.status, 0) << d.error;
    ASSERT_EQ(d->aLine.count, 2);
    EXPECT_EQ(d->aLine.entries[0].name, name);
    EXPECT_STREQ(d->aLine.entries[0].value, "");
    EXPECT_EQ(d->aLine.entries[0].hasColon, 0);
    EXPECT_EQ(d->aLine.entries[1].hasColon, 1);
  }
}

// Lines that end in front of, at and behind the characters that are looked at together.
TEST(LineLength, AnyIsFound) {
  for (std::size_t length = 0; length < 300; ++length) {
    for (const std::string end : {"\n", "\r\n"}) {
      const std::string text = std::string(length % 2, '\t').append(length - length % 2, 'x');
      for (const std::string last : {"", "k=y", "k=y\r"}) {
        const Decoded d("v=0" + end + "s=" + text + end + "i=z" + end + last);
        ASSERT_EQ(d.status, 0) << d.error;
        EXPECT_EQ(d->sLine.text, text);
        EXPECT_STREQ(d->iLine.text, "z");
        EXPECT_STREQ(d->kLine.text, last.empty() ? "" : "y");
      }
    }
  }
}

TEST(LineLength, ALoneCrIsFoundAtAnyPlace) {
  constexpr std::size_t kLength = 150;
  for (std::size_t at = 2; at < kLength; ++at) {
    std::string line = "s=" + std::string(kLength - 2, 'x');
    line[at] = '\r';
    for (const std::string end : {"\n", "\r\n", "\r", ""}) {
      const Decoded d("v=0\n" + line + end);
      // A CR at the text's end is one of its line ends.
      if (at == kLength - 1 && (end.empty() || end == "\n")) {
        EXPECT_EQ(d.status, 0) << d.error;
        continue;
      }
      ASSERT_EQ(d.status, 1) << at;
      const std::string place = "line 2, column " + std::to_string(at + 1);
      EXPECT_EQ(d.error.substr(0, d.error.find(':')), place);
    }
  }
}

TEST(LineLength, ALineOfTabsIsOneLine) {
  const std::string tabs(500, '\t');
  const Decoded d("v=0\r\ns=" + tabs + "\r\ni=x\r\n");
  ASSERT_EQ(d.status, 0) << d.error;
  EXPECT_EQ(d->sLine.text, tabs);
  EXPECT_STREQ(d->iLine.text, "x");
}

TEST(FieldsOfALine, StandBehindAnyNumberOfBlanks) {
  for (std::size_t count = 1; count < 200; ++count) {
    const std::string blanks = std::string(count - 1, ' ') + '\t';
    for (const std::string end : {"", "\n", "\r\na=y z\r\n"}) {
      const Decoded d("v=0\nm=audio" + blanks + "5004/2" + blanks + "RTP/AVP" + blanks + "0 8" + blanks +
                      "101" + blanks + end);
      ASSERT_EQ(d.status, 0) << d.error;
      const m_line& line = d->media[0].mLine;
      EXPECT_STREQ(line.media, "audio");
      EXPECT_STREQ(line.port, "5004");
      EXPECT_STREQ(line.portSuffix, "/2");
      EXPECT_STREQ(line.transport, "RTP/AVP");
      ASSERT_EQ(line.formatCount, 3);
      EXPECT_STREQ(line.formats[0], "0");
      EXPECT_STREQ(line.formats[1], "8");
      EXPECT_STREQ(line.formats[2], "101");
    }
  }
}

TEST(FieldsOfALine, EndWithTheLine) {
  for (std::size_t length = 1; length < 200; ++length) {
    const std::string name(length, 'n');
    for (const std::string end : {"", "\n", "\r\na=1 1 IN IP4 x\r\n"}) {
      const Decoded d("v=0\no=" + name + " 1 1 IN" + end);
      EXPECT_EQ(d.status, 1);
      EXPECT_EQ(d.error, "line 2, column " + std::to_string(length + 10) +
                             ": expected an address type, found the end of the " +
                             (end.empty() ? "text" : "line"));
    }
  }
}

struct LastLines {
  const char* name;
  std::string text;
};

class LastLinesOfAText : public testing::TestWithParam<LastLines> {};

TEST_P(LastLinesOfAText, LeaveWhatIsBehindIt) {
  const std::string& body = GetParam().text;
  Decoded d(body);
  ASSERT_EQ(d.status, 0) << d.error;
  constexpr std::size_t kSize = 8192;
  char* text = static_cast<char*>(std::malloc(kSize));
  std::memset(text, '#', kSize);
  int length = 0;
  int size = static_cast<int>(kSize);
  ASSERT_EQ(sdp_encode_r(d.get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
  ASSERT_EQ(size, static_cast<int>(kSize));
  EXPECT_EQ(std::string(text), body);
  const auto behind = static_cast<std::size_t>(length) + 1;
  EXPECT_EQ(std::string(text + behind, kSize - behind), std::string(kSize - behind, '#'));
  std::free(text);
}

INSTANTIATE_TEST_SUITE_P(
    Encoding, LastLinesOfAText,
    testing::Values(
        LastLines{"version", "v=0\r\n"}, LastLines{"session", kHead},
        LastLines{"shortAttributes", kHead + "a=\r\na=x\r\na=y:\r\na=z:z\r\na=\r\na=:\r\n"},
        LastLines{"oneAttribute", kHead + "a=x:y\r\n"},
        LastLines{"longAttribute", kHead + "a=x:" + std::string(349, 'y') + "\r\n"},
        LastLines{"longName", kHead + "a=" + std::string(63, 'n') + "\r\n"},
        LastLines{"media", kHead + "m=audio 1 RTP/AVP 0\r\n"}, LastLines{"shortMedia", kHead + "m=a 1 R\r\n"},
        LastLines{"mediaOnly", "v=0\r\nm=a 1 R\r\nm=b 2 R\r\nm=c 3 R\r\n"},
        LastLines{"mediaAndAttribute", kHead + "a=x:y\r\nm=audio 1 RTP/AVP 0\r\na=x\r\n"},
        LastLines{"shortMediaBehindAttributes", kHead + "m=a 1 R\r\na=x:y\r\na=z\r\nm=b 2 R\r\n"},
        LastLines{"connection", kHead + "m=audio 1 RTP/AVP 0\r\nc=IN IP4 192.0.2.1\r\n"},
        LastLines{"bandwidth", kHead + "m=audio 1 RTP/AVP 0\r\nb=AS:64\r\n"},
        LastLines{"key", kHead + "m=audio 1 RTP/AVP 0\r\nk=prompt\r\n"},
        LastLines{"browser",
                  kHead + "m=audio 9 UDP/TLS/RTP/SAVPF 111\r\na=rtpmap:111 opus/48000/2\r\na=sendrecv\r\n"}),
    [](const auto& tested) { return tested.param.name; });

// The shortest lines of all: an m-line whose fields are empty, by a record that was filled by hand.
TEST(Encoding, LinesOfEmptyFieldsLeaveWhatIsBehindTheText) {
  for (int media = 0; media <= SDP_MEDIA_CAPACITY; ++media) {
    const std::string before = "v=0\r\na=0123456789:0123456789\r\n";
    Decoded d(before);
    ASSERT_EQ(d.status, 0) << d.error;
    d.get()->noOfMDs = media;
    std::string wanted = before;
    for (int i = 0; i < media; ++i) {
      mDescription& each = d.get()->media[i];
      each.mLine.media[0] = each.mLine.port[0] = each.mLine.portSuffix[0] = each.mLine.transport[0] = '\0';
      each.mLine.formatCount = each.cLine.count = each.bLine.count = each.aLine.count = 0;
      each.linePresence = 0;
      wanted += "m=  \r\n";
    }
    constexpr std::size_t kSize = 4096;
    char* text = static_cast<char*>(std::malloc(kSize));
    std::memset(text, '#', kSize);
    int length = 0;
    int size = static_cast<int>(kSize);
    ASSERT_EQ(sdp_encode_r(d.get(), SDP_TYPE_UNKNOWN, text, length, size), 0);
    // Room for the longest m-line is made in front of each.
    ASSERT_EQ(size, static_cast<int>(kSize));
    EXPECT_EQ(std::string(text), wanted);
    const auto behind = static_cast<std::size_t>(length) + 1;
    EXPECT_EQ(std::string(text + behind, kSize - behind), std::string(kSize - behind, '#'));
    std::free(text);
  }
}

TEST(Encoding, AFieldWithoutNulIsWrittenAsFarAsItsLastCharacter) {
  Decoded d("v=0\r\na=x:y\r\nm=audio 1 RTP/AVP 0\r\na=x:y\r\n");
  ASSERT_EQ(d.status, 0) << d.error;
  sDescription& record = *d.get();
  std::memset(record.vLine.text, 'v', sizeof record.vLine.text);
  for (a_line* line : {&record.aLine, &record.media[0].aLine}) {
    std::memset(line->entries[0].name, 'n', sizeof line->entries[0].name);
    std::memset(line->entries[0].value, 'w', sizeof line->entries[0].value);
  }
  std::memset(record.media[0].mLine.formats[0], '0', sizeof record.media[0].mLine.formats[0]);
  const std::string attribute = "a=" + std::string(63, 'n') + ":" + std::string(349, 'w') + "\r\n";
  EXPECT_EQ(encoded(record), "v=" + std::string(15, 'v') + "\r\n" + attribute + "m=audio 1 RTP/AVP " +
                                 std::string(31, '0') + "\r\n" + attribute);
}

}  // namespace
