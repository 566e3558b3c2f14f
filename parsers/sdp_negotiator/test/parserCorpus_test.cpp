#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>

#include "parserParseSupport.h"
#include "testFiles.h"

// Every body of a larger collection gives a status, and a refusal says why.

namespace {

/// What an error trace says, without what differs from body to body.
std::string reasonOf(const TraceLines& traces) {
  for (const TraceLine& line : traces) {
    if (line.flag != 4) continue;
    if (line.text.rfind("line ", 0) == 0) return "refused by the decoder";
    if (line.text.rfind("Invalid ip address", 0) == 0) return "Invalid ip address";
    if (line.text.rfind("Invalid port number", 0) == 0) return line.text.substr(0, line.text.find(": "));
    return line.text;
  }
  return {};
}

TEST(ParserCorpus, GivesAStatusForEveryBody) {
  const std::string folder = corpusFolder();
  if (folder.empty()) GTEST_SKIP() << "SDP_CORPUS_DIR is not set";
  std::map<std::string, int> reasons;
  int accepted = 0;
  const auto files = sdpFilesBelow(folder);
  ASSERT_FALSE(files.empty());
  for (const auto& file : files) {
    const Parsed result = parsed(readBytes(file));
    EXPECT_LT(result.data.mediaType, 64U) << file;
    const std::string reason = result.status == 0 ? "" : reasonOf(result.traces);
    EXPECT_TRUE(result.status == 0 || !reason.empty()) << file << " is refused without a reason";
    if (result.status == 0) {
      ++accepted;
    } else {
      ++reasons[reason];
    }
  }
  std::printf("%zu bodies, %d accepted\n", files.size(), accepted);
  for (const auto& [reason, count] : reasons) std::printf("%5d refused: %s\n", count, reason.c_str());
}

}  // namespace
