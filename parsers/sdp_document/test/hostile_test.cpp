#include <ctime>
#include <span>

#include "changeChecker.h"
#include "documentDump.h"
#include "documentTestSupport.h"

// Bodies that are made to hurt: they are read, asked and changed as any other, in a time that grows with their length.

namespace {

using documentTest::documentOf;
using documentTest::wordsOf;
using sdp::Document;

const std::string kStart = "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=-\nt=0 0\n";

std::string repeated(std::size_t count, const std::function<std::string(std::size_t)>& piece) {
  std::string text;
  for (std::size_t n = 0; n < count; ++n) text += piece(n);
  return text;
}
std::string repeated(std::size_t count, std::string_view piece) {
  std::string text;
  text.reserve(count * piece.size());
  for (std::size_t n = 0; n < count; ++n) text += piece;
  return text;
}
std::string number(std::size_t n) { return std::to_string(n); }

/// The time that this process took for something.
template <typename Action>
double seconds(Action action) {
  const std::clock_t begin = std::clock();
  action();
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

/// What a request, or all questions, may take of a body that takes so long to be read: what grows with the square of
/// such bodies takes thousands of times.
double mostSeconds(double reading) { return 0.3 + 100 * reading; }

constexpr const char* kRequests[] = {"keep-codecs VP8,PCMU,telephone-event all",
                                     "drop-codecs PCMU,rtx all",
                                     "order-codecs 8,VP8 all",
                                     "direction inactive",
                                     "set-profile RTP/AVPF",
                                     "opportunistic",
                                     "secure-only",
                                     "anchor 192.0.2.9 1024",
                                     "strip-attributes candidate,x*",
                                     "unbundle",
                                     "canonical",
                                     "disable all"};

/// Those that are about formats, and about groups.
constexpr const char* kOfFormats[] = {"keep-codecs VP8,PCMU,telephone-event all", "drop-codecs PCMU,rtx all",
                                      "order-codecs 8,VP8 all"};
constexpr const char* kOfGroups[] = {"set-profile RTP/AVPF", "anchor 192.0.2.9 1024", "unbundle",
                                     "disable all"};

/// Asks what costs most, section by section.
std::size_t ask(const Document& document) {
  std::size_t count = document.session().groups().size() + document.session().attributes().size();
  for (const sdp::Section& section : document.sections()) {
    for (const sdp::Format& format : section.formats())
      count += format.fmtp.value_or("").size() + format.apt.value_or(0) % 2;
    count += section.bundle().value_or(0) + section.candidateCount() + section.mid().size() +
             (section.usesTrickleIce() ? 1U : 0U) + static_cast<std::size_t>(section.security()) +
             static_cast<std::size_t>(section.direction()) + section.fingerprintHash().size() +
             section.setup().size() + (section.connection() ? 1U : 0U);
  }
  return count;
}

/// Every request on the body, each on what was read; refusals leave it.
void endure(const std::string& body, std::span<const char* const> requests = kRequests) {
  Document document;
  ASSERT_FALSE(document.read(body));
  const double most = mostSeconds(seconds([&] { EXPECT_FALSE(document.read(body)); }));
  for (const char* const request : requests) {
    SCOPED_TRACE(request);
    ASSERT_FALSE(document.read(body));
    sdp::Refusal refusal;
    EXPECT_LT(seconds([&] { refusal = perform(document, wordsOf(request)); }), most);
    EXPECT_LT(seconds([&] { ask(document); }), most);
    if (refusal) {
      EXPECT_TRUE(document.text() == body);
      EXPECT_NE(document.explanation(), "");
    }
    EXPECT_LE(document.text().size(), 2 * body.size() + 100);
    EXPECT_LT(document.explanation().size(), 2000U);
  }
}

// --- many of a kind ----------------------------------------------------------------------------------------

TEST(HostileBodies, OfAMillionLinesAreRead) {
  for (const std::string_view line : {"\n", "a=x\n"}) {
    const std::string body = repeated(1000000, line);
    const Document document = documentOf(body);
    EXPECT_EQ(document.lineCount(), 1000000U);
    EXPECT_EQ(document.session().attributes().size(), line.size() == 1 ? 0U : 1000000U);
  }
}

TEST(HostileBodies, OfManyLinesAreEndured) {
  endure(kStart + "m=audio 9 RTP/AVP 0 8\n" + repeated(50000, "a=x\n"));
  endure(kStart + repeated(50000, "\r\n"));
  endure(kStart + repeated(20000, "a=sendonly\na=mid:0\na=group:BUNDLE 0\n") +
         "m=audio 9 RTP/AVP 0 8\na=mid:0\n");
}

TEST(HostileBodies, OfOneLongLineAreEndured) {
  const std::string blanks(300000, ' ');
  endure(kStart + "a=" + std::string(300000, 'x'));
  endure(kStart + "m=audio 9 RTP/AVP 0" + blanks + "8\na=fmtp:0" + blanks + "x" + blanks + "\n");
  endure(kStart + "m=" + blanks + "audio" + blanks + "9" + blanks + "RTP/AVP" + blanks + "0 8\n");
  endure(kStart + "a=group:BUNDLE" + blanks + "0\nm=audio 9 RTP/AVP 0\na=mid:" + blanks + "0\n");
  endure(std::string(300000, '\r'));
  endure(kStart + "m=audio 9 RTP/AVP 96\na=rtpmap:96 red/8000\na=fmtp:96 " + repeated(100000, "96/") + "\n");
  endure(kStart + "m=audio 9 RTP/AVP 96\na=rtpmap:96 rtx/8000\na=fmtp:96 " + repeated(100000, "apt;=") +
         "\n");
}

TEST(HostileBodies, OfManyFormatsAreEndured) {
  endure(
      kStart + "m=audio 9 RTP/AVP" + repeated(100000, [](std::size_t n) { return " " + number(n); }) + "\n",
      kOfFormats);
  endure(kStart + "m=audio 9 RTP/AVP" + repeated(100000, " 0 8") + "\n", kOfFormats);
  endure(kStart + "m=x 9 y" + repeated(100000, [](std::size_t n) { return " " + number(n); }) + "\n",
         kOfFormats);
  endure(kStart + "m=audio 9 RTP/AVP" + repeated(5000, [](std::size_t n) { return " " + number(n); }) + "\n" +
         repeated(5000, [](std::size_t n) {
           return "a=rtpmap:" + number(n) + " opus/48000\na=rtcp-fb:" + number(n) + " x\na=rtcp-fb:* y\n";
         }));
}

TEST(HostileBodies, OfManyFormatsAreComparedWithOneAnother) {
  const std::string line =
      "m=audio 9 RTP/AVP" + repeated(20000, [](std::size_t n) { return " " + number(n); }) + "\n";
  Document document;
  const double most = mostSeconds(seconds([&] { EXPECT_FALSE(document.read(kStart + line + line)); }));
  std::size_t same = 0;
  EXPECT_LT(seconds([&] {
              auto other = document.section(2).formats().begin();
              for (const sdp::Format& format : document.section(1).formats()) {
                same += format.format == other->format ? 1U : 0U;
                ++other;
              }
            }),
            most);
  EXPECT_EQ(same, 20000U);
}

/// rtx of 10,000 payload types, each for another.
std::string chainOfRtx(const std::function<std::size_t(std::size_t)>& apt) {
  constexpr std::size_t kCount = 10000;
  return kStart + "m=video 9 RTP/AVP 34" +
         repeated(kCount, [](std::size_t n) { return " " + number(100 + n); }) + "\na=rtpmap:34 VP8/90000\n" +
         repeated(kCount, [&](std::size_t n) {
           return "a=rtpmap:" + number(100 + n) + " rtx/90000\na=fmtp:" + number(100 + n) +
                  " apt=" + number(apt(n)) + "\n";
         });
}

TEST(HostileBodies, OfRtxInARowKeepOrLoseAllOfThem) {
  for (const bool backwards : {false, true}) {
    const std::string body = chainOfRtx([backwards](std::size_t n) {
      if (backwards) return n == 9999 ? std::size_t{34} : 101 + n;
      return n == 0 ? std::size_t{34} : 99 + n;
    });
    Document document = documentOf(body);
    EXPECT_FALSE(keepCodecs(document, "VP8"));
    EXPECT_TRUE(document.text() == body);
    EXPECT_TRUE(dropCodecs(document, "VP8"));
    EXPECT_TRUE(document.text() == body);
    EXPECT_FALSE(dropCodecs(document, backwards ? "10099" : "100"));
    EXPECT_EQ(document.text(), kStart + "m=video 9 RTP/AVP 34\na=rtpmap:34 VP8/90000\n");
  }
}

TEST(HostileBodies, OfRtxInACircleLoseAllOfThem) {
  const std::string body = chainOfRtx([](std::size_t n) { return 100 + (n + 1) % 10000; });
  Document document = documentOf(body);
  EXPECT_FALSE(dropCodecs(document, "VP9"));
  EXPECT_TRUE(document.text() == body);
  EXPECT_FALSE(keepCodecs(document, "VP8"));
  EXPECT_EQ(document.text(), kStart + "m=video 9 RTP/AVP 34\na=rtpmap:34 VP8/90000\n");
  endure(body);
}

TEST(HostileBodies, OfManyThatServeOneAreEndured) {
  endure(chainOfRtx([](std::size_t) { return std::size_t{34}; }));
  endure(chainOfRtx([](std::size_t n) { return 100 + n; }));
}

TEST(HostileBodies, OfManyGroupsAreEndured) {
  const std::string sections = repeated(50, [](std::size_t n) {
    return "m=audio " + number(n == 0 ? 9 : 0) + " RTP/AVP 0\na=mid:" + number(n) +
           (n == 0 ? "\n" : "\na=bundle-only\n");
  });
  endure(kStart + repeated(10000, "a=group:BUNDLE 0 1\n") + sections);
  endure(kStart + repeated(10000, [](std::size_t n) { return "a=group:BUNDLE " + number(n) + " 0\n"; }) +
         sections);
  endure(kStart + repeated(10000, "a=group:LS\n") + sections);
  endure(kStart + "a=group:BUNDLE" + repeated(50000, " 0") + "\n" + sections);
}

std::string bundleOf(std::size_t count, const std::function<std::string(std::size_t)>& mid,
                     std::size_t withPort) {
  return kStart + "a=group:BUNDLE" + repeated(count, [&](std::size_t n) { return " " + mid(n); }) + "\n" +
         repeated(count, [&](std::size_t n) {
           const bool has = n < withPort;
           return std::string("m=audio ") + (has ? "9" : "0") + " RTP/AVP 0\na=mid:" + mid(n) + "\n" +
                  (has ? "" : "a=bundle-only\n");
         });
}

TEST(HostileBodies, OfManySectionsInOneBundleArePutAway) {
  for (const std::size_t withPort : {std::size_t{1}, std::size_t{10000}}) {
    const std::string body = bundleOf(10000, number, withPort);
    Document document = documentOf(body);
    EXPECT_FALSE(disable(document, "all"));
    const std::string expected = kStart + repeated(10000, [](std::size_t n) {
                                   return "m=audio 0 RTP/AVP 0\na=mid:" + number(n) + "\n";
                                 });
    EXPECT_TRUE(document.text() == expected);
    endure(body);
  }
}

TEST(HostileBodies, OfManySectionsWithOneMidAreEndured) {
  const auto same = [](std::size_t) { return std::string("x"); };
  endure(bundleOf(10000, same, 1), kOfGroups);
  endure(bundleOf(10000, same, 10000), kOfGroups);
  // Many sections of one mid, which many groups name.
  const std::string sections = repeated(12000, "m=audio 9 RTP/AVP 0\na=mid:x\n");
  const std::string bundledOnly = repeated(12000, "m=audio 0 RTP/AVP 0\na=mid:x\na=bundle-only\n");
  for (const char* const group : {"a=group:LS x\n", "a=group:BUNDLE x y\n"}) {
    endure(kStart + repeated(12000, group) + sections, kOfGroups);
    endure(kStart + repeated(12000, group) + bundledOnly, kOfGroups);
  }
}

TEST(HostileBodies, OfManyPortsInOneBundleAreAnchored) {
  const std::string body = kStart + "a=group:BUNDLE" +
                           repeated(5000, [](std::size_t n) { return " " + number(n); }) +
                           "\nc=IN IP4 192.0.2.1\n" + repeated(5000, [](std::size_t n) {
                             return "m=audio " + number(10000 + n) + " RTP/AVP 0\na=mid:" + number(n) + "\n";
                           });
  Document document = documentOf(body);
  EXPECT_FALSE(anchor(document, "192.0.2.9", 2000));
  EXPECT_EQ(document.section(5000).port(), 2000 + 2 * 4999);
}

TEST(HostileBodies, OfManyConnectionsAndCandidatesAreAnchored) {
  Document document = documentOf(
      kStart + "m=audio 9 RTP/AVP 0\n" +
      repeated(20000, "c=IN IP4 192.0.2.1\na=candidate:1 1 udp 1 192.0.2.1 9 typ host\na=rtcp:9\n"));
  EXPECT_FALSE(anchor(document, "::9", 2000));
  EXPECT_TRUE(document.text() ==
              kStart + "m=audio 2000 RTP/AVP 0\n" + repeated(20000, "c=IN IP6 ::9\na=rtcp:2001\n"));
  endure(repeated(20000, "c=IN IP4 0.0.0.0\na=ice-ufrag:x\n") + repeated(200, "m=audio 9 RTP/AVP 0\n"));
}

TEST(HostileBodies, OfManySectionsAskTheSessionOnce) {
  endure(kStart + repeated(20000, "a=x\n") + "a=ice-options:" + repeated(20000, "y ") + "\n" +
         repeated(5000, "m=audio 9 RTP/AVP 0\n"));
  endure(kStart + repeated(10000, "m=\n") + repeated(10000, "m=audio 9 RTP/AVP 0\n"));
}

TEST(HostileBodies, OfManyNamesToStripAreEndured) {
  Document document = documentOf(kStart + repeated(2000, "a=abc\n"));
  const std::string names = repeated(2000, "x*,") + "abd";
  EXPECT_FALSE(stripAttributes(document, names));
  EXPECT_EQ(document.session().attributes().size(), 2000U);
  const std::string list = repeated(5000, "opus/48000/2,") + "PCMU";
  ASSERT_FALSE(document.read(kStart + "m=audio 9 RTP/AVP 8 0\n"));
  EXPECT_FALSE(keepCodecs(document, list));
  EXPECT_EQ(document.text(), kStart + "m=audio 9 RTP/AVP 0\n");
}

TEST(HostileBodies, OfLongWordsAreExplainedInShort) {
  const std::string longName(10000, 'x');
  Document document = documentOf("v=0\nm=" + longName + " 9 RTP/AVP" +
                                 repeated(100, [](std::size_t n) { return " " + number(100 + n); }) +
                                 "\na=rtpmap:100 " + longName + "/8000\n");
  EXPECT_TRUE(keepCodecs(document, repeated(1000, "y,") + "y", "all"));
  const std::string shortName(64, 'x');
  EXPECT_EQ(document.explanation(),
            "section 1 (" + shortName + "...): no common codec: it has " + shortName +
                "..., 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111, ...; kept would be " +
                repeated(32, "y,") + "...");
}

// --- shapes that have crashed others --------------------------------------------------------------------------

/// Whole bodies, their beginnings, and the same once more with other ends of lines: whatever is asked and requested, the
/// checker has nothing to complain of.
void judge(std::string_view body) {
  Document document;
  ASSERT_FALSE(document.read(body));
  EXPECT_EQ(document.text(), body);
  EXPECT_FALSE(documentDump::dumpOf(document).empty());
  for (const char* const request : kRequests) {
    ASSERT_FALSE(document.read(body));
    const auto words = wordsOf(request);
    if (perform(document, words)) {
      EXPECT_EQ(document.text(), body) << request;
      continue;
    }
    for (const std::string& complaint : plain::complaintsAbout(words, body, document.text()))
      ADD_FAILURE() << request << ": " << complaint << "\n" << body;
    Document fresh;
    ASSERT_FALSE(fresh.read(document.text()));
    EXPECT_EQ(documentDump::dumpOf(document), documentDump::dumpOf(fresh)) << request;
  }
}

TEST(CrashShapes, AreReadAskedAndChangedAsAnyBody) {
  using namespace std::string_literals;
  const std::string audio = "v=0\r\nm=audio 9 RTP/AVP 0 96\r\n";
  const std::string overlong(3000, 'w');
  const std::string bodies[] = {
      // a NUL within
      audio + "a=fmtp\0:96 x\r\na=fm\0tp:96\r\na=rtpmap:96 op\0us/48000\r\na=mid:\0\r\n"s,
      "v=0\r\nm=au\0dio 9\0 RTP/AVP 0\r\n"s,
      // numbers beyond all types
      "v=0\r\nm=audio 17000 RTP/AVP 4294967296 18446744073709551616 -1\r\na=rtpmap:4294967296 "
      "x/99999999999999999999\r\na=fmtp:4294967296 apt=18446744073709551616\r\n",
      // long words wherever there are words
      "v=0\r\nc=IN IP4 " + overlong + "\r\nm=" + overlong + " 9 " + overlong + " " + overlong + "\r\n",
      audio + "a=candidate:" + overlong + " 1 udp 1 " + overlong + " 9 typ " + overlong +
          "\r\na=ssrc:1 cname:" + overlong + "\r\n",
      audio + "a=fmtp:96 mode=" + overlong + "\r\na=rtpmap:96 " + overlong + "/" + overlong +
          "\r\na=crypto:1 " + overlong + " " + overlong + "\r\n",
      // parameters without what belongs to them
      audio +
          "a=fmtp:96\r\na=fmtp:96 \r\na=fmtp:96 x\r\na=fmtp:96 x==;;=\r\na=fmtp:96 apt=;apt\r\na=fmtp:96 "
          "apt=0;\r\na=rtpmap:96 rtx/8000\r\n",
      audio +
          "a=rtpmap\r\na=rtpmap:\r\na=rtpmap:96\r\na=crypto\r\na=crypto:\r\na=crypto:1\r\na=fingerprint:"
          "\r\na=setup:\r\na=mid\r\na=group\r\na=rtcp\r\n"
          "a=rtcp:\r\na=rtcp-fb\r\na=rtcp-fb:\r\na=ice-options\r\na=label\r\na=\r\na=:\r\n",
      "v=0\r\na=group\r\na=group:\r\na=group: \r\na=group:BUNDLE\r\n" + audio,
      // a line that holds another's beginning
      "v=0\r\ni=(o=IN IP4 192.168.1.100)\r\ns=m=audio 0 RTP/AVP 0\r\nk=clear:m==\r\nm=audio 9 RTP/AVP "
      "0\r\na=x:m=video 9 RTP/AVP 31\r\n",
      // conversions of printing
      "v=0\r\ns=%s%n%s\r\nm=%s%n 9 RTP/AVP %n 96\r\na=rtpmap:96 %s%n/8000\r\na=mid:%n\r\n",
      // fields that are missing or doubled
      "v=0\r\nm=audio  9\t\tRTP/AVP   0\r\nm=audio -1 RTP/AVP 0\r\nm=audio 70000 RTP/AVP 0\r\nm=audio 5004/ "
      "RTP/AVP 0\r\nm=audio 5004/99999999999 RTP/AVP 0\r\nm=audio\r\nm=\r\n",
      "v=0\r\nc=IN IP4 ::1\r\nc=IN IP4\r\nc=\r\nc=IN IP6 1.1.1.1/1/2/3\r\n" + audio +
          "c=IN\r\nc=IN IP4 /\r\n",
      audio + "b=AS\r\nb=\r\nb=AS:4294967296\r\nb=AS:-1\r\nb=:\r\nb=:1\r\n",
      // ends of lines
      "v=0\r\r\n\n\r\n\rm=audio 9 RTP/AVP 0\n\r\r\na=x\r\r\r\n a=y\r\n\r",
      // what stands at the very end
      audio + "a=fmtp:96 profile-level-id=",
      audio + "a=fmtp:96 apt=",
      audio + "a=rtcp-fb:",
      audio + "a",
      audio + "a=",
      audio + "m",
      audio + "m=",
      audio + "c=",
      // crypto
      audio + "a=crypto:1AES\r\na=crypto:1 \r\na=crypto: 1 x\r\n" + repeated(300, "a=crypto:1 x y\r\n"),
      // bytes above ASCII, in all places
      "\xff=\x80\r\nm=\x80 9 \xff/RTP/\xfe \x81\r\na=\xff:\x80\r\na=rtpmap:\x81 \x80/8000\r\na=mid:\xff\r\n",
      // many sections
      "v=0\r\n" + repeated(300, "m=audio 9 RTP/AVP 0\r\n"),
  };
  for (const std::string& body : bodies) judge(body);
}

TEST(CrashShapes, MayEndAnywhere) {
  const std::string body =
      "v=0\r\na=group:BUNDLE 0 1\r\na=fingerprint:x y\r\nm=audio 9/2 RTP/AVP 0 96 97\r\nc=IN IP4 "
      "0.0.0.0\r\na=rtpmap:96 opus/48000/2\r\n"
      "a=rtpmap:97 rtx/48000\r\na=fmtp:97 apt=96\r\na=mid:0\r\na=rtcp:9 IN IP4 0.0.0.0\r\nm=video 0 RTP/AVP "
      "31\r\na=mid:1\r\na=bundle-only\r\n";
  for (std::size_t length = 0; length <= body.size(); ++length) {
    // A block of its own, so that reading behind it is seen.
    const std::vector<char> exact(body.begin(), body.begin() + static_cast<std::ptrdiff_t>(length));
    judge({exact.data(), exact.size()});
  }
}

TEST(CrashShapes, MayRepeatOneFormatAndWhatSpeaksOfIt) {
  const std::string body =
      kStart + "m=audio 9 RTP/AVP" + repeated(20000, " 96") + "\n" + repeated(20000, "a=fmtp:96 x\n");
  const Document document = documentOf(body);
  std::size_t formats = 0;
  const double reading = seconds([&body] { documentOf(body); });
  const double asking = seconds([&] {
    for (const sdp::Format& format : document.section(1).formats()) {
      EXPECT_EQ(format.fmtp, "x");
      EXPECT_FALSE(format.apt);
      ++formats;
    }
  });
  EXPECT_EQ(formats, 20000U);
  EXPECT_LT(asking, mostSeconds(reading));
}

TEST(CrashShapes, MaySetTheLineOfAGroupAgainAndAgain) {
  Document document = documentOf(kStart + "a=group:BUNDLE 0\nm=audio 9 RTP/AVP 0\na=mid:0\n");
  for (int n = 0; n < 5000; ++n)
    ASSERT_FALSE(document.setAttribute(0, "group", "BUNDLE 0 1 2 3 4 5 6 7 8 9"));
  EXPECT_EQ(document.section(1).bundle(), 0U);
}

}  // namespace
