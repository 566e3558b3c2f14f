#include <algorithm>

#include "codecTestSupport.h"

// Each capacity one under, at, and one over: what exceeds it is cut or left out, and the description says so.

namespace {

struct Field {
  const char* name;
  std::string before;  // the line up to the field that is varied
  std::string after;
  int size;  // of the field with its NUL
  const char* (*read)(const sDescription&);
};

class FieldCapacity : public testing::TestWithParam<Field> {};

TEST_P(FieldCapacity, IsCutAtItsSize) {
  const Field& field = GetParam();
  for (const int length : {field.size - 2, field.size - 1, field.size, field.size + 300}) {
    const std::string text(static_cast<std::size_t>(length), '7');
    const Decoded d("v=0\r\n" + field.before + text + field.after + "\r\n");
    ASSERT_EQ(d.status, 0) << d.error;
    const bool fits = length < field.size;
    EXPECT_EQ(field.read(*d), text.substr(0, static_cast<std::size_t>(field.size - 1))) << length;
    EXPECT_EQ(d.complete(), fits) << length;
    EXPECT_EQ(encoded(*d), "v=0\r\n" + field.before +
                               (fits ? text : text.substr(0, static_cast<std::size_t>(field.size - 1))) +
                               field.after + "\r\n");
  }
}

#define READ(expression) [](const sDescription& d) -> const char* { return d.expression; }

INSTANTIATE_TEST_SUITE_P(
    Fields, FieldCapacity,
    testing::Values(
        Field{"mediaInformation", "m=audio 1 RTP/AVP 0\r\ni=", "", SDP_TEXT_SIZE, READ(media[0].iLine.text)},
        Field{"mediaKey", "m=audio 1 RTP/AVP 0\r\nk=", "", SDP_TEXT_SIZE, READ(media[0].kLine.text)},
        Field{"user", "o=", " 1 2 IN IP4 x", SDP_USER_NAME_SIZE, READ(oLine.userName)},
        Field{"id", "o=- ", " 2 IN IP4 x", SDP_SESSION_NUMBER_SIZE, READ(oLine.sessionId)},
        Field{"version", "o=- 1 ", " IN IP4 x", SDP_SESSION_NUMBER_SIZE, READ(oLine.sessionVersion)},
        Field{"oNetwork", "o=- 1 2 ", " IP4 x", SDP_NETWORK_TYPE_SIZE, READ(oLine.networkType)},
        Field{"oType", "o=- 1 2 IN ", " x", SDP_ADDRESS_TYPE_SIZE, READ(oLine.addressType)},
        Field{"oAddress", "o=- 1 2 IN IP4 ", "", SDP_ORIGIN_ADDRESS_SIZE, READ(oLine.address)},
        Field{"name", "s=", "", SDP_TEXT_SIZE, READ(sLine.text)},
        Field{"information", "i=", "", SDP_TEXT_SIZE, READ(iLine.text)},
        Field{"uri", "u=", "", SDP_TEXT_SIZE, READ(uLine.text)},
        Field{"email", "e=", "", SDP_CONTACT_SIZE, READ(eLine.entries[0].text)},
        Field{"phone", "p=", "", SDP_CONTACT_SIZE, READ(pLine.entries[0].text)},
        Field{"time", "t=", "", SDP_TIME_SIZE, READ(tLine.entries[0].text)},
        Field{"repeat", "r=", "", SDP_TIME_SIZE, READ(rLine.entries[0].text)},
        Field{"zone", "z=", "", SDP_TEXT_SIZE, READ(zLine.text)},
        Field{"key", "k=", "", SDP_TEXT_SIZE, READ(kLine.text)},
        Field{"cNetwork", "c=", " IP4 x", SDP_NETWORK_TYPE_SIZE, READ(cLine.entries[0].networkType)},
        Field{"cType", "c=IN ", " x", SDP_ADDRESS_TYPE_SIZE, READ(cLine.entries[0].addressType)},
        Field{"cAddress", "c=IN IP4 ", "", SDP_ADDRESS_SIZE, READ(cLine.entries[0].address)},
        Field{"cSuffix", "c=IN IP4 x/", "", SDP_ADDRESS_SUFFIX_SIZE - 1, READ(cLine.entries[0].suffix + 1)},
        Field{"bType", "b=", ":1", SDP_BANDWIDTH_TYPE_SIZE, READ(bLine.entries[0].type)},
        Field{"bNumber", "b=AS:", "", SDP_BANDWIDTH_NUMBER_SIZE, READ(bLine.entries[0].number)},
        Field{"aName", "a=", ":x", SDP_ATTRIBUTE_NAME_SIZE, READ(aLine.entries[0].name)},
        Field{"aValue", "a=x:", "", SDP_ATTRIBUTE_VALUE_SIZE, READ(aLine.entries[0].value)},
        Field{"mediaName", "m=", " 1 RTP/AVP 0", SDP_MEDIA_NAME_SIZE, READ(media[0].mLine.media)},
        Field{"port", "m=audio ", " RTP/AVP 0", SDP_PORT_SIZE, READ(media[0].mLine.port)},
        Field{"portSuffix", "m=audio 1/", " RTP/AVP 0", SDP_PORT_SUFFIX_SIZE - 1,
              READ(media[0].mLine.portSuffix + 1)},
        Field{"transport", "m=audio 1 ", " 0", SDP_TRANSPORT_SIZE, READ(media[0].mLine.transport)},
        Field{"format", "m=audio 1 RTP/AVP ", "", SDP_FORMAT_SIZE, READ(media[0].mLine.formats[0])},
        Field{"mediaAttribute", "m=audio 1 RTP/AVP 0\r\na=x:", "", SDP_ATTRIBUTE_VALUE_SIZE,
              READ(media[0].aLine.entries[0].value)}),
    [](const auto& tested) { return tested.param.name; });

struct List {
  const char* name;
  std::string before;
  std::string line;
  int capacity;
  int (*count)(const sDescription&);
};

class ListCapacity : public testing::TestWithParam<List> {};

TEST_P(ListCapacity, HoldsWhatFits) {
  const List& list = GetParam();
  for (const int lines : {list.capacity - 1, list.capacity, list.capacity + 1, list.capacity * 2 + 1000}) {
    const auto repeat = [&list](int times) {
      std::string all;
      for (int i = 0; i < times; ++i) all += list.line;
      return all;
    };
    const Decoded d("v=0\r\n" + list.before + repeat(lines) + "\r\n");
    ASSERT_EQ(d.status, 0) << d.error;
    const int held = std::min(lines, list.capacity);
    EXPECT_EQ(list.count(*d), held);
    EXPECT_EQ(d.complete(), lines == held);
    // Lines follow a line end, formats a blank: the text ends in CR LF either way.
    const std::string text = "v=0\r\n" + list.before + repeat(held);
    EXPECT_EQ(encoded(*d), list.line.back() == '\n' ? text : text + "\r\n");
  }
}

#define COUNT(expression) [](const sDescription& d) -> int { return expression; }

INSTANTIATE_TEST_SUITE_P(
    Lists, ListCapacity,
    testing::Values(
        List{"emails", "", "e=x\r\n", SDP_CONTACT_CAPACITY, COUNT(d.eLine.count)},
        List{"phones", "", "p=x\r\n", SDP_CONTACT_CAPACITY, COUNT(d.pLine.count)},
        List{"times", "", "t=0 0\r\n", SDP_TIME_CAPACITY, COUNT(d.tLine.count)},
        List{"repeats", "", "r=0\r\n", SDP_REPEAT_CAPACITY, COUNT(d.rLine.count)},
        List{"connections", "", "c=IN IP4 x\r\n", SDP_CONNECTION_CAPACITY, COUNT(sdp_CgetNoOfCs(&d.cLine))},
        List{"bandwidths", "", "b=AS:1\r\n", SDP_BANDWIDTH_CAPACITY, COUNT(d.bLine.count)},
        List{"attributes", "", "a=x:y\r\n", SDP_ATTRIBUTE_CAPACITY, COUNT(sdp_AgetNoOfAs(&d.aLine))},
        List{"mediaAttributes", "m=audio 1 RTP/AVP 0\r\n", "a=x:y\r\n", SDP_ATTRIBUTE_CAPACITY,
             COUNT(sdp_AgetNoOfAs(&d.media[0].aLine))},
        List{"mediaConnections", "m=audio 1 RTP/AVP 0\r\n", "c=IN IP4 x\r\n", SDP_CONNECTION_CAPACITY,
             COUNT(sdp_CgetNoOfCs(&d.media[0].cLine))},
        List{"mediaBandwidths", "m=audio 1 RTP/AVP 0\r\n", "b=AS:1\r\n", SDP_BANDWIDTH_CAPACITY,
             COUNT(d.media[0].bLine.count)},
        List{"formats", "m=audio 1 RTP/AVP", " 0", SDP_FORMAT_CAPACITY,
             COUNT(sdp_MgetNoOfFormats(&d.media[0].mLine))}),
    [](const auto& tested) { return tested.param.name; });

TEST(VersionCapacity, IsCutAtItsSize) {
  for (const std::size_t length : {14U, 15U, 16U, 300U}) {
    const Decoded d("v=" + std::string(length, '1') + "\r\n");
    ASSERT_EQ(d.status, 0);
    EXPECT_EQ(d->vLine.text, std::string(std::min<std::size_t>(length, 15), '1'));
    EXPECT_EQ(d.complete(), length <= 15);
  }
}

TEST(TimeCapacity, RepeatsOfATimeLineThatIsLeftOutGoWithIt) {
  std::string held = "v=0\r\n";
  for (int i = 0; i < SDP_TIME_CAPACITY; ++i)
    held += "t=" + std::to_string(i) + " 0\r\nr=of " + std::to_string(i) + "\r\n";
  const Decoded d(held + "t=8 0\r\nr=of 8\r\nr=of 8 too\r\n");
  ASSERT_EQ(d.status, 0);
  EXPECT_FALSE(d.complete());
  EXPECT_EQ(encoded(*d), held);
}

TEST(MediaCapacity, EveryMediaLineIsCountedAndTheFirstTwentyFiveAreHeld) {
  for (const int count : {24, 25, 26, 60, 300}) {
    std::string body = kHead;
    std::string held = kHead;
    for (int i = 0; i < count; ++i) {
      const std::string media =
          "m=audio " + std::to_string(5000 + i) + " RTP/AVP 0\r\na=x:" + std::to_string(i) + "\r\n";
      body += media;
      if (i < 25) held += media;
    }
    const Decoded d(body);
    ASSERT_EQ(d.status, 0) << d.error;
    EXPECT_EQ(sdp_getNoOfMDs(d.get()), count);
    EXPECT_EQ(d.complete(), count <= 25);
    EXPECT_EQ(encoded(*d), held);
  }
}

// What callers rely on, in numbers.
static_assert(SDP_MEDIA_CAPACITY == 25 && SDP_FORMAT_CAPACITY == 64 && SDP_FORMAT_SIZE == 32);
static_assert(SDP_ATTRIBUTE_NAME_SIZE == 64 && SDP_ATTRIBUTE_VALUE_SIZE == 350);
static_assert(SDP_SESSION_NUMBER_SIZE == 64 + 1, "ids and versions of 64 characters are written and held");
static_assert(SDP_NETWORK_TYPE_SIZE == 11 && SDP_ADDRESS_TYPE_SIZE == 11 && SDP_ADDRESS_SIZE == 127);
static_assert(SDP_HAS_C_LINE == 2 && SDP_HAS_A_LINE == 16);

}  // namespace
