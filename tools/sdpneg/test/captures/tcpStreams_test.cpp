#include "captures/tcpStreams.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "captures/packets.h"

namespace {

using packets::Collected;
using packets::invite;
using packets::response;
using tool::TcpSegment;
using Texts = std::vector<std::string>;

enum Flags : unsigned int { data = 0, syn = 1, fin = 2, reset = 4 };

class Streams {
 public:
  void take(std::uint32_t sequence, std::string_view payload, unsigned int flags = data,
            std::int64_t time = 0, std::uint16_t port = 5060) {
    TcpSegment segment;
    segment.flow = {*tool::parseEndpoint("192.0.2.1"), *tool::parseEndpoint("192.0.2.2:5062")};
    segment.flow.source.port = port;
    segment.sequence = sequence;
    segment.isSyn = (flags & syn) != 0;
    segment.isFin = (flags & fin) != 0;
    segment.isReset = (flags & reset) != 0;
    segment.payload = payload;
    segment.payloadSize = payload.size() + missing;
    segment.time = time;
    streams.take(segment);
  }
  Texts texts() const { return collected.texts(); }

  Collected collected;
  tool::TcpStreams streams{collected.output};
  std::size_t missing = 0;  ///< bytes of each segment that were not captured
};

/// A stream of some messages in segments.
struct Cut {
  explicit Cut(std::size_t size) {
    for (std::size_t at = 0; at < all.size(); at += size) pieces.push_back({at, all.substr(at, size)});
  }
  struct Piece {
    std::size_t place;
    std::string bytes;
  };
  std::string all = invite("one") + response("two") + invite("three");
  std::vector<Piece> pieces;
  Texts texts = {invite("one"), response("two"), invite("three")};
};

TEST(TcpStreams, JoinSegmentsInAnyOrder) {
  const Cut cut(120);
  ASSERT_EQ(cut.pieces.size(), 4U);
  const std::uint32_t first = 0xFFFFFFF0;  // so that numbers go around
  std::vector<std::size_t> order{0, 1, 2, 3, 4};
  do {
    Streams streams;
    for (const std::size_t i : order) {
      if (i == 4) {
        streams.take(first - 1, "", syn);
      } else {
        streams.take(first + static_cast<std::uint32_t>(cut.pieces[i].place), cut.pieces[i].bytes);
      }
    }
    streams.streams.flush();
    if (order[0] == 4) {
      EXPECT_EQ(streams.texts(), cut.texts) << testing::PrintToString(order);
      EXPECT_EQ(streams.collected.troubles(), Texts()) << testing::PrintToString(order);
    }
    // Without the SYN in front, a part that begins like a message may be taken before those in front of it, which are
    // lost then; but nothing is taken twice or put together wrongly.
    for (const std::string& text : cut.texts) EXPECT_LE(std::ranges::count(streams.texts(), text), 1);
    for (const packets::Read& read : streams.collected.messages) {
      EXPECT_TRUE(read.isCut || std::ranges::count(cut.texts, read.text) == 1) << read.text;
    }
    EXPECT_EQ(streams.streams.size(), 0U);
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST(TcpStreams, WaitForTheSynWhereNoSegmentBeginsLikeAMessage) {
  const std::string message = invite();
  Streams streams;
  streams.take(101 + 50, message.substr(50));
  streams.take(100, "", syn);
  EXPECT_EQ(streams.texts(), Texts());
  streams.take(101, message.substr(0, 50));
  EXPECT_EQ(streams.texts(), Texts{message});
}

TEST(TcpStreams, TakeRetransmissionsOnce) {
  const Cut cut(100);
  Streams streams;
  streams.take(0, "", syn);
  streams.take(0, "", syn);
  for (const Cut::Piece& piece : cut.pieces) {
    const auto sequence = 1 + static_cast<std::uint32_t>(piece.place);
    streams.take(sequence, piece.bytes);
    streams.take(sequence, piece.bytes);
    streams.take(sequence - 1, "\x01");  // a keep-alive probe
  }
  // As a whole and with more than was there.
  streams.take(1, cut.all + response("four"));
  Texts expected = cut.texts;
  expected.push_back(response("four"));
  EXPECT_EQ(streams.texts(), expected);
}

TEST(TcpStreams, KeepWhatCameFirstWhereSegmentsOverlap) {
  const std::string small = response("abcdefgh");
  const std::string large = response("ABCDEFGH");
  ASSERT_EQ(small.substr(30, 8), "abcdefgh");
  Streams streams;
  streams.take(0, "", syn);
  streams.take(1 + 34, small.substr(34));
  streams.take(1 + 32, large.substr(32));
  streams.take(1, small.substr(0, 33));
  EXPECT_EQ(streams.texts(), Texts{response("abCDefgh")});
}

TEST(TcpStreams, GoOnBehindAGapAfterSomeBytes) {
  Streams streams;
  streams.take(0, "", syn);
  streams.take(1, response("one") + invite("two").substr(0, 100));
  const auto behind = static_cast<std::uint32_t>(1 + response("one").size() + 100 + 1);
  std::string rest = invite("two").substr(101) + response("three");
  rest.resize(tool::kMaxPendingBytes, '\n');
  streams.take(behind, rest);
  EXPECT_EQ(streams.texts(), Texts{response("one")});
  streams.take(behind + tool::kMaxPendingBytes, "\n");
  EXPECT_EQ(streams.texts(), (Texts{response("one"), invite("two").substr(0, 100), response("three")}));
  EXPECT_TRUE(streams.collected.messages[1].isCut);
  EXPECT_EQ(streams.collected.troubles(), (Texts{"1 places in TCP streams where bytes are missing",
                                                 "1 messages whose end was not captured"}));
}

TEST(TcpStreams, GoOnBehindAGapAfterSomeTime) {
  for (const std::int64_t wait : {tool::kGapPatience, tool::kGapPatience + 1}) {
    Streams streams;
    streams.take(0, "", syn);
    streams.take(10, response("one"), data, 1000);
    streams.take(10 + static_cast<std::uint32_t>(response("one").size()), response("two"), data, 1000 + wait);
    const Texts both{response("one"), response("two")};
    EXPECT_EQ(streams.texts(), wait > tool::kGapPatience ? both : Texts());
    streams.streams.flush();
    EXPECT_EQ(streams.texts(), both);
  }
}

TEST(TcpStreams, WaitAnewWhereOneOfSeveralGapsIsFilled) {
  constexpr std::int64_t kSecond = 1000000;
  const std::string one = response("one");
  const auto size = static_cast<std::uint32_t>(one.size());
  for (const std::int64_t wait : {tool::kGapPatience, tool::kGapPatience + 1}) {
    Streams streams;
    streams.take(0, "", syn);
    streams.take(1 + 20, one.substr(20), data, kSecond);
    streams.take(1 + 2 * size, response("three"), data, 2 * kSecond);
    streams.take(1, one.substr(0, 20), data, 3 * kSecond);
    EXPECT_EQ(streams.texts(), Texts{one});
    streams.take(1 + 3 * size + 2, response("four"), data, 3 * kSecond + wait);
    EXPECT_EQ(streams.texts().size(), wait > tool::kGapPatience ? 3U : 1U);
  }
}

TEST(TcpStreams, GiveTheTimesOfTheSegmentsThatWaited) {
  Streams streams;
  streams.take(0, "", syn, 1);
  streams.take(1 + static_cast<std::uint32_t>(invite().size()), response(), data, 2);
  streams.take(1, invite(), data, 3);
  ASSERT_EQ(streams.collected.messages.size(), 2U);
  EXPECT_EQ(streams.collected.messages[0].time, 3);
  EXPECT_EQ(streams.collected.messages[1].time, 2);
}

TEST(TcpStreams, BeginInTheMiddle) {
  Streams streams;
  streams.take(1000, invite("one").substr(100));
  streams.take(1000 + static_cast<std::uint32_t>(invite("one").size()) - 100, response("two"));
  EXPECT_EQ(streams.texts(), Texts{response("two")});
  EXPECT_EQ(streams.collected.troubles(), Texts());
  // What comes late and stands in front is taken where it is whole.
  streams.take(1000 - static_cast<std::uint32_t>(response("zero").size()), response("zero"));
  EXPECT_EQ(streams.texts(), (Texts{response("two"), response("zero")}));
  streams.take(1000 - static_cast<std::uint32_t>(response("zero").size()), response("zero"));
  EXPECT_EQ(streams.texts().size(), 2U);
}

TEST(TcpStreams, TellApartConnectionsWithTheSamePorts) {
  Streams streams;
  streams.take(100, "", syn);
  streams.take(101, response("one"));
  streams.take(101 + static_cast<std::uint32_t>(response("one").size()), invite("two").substr(0, 100));
  streams.take(90000000, "", syn);
  streams.take(90000001, response("three"));
  EXPECT_EQ(streams.texts(), (Texts{response("one"), invite("two").substr(0, 100), response("three")}));
  // One whose beginning was not captured.
  streams.take(5, response("four").substr(0, 30));
  streams.take(35, response("four").substr(30));
  EXPECT_EQ(streams.texts().back(), response("four"));
  EXPECT_EQ(streams.streams.count(), 1U);
}

TEST(TcpStreams, EndWithFinAndReset) {
  for (const unsigned int flag : {fin, reset}) {
    Streams streams;
    streams.take(0, "", syn);
    streams.take(1, invite().substr(0, 100), flag);
    EXPECT_EQ(streams.texts(), Texts{invite().substr(0, 100)});
    // Its retransmission brings nothing new.
    streams.take(1, invite().substr(0, 100), flag);
    EXPECT_EQ(streams.texts().size(), 1U);
  }
}

TEST(TcpStreams, WaitForNothingBehindAReset) {
  Streams streams;
  streams.take(0, "", syn);
  streams.take(101, response());
  EXPECT_EQ(streams.texts(), Texts());
  streams.take(101 + static_cast<std::uint32_t>(response().size()), "", reset);
  EXPECT_EQ(streams.texts(), Texts{response()});
}

TEST(TcpStreams, EndBehindWhatIsStillMissing) {
  Streams streams;
  streams.take(0, "", syn);
  streams.take(101, invite().substr(100), fin);
  EXPECT_EQ(streams.texts(), Texts());
  streams.take(1, invite().substr(0, 100));
  EXPECT_EQ(streams.texts(), Texts{invite()});
  EXPECT_EQ(streams.collected.troubles(), Texts());
}

TEST(TcpStreams, GoOnBehindSegmentsThatWereCutInTheCapture) {
  Streams streams;
  streams.take(0, "", syn);
  streams.missing = invite().size() - 100;
  streams.take(1, invite().substr(0, 100));
  streams.missing = 0;
  streams.take(1 + static_cast<std::uint32_t>(invite().size()), response());
  EXPECT_EQ(streams.texts(), (Texts{invite().substr(0, 100), response()}));
  EXPECT_EQ(streams.collected.troubles(), (Texts{"1 places in TCP streams where bytes are missing",
                                                 "1 messages whose end was not captured"}));
}

TEST(TcpStreams, AreForgottenWhenTheyAreSilent) {
  Streams streams;
  streams.take(1, response("one"), data, 0, 1);
  streams.take(1, response("two"), data, tool::kStreamPatience, 2);
  EXPECT_EQ(streams.streams.count(), 2U);
  streams.take(1, response("three"), data, tool::kStreamPatience + 1, 3);
  EXPECT_EQ(streams.streams.count(), 2U);
  EXPECT_EQ(streams.texts().size(), 3U);
}

TEST(TcpStreams, AreKeptInSoManyBytes) {
  Streams streams;
  const std::string waiting(60000, 'x');
  for (int i = 0; i < 1500; ++i) {
    streams.take(2, waiting, data, 0, static_cast<std::uint16_t>(i));
    ASSERT_LE(streams.streams.size(), tool::kMaxStreamBytes);
  }
  EXPECT_GT(streams.streams.count(), 1000U);
  EXPECT_GT(streams.collected.output.count(tool::CaptureTrouble::streamsDropped), 0U);
}

TEST(TcpStreams, AreKeptInSoManyNumbers) {
  Streams streams;
  for (std::size_t i = 0; i <= tool::kMaxStreams; ++i) {
    streams.take(0, "", syn, 0, static_cast<std::uint16_t>(i));
  }
  EXPECT_EQ(streams.streams.count(), tool::kMaxStreams);
  EXPECT_EQ(streams.collected.output.count(tool::CaptureTrouble::streamsDropped), 1U);
}

TEST(TcpStreams, CountTinyPiecesByWhatTheyTake) {
  Streams streams;
  for (std::uint32_t i = 0; i < tool::kMaxPendingPieces; ++i) streams.take(10 + 2 * i, "\x80");
  EXPECT_GT(streams.streams.size(), tool::kMaxPendingPieces * 100);
  streams.take(5000, "\x80");
  EXPECT_LT(streams.streams.size(), tool::kMaxPendingPieces * 200);
}

}  // namespace
