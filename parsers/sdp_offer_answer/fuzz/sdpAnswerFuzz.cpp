// An offer, and behind a line "---" the local description: the answer has the sections of the offer, refused ones have
// port 0, and payload types are those of the offer. A judge finds nothing wrong with it, and it is made so again.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "sdpAnswer.h"
#include "sdpAnswerJudge.h"

namespace {

/// What serves both sides where the input has one body alone.
constexpr std::string_view kUsualLocal =
    "v=0\r\no=- 1 1 IN IP4 192.0.2.2\r\ns=-\r\nc=IN IP4 192.0.2.2\r\nt=0 0\r\na=group:BUNDLE a v d\r\n"
    "a=fingerprint:sha-256 AA:BB\r\na=ice-ufrag:ours\r\na=ice-pwd:oursoursoursoursoursour\r\n"
    "m=audio 5000 RTP/AVP 111 63 9 8 0 13 101\r\na=mid:a\r\na=rtcp-mux\r\na=rtpmap:111 opus/48000/2\r\n"
    "a=rtpmap:63 red/48000/2\r\na=fmtp:63 111/111\r\na=rtpmap:101 telephone-event/8000\r\na=fmtp:101 0-15\r\n"
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:ours\r\na=extmap:1 urn:ietf:params:rtp-hdrext:sdes:mid\r\n"
    "m=video 5000 RTP/AVPF 96 97 98 99\r\na=mid:v\r\na=rtcp-mux\r\na=rtpmap:96 H264/90000\r\n"
    "a=fmtp:96 profile-level-id=42e01f;packetization-mode=1\r\na=rtpmap:97 rtx/90000\r\na=fmtp:97 apt=96\r\n"
    "a=rtpmap:98 VP8/90000\r\na=rtpmap:99 rtx/90000\r\na=fmtp:99 apt=98\r\na=rtcp-fb:* nack pli\r\n"
    "m=application 5000 UDP/DTLS/SCTP webrtc-datachannel\r\na=mid:d\r\nm=image 5004 udptl t38\r\n"
    "a=T38FaxVersion:0\r\n";

void require(bool holds, std::string_view what) {
  if (holds) return;
  std::fprintf(stderr, "%.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

std::vector<std::string_view> formatsOf(const sdp::Section& section) {
  std::vector<std::string_view> formats;
  for (const sdp::Format& format : section.formats()) formats.push_back(format.format);
  std::sort(formats.begin(), formats.end());
  return formats;
}

void checkSection(const sdp::Section& offered, const sdp::Section& answered,
                  const sdp::AnsweredSection& told) {
  require(answered.isReadable(), "a section of the answer cannot be read");
  const bool isAccepted = told.outcome == sdp::SectionOutcome::accepted;
  require(isAccepted == (answered.port() != 0), "a port does not fit what became of its section");
  require(isAccepted == (told.local != 0), "a refused section is served");
  if (!offered.isReadable()) return;
  // At a CR or a NUL some readers end a line, so that nothing with one is taken over.
  constexpr std::string_view kEnds("\r\0", 2);
  if (offered.lines().begin()->content.find_first_of(kEnds) != std::string_view::npos) return;
  require(answered.media() == offered.media() && answered.transport() == offered.transport(),
          "a section became another");
  const std::vector<std::string_view> formats = formatsOf(answered);
  const std::vector<std::string_view> all = formatsOf(offered);
  require(std::includes(all.begin(), all.end(), formats.begin(), formats.end()), "a format was not offered");
}

/// What an answer has from its offer: a payload type that stands there, and a mid that several sections have.
bool isOfOffer(sdp::AnswerRule rule) {
  return rule == sdp::AnswerRule::payloadReserved || rule == sdp::AnswerRule::refusedInGroup;
}

void check(const sdp::Document& offer, const sdp::Document& local, const sdp::AnswerOptions& options,
           bool judges) {
  const sdp::Answer answer = makeAnswer(offer, local, options);
  require(answer.failure != sdp::AnswerFailure::noMemory, "no memory");
  require(makeAnswer(offer, local, options).text == answer.text, "a second answer is another");
  if (!answer) return;
  sdp::Document read;
  require(!read.read(answer.text), "an answer is not read");
  require(read.sectionCount() == offer.sectionCount(), "an answer has more or fewer sections");
  for (const sdp::Section& section : offer.sections()) {
    checkSection(section, read.section(section.index()), answer.sections[section.index() - 1]);
  }
  // What is wrong with the local description is wrong with its answers as well.
  if (judges) {
    for (const sdp::Finding& finding : checkAnswer(offer, read).findings)
      require(isOfOffer(finding.rule), textOf(finding.rule));
  }
  sdp::AnswerOptions next = options;
  next.previous = &read;
  require(!!makeAnswer(offer, local, next), "an answer cannot be repeated");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  constexpr std::string_view kMark = "\n---\n";
  const std::size_t mark = input.find(kMark);
  static sdp::Document offer;  // used by one input after the other
  static sdp::Document local;
  require(!offer.read(input.substr(0, mark)), "an offer is not read");
  const bool isUsual = mark == std::string_view::npos;
  require(!local.read(isUsual ? kUsualLocal : input.substr(mark + kMark.size())),
          "a local description is not read");
  const std::size_t choice = input.empty() ? 0 : static_cast<unsigned char>(input.back());
  sdp::AnswerOptions options;
  options.prefersLocal = (choice & 1U) != 0;
  options.isSingle = (choice & 2U) != 0;
  options.isPassive = (choice & 4U) != 0;
  check(offer, local, options, isUsual);
  check(local, offer, options, false);
  check(offer, offer, options, false);
  return 0;
}
