// Looks for texts of 20 kB that cost an edit or a request the most. The input's first two bytes say which operation, of
// which object; the rest is pieces, NUL between them, that are repeated to a text. A byte above ASCII stands for a word. Under libFuzzer its feedback is also
// what a character costs: each operation has counters for how many times an ordinary parse it took, in steps of a
// quarter more. What is far beyond what is promised ends it. With SDP_COST_REPORT in the environment it prints
// the worst text of each operation when it ends.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "../test/hostileTexts.h"
#include "../test/operationTable.h"
#include "editBuffer.h"
#include "sdpNegotiatorParser.h"

namespace {

constexpr std::size_t kLong = 20000;

/// What edits and the analysis look for, whole or nearly.
constexpr std::string_view kWords[] = {"\nm=audio 9000 RTP/AVP 0 8 96",
                                       "\nm=video 9000 RTP/AVP 96",
                                       "\nm=audio 0 RTP/SAVP 0",
                                       "\nm=video 0 RTP/SAVP 31",
                                       "\nm=image 9 udptl t38",
                                       "\nm=application 9 x 0",
                                       "\nm=",
                                       "m=audio",
                                       "m=video",
                                       "m=vide",
                                       "\na=",
                                       "\na=rtpmap:96 H264/90000",
                                       "\na=rtpmap:96 PCMU/8000",
                                       "\na=rtpmap:",
                                       "\na=fmtp:96 profile-level-id=42e01f",
                                       "profile-level-id=42e01f",
                                       "\na=fmtp:101 0-15",
                                       "\na=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:x",
                                       "a=crypto:",
                                       "a=crypt",
                                       "\na=key-mgmt:mikey x",
                                       "\na=candidate:1 1 UDP 1 192.0.2.1 9 typ host",
                                       "\na=candidate:1 1 UDP 1 ::1 9 typ host",
                                       "a=candidate:",
                                       "\na=ice-lite",
                                       "\na=ice-ufrag:x",
                                       "\na=fingerprint:x",
                                       "\na=setup:x",
                                       "\na=group:ANAT 1 2",
                                       "\na=mid:1",
                                       "\na=curr:qos e2e none",
                                       "\na=des:qos none e2e send",
                                       "\na=sendrecv",
                                       "\na=sendonly",
                                       "\na=inactive",
                                       "\na=ecan:fb on -",
                                       "\na=ptime:20",
                                       "\nb=AS:999",
                                       "\nb=",
                                       "\nc=IN IP4 192.0.2.1",
                                       "\nc=IN IP6 ::1",
                                       "\nc=",
                                       "\no=- 1 1 IN IP4 192.0.2.1",
                                       "v=0\no=- 1 1 IN IP4 192.0.2.1\ns=-\nc=IN IP4 192.0.2.1\nt=0 0",
                                       "RTP/AVP",
                                       "RTP/SAVP",
                                       " 0 RTP",
                                       " 96 97 98",
                                       " 0",
                                       "\r\n",
                                       "99999999",
                                       "          "};

std::vector<std::string> piecesOf(std::string_view input) {
  constexpr unsigned char kFirstWord = 0x80;
  std::vector<std::string> pieces(1);
  for (const char c : input) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= kFirstWord) {
      pieces.back() += kWords[(byte - kFirstWord) % std::size(kWords)];
    } else if (byte != 0) {
      pieces.back() += c;
    } else {
      pieces.emplace_back();
    }
  }
  return pieces;
}

void requireText(const Operands& on) { require(strnlen(on.text, sizeof on.text) < sizeof on.text); }

#ifdef SDP_FUZZ_MEASURES

constexpr std::size_t kSteps = 64;
constexpr std::size_t kMostOperations = 256;
// A text for which an edit takes 2 times an ordinary parse, and a request 6 times, is bad; 20 times that is a finding.
constexpr double kMostOfEdit = 40;
constexpr double kMostOfRequest = 120;

__attribute__((section("__libfuzzer_extra_counters"))) std::uint8_t counters[kMostOperations][kSteps];

double now() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

template <typename Prepare, typename Step>
double least(int runs, Prepare prepare, Step step) {
  double best = 1e18;
  for (int run = 0; run < runs; ++run) {
    prepare();
    const double begin = now();
    step();
    best = std::min(best, now() - begin);
  }
  return best;
}

/// A body of no more m-lines than a description holds.
std::string ordinaryBody() {
  std::string sections =
      "m=audio 49170 RTP/AVP 0 8 96 101\r\na=rtpmap:0 PCMU/8000\r\na=rtpmap:8 PCMA/8000\r\n"
      "a=rtpmap:96 opus/48000/2\r\na=fmtp:96 useinbandfec=1\r\na=rtpmap:101 telephone-event/8000\r\n"
      "a=fmtp:101 0-15\r\na=ptime:20\r\na=rtcp:49171 IN IP4 192.0.2.1\r\na=mid:audio\r\na=sendrecv\r\n"
      "m=video 49180 RTP/AVP 97 98\r\nb=AS:512\r\na=rtpmap:97 H264/90000\r\n"
      "a=fmtp:97 profile-level-id=42e01f\r\na=rtpmap:98 VP8/90000\r\na=rtcp-fb:98 nack pli\r\na=sendrecv\r\n";
  for (int i = 0; i < 20; ++i) sections += "a=candidate:1 1 UDP 2130706431 192.0.2.1 49170 typ host\r\n";
  const std::string pieces[] = {"v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n",
                                sections};
  return repeated(pieces, kLong);
}

double ordinaryParse() {
  const std::string body = ordinaryBody();
  sSdpParsedData data;
  return least(
      100, [&] { data.init(); },
      [&] { require(sdpParserMessage::sdpParse(body.c_str(), SDP_TYPE_OFFER, data) == 0); });
}

/// The worst of each operation, printed when the program ends if that is asked for.
class Worst {
 public:
  explicit Worst(const std::vector<AnyOperation>& operations)
      : operations_(operations), ratios_(operations.size()), texts_(operations.size()) {}
  ~Worst() {
    if (std::getenv("SDP_COST_REPORT") == nullptr) return;
    for (std::size_t i = 0; i < ratios_.size(); ++i) {
      if (ratios_[i] != 0)
        std::printf("%7.2f %s: %s\n", ratios_[i], operations_[i].name(), texts_[i].c_str());
    }
  }
  Worst(const Worst&) = delete;
  Worst& operator=(const Worst&) = delete;

  void add(std::size_t operation, double ratio, const std::vector<std::string>& pieces) {
    if (ratio <= ratios_[operation]) return;
    ratios_[operation] = ratio;
    texts_[operation].clear();
    for (const std::string& piece : pieces) texts_[operation] += '[' + shown(piece.substr(0, 100)) + ']';
  }

 private:
  static std::string shown(const std::string& piece) {
    std::string out;
    for (const char c : piece) {
      if (c >= ' ' && c <= '~') {
        out += c;
      } else {
        char code[8];
        std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned int>(static_cast<unsigned char>(c)));
        out += code;
      }
    }
    return out;
  }

  const std::vector<AnyOperation>& operations_;
  std::vector<double> ratios_;
  std::vector<std::string> texts_;
};

void measure(const std::vector<AnyOperation>& operations, std::size_t which, Operands& on,
             const std::string& text, const cSdpNegotiator& object, const std::vector<std::string>& pieces) {
  static const double ordinary = ordinaryParse();
  static Worst worst(operations);
  const AnyOperation& operation = operations[which];
  const double most = operation.isRequest() ? kMostOfRequest : kMostOfEdit;
  const auto ratioOf = [&](int runs) {
    return least(
               runs, [&] { operation.prepare(on, text, object); }, [&] { operation.run(on); }) /
           ordinary;
  };
  double ratio = ratioOf(3);
  if (ratio > most) ratio = ratioOf(20);  // something else may have had the machine
  worst.add(which, ratio, pieces);
  require(ratio <= most);
  const double step = std::log(std::max(ratio, 0.01) * 100) / std::log(1.25);
  const auto last = std::min(static_cast<std::size_t>(std::max(step, 0.0)), kSteps - 1);
  for (std::size_t i = 0; i <= last && which < kMostOperations; ++i) counters[which][i] = 1;
}

#endif

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::vector<AnyOperation> operations = allOperations();
  static const std::unique_ptr<Operands> on = std::make_unique<Operands>();
  if (size < 2) return 0;
  const std::size_t which = data[0] % operations.size();
  const std::vector<std::string> pieces = piecesOf({reinterpret_cast<const char*>(data) + 2, size - 2});
  const std::string text = repeated(pieces, kLong);
  cSdpNegotiator object;
  if (operations[which].isRequest()) object = data[1] % 2 != 0 ? parsedFrom(text) : objectOf(text);
#ifdef SDP_FUZZ_MEASURES
  measure(operations, which, *on, text, object, pieces);
#else
  operations[which].prepare(*on, text, object);
  operations[which].run(*on);
#endif
  requireText(*on);
  return 0;
}
