// Single edits in turn with each other and with questions, over many sections and in one that is long.

#include "mixedEdits.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "sdpDocument.h"

namespace {

constexpr const char* kSession = "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\na=group:BUNDLE 1\r\n";

std::string manySections(std::size_t count) {
  std::string text = kSession;
  for (std::size_t n = 0; n < count; ++n) {
    text.append("m=audio 9 RTP/AVP 0 8\r\na=rtpmap:0 PCMU/8000\r\na=mid:")
        .append(std::to_string(n))
        .append("\r\n");
  }
  return text;
}

std::string longSection(std::size_t count) {
  std::string text = std::string(kSession) + "m=audio 9 RTP/AVP 0 8\r\n";
  for (std::size_t n = 0; n < count; ++n) text.append("a=x:").append(std::to_string(n)).append("\r\n");
  return text.append("m=video 9 RTP/AVP 34\r\n");
}

using sdp::Document;

/// An edit that is not refused otherwise than is meant measures something else.
void expect(const sdp::Refusal& refusal, sdp::Reason reason = sdp::Reason::none) {
  if (refusal.reason == reason) return;
  std::fprintf(stderr, "an edit was refused that is to be measured, or none was\n");
  std::exit(1);
}

/// What is done with the section of a number, from 1.
struct Mix {
  const char* name;
  void (*step)(Document& document, std::uint32_t section);
};

constexpr Mix kOfManySections[] = {
    {"addAttribute, setPort",
     [](Document& d, std::uint32_t n) {
       expect(d.addAttribute(n, "x"));
       expect(d.setPort(n, 5004));
     }},
    {"setConnection, setDirection",
     [](Document& d, std::uint32_t n) {
       expect(d.setConnection(n, "::1"));
       expect(d.setDirection(n, sdp::Direction::inactive));
     }},
    {"addAttribute, attribute()",
     [](Document& d, std::uint32_t n) {
       expect(d.addAttribute(n, "x"));
       (void)d.section(n).attribute("x");
     }},
    {"add a group, bundle()",
     [](Document& d, std::uint32_t n) {
       expect(d.addAttribute(0, "group", "BUNDLE 1"));
       (void)d.section(n).bundle();
     }},
    {"set the mid, bundle()",
     [](Document& d, std::uint32_t n) {
       expect(d.setAttribute(n, "mid", "1"));
       (void)d.section(n).bundle();
     }},
    {"a refusal, bundle()",
     [](Document& d, std::uint32_t n) {
       expect(d.setTransport(n, ""), sdp::Reason::wrongText);
       (void)d.section(n).bundle();
     }},
};

constexpr Mix kOfALongSection[] = {
    {"addAttribute, setPort",
     [](Document& d, std::uint32_t) {
       expect(d.addAttribute(1, "x"));
       expect(d.setPort(1, 5004));
     }},
    {"addAttribute, formats() of the next",
     [](Document& d, std::uint32_t) {
       expect(d.addAttribute(1, "x"));
       (void)d.section(2).formats().size();
     }},
    {"addAttribute to it and to the next",
     [](Document& d, std::uint32_t) {
       expect(d.addAttribute(1, "x"));
       expect(d.addAttribute(2, "x"));
     }},
    {"addAttribute to the session, setPort",
     [](Document& d, std::uint32_t) {
       expect(d.addAttribute(0, "x"));
       expect(d.setPort(2, 5004));
     }},
};

/// Nanoseconds of one step, the least of some runs over the body.
double costOf(const Mix& mix, const std::string& body, std::size_t steps) {
  using Clock = std::chrono::steady_clock;
  Document document;
  double least = 1e18;
  for (int run = 0; run < 3; ++run) {
    if (document.read(body)) return 0;
    const auto begin = Clock::now();
    for (std::size_t n = 1; n <= steps; ++n) mix.step(document, static_cast<std::uint32_t>(n));
    const std::chrono::duration<double, std::nano> taken = Clock::now() - begin;
    least = std::min(least, taken.count() / static_cast<double>(steps));
  }
  return least;
}

template <std::size_t count>
void print(const char* what, const Mix (&mixes)[count], std::string (*make)(std::size_t), std::size_t large) {
  std::printf("%s\n", what);
  for (const Mix& mix : mixes) {
    std::printf("  %-38s", mix.name);
    for (const std::size_t size : {large / 10, large}) std::printf(" %8.0f", costOf(mix, make(size), size));
    std::printf("\n");
  }
}

}  // namespace

void printMixedEdits() {
  std::printf("\nns a step of edits and questions in turn\n");
  print("1,000 and 10,000 sections", kOfManySections, manySections, 10000);
  print("one section of 10,000 and 100,000 lines", kOfALongSection, longSection, 100000);
}
