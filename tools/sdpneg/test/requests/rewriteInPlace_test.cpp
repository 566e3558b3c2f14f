#include <gtest/gtest.h>
#include <sys/stat.h>

#include <iterator>

#include "bodies.h"
#include "process.h"
#include "testFiles.h"

namespace {

namespace fs = std::filesystem;

const std::string body(bodies::audioCall);
const std::string changed = body + "a=recvonly\r\n";

class InPlace : public testing::Test {
 protected:
  std::size_t filesInFolder() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
  }
  Outcome rewrite(const Surroundings& surroundings = {}) const {
    return runSdpneg({"rewrite", "--in-place", "mode", "recvonly", file}, surroundings);
  }

  TemporaryFolder folder;
  std::string file = folder.write("call.sdp", body);
};

TEST_F(InPlace, WritesTheFileAndNothingElse) {
  const Outcome outcome = rewrite();
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(readBytes(file), changed);
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(InPlace, KeepsTheMode) {
  for (const mode_t mode : {0640U, 0755U, 0600U, 0666U}) {
    folder.write("call.sdp", body);
    ASSERT_EQ(chmod(file.c_str(), mode), 0);
    rewrite();
    EXPECT_EQ(readBytes(file), changed);
    struct stat status {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, mode);
  }
}

TEST_F(InPlace, PutsANewFileInThePlaceOfTheOld) {
  const std::string second = folder.path("second.sdp");
  fs::create_hard_link(file, second);
  rewrite();
  EXPECT_EQ(readBytes(file), changed);
  EXPECT_EQ(readBytes(second), body);
}

TEST_F(InPlace, FollowsASymbolicLink) {
  const std::string link = folder.path("link.sdp");
  fs::create_symlink("call.sdp", link);
  EXPECT_EQ(runSdpneg({"rewrite", "--in-place", "mode", "recvonly", link}).status, 0);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(readBytes(file), changed);
}

TEST_F(InPlace, DoesNotReplaceASymbolicLinkThatLeadsNowhere) {
  const std::string link = folder.path("link.sdp");
  fs::create_symlink("gone.sdp", link);
  const std::string why =
      "sdpneg: " + link + ": cannot be written: it is a symbolic link that leads to no file\n";
  const Outcome pack = runSdpneg({"pack", file, "-o", link});
  EXPECT_EQ(pack.err, why);
  EXPECT_EQ(pack.status, 74);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_FALSE(fs::exists(folder.path("gone.sdp")));
  EXPECT_EQ(filesInFolder(), 2U);
  const std::string loop = folder.path("loop.sdp");
  fs::create_symlink("loop.sdp", loop);
  EXPECT_EQ(runSdpneg({"pack", file, "-o", loop}).status, 74);
  EXPECT_TRUE(fs::is_symlink(loop));
}

TEST_F(InPlace, ThatFailsLeavesTheFileAsItWas) {
  const Outcome outcome = rewrite({.fileSizeLimit = 64});
  EXPECT_EQ(outcome.err, "sdpneg: " + file + ": cannot be written: File too large\n");
  EXPECT_EQ(outcome.status, 74);
  EXPECT_EQ(readBytes(file), body);
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(InPlace, ThatIsRefusedLeavesTheFileAsItWas) {
  folder.write("call.sdp", bodies::faxCall);
  const Outcome outcome =
      runSdpneg({"rewrite", "--in-place", "increase-version", "--", "silence", "on", file});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(readBytes(file), bodies::faxCall);
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(InPlace, MayShowWhatItChanged) {
  const Outcome outcome = runSdpneg({"rewrite", "--in-place", "--diff", "mode", "recvonly", file});
  EXPECT_NE(outcome.out.find("\n+a=recvonly"), std::string::npos);
  EXPECT_EQ(readBytes(file), changed);
}

}  // namespace
