#include "captures/byteSource.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "captures/capture.h"
#include "captures/packets.h"

namespace {

std::string readAll(tool::ByteSource& source, std::size_t piece) {
  std::string all;
  std::string buffer(piece, '\0');
  while (const std::size_t length = source.read(buffer.data(), piece)) all.append(buffer, 0, length);
  return all;
}

/// A file that goes away.
class TemporaryFile {
 public:
  TemporaryFile() : number_(::mkstemp(name_)) {}
  ~TemporaryFile() {
    ::close(number_);
    ::unlink(name_);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const char* name() const { return name_; }
  void append(std::string_view bytes) {
    ASSERT_EQ(::write(number_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }

 private:
  char name_[32] = "/tmp/sdpneg_capture_XXXXXX";
  int number_;
};

TEST(ByteSource, CanBeLookedAtBeforeItIsRead) {
  const std::string text(2000, 'x');
  for (const std::size_t piece : {1U, 7U, 4096U}) {
    tool::PeekedSource source(tool::sourceOf(text));
    EXPECT_EQ(source.peek(4), text.substr(0, 4));
    EXPECT_EQ(source.peek(2), text.substr(0, 4)) << "what has been looked at stays";
    EXPECT_EQ(source.peek(1500), text.substr(0, 1500));
    EXPECT_EQ(readAll(source, piece), text);
    EXPECT_EQ(source.peek(1), "");
    EXPECT_EQ(source.position(), 2000U);
  }
}

TEST(ByteSource, InflatesInPiecesOfAnySize) {
  std::string text;
  for (int i = 0; i < 50000; ++i) text += std::to_string(i);
  const std::string packed = packets::gzip(text);
  for (const std::size_t piece : {1U, 1000U, 1000000U}) {
    const auto source = tool::inflated(tool::sourceOf(packed));
    EXPECT_TRUE(readAll(*source, piece) == text) << piece;
    EXPECT_FALSE(source->problem());
  }
  EXPECT_EQ(tool::inflated(tool::sourceOf("\x1F\x8B"))->peek(10), "\x1F\x8B");
}

TEST(ByteSource, FollowsAGrowingFile) {
  TemporaryFile file;
  const std::string whole =
      packets::pcap({{packets::ethernet(packets::ip4(packets::udp(packets::invite())))},
                     {packets::ethernet(packets::ip4(packets::udp(packets::response())))}});
  std::size_t written = 10;
  file.append(whole.substr(0, written));
  int waits = 0;
  const auto grow = [&] {
    ++waits;
    const std::string more = whole.substr(written, 50);
    written += more.size();
    file.append(more);
    return !more.empty();
  };
  packets::Collected collected;
  EXPECT_FALSE(tool::readCapture(tool::inputOf(file.name()), {{}, {grow, {}}}, collected.output));
  EXPECT_EQ(collected.texts(), (std::vector<std::string>{packets::invite(), packets::response()}));
  EXPECT_EQ(waits, static_cast<int>((whole.size() - 10 + 49) / 50 + 1));
}

}  // namespace
