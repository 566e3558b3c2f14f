#include "checkPolicy.h"

#include <cstdio>
#include <fstream>

#include "log.h"
#include "policyCheck.h"
#include "policySteps.h"

namespace b2bua {

namespace {

constexpr std::size_t kLongest = std::size_t{1} << 20;

/// @return why it cannot be read; empty when it can
std::string readFile(const std::string& name, std::string& body) {
  std::ifstream input(name, std::ios::binary);
  body.resize(kLongest);
  input.read(body.data(), static_cast<std::streamsize>(body.size()));
  if (!input.is_open() || input.bad()) return "the file cannot be read";
  body.resize(static_cast<std::size_t>(input.gcount()));
  return body.size() < kLongest ? "" : "the body is too large to be kept";
}

/// @param result  what goes out in the first exchange of a call
/// @return why nothing does; empty when the body can be used
std::string pass(const Policy& policy, bool isRelayed, Side from, bool isAnswer, const std::string& body,
                 std::string& result) {
  sdp::Document document;
  Body received;
  OfferChanges changes;
  std::string reason = takeIn(body, document, isRelayed);
  if (reason.empty()) reason = parse(document, received);
  Body sent = received;
  if (reason.empty()) reason = applyBefore(policy, from, isAnswer, sent, changes);
  if (reason.empty()) reason = applyBehind(policy, from, isAnswer, sent, changes);
  if (!reason.empty()) return reason;
  sent.copyOLine(&received);
  result = textOf(sent);
  return whatIsForbidden(policy, result, false);
}

}  // namespace

int checkPolicy(const Policy& policy, bool isRelayed, const std::vector<std::string>& files) {
  int status = 0;
  for (auto file = files.begin() + 1; file < files.end(); ++file) {
    std::string body;
    const std::string unread = readFile(*file, body);
    for (const bool isAnswer : {false, true}) {
      for (const Side from : {kCaller, kTarget}) {
        std::string result;
        const std::string reason =
            unread.empty() ? pass(policy, isRelayed, from, isAnswer, body, result) : unread;
        const std::string title =
            *file + ": " + (isAnswer ? "answer" : "offer") + " from the " + nameOf(from);
        if (reason.empty()) {
          showBodies(title, body, result);
          continue;
        }
        std::printf("-- %s\nrefused: %s\n", title.c_str(), reason.c_str());
        status = 1;
      }
    }
  }
  return status;
}

}  // namespace b2bua
