#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "parserParseSupport.h"

// Video, message, text, image and application m-lines, each looked at by itself.

namespace {

using P = sdpParserMessage;
using Finder = unsigned short (*)(sSdpParsedData&, sDescription&, int);

struct Found {
  int status = 0;
  sSdpParsedData data = emptySummary();
  unsigned int kinds = 0;
  TraceLines traces;

  bool attribute(eSdpAttribute bit) const { return (data.sdpAttributes & static_cast<unsigned>(bit)) != 0; }
};

Found find(Finder finder, const std::vector<std::string>& lines, sSdpParsedData data = emptySummary()) {
  const auto description = decoded(bodyOf(lines));
  const TraceCapture capture;
  Found result;
  result.data = data;
  result.status = finder(result.data, *description, sdp_getNoOfMDs(description.get()));
  result.kinds = description->mediaKinds;
  result.traces = capture.lines();
  return result;
}

Found video(const std::vector<std::string>& lines, sSdpParsedData data = emptySummary()) {
  return find(P::findFirstVideo, lines, data);
}

Found image(const std::vector<std::string>& lines, sSdpParsedData data = emptySummary()) {
  return find(P::findFirstImage, lines, data);
}

TEST(ParserVideo, TakesTheFirstThatIsNotInactive) {
  const Found result = video({"m=video 5000 RTP/AVP 31", "c=IN IP4 192.0.2.5", "a=inactive",
                              "m=video 5002 RTP/AVP 31", "c=IN IP4 192.0.2.6", "a=sendonly",
                              "m=video 5004 RTP/AVP 31", "c=IN IP4 192.0.2.7", "a=recvonly"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.data.videoMode, CONNECTION_MODE_SENDONLY);
  EXPECT_EQ(result.data.port, 5002U);
  EXPECT_EQ(addressOf(result.data), "192.0.2.6");
  EXPECT_EQ(result.data.mediaType, static_cast<unsigned>(MEDIA_VIDEO));
  EXPECT_EQ(result.kinds, static_cast<unsigned>(MEDIA_VIDEO));
  EXPECT_FALSE(result.attribute(SDP_ATTR_RECVONLY_VIDEO));
}

TEST(ParserVideo, KeepsTheModeOfTheLastWhenAllAreInactive) {
  const Found result = video({"m=video 5000 RTP/AVP 31", "a=inactive", "m=video 0 RTP/AVP 31", "a=sendonly"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.data.videoMode, CONNECTION_MODE_INACTIVE);
  EXPECT_EQ(result.data.mediaType, 0U);
  EXPECT_EQ(result.kinds, static_cast<unsigned>(MEDIA_VIDEO));
  EXPECT_EQ(video({"m=video 0 RTP/AVP 31", "a=sendonly"}).data.videoMode, CONNECTION_MODE_NONE);
}

TEST(ParserVideo, FallsBackToTheSessionsDirection) {
  EXPECT_EQ(video({"a=recvonly", "m=video 5000 RTP/AVP 31"}).data.videoMode, CONNECTION_MODE_RECVONLY);
  EXPECT_EQ(video({"a=recvonly", "m=video 5000 RTP/AVP 31", "a=sendrecv"}).data.videoMode,
            CONNECTION_MODE_SENDRECV);
  EXPECT_EQ(video({"m=video 5000 RTP/AVP 31"}).data.videoMode, CONNECTION_MODE_SENDRECV);
  EXPECT_EQ(video({"m=video 5000 RTP/AVP 31", "a=confrnce"}).data.videoMode, CONNECTION_MODE_CONFRNCE);
  EXPECT_TRUE(video({"a=recvonly", "m=video 5000 RTP/AVP 31"}).attribute(SDP_ATTR_RECVONLY_VIDEO));
}

TEST(ParserVideo, TakesTheBitOfAZeroPortAudioAway) {
  sSdpParsedData data = emptySummary();
  data.mediaType = MEDIA_AUDIO;
  data.port = 0;
  const std::vector<std::string> lines = {"m=video 5000 RTP/AVP 31", "m=audio 0 RTP/AVP 0"};
  EXPECT_EQ(video(lines, data).data.mediaType, static_cast<unsigned>(MEDIA_VIDEO));
  data.port = 5004;
  EXPECT_EQ(video(lines, data).data.mediaType, static_cast<unsigned>(MEDIA_AUDIO | MEDIA_VIDEO));
  data.port = 0;
  EXPECT_EQ(video({"m=video 5000 RTP/AVP 31", "a=inactive"}, data).data.mediaType,
            static_cast<unsigned>(MEDIA_AUDIO));  // only when there is a video to take its place
}

TEST(ParserVideo, LeavesPortAndAddressToAnyAudio) {
  const Found result =
      video({"m=video 80 RTP/AVP 31", "c=IN IP4 x", "m=audio 0 RTP/AVP 0", "m=text 5000 RTP/AVP 98"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.data.port, SDP_PORT_NOT_SET);
  EXPECT_TRUE(result.data.address.isZero());
}

TEST(ParserVideo, ReadsThePortOnlyWithAConnection) {
  const Found result = video({"m=video 80 RTP/AVP 31"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.data.port, SDP_PORT_NOT_SET);
}

TEST(ParserVideo, RefusesABadPortAndABadAddress) {
  for (const std::string port : {"1", "1023", "65536"}) {
    const Found result = video({"m=video " + port + " RTP/AVP 31", "c=IN IP4 192.0.2.5"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.traces, (TraceLines{{4, 3, "Invalid port number found in m=video: " + port}}));
    EXPECT_EQ(result.data.port, SDP_PORT_NOT_SET);
  }
  const Found result = video({"m=video 5000 RTP/AVP 31", "c=IN IP4 x"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.traces, (TraceLines{{4, 3, "Invalid ip address (x) found in c-line"}}));
  EXPECT_EQ(result.data.port, 5000U);
}

struct KindCase {
  Finder finder;
  std::string name;
  eMediaType kind;
};

TEST(ParserMessageAndText, LookAtTheFirstOfTheirKindOnly) {
  for (const KindCase& each :
       {KindCase{P::findFirstMsg, "message", MEDIA_MESSAGE}, KindCase{P::findFirstTxt, "text", MEDIA_TEXT}}) {
    const std::string active = "m=" + each.name + " 80 x y";
    const std::string inactive = "m=" + each.name + " 0 x y";
    const Found first = find(each.finder, {"m=audio 5000 RTP/AVP 0", active, inactive});
    EXPECT_EQ(first.status, 0);
    EXPECT_EQ(first.data.mediaType, static_cast<unsigned>(each.kind));
    EXPECT_EQ(first.kinds, static_cast<unsigned>(each.kind));
    const Found second = find(each.finder, {inactive, active});
    EXPECT_EQ(second.data.mediaType, 0U);
    EXPECT_EQ(second.kinds, static_cast<unsigned>(each.kind));
    const Found none = find(each.finder, {"m=audio 5000 RTP/AVP 0"});
    EXPECT_EQ(none.data.mediaType, 0U);
    EXPECT_EQ(none.kinds, 0U);
  }
}

TEST(ParserApplication, TakesTheFirstInUse) {
  const Found result =
      find(P::findApplication, {"m=application 0 x y", "m=application 1 x y", "m=application 0 x y"});
  EXPECT_EQ(result.data.mediaType, static_cast<unsigned>(MEDIA_APPLICATION));
  EXPECT_EQ(result.kinds, static_cast<unsigned>(MEDIA_APPLICATION));
  const Found unused = find(P::findApplication, {"m=application 0 x y"});
  EXPECT_EQ(unused.data.mediaType, 0U);
  EXPECT_EQ(unused.kinds, static_cast<unsigned>(MEDIA_APPLICATION));
}

TEST(ParserImage, TakesT38) {
  const Found result =
      image({"m=image 5000 udptl x t38", "c=IN IP4 192.0.2.5", "a=T38MaxBitRate:9600", "a=t38maxbitrate:1",
             "a=T38MaxBitRate:14400", "a=T38MaxBitRate:", "a=T38MaxBitRate"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.data.T38MaxBitRate, 14400U);
  EXPECT_EQ(result.data.audioCodec[0], 28);
  EXPECT_EQ(result.data.port, 5000U);
  EXPECT_EQ(addressOf(result.data), "192.0.2.5");
  EXPECT_EQ(result.data.mediaType, static_cast<unsigned>(MEDIA_IMAGE));
  EXPECT_EQ(result.kinds, static_cast<unsigned>(MEDIA_IMAGE));
}

TEST(ParserImage, ReadsBitRatesWithinTheirType) {
  const auto rate = [](const std::string& value) {
    return image({"m=image 5000 udptl t38", "a=T38MaxBitRate:" + value}).data.T38MaxBitRate;
  };
  EXPECT_EQ(rate("14400 x"), 14400U);
  EXPECT_EQ(rate("x"), 0U);
  EXPECT_EQ(rate("-5"), 0U);
  EXPECT_EQ(rate("4294967296"), 4294967295U);
  EXPECT_EQ(rate(std::string(300, '9')), 4294967295U);
}

TEST(ParserImage, LooksAtTheFirstOnly) {
  const Found result = image({"m=image 0 udptl t38", "m=image 5000 udptl t38"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.data.isInitialized());
  EXPECT_EQ(result.kinds, 0U);  // deliberate: not even marked as present
}

TEST(ParserImage, PutsItsCodecInTheFirstEmptyPlace) {
  sSdpParsedData data = emptySummary();
  std::fill(data.audioCodec, data.audioCodec + 19, std::uint8_t{1});
  EXPECT_EQ(image({"m=image 5000 udptl t38 t38"}, data).data.audioCodec[19], 28);
  data.audioCodec[3] = 0;
  const Found gap = image({"m=image 5000 udptl t38 t38"}, data);
  EXPECT_EQ(gap.data.audioCodec[3], 28);
  EXPECT_EQ(gap.data.audioCodec[19], 0);
  std::fill(data.audioCodec, data.audioCodec + 20, std::uint8_t{1});
  const Found full = image({"m=image 5000 udptl t38"}, data);
  EXPECT_EQ(std::count(full.data.audioCodec, full.data.audioCodec + 20, 1), 20);
  EXPECT_EQ(full.data.packetizationPeriod[0], SDP_PACKETIZATION_NOT_SET);
}

TEST(ParserImage, LooksForT38AmongTheFirst20Formats) {
  const auto behind = [](std::size_t others) {
    std::string line = "m=image 5000 udptl";
    for (std::size_t i = 0; i < others; ++i) line += " x";
    return image({line + " t38"}).data.audioCodec[0];
  };
  EXPECT_EQ(behind(19), 28);
  EXPECT_EQ(behind(20), 0);
  EXPECT_EQ(image({"m=image 5000 udptl T38 t38x xt38"}).data.audioCodec[0], 0);
  EXPECT_EQ(image({"m=image 5000 udptl"}).data.audioCodec[0], 0);
}

TEST(ParserImage, LeavesPortAndAddressToAnyAudio) {
  const Found result = image({"m=image 80 udptl t38", "c=IN IP4 x", "m=audio 0 RTP/AVP 0"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.data.port, SDP_PORT_NOT_SET);
  EXPECT_EQ(image({"m=image 80 udptl t38"}).status, 0);  // nor is the port read without a c-line
}

TEST(ParserImage, RefusesABadPortAndABadAddress) {
  const Found port = image({"m=image 80 udptl t38", "c=IN IP4 192.0.2.5"});
  EXPECT_EQ(port.status, 1);
  EXPECT_EQ(port.traces, (TraceLines{{4, 3, "Invalid port number found in m=image: 80"}}));
  EXPECT_EQ(port.data.audioCodec[0], 28);  // set before
  const Found address = image({"m=image 5000 udptl t38", "c=IN IP6 %s%n"});
  EXPECT_EQ(address.status, 1);
  EXPECT_EQ(address.traces, (TraceLines{{4, 3, "Invalid ip address (%s%n) found in c-line"}}));
}

TEST(ParserOtherMedia, LookAtNoMoreThanAreGiven) {
  const std::vector<std::string> lines = {"m=audio 5000 RTP/AVP 0", "m=video 5002 RTP/AVP 31",
                                          "m=message 5004 x y",     "m=text 5006 RTP/AVP 98",
                                          "m=image 5008 udptl t38", "m=application 5010 x y"};
  const auto description = decoded(bodyOf(lines));
  for (const Finder finder :
       {P::findFirstVideo, P::findFirstMsg, P::findFirstTxt, P::findFirstImage, P::findApplication}) {
    for (const int number : {-1, 0, 1}) {
      sSdpParsedData data = emptySummary();
      EXPECT_EQ(finder(data, *description, number), 0);
      EXPECT_EQ(data.mediaType, 0U);
    }
    sSdpParsedData data = emptySummary();
    EXPECT_EQ(finder(data, *description, 1000), 0);
    EXPECT_NE(data.mediaType, 0U);
  }
}

TEST(ParserAddress, TakesAValidOneAndTracesAnother) {
  const auto description = decoded(bodyOf({}, "c=IN IP6 2001:db8::1"));
  sSdpParsedData data = emptySummary();
  EXPECT_EQ(P::getIpAddr(data, description->cLine), 0);
  EXPECT_EQ(addressOf(data), "2001:db8::1");
  const TraceCapture capture;
  c_line none;
  none.count = 0;
  EXPECT_EQ(P::getIpAddr(data, none), 1);
  EXPECT_EQ(capture.lines(), (TraceLines{{4, 3, "Invalid ip address () found in c-line"}}));
  EXPECT_EQ(addressOf(data), "2001:db8::1");
}

}  // namespace
