#ifndef DIALOG_TEST_SUPPORT_H
#define DIALOG_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "sdpDialog.h"

// Bodies in tests are written with `|` for CR LF.

namespace dialogTest {

using sdp::Dialog;
using sdp::DialogFailure;
using sdp::DialogState;
using sdp::Direction;
using sdp::Party;

inline std::string lines(std::string_view text) {
  std::string result;
  for (const char c : text) c == '|' ? result.append("\r\n") : result.append(1, c);
  return result;
}

/// What is one's own, with a version, and what the peer sends.
inline std::string ours(std::string_view version, std::string_view sections) {
  return lines(std::string("v=0|o=a 7 ")
                   .append(version)
                   .append(" IN IP4 192.0.2.1|s=-|c=IN IP4 192.0.2.1|t=0 0|")
                   .append(sections));
}
inline std::string theirs(std::string_view version, std::string_view sections) {
  return lines(std::string("v=0|o=b 9 ")
                   .append(version)
                   .append(" IN IP4 198.51.100.1|s=-|c=IN IP4 198.51.100.1|t=0 0|")
                   .append(sections));
}

inline constexpr std::string_view kAudio = "m=audio 4000 RTP/AVP 0|";
inline constexpr std::string_view kPeersAudio = "m=audio 5000 RTP/AVP 0|";

/// A body that must come.
inline std::string textOf(const sdp::LocalBody& body) {
  EXPECT_TRUE(body) << sdp::textOf(body.failure) << " in section " << body.section;
  return body.text;
}

/// A dialog in which one's own offer was answered.
inline Dialog offered(std::string_view description, std::string_view answer) {
  Dialog dialog;
  EXPECT_TRUE(dialog.offer(description));
  const sdp::DialogStatus taken = dialog.receiveAnswer(answer);
  EXPECT_TRUE(taken) << sdp::textOf(taken.failure);
  return dialog;
}

/// A dialog in which the peer's offer was answered.
inline Dialog answered(std::string_view offer, std::string_view answer) {
  Dialog dialog;
  EXPECT_TRUE(dialog.receiveOffer(offer));
  const sdp::LocalBody sent = dialog.answerAsIs(answer);
  EXPECT_TRUE(sent) << sdp::textOf(sent.failure);
  return dialog;
}

/// What a re-offer's sections are; the lines in front are those of ours(). Then the peer takes it, so that all of it is
/// current.
inline void expectReoffer(Dialog& dialog, const sdp::LocalBody& body, std::string_view version,
                          std::string_view sections) {
  EXPECT_EQ(textOf(body), ours(version, sections));
  EXPECT_EQ(dialog.pending(), body.text);
}

/// A dialog that is as it was before it was made to bytes.
inline void expectRoundTrip(const Dialog& dialog) {
  const sdp::DialogBytes bytes = dialog.serialise();
  ASSERT_TRUE(bytes);
  Dialog restored;
  ASSERT_TRUE(restored.restore(bytes.bytes));
  EXPECT_TRUE(restored == dialog);
  EXPECT_EQ(restored.state(), dialog.state());
  EXPECT_EQ(restored.offerer(), dialog.offerer());
  EXPECT_EQ(restored.local(), dialog.local());
  EXPECT_EQ(restored.remote(), dialog.remote());
  EXPECT_EQ(restored.pending(), dialog.pending());
  EXPECT_EQ(restored.isHeld(), dialog.isHeld());
  EXPECT_EQ(restored.serialise().bytes, bytes.bytes);
}

}  // namespace dialogTest

#endif
