#include "bundles.h"

#include "core/coreTestSupport.h"

using namespace sdp::exchange;

namespace {

TEST(Bundles, HaveTheirSectionsInTheOrderOfTheirMids) {
  const sdp::Document document = coreTest::documentOf(
      "v=0|a=group:LS a b|a=group:BUNDLE c a x a|a=group:BUNDLE b c|m=audio 1 RTP/AVP 0|a=mid:a|m=audio 1 RTP/AVP "
      "0|a=mid:b|m=audio 1 RTP/AVP 0|a=mid:c|m=audio 1 RTP/AVP 0|a=mid:a|m=audio 1 RTP/AVP 0|");
  const Bundles bundles(document);
  ASSERT_EQ(bundles.groupCount(), 3U);
  const auto members = [&](std::uint32_t group) {
    const auto list = bundles.membersOf(group);
    return std::vector<std::uint32_t>(list.begin(), list.end());
  };
  EXPECT_EQ(members(0), (std::vector<std::uint32_t>{}));
  EXPECT_EQ(members(1), (std::vector<std::uint32_t>{3, 1, 4}));
  EXPECT_EQ(members(2), (std::vector<std::uint32_t>{2}));
  EXPECT_EQ(bundles.groupOf(1), 1U);
  EXPECT_EQ(bundles.groupOf(5), std::nullopt);
  EXPECT_TRUE(bundles.areTogether(1, 3));
  EXPECT_FALSE(bundles.areTogether(1, 2));
  EXPECT_FALSE(bundles.areTogether(5, 5));
}

TEST(Bundles, ShareWhatTheSessionOrTheirFirstSectionHas) {
  const sdp::Document document = coreTest::documentOf(
      "v=0|a=group:BUNDLE b c a|a=ice-ufrag:sess  x|a=crypto:1 S inline:s|m=audio 1 RTP/AVP 0|a=mid:a|a=setup:active|m=audio "
      "0 RTP/AVP 0|a=mid:b|a=setup:passive|m=audio 1 RTP/AVP 0|a=mid:c|a=ice-ufrag:own|a=crypto:2 S inline:c|m=audio 1 "
      "RTP/AVP 0|");
  const Bundles bundles(document);
  EXPECT_EQ(bundles.placeOf(3, Credential::setup), Place::group);
  EXPECT_EQ(bundles.valueOf(3, Credential::setup), "active");  // since the section in front of it is disabled
  EXPECT_EQ(bundles.placeOf(2, Credential::setup), Place::section);
  EXPECT_EQ(bundles.placeOf(1, Credential::iceUfrag), Place::session);
  EXPECT_EQ(bundles.valueOf(1, Credential::iceUfrag), "sess");
  EXPECT_EQ(bundles.valueOf(3, Credential::iceUfrag), "own");
  EXPECT_EQ(bundles.placeOf(1, Credential::crypto), Place::group);  // the session has none that count
  EXPECT_EQ(bundles.holderOf(1, Credential::crypto), 3U);
  EXPECT_EQ(bundles.placeOf(4, Credential::crypto), Place::nowhere);
  EXPECT_EQ(bundles.holderOf(4, Credential::crypto), 0U);
  EXPECT_EQ(bundles.valueOf(4, Credential::setup), "");
  EXPECT_FALSE(bundles.hasIce(1));
}

}  // namespace
