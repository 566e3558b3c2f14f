#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>

#include "bodies.h"
#include "process.h"
#include "sdpNegotiator.h"
#include "testFiles.h"

namespace {

constexpr std::size_t summarySize = 132;

const std::string body(bodies::audioCall);

/// A body that is stored deflated.
std::string longBody() {
  std::string text = body;
  while (text.size() < 6000) text += "a=x-line:" + std::to_string(text.size()) + "\n";
  return text;
}

class Transfer : public testing::Test {
 protected:
  std::string packed(const std::string& text) const {
    const Outcome outcome = runSdpneg({"pack", "-o", file}, {.input = text});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out + outcome.err, "");
    return readBytes(file);
  }

  void expectDamaged(const std::string& bytes, const std::string& why) const {
    folder.write("form", bytes);
    const std::string out = folder.path("out");
    const Outcome outcome = runSdpneg({"unpack", file, "-o", out});
    EXPECT_EQ(outcome.err, "sdpneg: " + file + ": is no transfer form: " + why + "\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_FALSE(std::filesystem::exists(out));
  }

  TemporaryFolder folder;
  std::string file = folder.path("form");
};

TEST_F(Transfer, ComesBackAsItWas) {
  for (const std::string& text : {body, withCrLf(body), std::string(bodies::secureCall), longBody()}) {
    packed(text);
    const std::string out = folder.path("out.sdp");
    const Outcome outcome = runSdpneg({"unpack", file, "--output=" + out});
    EXPECT_EQ(outcome.out + outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(readBytes(out), text);
  }
}

TEST_F(Transfer, FormHasTheSizeOfWhatItHolds) {
  EXPECT_EQ(packed(body).size(), summarySize + body.size() + 1);
  EXPECT_LT(packed(longBody()).size(), summarySize + 2560);
}

TEST_F(Transfer, MayGoThroughPipes) {
  const Outcome form = runSdpneg({"pack", "-o", "-"}, {.input = body});
  EXPECT_EQ(form.out, packed(body));
  EXPECT_EQ(runSdpneg({"unpack", "-", "-o", "-"}, {.input = form.out}).out, body);
}

/// The library's own, which holds fewer attribute lines than the tool's.
cSdpNegotiator parsed(const std::string& text) {
  cSdpNegotiator object{};
  EXPECT_EQ(object.sdpParse(text.c_str(), SDP_TYPE_UNKNOWN), 0);
  return object;
}

TEST_F(Transfer, FormIsThatOfTheLibrary) {
  for (const std::string& text : {body, std::string(bodies::secureCall)}) {
    unsigned char* bytes = nullptr;
    unsigned int size = 0;
    ASSERT_EQ(parsed(text).compressObject(&bytes, size), 0);
    const std::unique_ptr<unsigned char[]> owned(bytes);
    EXPECT_EQ(packed(text), std::string(bytes, bytes + size));
  }
}

TEST_F(Transfer, FormIsReadByTheLibrary) {
  for (const std::string& text : {body, longBody()}) {  // of a few and of hundreds of attribute lines
    const std::string form = packed(text);
    cSdpNegotiator object{};
    ASSERT_EQ(object.uncompressObject(reinterpret_cast<const unsigned char*>(form.data()),
                                      static_cast<unsigned int>(form.size())),
              0);
    char out[MAX_SDP_PROTOCOL_DATA_SIZE];
    ASSERT_EQ(object.getSDP(out, sizeof out), 0);
    EXPECT_EQ(out, text);
    EXPECT_EQ(object.getParsedData().audioCodec[0], parsed(text).getParsedData().audioCodec[0]);
  }
}

TEST_F(Transfer, FormOfTheLibraryIsRead) {
  unsigned char* bytes = nullptr;
  unsigned int size = 0;
  ASSERT_EQ(parsed(longBody()).compressObject(&bytes, size), 0);
  const std::unique_ptr<unsigned char[]> owned(bytes);
  folder.write("form", std::string(bytes, bytes + size));
  EXPECT_EQ(runSdpneg({"unpack", file, "-o", "-"}).out, longBody());
}

TEST_F(Transfer, TakesTheBodyOutOfAMessage) {
  EXPECT_EQ(packed("SIP/2.0 200 OK\nc: application/sdp\n\n" + body), packed(body));
}

TEST_F(Transfer, WritesAFileAsOthersDo) {
  packed(body);
  struct stat status {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  const mode_t mask = umask(0);
  umask(mask);
  EXPECT_EQ(status.st_mode & 07777U, 0666U & ~mask);
}

TEST_F(Transfer, DamagedFormsAreRefused) {
  const auto invalid = [](std::size_t size) {
    return "The packed object of " + std::to_string(size) + " bytes is invalid. Exiting.";
  };
  expectDamaged("", invalid(0));
  expectDamaged("x", invalid(1));
  const std::string plain = packed(body);
  expectDamaged(plain.substr(0, summarySize), invalid(summarySize));
  expectDamaged(plain.substr(0, plain.size() - 1), invalid(plain.size() - 1));  // the NUL is gone
  const std::string deflated = packed(longBody());
  expectDamaged(deflated.substr(0, deflated.size() - 1), invalid(deflated.size() - 1));
  std::string changed = deflated;
  changed[summarySize + 100] = static_cast<char>(changed[summarySize + 100] ^ 0x55);
  expectDamaged(changed, "its deflated text is damaged");
  expectDamaged(plain + std::string(2692, 'x'), "it is longer than 2692 bytes");
  expectDamaged(std::string(summarySize + 1, '\0'), "it holds no body");
  expectDamaged(std::string(summarySize, '\0') + "hello\n" + std::string(1, '\0'),
                "its text is no SDP: expected a first line \"v=\", found \"hello\"");
}

TEST_F(Transfer, BadInputIsSaid) {
  const Outcome pack = runSdpneg({"pack", "-o", file}, {.input = "hello\n"});
  EXPECT_EQ(pack.err, "sdpneg: (standard input):1:1: expected a first line \"v=\", found \"hello\"\n");
  EXPECT_EQ(pack.status, 2);
  EXPECT_FALSE(std::filesystem::exists(file));
  const Outcome unpack = runSdpneg({"unpack", file, "-o", "-"});
  EXPECT_EQ(unpack.err, "sdpneg: " + file + ": cannot be read: No such file or directory\n");
  EXPECT_EQ(unpack.status, 2);
}

TEST_F(Transfer, WhatCannotBeWrittenIsSaid) {
  const Outcome folderGiven = runSdpneg({"pack", "-o", folder.path()}, {.input = body});
  EXPECT_EQ(folderGiven.err, "sdpneg: " + folder.path() + ": cannot be written: it is no regular file\n");
  EXPECT_EQ(folderGiven.status, 74);
  const Outcome none = runSdpneg({"pack", "-o", folder.path("no/file")}, {.input = body});
  EXPECT_EQ(none.err,
            "sdpneg: " + folder.path("no/file") + ": cannot be written: No such file or directory\n");
  EXPECT_EQ(none.status, 74);
}

TEST_F(Transfer, RefusesWrongUsage) {
  EXPECT_EQ(runSdpneg({"pack"}, {.input = body}).status, 64);
  EXPECT_EQ(runSdpneg({"unpack", file, "-o"}).status, 64);
  EXPECT_EQ(runSdpneg({"pack", file, file, "-o", file}).status, 64);
}

}  // namespace
