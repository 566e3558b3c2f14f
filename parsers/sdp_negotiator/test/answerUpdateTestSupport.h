#ifndef ANSWER_UPDATE_TEST_SUPPORT_H
#define ANSWER_UPDATE_TEST_SUPPORT_H

#include <memory>

#include "modifiersTestSupport.h"

inline constexpr unsigned short kOLineEnd = 7777;  // what a caller passes in

struct Outcome {
  unsigned short status = 99;
  int length = -1;
  unsigned short oLineEnd = kOLineEnd;
  std::string text;
  bool untouched = false;  ///< not one character of the answer's buffer was written
};

/// A text in a heap block that ends right behind its NUL.
inline std::unique_ptr<char[]> exactBlock(const std::string& text) {
  auto block = std::make_unique<char[]>(text.size() + 1);
  std::memcpy(block.get(), text.c_str(), text.size() + 1);
  return block;
}

inline Outcome update(const std::string& answer, const std::string& oldOffer, const std::string& newOffer,
                      bool modifyOLine = false) {
  Outcome outcome;
  EditBuffer buffer(answer);
  const std::string before = buffer.all();
  const auto oldBlock = exactBlock(oldOffer);
  const auto newBlock = exactBlock(newOffer);
  outcome.status = sdpModifications::sdpUpdateSdp(buffer.data(), oldBlock.get(), newBlock.get(),
                                                  outcome.length, outcome.oLineEnd, modifyOLine);
  EXPECT_EQ(oldBlock.get(), oldOffer) << "the old offer has changed";
  EXPECT_EQ(newBlock.get(), newOffer) << "the new offer has changed";
  buffer.expectGuard();
  outcome.text = buffer.text();
  outcome.untouched = buffer.all() == before;
  return outcome;
}

inline std::string audioSection(const std::string& formats, const std::string& attributes = "",
                                const std::string& port = "5004") {
  return "m=audio " + port + " RTP/AVP" + formats + "\r\n" + attributes;
}

inline std::string withAudio(const std::string& formats, const std::string& attributes = "") {
  return session + audioSection(formats, attributes);
}

inline const std::string anyOffer = withAudio(" 0 18");

/// The update succeeds and makes exactly this answer.
inline void expectAnswer(const std::string& answer, const std::string& newOffer, const std::string& wanted,
                         const std::string& oldOffer = anyOffer) {
  const Outcome outcome = update(answer, oldOffer, newOffer);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.text, wanted);
  EXPECT_EQ(outcome.length, static_cast<int>(wanted.size()));
  EXPECT_EQ(outcome.oLineEnd, kOLineEnd);
}

inline TraceLine error(const std::string& text) { return {4, 3, text}; }

#endif
