// How much stack each public request takes: it runs on a thread whose stack was painted before, and what is no longer
// painted afterwards was used.
//   sdpStackUse                      a table with the most demanding request of each topic
//   sdpStackUse --all                every request
//   sdpStackUse --check              as without arguments, and fails when a request takes more than docs/guide.md says

#include "stackUse.h"

#include <fcntl.h>
#include <kvRttLocal.h>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

constexpr std::size_t kStackSize = 4U << 20U;
constexpr unsigned char kPaint = 0xA5;

constexpr std::string_view kCandidate = "a=candidate:1 1 UDP 2130706431 192.0.2.10 49170 typ host\r\n";
constexpr std::string_view kSession =
    "v=0\r\no=alice 100 1 IN IP4 192.0.2.10\r\ns=-\r\nc=IN IP4 192.0.2.10\r\nt=0 0\r\n";
constexpr std::string_view kAudio =
    "m=audio 49170 RTP/AVP 8 0 101\r\na=rtpmap:8 PCMA/8000\r\na=rtpmap:0 PCMU/8000\r\n"
    "a=rtpmap:101 telephone-event/8000\r\na=ptime:20\r\n";
constexpr std::string_view kVideo =
    "m=video 49180 RTP/AVP 97\r\nb=AS:1500\r\na=rtpmap:97 H264/90000\r\na=fmtp:97 profile-level-id=42e01f\r\n";
constexpr std::string_view kCrypto =
    "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:MDEyMzQ1Njc4OWFiY2RlZjAxMjM0NTY3ODlhYmNk\r\n";

std::string repeat(std::string_view line, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += line;
  return text;
}

std::string join(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view piece : pieces) text += piece;
  return text;
}

/// Bodies that give every request something to do: one that is stored plain and one that is deflated, keys and
/// groups of all kinds, best effort in two m-lines, secure audio alone.
std::vector<std::string> bodies() {
  const std::string candidates = repeat(kCandidate, 30);
  const std::string keyed =
      join({kSession, "a=group:ANAT 1 2\r\n", kAudio,
            "a=mid:1\r\na=setup:actpass\r\na=fingerprint:sha-256 AB:CD\r\n",
            "a=key-mgmt:mikey AQAF\r\na=des:qos mandatory e2e sendrecv\r\na=ice-ufrag:Zk3q\r\n", kCandidate,
            "a=candidate:2 1 UDP 2130706431 2001:db8::10 49170 typ host\r\n", kCrypto,
            "m=audio 49172 RTP/SAVP 8 0\r\nc=IN IP6 2001:db8::10\r\na=mid:2\r\n", kCrypto, kVideo,
            "m=application 49190 RTP/AVP 100\r\na=rtpmap:100 H224/4800\r\n"});
  const std::string bestEffort =
      join({kSession, "m=audio 5004 RTP/AVP 8 0\r\n", "m=audio 5004 RTP/SAVP 8 0\r\n", kCrypto});
  return {join({kSession, kAudio, kVideo}), join({kSession, kAudio, candidates, kVideo, candidates}), keyed,
          join({kSession, "m=audio 49170 RTP/SAVP 8 0\r\n", kCrypto}), bestEffort};
}

void prepare(Workspace& w, const std::string& body) {
  w.body = body;
  w.object.sdpParse(body.c_str(), SDP_TYPE_OFFER);
  w.other = w.object;
  for (char* text : {w.text, w.second, w.third}) text[body.copy(text, sizeof w.text - 1)] = '\0';
  std::memset(w.record, 0, sizeof w.record);
  w.record[0] = 2;
  w.byteCount = w.object.getObjectSize();
  std::memcpy(w.bytes, &w.object, w.byteCount);
  char error[SDP_ERROR_TEXT_SIZE];
  unsigned short start = 0;
  sdp_decodeOpt_r(&w.description, w.text, SDP_TYPE_OFFER, error, false, start, w.oLineEnd);
  sdpParserMessage::getMLines(w.description, w.mLines);
}

struct Job {
  const Request* request;
  Workspace* workspace;
  const unsigned char* entry = nullptr;  ///< where the stack stood when the request was called
};

void* perform(void* argument) {
  auto* const job = static_cast<Job*>(argument);
  job->entry = static_cast<const unsigned char*>(__builtin_frame_address(0));
  job->request->run(*job->workspace);
  return nullptr;
}

/// @return the bytes of stack that a request took
std::size_t measure(const Request& request, Workspace& workspace, unsigned char* stack) {
  std::memset(stack, kPaint, kStackSize);
  Job job{&request, &workspace};
  pthread_attr_t attributes;
  pthread_t thread{};
  if (pthread_attr_init(&attributes) != 0 || pthread_attr_setstack(&attributes, stack, kStackSize) != 0 ||
      pthread_create(&thread, &attributes, perform, &job) != 0 || pthread_join(thread, nullptr) != 0) {
    std::fprintf(stderr, "no thread for %s\n", request.name);
    std::exit(2);
  }
  pthread_attr_destroy(&attributes);
  const unsigned char* const lowest =
      std::find_if(stack, stack + kStackSize, [](unsigned char byte) { return byte != kPaint; });
  return static_cast<std::size_t>(job.entry - lowest);
}

struct Use {
  const Request* request;
  std::size_t traceOff = 0;
  std::size_t traceOn = 0;

  std::size_t most() const { return std::max(traceOff, traceOn); }
};

Use measureOverBodies(const Request& request, Workspace& workspace, unsigned char* stack) {
  Use use{&request};
  for (const bool trace : {false, true}) {
    std::size_t& most = trace ? use.traceOn : use.traceOff;
    for (const std::string& body : bodies()) {
      KvRttSwitchFlag("SDP_NEGOTIATOR", "INFO", false);
      prepare(workspace, body);
      KvRttSwitchFlag("SDP_NEGOTIATOR", "INFO", trace);
      most = std::max(most, measure(request, workspace, stack));
    }
  }
  return use;
}

/// A line of the local facility is written to standard error, which takes stack as well; here nobody reads it.
void discardStandardError() {
  const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (null >= 0) dup2(null, STDERR_FILENO);
}

/// The stack of a thread that docs/guide.md promises to be enough for a request.
std::size_t promised(const Request& request) {
  constexpr std::string_view kWithoutDescription[] = {
      "Stored text", "Search in the text", "Comparison", "Display",     "Settings",
      "Codec names", "Texts from values",  "Transfer",   "Origin line", "Attribute requests"};
  const bool decodes = std::find(std::begin(kWithoutDescription), std::end(kWithoutDescription),
                                 std::string_view(request.topic)) == std::end(kWithoutDescription);
  return decodes ? 1U << 20U : 128U << 10U;
}

/// What else there is on a thread's stack: the thread's own data, and the engine's functions.
constexpr std::size_t kMargin = 32U << 10U;

double kilobytes(std::size_t bytes) { return static_cast<double>(bytes) / 1024.0; }

/// @return whether all requests take less than promised
bool report(const char* title, const std::vector<Request>& requests, bool all, Workspace& workspace,
            unsigned char* stack) {
  std::vector<Use> uses;
  uses.reserve(requests.size());
  for (const Request& request : requests) uses.push_back(measureOverBodies(request, workspace, stack));
  std::printf("\n%s\n\n| topic | request%s | KB | KB with trace |\n|---|---|---:|---:|\n", title,
              all ? "" : " that takes the most");
  bool kept = true;
  for (auto use = uses.begin(); use != uses.end();) {
    const std::string_view topic = use->request->topic;
    const auto end = std::find_if(use, uses.end(), [&](const Use& u) { return topic != u.request->topic; });
    const auto less = [](const Use& a, const Use& b) { return a.most() < b.most(); };
    for (auto shown = all ? use : std::max_element(use, end, less); shown != end; ++shown) {
      std::printf("| %s | `%s` | %.1f | %.1f |\n", shown->request->topic, shown->request->name,
                  kilobytes(shown->traceOff), kilobytes(shown->traceOn));
      if (!all) break;
    }
    for (; use != end; ++use) {
      if (use->most() + kMargin <= promised(*use->request)) continue;
      std::printf("%s takes more than promised\n", use->request->name);
      kept = false;
    }
  }
  return kept;
}

}  // namespace

int main(int argc, char** argv) {
  const bool all = argc == 2 && std::strcmp(argv[1], "--all") == 0;
  const bool check = argc == 2 && std::strcmp(argv[1], "--check") == 0;
  if (argc != 1 && !all && !check) {
    std::fprintf(stderr, "usage: sdpStackUse [--all | --check]\n");
    return 2;
  }
  void* const stack =
      mmap(nullptr, kStackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
  if (stack == MAP_FAILED) return 2;
  discardStandardError();
  const auto workspace = std::make_unique<Workspace>();
  auto* const bytes = static_cast<unsigned char*>(stack);
  bool kept = report("cSdpNegotiator", objectRequests(), all, *workspace, bytes);
  kept = report("sdpModifications", textEdits(), all, *workspace, bytes) && kept;
  kept = report("Below", otherRequests(), all, *workspace, bytes) && kept;
  std::free(workspace->encoded);
  return check && !kept ? 1 : 0;
}
