#include <ctime>
#include <functional>
#include <utility>

#include "judgeTestSupport.h"

// Bodies that are made to hurt: they are judged in a time that grows with their length. With its square it would be
// minutes.

namespace {

using judgeTest::bodyOf;

constexpr std::size_t kLength = 600'000;
constexpr std::size_t kMost = sdp::Judgement::kMostFindings;

/// Pieces up to the length of a hostile body.
std::string pieces(std::size_t most, const std::function<std::string(std::size_t)>& piece) {
  std::string text;
  for (std::size_t n = 0; n < most && text.size() < kLength; ++n) text += piece(n);
  return text;
}
std::string pieces(std::size_t most, const std::string& piece) {
  return pieces(most, [&piece](std::size_t /*n*/) { return piece; });
}
std::string number(std::size_t n) { return std::to_string(n); }

/// @return how many findings there are
std::size_t endure(const std::string& offer, const std::string& answer, double mostSeconds = 20) {
  const std::clock_t begin = std::clock();
  const std::size_t count = judgeTest::findingsOf(offer, answer).size();
  EXPECT_LT(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, mostSeconds);
  return count;
}

TEST(HostileAnswers, WithALongSessionOfThousandsOfSections) {
  const std::string body =
      bodyOf(pieces(70'000, "a=x\n") +
             "a=ice-ufrag:abcd\na=ice-pwd:0123456789012345678901\na=setup:active\na=mid:x\n"
             "a=fingerprint:sha-256 AA\na=key-mgmt:mikey x\na=extmap:1 urn:a\na=sendrecv\n" +
             pieces(10'000, "m=audio 9 RTP/SAVP 0\na=ice-ufrag:abcd\n"));
  EXPECT_EQ(endure(body, body), kMost);  // each is active as the offer is
}

TEST(HostileAnswers, WithThousandsOfFormatsInOneSection) {
  const struct {
    const char* encoding;
    const char* parameter;
  } cases[] = {
      {"AMR/8000", "octet-align="},
      {"AMR/8000", "mode-set=1,"},
      {"H264/90000", "profile-level-id=42e01f;packetization-mode="},
      {"rtx/90000", "apt="},
  };
  constexpr std::size_t kCount = 8'000;
  const auto body = [](std::size_t first, const std::string& encoding, const std::string& parameter) {
    const auto map = [&](std::size_t n) {
      return "a=rtpmap:" + number(first + n) + " " + encoding + "\na=fmtp:" + number(first + n) + " " +
             parameter + number(n) + "\n";
    };
    return bodyOf("m=audio 9 RTP/AVP" +
                  pieces(kCount, [first](std::size_t n) { return " " + number(first + n); }) + "\n" +
                  pieces(kCount, map));
  };
  for (const auto& each : cases) {
    endure(body(1'000, each.encoding, each.parameter),
           body(1'000, each.encoding, each.parameter + std::string("1")));
    endure(body(1'000, each.encoding, each.parameter),
           body(50'000, each.encoding, each.parameter + std::string("1")));
  }
  // All are compared with the first, whose parameters are long.
  const std::string one = bodyOf("m=audio 9 RTP/AVP 96\na=rtpmap:96 AMR/8000\na=fmtp:96 " +
                                 pieces(kLength, "x;") + "octet-align=9\n");
  EXPECT_EQ(endure(one, body(1'000, "AMR/8000", "octet-align=1")), kMost);
  const std::string repeated = bodyOf("m=audio 9 RTP/AVP" + pieces(100'000, " 0") + "\n");
  EXPECT_EQ(endure(repeated, repeated), 1U);
}

TEST(HostileAnswers, WithThousandsOfGroups) {
  const std::string section = "m=audio 9 RTP/AVP 0\na=mid:a\n";
  const auto groups = [&section](const std::string& members) {
    return bodyOf(pieces(30'000, [&](std::size_t n) { return "a=group:L " + members + number(n) + "\n"; }) +
                  section);
  };
  EXPECT_EQ(endure(groups("a "), groups("a ")), kMost);  // each names a mid that no section has
  endure(groups("a "), groups("a b "));
  // Nearly all of a few members, never the same.
  const auto subset = [](std::uint64_t seed) {
    return [seed](std::size_t n) {
      std::string group = "a=group:L";
      std::uint64_t random = n * 2654435761U + seed;
      for (char mid = 'a'; mid <= 'z'; ++mid) {
        random = random * 6364136223846793005U + 1442695040888963407U;
        if ((random >> 40U) % 10 < 8) group.append(" ").append(1, mid);
      }
      return group + "\n";
    };
  };
  endure(bodyOf(pieces(30'000, subset(1)) + section), bodyOf(pieces(30'000, subset(2)) + section));
}

TEST(HostileAnswers, WithGroupsThatNearlyFit) {
  // Each member is in many groups, but in fewer than would be compared by 64 at once; the last is in none with the rest.
  constexpr std::size_t kSmall = 90'000;
  constexpr std::size_t kAlike = kSmall / 64 - 10;
  const std::string section = "m=audio 9 RTP/AVP 0\na=mid:a\n";
  const std::string offer = bodyOf(pieces(kSmall / 2, "a=group:L -\n") + pieces(kSmall / 2, "a=group:L -\n") +
                                   pieces(kAlike, "a=group:L a b c d e f g h i j k l m n o p q r s\n") +
                                   pieces(kAlike, "a=group:L t\n") + section);
  const auto sets = [&section](std::size_t different) {
    return bodyOf(pieces(30'000,
                         [different](std::size_t n) {
                           std::string group = "a=group:L a t";
                           for (std::size_t i = 0; i < 18; ++i) {
                             if (((n % different) >> i & 1U) == 0) {
                               group.append(" ").append(1, static_cast<char>('b' + i));
                             }
                           }
                           return group + "\n";
                         }) +
                  section);
  };
  EXPECT_EQ(endure(offer, sets(1), 10), kMost);
  EXPECT_EQ(endure(offer, sets(30'000), 10), kMost);
}

TEST(HostileAnswers, WithThousandsOfMidsAndEncodings) {
  constexpr std::size_t kCount = 15'000;
  const std::string group =
      "a=group:L" + pieces(kCount, [](std::size_t n) { return " " + number(n); }) + "\n";
  const std::string sections = pieces(
      kCount, [](std::size_t n) { return "m=audio 9 RTP/AVP 0\na=mid:" + number(kCount - 1 - n) + "\n"; });
  EXPECT_EQ(endure(bodyOf(group + sections), bodyOf(group + sections)), 0U);
  const auto encodings = [](char letter) {
    return bodyOf("m=audio 9 RTP/AVP" +
                  pieces(kCount, [](std::size_t n) { return " " + number(n + 1'000); }) + "\n" +
                  pieces(kCount, [letter](std::size_t n) {
                    return "a=rtpmap:" + number(n + 1'000) + " " + letter + number(n) + "/8000\n";
                  }));
  };
  EXPECT_EQ(endure(encodings('x'), encodings('X')), 0U);
}

TEST(HostileAnswers, WithOneMidForAll) {
  const std::string body =
      bodyOf(pieces(10'000, "a=group:BUNDLE a a\n") + pieces(20'000, "m=audio 9 RTP/AVP 0\na=mid:a\n"));
  EXPECT_EQ(endure(body, body), 0U);
}

TEST(HostileAnswers, WithCryptosForAllOfABundle) {
  constexpr std::size_t kCount = 8'000;
  const std::string group =
      "a=group:BUNDLE" + pieces(kCount, [](std::size_t n) { return " " + number(n); }) + "\n";
  const std::string cryptos =
      pieces(kCount, [](std::size_t n) { return "a=crypto:" + number(n) + " A inline:x\n"; });
  const auto sections = [](const std::string& lines) {
    return pieces(kCount, [&lines](std::size_t n) {
      return "m=audio 9 RTP/SAVP 0\na=mid:" + number(n) + "\n" + lines;
    });
  };
  EXPECT_EQ(endure(bodyOf(group + "m=audio 9 RTP/SAVP 0\na=mid:0\n" + cryptos + sections("")),
                   bodyOf(group + "m=audio 9 RTP/SAVP 0\na=mid:0\na=crypto:7 A inline:x\n" +
                          sections("a=crypto:7 A inline:x\n"))),
            0U);
}

TEST(HostileAnswers, WithExtensionsOfTheSessionForAll) {
  const std::string body =
      bodyOf(pieces(20'000, [](std::size_t n) { return "a=extmap:" + number(n) + " u" + number(n) + "\n"; }) +
             pieces(10'000, "m=audio 9 RTP/AVP 0\na=extmap:7 u7\n"));
  EXPECT_EQ(endure(body, body), 0U);
  const auto one = [](std::size_t first) {
    return bodyOf("m=audio 9 RTP/AVP 0\n" + pieces(30'000, [first](std::size_t n) {
                    return "a=extmap:" + number(first + n % 4'000) + " urn:a\n";
                  }));
  };
  EXPECT_EQ(endure(one(0), one(4'096)), kMost);
}

TEST(HostileAnswers, WithFormatsThatAreNone) {
  const auto body = [](const char* letter) {
    return bodyOf("m=audio 9 udp" +
                  pieces(80'000, [letter](std::size_t n) { return " " + (letter + number(n)); }) + "\n");
  };
  EXPECT_EQ(endure(body("a"), body("b")), 1U);
  EXPECT_EQ(endure(pieces(150'000, "m=\n"), pieces(150'000, "m=\n")), kMost);
}

}  // namespace
