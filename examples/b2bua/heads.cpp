#include "heads.h"

#include <sofia-sip/msg.h>
#include <sofia-sip/msg_mclass.h>
#include <sofia-sip/sip_parser.h>

namespace b2bua {

namespace {

constexpr std::size_t kMostValues = 512;

bool isEnd(char c) { return c == '\r' || c == '\n' || c == '\0'; }

/// The stack calls this for whatever has come of a message, since its class says that bodies are to be read from the
/// beginning on, and later for the body itself.
/// @return bytes that were taken; 0 waits for more, -1 gives the message up
issize_t extract(msg_t* message, msg_pub_t*, char* data, isize_t size, int isWhole) {
  sip_t* const content = sip_object(message);
  if (content->sip_request != nullptr || content->sip_status != nullptr)
    return sip_extract_body(message, content, data, size, isWhole);
  // Behind another one on its connection it has no limit yet.
  msg_maxsize(message, kLongestMessage);
  const Head head = headOf({data, static_cast<std::size_t>(size)});
  if (head == Head::tooLong) return -1;
  if (head == Head::open && isWhole == 0) return 0;
  content->sip_flags &= ~MSG_FLG_BODY;
  msg_extract(message);
  // What it has not read to the end of the head, such as a line with a NUL, it never will.
  return (content->sip_flags & MSG_FLG_BODY) != 0 ? 0 : -1;
}

}  // namespace

Head headOf(std::string_view message) {
  std::size_t at = 0;
  // Line ends in front of a message say nothing.
  while (at < message.size() && isEnd(message[at])) ++at;
  for (std::size_t values = 0; at < message.size(); ++at) {
    if (!isEnd(message[at]) && message[at] != ',') continue;
    if (++values > kMostValues) return Head::tooLong;
    if (message[at] == ',') continue;
    if (message.substr(at).starts_with("\r\n")) ++at;
    const std::string_view next = message.substr(at + 1);
    // A CR alone may be half of a line end.
    if (next.starts_with('\n') || (next.starts_with('\r') && next.size() > 1)) return Head::ended;
  }
  return Head::open;
}

const msg_mclass_t* messagesWithHeads() {
  static msg_mclass_t* const messages = msg_mclass_clone(sip_default_mclass(), 0, 0);
  messages->mc_flags |= MSG_FLG_BODY;
  messages->mc_extract_body = extract;
  return messages;
}

}  // namespace b2bua
