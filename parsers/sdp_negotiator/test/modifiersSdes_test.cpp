#include <strings.h>
#include <sys/time.h>

#include <cstdlib>
#include <random>

#include "modifiersTestSupport.h"
#include "sdpNegotiatorParser.h"
#include "traceCapture.h"

// Crypto attributes of SDES (RFC 4568).

namespace {

long seconds() {
  timeval now{};
  gettimeofday(&now, nullptr);
  return now.tv_sec;
}

/// Runs a check within one second of the day's time, for keys change with it.
template <typename Check>
void withinASecond(Check check) {
  long before = 0;
  do {
    before = seconds();
    check();
  } while (before != seconds());
}

std::string newKey() {
  char key[41];
  EXPECT_EQ(sdpModifications::generateSDESKey(key, sizeof key), 1);
  return key;
}

/// The bytes that a key is made of, from the C library's own numbers.
std::vector<unsigned char> keyBytes(long second) {
  srand(static_cast<unsigned int>(second));
  std::vector<unsigned char> bytes;
  for (int i = 0; i < 4; ++i) {
    const auto number = static_cast<unsigned long>(random());
    for (unsigned int byte = 0; byte < 8 && bytes.size() < 30; ++byte) {
      bytes.push_back(static_cast<unsigned char>(number >> (8 * byte) & 0xFFU));
    }
  }
  return bytes;
}

TEST(SdesKey, IsTheRandomNumbersForTheSecondsOfTheDaysTime) {
  std::string key;
  std::vector<unsigned char> bytes;
  withinASecond([&] {
    bytes = keyBytes(seconds());
    key = newKey();
  });
  char wanted[41];
  ASSERT_EQ(base64_encode(bytes.data(), bytes.size(), wanted, sizeof wanted), 1);
  EXPECT_EQ(key, wanted);
  EXPECT_EQ(key.size(), 40U);
  EXPECT_EQ(key.find('='), std::string::npos);
}

// Numbers of 31 bits stand in 64 ones: characters 6 to 9, for example, are of zero bits only.
TEST(SdesKey, HasZeroBytesOnPurpose) {
  const std::string key = newKey();
  EXPECT_EQ(key.substr(6, 4), "AAAA");
  EXPECT_EQ(key.substr(38, 2), "AA");
}

TEST(SdesKey, IsTheSameWithinASecond) {
  withinASecond([] {
    const long before = seconds();
    const std::string first = newKey();
    const std::string second = newKey();
    if (before == seconds()) {
      EXPECT_EQ(first, second);
    }
  });
}

TEST(SdesKey, LeavesTheProcessOwnRandomNumbersAlone) {
  srand(7);
  const long wanted = random();
  srand(7);
  newKey();
  EXPECT_EQ(random(), wanted);
}

TEST(SdesKey, NeedsFortyOneCharacters) {
  const auto exact = std::make_unique<char[]>(41);
  EXPECT_EQ(sdpModifications::generateSDESKey(exact.get(), 41), 1);
  const auto small = std::make_unique<char[]>(40);
  EXPECT_EQ(sdpModifications::generateSDESKey(small.get(), 40), 0);
  EXPECT_EQ(sdpModifications::generateSDESKey(small.get(), 0), 0);
  EXPECT_EQ(sdpModifications::generateSDESKey(nullptr, 41), 0);
}

const std::string start = "v=0\r\n";
const std::string secure = "m=audio 5004 RTP/SAVP 0\r\n";
const std::string usable = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 ";
const std::string place = "<KEY>";

std::string withKey(std::string text) {
  const std::size_t at = text.find(place);
  if (at != std::string::npos) text.replace(at, place.size(), newKey());
  return text;
}

struct SdesCase {
  const char* what;
  std::string before;  ///< behind the session and from the section's m-line on
  std::string after;   ///< with <KEY> for the new key
  unsigned short status = 0;
};

void expectSdes(const SdesCase& each) {
  SCOPED_TRACE(each.what);
  std::string wanted;
  unsigned short status = 0;
  auto buffer = std::make_unique<SdpBuffer>("");
  withinASecond([&] {
    wanted = withKey(start + each.after);
    buffer = std::make_unique<SdpBuffer>(start + each.before);
    status = sdpModifications::addSDESLine(buffer->data() + start.size() - 1);
  });
  EXPECT_EQ(status, each.status);
  buffer->expectText(wanted);
}

TEST(SdesLine, TheFirstUsableOneGetsAKeyAndTheOthersGo) {
  const std::string kept = usable + "inline:<KEY>\r\n";
  const std::string f8 = "a=crypto:2 F8_128_HMAC_SHA1_80 inline:b\r\n";
  const SdesCase cases[] = {
      {"no line", secure + "a=sendrecv\r\n", secure + "a=sendrecv\r\n"},
      {"one line", secure + usable + "inline:old|2^20|1:4 KDR=1\r\n", secure + kept},
      {"nothing behind the suite", secure + usable + "\r\n", secure + usable + "inline:<KEY>\r\n"},
      {"bare line feed", "m=audio 1 S\n" + usable + "inline:old\n",
       "m=audio 1 S\n" + usable + "inline:<KEY>\r\n"},
      {"two lines of the suite", secure + usable + "inline:a\r\n" + usable + "inline:b\r\na=x\r\n",
       secure + kept + "a=x\r\n"},
      {"a stronger suite first",
       secure + "a=crypto:1 AES_256_CM_HMAC_SHA1_80 inline:a\r\n" + usable + "inline:b\r\n", secure + kept},
      {"another usable suite", secure + f8 + usable + "inline:b\r\n",
       secure + "a=crypto:2 F8_128_HMAC_SHA1_80 inline:<KEY>\r\n"},
      {"lines between stay", secure + "a=a\r\n" + f8 + "a=b\r\n" + usable + "inline:b\r\na=c\r\n",
       secure + "a=a\r\na=crypto:2 F8_128_HMAC_SHA1_80 inline:<KEY>\r\na=b\r\na=c\r\n"},
      {"port 0", "m=audio 0 RTP/SAVP 0\r\na=a\r\n" + usable + "inline:a\r\n" + f8 + "a=b\r\n",
       "m=audio 0 RTP/SAVP 0\r\na=a\r\na=b\r\n"},
      {"another section", secure + usable + "inline:a\r\nm=video 1 RTP/SAVP 31\r\n" + f8,
       secure + kept + "m=video 1 RTP/SAVP 31\r\n" + f8},
      {"blanks stay", secure + "a=crypto:1 \t AES_CM_128_HMAC_SHA1_80 \t inline:a\r\n",
       secure + "a=crypto:1 \t AES_CM_128_HMAC_SHA1_80 \t inline:<KEY>\r\n"},
      {"only blanks behind the suite", secure + usable + " \t\n", secure + usable + " \tinline:<KEY>\r\n"},
      // The attribute is text, wherever it stands.
      {"inside a value", secure + "a=note:a=crypto:1 AES_CM_128_HMAC_SHA1_80 x\r\n",
       secure + "a=note:a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:<KEY>\r\n"},
      {"removed from inside a value", secure + "a=note:a=crypto:1 AEAD_AES_128_GCM x\r\na=b\r\n",
       secure + "a=note:a=b\r\n"},
      {"an empty tag", secure + "a=crypto: AES_CM_128_HMAC_SHA1_80 x\r\n",
       secure + "a=crypto: AES_CM_128_HMAC_SHA1_80 inline:<KEY>\r\n"},
      {"upper case", secure + "A=CRYPTO:1 AEAD x\r\n", secure + "A=CRYPTO:1 AEAD x\r\n"},
      // What a removal joins is not looked at again.
      {"a seam", secure + "a=cra=crypto:1 AEAD x\r\nypto:1 AES_CM_128_HMAC_SHA1_80 x\r\n",
       secure + "a=crypto:1 AES_CM_128_HMAC_SHA1_80 x\r\n"},
  };
  for (const SdesCase& each : cases) expectSdes(each);
}

// What stands behind an attribute on the m-line is the m-line's then, a port too.
TEST(SdesLine, OnesThatStandOnTheMLineJoinTheNextLineToIt) {
  const std::string zero = "a=crypto:1 0 x\r\n";  // a port where it stands in the first word
  const std::string kept = usable + "inline:<KEY>\r\n";
  const SdesCase cases[] = {
      {"behind port 0", "m=audio 0 " + zero + zero + "RTP/SAVP 0\r\n" + zero, "m=audio 0 RTP/SAVP 0\r\n"},
      {"in the first word", "m=" + zero + zero + "audio 5004 RTP/SAVP 0\r\n" + usable + "inline:a\r\n",
       "m=audio 5004 RTP/SAVP 0\r\n" + kept},
      {"from the first word on", zero + zero + "m=audio 5004 RTP/SAVP 0\r\n" + usable + "inline:a\r\n",
       "m=audio 5004 RTP/SAVP 0\r\n" + kept},
      {"with port 0 in the end", "m=" + zero + "audio 0 RTP/SAVP 0\r\n" + usable + "inline:a\r\n",
       "m=audio 0 RTP/SAVP 0\r\n"},
      {"without port in the end", "m=" + zero + zero + "audio\r\n" + zero, "m=audio\r\n" + zero, 1},
  };
  for (const SdesCase& each : cases) expectSdes(each);
}

TEST(SdesLine, SuitesAreOrderedNotCompared) {
  const char* const kept[] = {"AES_CM_128_HMAC_SHA1",
                              "AES_CM_128_HMAC_SHA1_80",
                              "AES_CM_128_HMAC_SHA1_32",
                              "AES_CM_256_HMAC_SHA1_80",
                              "aes_cm_128_hmac_sha1_80",
                              "F8_128_HMAC_SHA1_80",
                              "AES_CM_192_HMAC_SHA1_80",
                              "AES",
                              "a",
                              "Z",
                              "~",
                              "\xC3\xA4"};
  for (const char* const suite : kept) {
    const std::string line = "a=crypto:1 " + std::string(suite) + " ";
    expectSdes({suite, secure + line + "inline:a\r\n", secure + line + "inline:<KEY>\r\n"});
  }
  const char* const removed[] = {"AES_256_CM_HMAC_SHA1_80",
                                 "AES_192_CM_HMAC_SHA1_80",
                                 "AEAD_AES_128_GCM",
                                 "AES_CM_128_HMAC_SHA0",
                                 "AES_CM_127",
                                 "9",
                                 "AES_CM_128_HMAC_AAA"};
  for (const char* const suite : removed) {
    expectSdes({suite, secure + "a=crypto:1 " + suite + " inline:a\r\n", secure});
  }
  // A beginning of the name is as good as the name.
  expectSdes(
      {"AES_CM_", secure + "a=crypto:1 AES_CM_ x\r\n", secure + "a=crypto:1 AES_CM_ inline:<KEY>\r\n"});
}

TEST(SdesLine, AMalformedOneStopsTheEdit) {
  // As the section's last line it keeps what stands in front of it before the section's old end.
  const std::string longLine = "a=" + std::string(60, 'b') + "\r\n";
  const SdesCase cases[] = {
      {"no line feed", secure + usable + "inline:a", secure + usable + "inline:a", 1},
      {"no space behind the tag", secure + "a=crypto:1\r\na=b c d\r\n", secure + "a=crypto:1\r\na=b c d\r\n",
       1},
      {"a tab behind the tag", secure + "a=crypto:1\tAES\r\n", secure + "a=crypto:1\tAES\r\n", 1},
      {"no suite", secure + "a=crypto:1  \t\r\na=b c d\r\n", secure + "a=crypto:1  \t\r\na=b c d\r\n", 1},
      {"no suite before a bare line feed", secure + "a=crypto:1  \na=b c d\n",
       secure + "a=crypto:1  \na=b c d\n", 1},
      {"no space behind the suite", secure + "a=crypto:1 AES_CM_128_HMAC_SHA1_80\r\na=b c\r\n",
       secure + "a=crypto:1 AES_CM_128_HMAC_SHA1_80\r\na=b c\r\n", 1},
      {"no port", "m=audio x RTP/SAVP 0\r\n" + usable + "inline:a\r\n",
       "m=audio x RTP/SAVP 0\r\n" + usable + "inline:a\r\n", 1},
      {"a port beyond 65535", "m=audio 65536 RTP/SAVP 0\r\n" + usable + "inline:a\r\n",
       "m=audio 65536 RTP/SAVP 0\r\n" + usable + "inline:a\r\n", 1},
      // What was edited before stays.
      {"behind a key", secure + usable + "inline:a\r\na=crypto:1\r\n" + longLine,
       secure + usable + "inline:<KEY>\r\na=crypto:1\r\n" + longLine, 1},
      {"behind a removal", secure + "a=crypto:1 AEAD x\r\na=b\r\na=crypto:1\r\n" + usable + "inline:a\r\n",
       secure + "a=b\r\na=crypto:1\r\n" + usable + "inline:a\r\n", 1},
      // The m-line's port is not asked for without a crypto attribute.
      {"no port and no crypto", "m=audio\r\na=b\r\n", "m=audio\r\na=b\r\n", 0},
  };
  for (const SdesCase& each : cases) expectSdes(each);
}

// The end that the section had at first counts, on purpose.
TEST(SdesLine, TheSectionsEndDoesNotMoveWithTheText) {
  const std::string next = "m=video 1 RTP/SAVP 31\r\n";
  const std::string gcm = "a=crypto:7 AEAD_AES_256_GCM inline:abcdefghijklmnopqrstuvwxyz\r\n";
  const std::string small = "a=crypto:8 AEAD x\r\n";
  const SdesCase cases[] = {
      {"lines of the next section come in", secure + gcm + next + small + usable + "inline:b\r\n",
       secure + next + usable + "inline:<KEY>\r\n"},
      // The 19 characters that go bring the attribute behind an m-line of 18 to the old end, of 17 in front of it.
      {"one that begins at the old end stays", secure + small + "m=video 6 RTP/x 0\n" + small,
       secure + "m=video 6 RTP/x 0\n" + small},
      {"one that begins in front of the old end goes", secure + small + "m=video 6 RTP/ 0\n" + small,
       secure + "m=video 6 RTP/ 0\n"},
      {"a longer key pushes the last lines out", secure + "a=crypto:1 F8 \r\na=crypto:8 AEAD x\r\n",
       secure + "a=crypto:1 F8 inline:<KEY>\r\na=crypto:8 AEAD x\r\n"},
  };
  for (const SdesCase& each : cases) expectSdes(each);
}

TEST(SdesLine, TracesEachLine) {
  SdpBuffer buffer(start + secure + usable + "inline:a\r\na=crypto:2  AEAD_AES_128_GCM x\r\n");
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::addSDESLine(buffer.data() + start.size() - 1), 0);
  // The longer key has pushed the second line behind the section's old end.
  EXPECT_TRUE(trace.has(2, 2, "Creating SDES crypto line with tag [1] and suite [AES_CM_128_HMAC_SHA1_80]"));
  EXPECT_EQ(trace.lines().size(), 1U);
  SdpBuffer other(start + secure + "a=crypto:2  AEAD_AES_128_GCM x\r\n");
  EXPECT_EQ(sdpModifications::addSDESLine(other.data() + start.size() - 1), 0);
  EXPECT_EQ(trace.lines().back(),
            (TraceLine{2, 2, "Removing SDES crypto line with tag [2] and suite [AEAD_AES_128_GCM]"}));
}

TEST(SdesLine, TracesRemovalsAndTheKeyInTheLinesOrder) {
  const std::string gone = "a=crypto:2 AEAD_AES_128_GCM inline:" + std::string(80, 'x') + "\r\n";
  SdpBuffer buffer(start + secure + gone + usable + "inline:" + std::string(200, 'y') + "\r\n" + gone +
                   usable + "inline:b\r\n" + "a=note:" + std::string(300, 'z') + "\r\n");
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::addSDESLine(buffer.data() + start.size() - 1), 0);
  const TraceLine removed{2, 2, "Removing SDES crypto line with tag [2] and suite [AEAD_AES_128_GCM]"};
  EXPECT_EQ(trace.lines(),
            (Traces{removed,
                    {2, 2, "Creating SDES crypto line with tag [1] and suite [AES_CM_128_HMAC_SHA1_80]"},
                    removed,
                    {2, 2, "Removing SDES crypto line with tag [1] and suite [AES_CM_128_HMAC_SHA1_80]"}}));
}

const TraceLine noRoom{4, 3, "addSDESLine(): The new key does not fit the SDP buffer. Exiting."};

/// A text of that length that ends in a crypto attribute without parameters, which a key makes 47 longer. It
/// begins with the LF in front of its m-line.
std::string sectionOf(std::size_t length) {
  const std::string end = usable + "\r\n";
  return filledTo(length - end.size(), "\n" + secure) + end;
}

TEST(SdesLine, AKeyThatDoesNotFitIsRefused) {
  // "inline:" and 40 characters.
  constexpr std::size_t growth = 47;
  const std::string fits = sectionOf(kLongestBody - growth);
  SdpBuffer full(fits);
  EXPECT_EQ(sdpModifications::addSDESLine(full.data()), 0);
  EXPECT_EQ(strnlen(full.data(), MAX_SDP_PROTOCOL_DATA_SIZE), kLongestBody);
  full.expectGuard();
  TraceCapture trace;
  const TextEdit edit = [](char* sdp) { return sdpModifications::addSDESLine(sdp); };
  const std::string tooLong = sectionOf(kLongestBody - growth + 1);
  SdpBuffer buffer(tooLong);
  const std::string all = buffer.all();
  EXPECT_EQ(edit(buffer.data()), 1);
  EXPECT_TRUE(buffer.all() == all);
  EXPECT_EQ(trace.lines().back(), noRoom);
}

TEST(SdesLine, ATextThatIsNullOrHasNoEndIsRefused) {
  const TraceLine unusable{4, 3, "addSDESLine(): The SDP buffer is null or holds no end of text. Exiting."};
  TraceCapture trace;
  EXPECT_EQ(sdpModifications::addSDESLine(nullptr), 1);
  EXPECT_EQ(trace.takeLines(), Traces{unusable});
  const TextEdit edit = [](char* sdp) { return sdpModifications::addSDESLine(sdp); };
  expectUntouched(withoutNul("\n" + secure + usable + "x\r\n"), edit, 1);
  EXPECT_EQ(trace.takeLines(), (Traces{unusable, unusable}));
  expectUntouched("", edit, 0);
  expectUntouched("\n", edit, 0);
  expectUntouched("\na=crypto:", edit, 1);
}

/// Rewrites the crypto line behind a line feed, step by step on a string.
unsigned short rewriteStepByStep(std::string& text, std::size_t lineFeed, const std::string& key) {
  const std::size_t end = std::min(text.find("\nm=", lineFeed + 1), text.size());
  const auto behindBlanks = [&](std::size_t at, std::size_t lf) {
    while (at < lf && (text[at] == ' ' || text[at] == '\t')) ++at;
    return at;
  };
  bool created = false;
  std::size_t from = lineFeed;
  while (true) {
    const std::size_t at = text.find("a=crypto:", from);
    if (at >= end) return 0;
    const std::size_t lf = text.find('\n', at);
    if (lf == std::string::npos) return 1;
    const std::size_t tagEnd = text.find(' ', at + 9);
    if (tagEnd > lf) return 1;
    const std::size_t suite = behindBlanks(tagEnd, lf);
    const std::size_t suiteEnd = text.find(' ', suite);
    if (suiteEnd > lf) return 1;
    unsigned short port = 0;
    const auto status = sdpParserMessage::getMediaLinePort(text.c_str() + lineFeed + 1, port);
    if (status != 0) return status;
    const std::string name = text.substr(suite, suiteEnd - suite);
    const bool fits = port != 0 && (strncasecmp(name.c_str(), "AES_CM_128_HMAC_SHA1", name.size()) >= 0 ||
                                    strncasecmp(name.c_str(), "AES_CM_256_HMAC_SHA1", name.size()) >= 0);
    if (fits && !created) {
      created = true;
      const std::size_t parameters = behindBlanks(suiteEnd, lf);
      text.replace(parameters, lf + 1 - parameters, "inline:" + key + "\r\n");
      from = at + 1;
    } else {
      text.erase(at, lf + 1 - at);
      from = at;
    }
  }
}

TEST(SdesLine, GivesWhatEachStepByItselfGives) {
  const std::vector<std::string> pieces = {
      "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:a\r\n",
      "a=crypto:1 AEAD_AES_128_GCM inline:abcdefghijklmnop\r\n",
      "a=crypto:1 0 x\n",
      "a=crypto:",
      "a=crypto:1 ",
      "F8 ",
      "5004 ",
      "0 ",
      "\n",
      "\r\n",
      "\nm=video 6 RTP/SAVP 31\r\n",
      "\nm=audio 0 RTP/SAVP 0\r\n",
      "m=",
      "\t",
      "a=sendrecv\r\n",
      "a=cr",
      "ypto:",
  };
  std::mt19937 random(20);
  const auto below = [&](std::size_t n) { return random() % n; };
  const std::string starts[] = {"\nm=audio 5004 RTP/SAVP 0\r\n",
                                "\nm=audio 5004 RTP/SAVP 0 ",
                                "\nm=",
                                "\n",
                                "\nm=audio 0 RTP/SAVP 0\r\n",
                                "\na=crypto:1 0 x\n",
                                "a=crypto:1 0 x\n"};
  for (int round = 0; round < 4000; ++round) {
    std::string text = starts[below(std::size(starts))];
    for (std::size_t n = below(9); n != 0; --n) text += pieces[below(pieces.size())];
    std::string wanted;
    unsigned short wantedStatus = 0;
    unsigned short status = 0;
    auto buffer = std::make_unique<SdpBuffer>("");
    withinASecond([&] {
      wanted = text;
      wantedStatus = rewriteStepByStep(wanted, 0, newKey());
      buffer = std::make_unique<SdpBuffer>(text);
      status = sdpModifications::addSDESLine(buffer->data());
    });
    SCOPED_TRACE(text);
    ASSERT_EQ(status, wantedStatus);
    buffer->expectText(wanted);
    ASSERT_FALSE(HasFailure());
  }
}

}  // namespace
