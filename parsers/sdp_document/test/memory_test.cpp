#include <cstdlib>
#include <new>

#include "documentDump.h"
#include "documentTestSupport.h"
#include "requestSamples.h"
#include "testFiles.h"

// What a document allocates: nothing when it is used again, and nothing that would be lost when memory runs out.

namespace {

std::size_t allocations = 0;
std::size_t living = 0;  // blocks
constexpr std::size_t kNever = static_cast<std::size_t>(-1);
std::size_t left = kNever;  // until memory runs out

void* allocate(std::size_t size) {
  ++allocations;
  if (left == 0) throw std::bad_alloc();
  if (left != kNever) --left;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  ++living;
  return memory;
}

void release(void* memory) noexcept {
  if (memory != nullptr) --living;
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { release(memory); }

namespace {

using requestSamples::Request;
using sdp::Document;
using sdp::Reason;

std::vector<std::string> bodies() {
  std::vector<std::string> texts;
  for (const auto& file : sdpFilesBelow(SDP_TEST_SOURCE_DIR "/parsers/sdp_document/test/bodies")) {
    texts.push_back(readBytes(file));
  }
  return texts;
}

/// Asks everything, without a text of it.
std::size_t ask(const Document& document) {
  std::size_t count = document.text().size() + document.lineCount() + document.explanation().size();
  const auto part = [&count](const auto& asked) {
    for (const sdp::Line& line : asked.lines()) count += line.content.size();
    for (const sdp::Attribute& attribute : asked.attributes())
      count += asked.attributes(attribute.name).size();
    for (const sdp::Bandwidth& bandwidth : asked.bandwidths()) count += bandwidth.type.size();
    if (const auto connection = asked.connection()) count += connection->address.size();
  };
  part(document.session());
  for (const sdp::Group& group : document.session().groups()) count += group.semantics.size();
  for (const sdp::Section& section : document.sections()) {
    part(section);
    for (const sdp::Format& format : section.formats()) {
      count += format.fmtp.value_or("").size() + format.feedback().size();
      count += section.format(format.format)->format.size();
    }
    for (const sdp::Crypto& crypto : section.crypto()) count += crypto.suite.size();
    count += section.mid().size() + section.label().size() + section.bundle().value_or(0) +
             section.setup().size() + section.fingerprintHash().size() + section.candidateCount() +
             (section.usesTrickleIce() ? 1U : 0U) + (section.rtcp() ? 1U : 0U) +
             static_cast<std::size_t>(section.security()) + static_cast<std::size_t>(section.direction());
  }
  return count;
}

/// A request of each kind that changes something of most bodies, and some that are refused.
std::vector<Request> chain() {
  return {{"keep-codecs", "opus,VP8,PCMU,PCMA,telephone-event,red"},
          {"drop-codecs", "G722,96"},
          {"keep-codecs", "nosuch", "all"},
          {"order-codecs", "PCMA,0"},
          {"direction", "sendonly"},
          {"anchor", "2001:db8::250", "40000"},
          {"opportunistic"},
          {"secure-only"},
          {"set-profile", "RTP/AVP"},
          {"set-profile", "RTP/SAVP"},
          {"strip-attributes", "ssrc,msid,x"},
          {"unbundle"},
          {"disable", "video"},
          {"canonical"},
          {"nosuch"},
          {"disable", "all"}};
}

void edit(Document& document) {
  (void)document.setPort(1, 5004);
  (void)document.setTransport(1, "X/RTP/A-LONG-TRANSPORT");
  (void)document.setFormats(1, "0 8 96 97");
  (void)document.setConnection(1, "2001:db8::1");
  (void)document.setDirection(1, sdp::Direction::inactive);
  (void)document.setAttribute(1, "ptime", "20");
  (void)document.addAttribute(0, "tool", "x");
  (void)document.removeAttributes(1, "ptime");
  (void)document.setPort(99, 1);
  (void)document.setTransport(1, "x y");
}

void use(Document& document, const std::string& body) {
  ASSERT_FALSE(document.read(body));
  ask(document);
  for (const Request& request : chain()) {
    (void)perform(document, request);
    ask(document);
  }
  edit(document);
  ask(document);
}

// The first of all, so that nothing has been asked of a document before.
TEST(Memory, IsNotNeededByTheFirstDocumentToBeEmpty) {
  left = 0;
  const Document document;
  const std::size_t asked = ask(document);
  const std::size_t lines = document.section(1).lines().size() + sdp::Section().attributes().size();
  const bool readable = sdp::Section().isReadable();
  left = kNever;
  EXPECT_EQ(asked, 0U);
  EXPECT_EQ(lines, 0U);
  EXPECT_FALSE(readable);
}

TEST(Memory, OfADocumentThatIsUsedAgainIsNotTakenAnew) {
  const std::vector<std::string> texts = bodies();
  ASSERT_GE(texts.size(), 8U);
  Document document;
  for (const std::string& text : texts) use(document, text);
  const std::vector<Request> requests = chain();
  for (const std::string& text : texts) {
    const std::size_t atFirst = allocations;
    ASSERT_GT(atFirst, 0U);  // the hook is in place
    ASSERT_FALSE(document.read(text));
    ask(document);
    for (const Request& request : requests) {
      const std::size_t before = allocations;
      (void)perform(document, request);
      ask(document);
      EXPECT_EQ(allocations, before) << request[0] << " of " << text;
    }
    edit(document);
    ask(document);
    EXPECT_EQ(allocations, atFirst) << text;
  }
}

TEST(Memory, OfABodyIsEnoughForAllSmallerOnesOfItsShape) {
  std::string large = "v=0\r\na=group:BUNDLE";
  for (int n = 0; n < 40; ++n) large += " " + std::to_string(n);
  large += "\r\n";
  for (int n = 0; n < 40; ++n) {
    large += "m=audio 9 RTP/AVP 0 8 96 97 98 99\r\na=mid:" + std::to_string(n) +
             "\r\na=rtpmap:96 opus/48000/2\r\na=rtpmap:97 rtx/8000\r\na=fmtp:97 apt=96\r\na=candidate:1\r\n";
  }
  Document document;
  use(document, large);
  const std::string small = large.substr(0, large.size() / 2);
  const std::vector<Request> requests = chain();
  const std::size_t before = allocations;
  ASSERT_FALSE(document.read(small));
  ask(document);
  for (const Request& request : requests) (void)perform(document, request);
  ask(document);
  EXPECT_EQ(allocations, before);
}

TEST(Memory, IsNotTakenByQuestionsAfterAReading) {
  for (const std::string& text : bodies()) {
    Document document;
    ASSERT_FALSE(document.read(text));
    const std::size_t before = allocations;
    const std::size_t asked = ask(document);
    EXPECT_EQ(allocations, before) << text;
    EXPECT_GT(asked, text.size());
  }
}

TEST(Memory, OfAnEmptyDocumentAndOfAMoveIsNone) {
  const std::string text = "v=0\r\nm=audio 9 RTP/AVP 0\r\n";
  Document full;
  ASSERT_FALSE(full.read(text));
  const std::size_t before = allocations;
  Document document;
  EXPECT_EQ(ask(document), 0U);
  Document moved(std::move(full));
  document = std::move(moved);
  const std::size_t after = allocations;
  EXPECT_EQ(after, before);
  EXPECT_EQ(document.text(), text);
}

TEST(Memory, OfAllDocumentsIsGivenBack) {
  const std::string body = bodies().front();
  const std::size_t before = living;
  {
    Document document;
    use(document, body);
    Document copy(document);
    Document moved(std::move(copy));
    copy = moved;
    moved = std::move(document);
    use(copy, body);
  }
  EXPECT_EQ(living, before);
}

/// Lets an action run out of memory at its first allocation, at its second, and so on until it is done.
/// @param prepare makes the document anew
/// @param action returns what was refused
template <typename Prepare, typename Action>
void runOut(Prepare prepare, Action action) {
  bool done = false;
  std::size_t most = 0;
  for (std::size_t nth = 0; !done; ++nth) {
    ASSERT_LT(nth, 200U) << "it never is done";
    const std::size_t livingBefore = living;
    {
      Document document;
      prepare(document);
      const std::string before(document.text());
      left = nth;
      const sdp::Refusal refusal = action(document);
      const std::string_view after = document.text();
      left = kNever;
      if (refusal.reason == Reason::noMemory) {
        EXPECT_EQ(after, before);
        EXPECT_EQ(documentDump::dumpOf(document), [&before] {
          Document fresh;
          EXPECT_FALSE(fresh.read(before));
          return documentDump::dumpOf(fresh);
        }());
        // It is of use afterwards.
        EXPECT_NE(action(document).reason, Reason::noMemory);
        most = nth + 1;
      } else {
        done = true;
      }
    }
    EXPECT_EQ(living, livingBefore);
  }
  EXPECT_GT(most, 0U) << "it allocates nothing at all";
}

/// A document that has read a body and has no room left from before.
void readTight(Document& document, const std::string& body) { ASSERT_FALSE(document.read(body)); }

TEST(MemoryThatRunsOut, LetsRequestsBeRefusedAndChangesNothing) {
  for (const std::string& body : bodies()) {
    for (const Request& request : chain()) {
      SCOPED_TRACE(std::string(request[0]) + " of " + body);
      // Requests that have nothing to allocate are done in any case.
      Document probe;
      readTight(probe, body);
      const std::size_t before = allocations;
      (void)perform(probe, request);
      if (allocations == before) continue;
      runOut([&body](Document& document) { readTight(document, body); },
             [&request](Document& document) { return perform(document, request); });
    }
  }
}

TEST(MemoryThatRunsOut, LetsEditsBeRefusedAndChangesNothing) {
  const std::string body = "v=0\r\nm=audio 9 RTP/AVP 0 8\r\na=x\r\n";
  const auto prepare = [&body](Document& document) { readTight(document, body); };
  const std::string longText(5000, 'x');
  runOut(prepare, [](Document& d) { return d.setPort(1, 5004); });
  runOut(prepare, [](Document& d) { return d.setTransport(1, "RTP/SAVPF"); });
  runOut(prepare, [](Document& d) { return d.setFormats(1, "0 8 9"); });
  runOut(prepare, [](Document& d) { return d.setConnection(1, "::1"); });
  runOut(prepare, [](Document& d) { return d.setDirection(1, sdp::Direction::inactive); });
  runOut(prepare, [&](Document& d) { return d.setAttribute(1, "x", longText); });
  runOut(prepare, [&](Document& d) { return d.addAttribute(0, "y", longText); });
  runOut(prepare, [](Document& d) { return d.removeAttributes(1, "x"); });
}

TEST(MemoryThatRunsOut, LetsAChainGoOnWithWhatWasThere) {
  const std::string body = bodies().front();
  const Request requests[] = {
      {"keep-codecs", "opus,VP8"}, {"anchor", "::1", "2000"}, {"direction", "inactive"}};
  for (std::size_t nth = 0; nth < 60; ++nth) {
    Document document;
    readTight(document, body);
    std::string text = body;
    std::size_t budget = nth;
    for (const Request& request : requests) {
      left = budget;
      const sdp::Refusal refusal = perform(document, request);
      budget = refusal ? kNever : left;
      left = kNever;
      if (refusal.reason == Reason::noMemory) {
        EXPECT_EQ(document.text(), text);
        EXPECT_EQ(document.explanation(), "");
      }
      text = document.text();
    }
    Document fresh;
    ASSERT_FALSE(fresh.read(text));
    EXPECT_EQ(documentDump::dumpOf(document), documentDump::dumpOf(fresh));
  }
}

TEST(MemoryThatRunsOut, IsNotNeededForTheTextBehindARefusal) {
  Document document;
  ASSERT_FALSE(document.read("v=0\r\nm=audio 9 RTP/AVP 0\r\na=x\r\n"));
  // The text has outgrown the one that was read, and so have its edits.
  const std::string value(140000, 'y');
  ASSERT_FALSE(document.setAttribute(1, "x", value.substr(70000)));
  ASSERT_FALSE(document.setAttribute(1, "x", value));
  const std::string expected = "v=0\r\nm=audio 9 RTP/AVP 0\r\na=x:" + value + "\r\n";
  left = 0;
  const sdp::Refusal refusal = document.setPort(7, 1);
  const std::size_t length = document.text().size();
  left = kNever;
  EXPECT_TRUE(refusal);
  EXPECT_EQ(length, expected.size());
  EXPECT_EQ(document.text(), expected);
}

TEST(Memory, OfEditsThatAreRefusedIsUsedAgain) {
  Document document;
  std::string body =
      "v=0\r\na=group:BUNDLE 0 1\r\nm=audio 9 RTP/AVP 0\r\na=mid:0\r\nm=audio 9 RTP/AVP "
      "0\r\na=mid:1\r\n";
  ASSERT_FALSE(document.read(body));
  const Request request{"set-profile", "RTP/AVPF", "1"};
  ASSERT_TRUE(perform(document, request));
  const std::size_t before = allocations;
  bool refused = true;
  for (int n = 0; n < 10000; ++n)
    refused = refused && perform(document, request).reason == Reason::differentTransports;
  EXPECT_EQ(allocations, before);
  EXPECT_TRUE(refused);
  EXPECT_EQ(document.text(), body);
}

TEST(MemoryThatRunsOut, LeavesADocumentEmptyThatWasToRead) {
  const std::string body = bodies().front();
  bool done = false;
  for (std::size_t nth = 0; !done; ++nth) {
    ASSERT_LT(nth, 200U);
    const std::size_t livingBefore = living;
    {
      Document document;
      ASSERT_FALSE(document.read("v=0\r\n"));
      left = nth;
      const sdp::Refusal refusal = document.read(body);
      left = kNever;
      done = !refusal;
      if (!done) {
        EXPECT_EQ(textOf(refusal.reason), textOf(Reason::noMemory));
        EXPECT_EQ(document.text(), "");
        EXPECT_EQ(document.sectionCount(), 0U);
        EXPECT_FALSE(document.read(body));
      }
      EXPECT_EQ(document.text(), body);
    }
    EXPECT_EQ(living, livingBefore);
  }
}

TEST(MemoryThatRunsOut, LeavesACopyEmpty) {
  Document document;
  ASSERT_FALSE(document.read("v=0\r\nm=audio 9 RTP/AVP 0\r\n"));
  left = 0;
  const Document copy(document);
  Document assigned;
  assigned = document;
  left = kNever;
  EXPECT_EQ(copy.text(), "");
  EXPECT_EQ(assigned.text(), "");
  EXPECT_EQ(document.section(1).port(), 9);
}

TEST(MemoryThatRunsOut, LetsADocumentWithoutOneRefuse) {
  Document document;
  left = 0;
  const sdp::Refusal refusal = canonicalise(document);
  const sdp::Refusal edited = document.setPort(1, 2);
  left = kNever;
  documentTest::expectRefusal(refusal, Reason::noMemory, 0, 0);
  documentTest::expectRefusal(edited, Reason::noMemory, 0, 0);
  EXPECT_EQ(document.explanation(), "");
}

}  // namespace
