#include <optional>
#include <random>

#include "modifiersTestSupport.h"
#include "sessionDescription.h"
#include "traceCapture.h"

// Best-effort SRTP: which offers leave the choice between plain and secure media to the other side.

namespace {

const std::string start = "v=0\r\n";

std::vector<mDescription> linesOf(const std::string& body) {
  SdpBuffer buffer(body);
  std::vector<mDescription> lines;
  EXPECT_EQ(sdpModifications::getMLines(buffer.data(), lines), 0) << body;
  return lines;
}

TraceLine info(const std::string& text) { return {2, 2, text}; }

const TraceLine oddNumber = info("The Best Effort SRTP type is SRTP_UKNOWN due to non odd number of m-lines");
const TraceLine otherMedia = info("The Best Effort SRTP type is SRTP_UKNOWN due to different media types");
const TraceLine otherCodecs =
    info("The Best Effort SRTP type is SRTP_UKNOWN due to different codecs between the m-lines");
const TraceLine noPartner = info("TestTrace SRTP type is SRTP_UKNOWN, no RTP/AVP for the RTP/SAVP");
const TraceLine otherTransport = info("TestTrace SRTP type is SRTP_UKNOWN, No chance to be here");
const TraceLine noCrypto = info("TestTrace SRTP type is SRTP_UKNOWN, no crypto line");
const TraceLine twoLines = info("TestTrace SRTP type is BE_SRTP_2m_LINE");
const TraceLine returns5 = info("Return Best Effort SRTP type = 5");
const TraceLine returns6 = info("Return Best Effort SRTP type = 6");

const std::string plain = "m=audio 4 RTP/AVP 0\r\n";
const std::string secure = "m=audio 6 RTP/SAVP 0\r\n";
const std::string videoPlain = "m=video 8 RTP/AVP 31\r\n";
const std::string videoSecure = "m=video 9 RTP/SAVP 31\r\n";
const std::string crypto = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:a\r\n";
const std::string sendrecv = "a=sendrecv\r\n";

struct Case {
  std::string media;
  eSecurityType type;
  Traces traces;
};

TEST(TwoMLinesBestEffort, ArePairsOfAPlainAndASecureMLine) {
  const Case cases[] = {
      {"", SRTP_UKNOWN, {returns6}},
      {plain, SRTP_UKNOWN, {oddNumber}},
      {plain + secure + crypto + plain, SRTP_UKNOWN, {oddNumber}},
      {plain + secure + crypto, BE_SRTP_2m_LINE, {twoLines, returns5}},
      {secure + crypto + plain, BE_SRTP_2m_LINE, {twoLines, returns5}},
      {"m=audio 4 RTP/AVPF 0\r\nm=audio 4 RTP/SAVPF 0\r\n" + crypto, BE_SRTP_2m_LINE, {twoLines, returns5}},
      {"m=audio 4 RTP/SAVPF 0\r\n" + crypto + plain, BE_SRTP_2m_LINE, {twoLines, returns5}},
      {plain + secure + sendrecv + crypto + sendrecv, BE_SRTP_2m_LINE, {twoLines, returns5}},
      {plain + secure + "a=CRYPTO:1 x\r\n", BE_SRTP_2m_LINE, {twoLines, returns5}},
      {plain + secure + "a=crypto\r\n" + crypto, BE_SRTP_2m_LINE, {twoLines, returns5}},
      {plain + secure, SRTP_UKNOWN, {noCrypto}},
      {plain + crypto + secure, SRTP_UKNOWN, {noCrypto}},
      {secure + plain + crypto, SRTP_UKNOWN, {noCrypto}},
      {plain + secure + "a=cryptox:1 x\r\n", SRTP_UKNOWN, {noCrypto}},
      {plain + videoSecure + crypto, SRTP_UKNOWN, {otherMedia}},
      {plain + plain, SRTP_UKNOWN, {noPartner}},
      {secure + crypto + secure + crypto, SRTP_UKNOWN, {noPartner}},
      {plain + "m=audio 4 udp 0\r\n", SRTP_UKNOWN, {noPartner}},
      {secure + "m=audio 4 udp 0\r\n", SRTP_UKNOWN, {noPartner}},
      {"m=audio 4 udp 0\r\n" + secure + crypto, SRTP_UKNOWN, {otherTransport}},
      {"m=audio 4 rtp/avp 0\r\n" + secure + crypto, SRTP_UKNOWN, {otherTransport}},
      {"m=audio 4 UDP/TLS/RTP/SAVP 0\r\n" + plain, SRTP_UKNOWN, {otherTransport}},
      {plain + "m=audio 6 RTP/SAVP 8\r\n" + crypto, SRTP_UKNOWN, {otherCodecs}},
      {"m=audio 4 RTP/AVP 0\r\nm=audio 6 RTP/SAVP 00\r\n" + crypto, SRTP_UKNOWN, {otherCodecs}},
      // Formats other than the first are not looked at in the first pair.
      {"m=audio 4 RTP/AVP 0 8 9\r\nm=audio 6 RTP/SAVP 0 3\r\n" + crypto,
       BE_SRTP_2m_LINE,
       {twoLines, returns5}},
      // Later pairs need no crypto attribute.
      {plain + secure + crypto + videoPlain + videoSecure, BE_SRTP_2m_LINE, {twoLines, returns5}},
      {plain + secure + crypto + plain + videoPlain, SRTP_UKNOWN, {twoLines, otherMedia}},
      {plain + secure + crypto + videoSecure + videoSecure, SRTP_UKNOWN, {twoLines, noPartner}},
      {plain + secure + crypto + "m=video 4 udp 0\r\n" + videoSecure,
       SRTP_UKNOWN,
       {twoLines, otherTransport}},
      {plain + secure + crypto + plain + secure, BE_SRTP_2m_LINE, {twoLines, returns5}},
      // Media of unknown names are of one type.
      {"m=x 4 RTP/AVP 0\r\nm=y 6 RTP/SAVP 0\r\n" + crypto, BE_SRTP_2m_LINE, {twoLines, returns5}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.media);
    const auto lines = linesOf(start + each.media);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::is2mLineBeSrtp(lines), each.type);
    EXPECT_EQ(trace.lines(), each.traces);
  }
}

// The second pair's formats at index 2, the third pair's at index 4 and so on are compared, on purpose.
TEST(TwoMLinesBestEffort, ComparesTheFormatsAtThePairsOwnIndex) {
  struct Pair {
    const char* first;
    const char* second;
    bool same;
  };
  const Pair pairs[] = {
      {"31 32 33", "31 32 34", false}, {"31 32 33", "34 35 33", true}, {"31 32", "34 35", true},
      {"31 32 33", "31 32", false},    {"31 32", "31 32 33", false},   {"31", "34 35", true},
  };
  for (const Pair& each : pairs) {
    SCOPED_TRACE(each.first + std::string(" and ") + each.second);
    const auto lines = linesOf(start + plain + secure + crypto + "m=video 8 RTP/AVP " + each.first +
                               "\r\nm=video 9 RTP/SAVP " + each.second + "\r\n");
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::is2mLineBeSrtp(lines), each.same ? BE_SRTP_2m_LINE : SRTP_UKNOWN);
    EXPECT_EQ(trace.lines(), each.same ? (Traces{twoLines, returns5}) : (Traces{twoLines, otherCodecs}));
  }
}

const TraceLine entering = info("Entering is1mLineBeSrtp()");
const TraceLine test1 = info("TestTrace 1");
const TraceLine test2 = info("TestTrace 2");
const TraceLine test3 = info("TestTrace 3");
const TraceLine oneLine = info("TestTrace SRTP type is BE_SRTP_1m_LINE");
const TraceLine unknown = info("TestTrace SRTP type is SRTP_UKNOWN");
const TraceLine sameMedia = info("The Best Effort SRTP type is SRTP_UKNOWN");

TEST(OneMLineBestEffort, ArePlainMLinesWhoseLastAttributeIsCrypto) {
  const Case cases[] = {
      {"", SRTP_UKNOWN, {entering}},
      {plain, SRTP_UKNOWN, {entering, test2, unknown}},
      {plain + crypto, BE_SRTP_1m_LINE, {entering, test2, test3, oneLine}},
      {"m=audio 4 RTP/AVPF 0\r\n" + crypto, BE_SRTP_1m_LINE, {entering, test2, test3, oneLine}},
      {plain + "a=Crypto\r\n", BE_SRTP_1m_LINE, {entering, test2, test3, oneLine}},
      {plain + sendrecv + crypto, BE_SRTP_1m_LINE, {entering, test2, test3, test3, oneLine}},
      {plain + crypto + crypto, BE_SRTP_1m_LINE, {entering, test2, test3, oneLine, test3, oneLine}},
      // The last attribute decides, on purpose.
      {plain + crypto + sendrecv, SRTP_UKNOWN, {entering, test2, test3, oneLine, test3, unknown}},
      {plain + sendrecv, SRTP_UKNOWN, {entering, test2, test3, unknown}},
      {secure + crypto, SRTP_UKNOWN, {entering, unknown}},
      {"m=audio 4 rtp/avp 0\r\n" + crypto, SRTP_UKNOWN, {entering, unknown}},
      {"m=audio 4 RTP/AVPX 0\r\n" + crypto, SRTP_UKNOWN, {entering, unknown}},
      {plain + crypto + plain + crypto, SRTP_UKNOWN, {entering, sameMedia}},
      {plain + crypto + videoPlain + crypto,
       BE_SRTP_1m_LINE,
       {entering, test1, test2, test3, oneLine, test2, test3, oneLine}},
      {plain + crypto + videoSecure + crypto, SRTP_UKNOWN, {entering, test1, test2, test3, oneLine, unknown}},
      // An m-line without attributes is as the one before, on purpose.
      {plain + crypto + videoPlain, BE_SRTP_1m_LINE, {entering, test1, test2, test3, oneLine, test2}},
      {plain + crypto + videoPlain + sendrecv,
       SRTP_UKNOWN,
       {entering, test1, test2, test3, oneLine, test2, test3, unknown}},
      {plain + videoPlain + crypto, SRTP_UKNOWN, {entering, test1, test2, unknown}},
      // Only neighbours are compared.
      {plain + crypto + videoPlain + plain,
       BE_SRTP_1m_LINE,
       {entering, test1, test2, test3, oneLine, test1, test2, test2}},
      {plain + crypto + videoPlain + videoPlain,
       SRTP_UKNOWN,
       {entering, test1, test2, test3, oneLine, sameMedia}},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.media);
    const auto lines = linesOf(start + each.media);
    TraceCapture trace;
    EXPECT_EQ(sdpModifications::is1mLineBeSrtp(lines), each.type);
    EXPECT_EQ(trace.lines(), each.traces);
  }
}

// The attributes that a session has are none of its media's.
TEST(OneMLineBestEffort, DoesNotCountTheSessionsAttributes) {
  EXPECT_EQ(sdpModifications::is1mLineBeSrtp(linesOf(start + crypto + plain)), SRTP_UKNOWN);
  EXPECT_EQ(sdpModifications::is2mLineBeSrtp(linesOf(start + crypto + plain + secure)), SRTP_UKNOWN);
}

/// An m-line as it is made up, before it is written.
struct Made {
  std::string media;
  std::string transport;
  std::vector<std::string> formats;
  std::vector<std::string> attributes;

  std::string text() const {
    std::string all = "m=" + media + " 5004 " + transport;
    for (const std::string& format : formats) all += " " + format;
    all += "\r\n";
    for (const std::string& attribute : attributes) all += "a=" + attribute + "\r\n";
    return all;
  }
  bool isPlain() const { return transport == "RTP/AVP" || transport == "RTP/AVPF"; }
  bool isSecure() const { return transport == "RTP/SAVP" || transport == "RTP/SAVPF"; }
  static bool isCrypto(const std::string& attribute) { return attribute.substr(0, 7) == "crypto:"; }
  bool hasCrypto() const { return std::any_of(attributes.begin(), attributes.end(), isCrypto); }
  std::optional<std::string> format(std::size_t i) const {
    return i < formats.size() ? std::optional(formats[i]) : std::nullopt;
  }
};

using Offer = std::vector<Made>;

eSecurityType expectedForTwo(const Offer& offer) {
  if (offer.empty() || offer.size() % 2 != 0) return SRTP_UKNOWN;
  for (std::size_t i = 0; i < offer.size(); i += 2) {
    const bool forward = offer[i].isPlain() && offer[i + 1].isSecure();
    const bool backward = offer[i].isSecure() && offer[i + 1].isPlain();
    if (!forward && !backward) return SRTP_UKNOWN;
    if (offer[i].media != offer[i + 1].media || offer[i].format(i) != offer[i + 1].format(i))
      return SRTP_UKNOWN;
  }
  const Made& secured = offer[0].isSecure() ? offer[0] : offer[1];
  return secured.hasCrypto() ? BE_SRTP_2m_LINE : SRTP_UKNOWN;
}

eSecurityType expectedForOne(const Offer& offer) {
  if (offer.empty() || offer[0].attributes.empty()) return SRTP_UKNOWN;
  for (std::size_t i = 0; i < offer.size(); ++i) {
    if (!offer[i].isPlain()) return SRTP_UKNOWN;
    if (i != 0 && offer[i].media == offer[i - 1].media) return SRTP_UKNOWN;
    if (!offer[i].attributes.empty() && !Made::isCrypto(offer[i].attributes.back())) return SRTP_UKNOWN;
  }
  return BE_SRTP_1m_LINE;
}

/// How many offers were found to be of each form.
struct Counts {
  int offers = 0;
  int one = 0;
  int two = 0;
};

void expectTypes(const Offer& offer, Counts& counts) {
  std::string body = start;
  for (const Made& line : offer) body += line.text();
  SdpBuffer buffer(body);
  std::vector<mDescription> lines;
  ASSERT_EQ(sdpModifications::getMLines(buffer.data(), lines), 0) << body;
  ASSERT_EQ(lines.size(), offer.size()) << body;
  const eSecurityType one = expectedForOne(offer);
  const eSecurityType two = expectedForTwo(offer);
  ASSERT_EQ(sdpModifications::is1mLineBeSrtp(lines), one) << body;
  ASSERT_EQ(sdpModifications::is2mLineBeSrtp(std::move(lines)), two) << body;
  ++counts.offers;
  counts.one += one == BE_SRTP_1m_LINE ? 1 : 0;
  counts.two += two == BE_SRTP_2m_LINE ? 1 : 0;
}

/// All offers of that many m-lines, each of them one of the choices.
void expectAllTypes(const Offer& choices, std::size_t lines, Counts& counts) {
  std::size_t all = 1;
  for (std::size_t i = 0; i < lines; ++i) all *= choices.size();
  for (std::size_t number = 0; number < all; ++number) {
    Offer offer;
    for (std::size_t rest = number; offer.size() < lines; rest /= choices.size()) {
      offer.push_back(choices[rest % choices.size()]);
    }
    expectTypes(offer, counts);
    if (testing::Test::HasFatalFailure()) return;
  }
}

using Texts = std::vector<std::string>;

Offer choicesOf(const Texts& media, const Texts& transports, const std::vector<Texts>& formats,
                const std::vector<Texts>& attributes) {
  Offer choices;
  for (const auto& medium : media) {
    for (const auto& transport : transports) {
      for (const auto& list : formats) {
        for (const auto& lines : attributes) choices.push_back({medium, transport, list, lines});
      }
    }
  }
  return choices;
}

const Texts kMedia = {"audio", "video"};
const Texts kTransports = {"RTP/AVP", "RTP/AVPF", "RTP/SAVP", "RTP/SAVPF", "udp"};
const std::string kKey = "crypto:1 AES_CM_128_HMAC_SHA1_80 inline:a";
const std::vector<Texts> kAttributes = {{}, {kKey}, {kKey, "sendrecv"}, {"sendrecv", kKey}, {"sendrecv"}};

TEST(BestEffortTypes, AreThoseOfTheRulesForEveryOfferOfUpToTwoMLines) {
  Counts counts;
  const Offer choices = choicesOf(kMedia, kTransports, {{"0"}, {"8", "0"}}, kAttributes);
  for (std::size_t lines = 0; lines <= 2; ++lines) expectAllTypes(choices, lines, counts);
  EXPECT_EQ(counts.offers, 1 + 100 + 100 * 100);
  // Two media, two transports, two formats and two of the attributes; for two m-lines all that in two orders of the
  // media, the second one with three of the attributes.
  EXPECT_EQ(counts.one, 16 + 2 * (2 * 2 * 2) * (2 * 2 * 3));
  // Two media, two orders, four pairs of transports, two formats; three of the secure one's attributes.
  EXPECT_EQ(counts.two, 2 * 2 * 4 * 2 * 3 * 5);
}

TEST(BestEffortTypes, AreThoseOfTheRulesForOffersOfThreeMLines) {
  Counts counts;
  expectAllTypes(choicesOf(kMedia, {"RTP/AVP", "RTP/SAVP"}, {{"0"}}, {{}, {kKey}, {kKey, "sendrecv"}}), 3,
                 counts);
  EXPECT_EQ(counts.offers, 12 * 12 * 12);
  EXPECT_EQ(counts.one, 2 * 1 * 2 * 2);
  EXPECT_EQ(counts.two, 0);
}

TEST(BestEffortTypes, AreThoseOfTheRulesForOffersOfFourMLines) {
  Counts counts;
  expectAllTypes(choicesOf(kMedia, {"RTP/AVP", "RTP/SAVP"}, {{"0", "8", "9"}}, {{}, {kKey}}), 4, counts);
  EXPECT_EQ(counts.offers, 8 * 8 * 8 * 8);
  EXPECT_EQ(counts.one, 2 * 1 * 2 * 2 * 2);
  EXPECT_EQ(counts.two, (2 * 2 * 1 * 2) * (2 * 2 * 2 * 2));
}

TEST(BestEffortTypes, AreThoseOfTheRulesForPairsOfPairsWithOtherFormats) {
  Counts counts;
  std::mt19937 random(38);
  const std::vector<Texts> formats = {{"0"}, {"0", "8"}, {"0", "8", "9"}, {"0", "8", "4"}, {"0", "3", "9"}};
  const Offer choices = choicesOf({"audio"}, kTransports, formats, kAttributes);
  for (int round = 0; round < 4000; ++round) {
    Offer offer;
    for (int i = 0; i < 4; ++i) offer.push_back(choices[random() % choices.size()]);
    expectTypes(offer, counts);
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(counts.two, 50);
}

TEST(SavpMLine, IsOneWithASecureTransportInFrontOfAPlace) {
  const std::string text = "m=audio 4 RTP/SAVPF 0\r\na=RTP/SAVP\r\n";
  const std::size_t at = text.find("RTP/SAVP");
  const auto exact = std::make_unique<char[]>(text.size() + 1);
  text.copy(exact.get(), text.size());
  char* const sdp = exact.get();
  EXPECT_FALSE(sdpModifications::isSAVPMline(sdp, sdp));
  // It is enough that the text begins in front of the place.
  EXPECT_FALSE(sdpModifications::isSAVPMline(sdp, sdp + at));
  EXPECT_TRUE(sdpModifications::isSAVPMline(sdp, sdp + at + 1));
  EXPECT_TRUE(sdpModifications::isSAVPMline(sdp, sdp + text.size()));
  EXPECT_TRUE(sdpModifications::isSAVPMline(sdp + at, sdp + at + 1));
  EXPECT_FALSE(sdpModifications::isSAVPMline(sdp + at + 1, sdp + text.find('\n')));
  EXPECT_TRUE(sdpModifications::isSAVPMline(sdp + at + 1, sdp + text.size()));
  EXPECT_FALSE(sdpModifications::isSAVPMline(sdp + at, sdp));
  // A place behind the text's end is taken as its end.
  EXPECT_TRUE(sdpModifications::isSAVPMline(sdp, sdp + text.size() + 1));
  EXPECT_FALSE(sdpModifications::isSAVPMline(sdp + text.size() - 7, sdp + text.size() + 1));
}

TEST(SavpMLine, IsNoneWithoutText) {
  char plainLine[] = "m=audio 4 RTP/AVP 0\r\n";
  TraceCapture trace;
  EXPECT_FALSE(sdpModifications::isSAVPMline(nullptr, plainLine));
  EXPECT_FALSE(sdpModifications::isSAVPMline(plainLine, nullptr));
  EXPECT_FALSE(sdpModifications::isSAVPMline(nullptr, nullptr));
  EXPECT_FALSE(sdpModifications::isSAVPMline(plainLine, plainLine + sizeof plainLine - 1));
  EXPECT_EQ(trace.takeLines(), Traces{});
  std::vector<char> endless = unterminatedBuffer();
  EXPECT_FALSE(sdpModifications::isSAVPMline(endless.data(), endless.data() + endless.size()));
  EXPECT_EQ(trace.takeLines(),
            (Traces{{4, 3, "isSAVPMline(): The SDP buffer is null or holds no end of text. Exiting."}}));
}

/// A description too large for a test's stack.
std::unique_ptr<sDescription> someDescription() {
  auto description = std::make_unique<sDescription>();
  description->noOfMDs = 3;
  return description;
}

TEST(SdpsDescription, IsThatOfTheText) {
  const auto description = someDescription();
  SdpBuffer buffer(start + plain + videoSecure);
  EXPECT_EQ(sdpModifications::getSdpsDescription(buffer.data(), *description), 0);
  EXPECT_EQ(sdp_getNoOfMDs(description.get()), 2);
  EXPECT_STREQ(sdp_MgetTransport(&description->media[1].mLine), "RTP/SAVP");
}

TEST(SdpsDescription, IsEmptyForATextThatIsRefused) {
  const TraceLine unusable{4, 3,
                           "getSdpsDescription(): The SDP buffer is null or holds no end of text. Exiting."};
  TraceCapture trace;
  char bad[] = "m=audio 4 RTP/AVP 0\r\n";
  std::vector<char> endless = unterminatedBuffer();
  for (char* const sdp : {static_cast<char*>(nullptr), bad, endless.data()}) {
    const auto description = someDescription();
    EXPECT_EQ(sdpModifications::getSdpsDescription(sdp, *description), 1);
    EXPECT_EQ(sdp_getNoOfMDs(description.get()), 0);
    EXPECT_EQ(trace.takeLines(), sdp == bad ? Traces{} : Traces{unusable});
  }
}

TEST(MLines, AreCopiesOfTheMediaDescriptions) {
  SdpBuffer buffer(start + plain + crypto + videoSecure);
  std::vector<mDescription> lines(3);
  EXPECT_EQ(sdpModifications::getMLines(buffer.data(), lines), 0);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_STREQ(sdp_MgetTransport(&lines[0].mLine), "RTP/AVP");
  EXPECT_EQ(sdp_AgetNoOfAs(&lines[0].aLine), 1);
  EXPECT_STREQ(sdp_MgetPort(&lines[1].mLine), "9");
  EXPECT_EQ(sdp_AgetNoOfAs(&lines[1].aLine), 0);
}

TEST(MLines, AreAtMostTwentyFive) {
  std::string body = start;
  for (int i = 0; i < 30; ++i) body += plain;
  EXPECT_EQ(linesOf(body).size(), 25U);
}

TEST(MLines, AreNoneForATextThatIsRefused) {
  char bad[] = "m=audio 4 RTP/AVP 0\r\n";
  std::vector<char> endless = unterminatedBuffer();
  for (char* const sdp : {static_cast<char*>(nullptr), bad, endless.data()}) {
    std::vector<mDescription> lines(2);
    EXPECT_EQ(sdpModifications::getMLines(sdp, lines), 1);
    EXPECT_TRUE(lines.empty());
  }
}

}  // namespace
