#ifndef SDPNEG_TEST_REWRITE_CASES_H
#define SDPNEG_TEST_REWRITE_CASES_H

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <regex>
#include <string>
#include <vector>

#include "process.h"

// Tables of requests, each from the command line to the new body or the refusal.

namespace rewriting {

/// The word of a request that stands for a file with the other body.
inline const std::string other = "OTHER";

struct Case {
  const char* name;
  std::vector<std::string> request;
  std::string body;
  std::string expected;
  std::string errors = {};     ///< on standard error
  std::string otherBody = {};  ///< in the file that `other` stands for
};

inline std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.name; }

struct Refusal {
  const char* name;
  std::vector<std::string> request;
  std::string body;
  int status;
  std::string why;
  std::string otherBody = {};
};

inline std::ostream& operator<<(std::ostream& out, const Refusal& each) { return out << each.name; }

/// Puts "TIME" in the place of the session id and version by the time of day.
inline std::string withoutTime(const std::string& text) {
  static const std::regex origin("o=ZEV ([0-9]{7,9}) \\1 ");
  return std::regex_replace(text, origin, "o=ZEV TIME TIME ");
}

inline Outcome runRewrite(std::vector<std::string> request, const std::string& body,
                          const std::string& otherBody = {}) {
  const TemporaryFolder folder;
  std::replace(request.begin(), request.end(), other, folder.write("other.sdp", otherBody));
  request.insert(request.begin(), "rewrite");
  Outcome outcome = runSdpneg(request, {.input = body});
  outcome.out = withoutTime(outcome.out);
  return outcome;
}

inline void expectBody(const Case& each) {
  const Outcome outcome = runRewrite(each.request, each.body, each.otherBody);
  EXPECT_EQ(outcome.out, each.expected);
  EXPECT_EQ(outcome.err, each.errors);
  EXPECT_EQ(outcome.status, 0);
}

inline void expectRefusal(const Refusal& each) {
  const Outcome outcome = runRewrite(each.request, each.body, each.otherBody);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find(each.why), std::string::npos) << outcome.err;
  EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), each.status == 64 ? 2 : 1)
      << outcome.err;
  EXPECT_EQ(outcome.status, each.status);
}

inline std::string without(std::string text, const std::string& piece) {
  return replaced(std::move(text), piece, "");
}

/// The body with an attribute that makes it as long as a request takes.
inline std::string full(const std::string& body) {
  return body + "a=" + std::string(20479 - 4 - body.size(), 'x') + "\r\n";
}

/// The body with an o-line that tells the time, as `withoutTime` leaves it.
inline std::string renewed(const std::string& text, const std::string& address = "IP4 0.0.0.0") {
  const std::size_t begin = text.find("o=");
  return text.substr(0, begin) + "o=ZEV TIME TIME IN " + address + "\r\n" +
         text.substr(text.find("s=", begin));
}

}  // namespace rewriting

#endif
