#ifndef B2BUA_HEADS_H
#define B2BUA_HEADS_H

#include <string_view>

#include "sip.h"

namespace b2bua {

inline constexpr unsigned int kLongestMessage = 65'507;  ///< bytes; no datagram is longer

/// What is in front of the body of a message.
enum class Head { open, ended, tooLong };

/// @param message  of SIP as far as it has come; a line ends with CR LF, CR, LF or NUL
/// @return too long when more lines, and values between commas, than any message needs stand in front of its body: 512
Head headOf(std::string_view message);

/// The stack's class of SIP messages, but for one thing: nothing of a message is read before its head has ended. The stack
/// looks through all headers for the place of the next one, so their number counts twice, and so does that of the values of
/// some; who sends many of them, be it in a datagram or bit by bit, would hold the engine for seconds.
const msg_mclass_t* messagesWithHeads();

}  // namespace b2bua

#endif
