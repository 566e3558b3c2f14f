// docs/document.md has all requests and all reasons that a request may refuse for.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "sdpDocumentRequests.h"

namespace {

std::string documentPage() {
  std::ifstream file(std::string(SDP_TEST_SOURCE_DIR) + "/docs/document.md");
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(DocumentPage, HasARowForEachRequestWithItsArguments) {
  const std::string page = documentPage();
  ASSERT_FALSE(sdp::requestDescriptions().empty());
  for (const sdp::RequestDescription& request : sdp::requestDescriptions()) {
    std::string row = "\n| `" + std::string(request.name);
    if (!request.arguments.empty()) row += " " + std::string(request.arguments);
    EXPECT_NE(page.find(row + "` | `"), std::string::npos) << request.name;
  }
}

TEST(DocumentPage, NamesEachReasonThatABodyGives) {
  const std::string page = documentPage();
  for (const char* const reason :
       {"noMemory", "textTooLong", "unreadableSection", "noCommonCodec", "noPortLeft", "pathAttribute",
        "noKeys", "noFingerprint", "sessionKeysInUse", "differentTransports", "nulCharacter",
        "loneCarriageReturn", "noLine", "noVersionLine"}) {
    EXPECT_NE(page.find("`" + std::string(reason) + "`"), std::string::npos) << reason;
  }
}

}  // namespace
