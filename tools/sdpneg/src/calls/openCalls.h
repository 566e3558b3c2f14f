#ifndef SDPNEG_OPEN_CALLS_H
#define SDPNEG_OPEN_CALLS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "calls/call.h"
#include "calls/joinKeys.h"
#include "calls/keyedHash.h"
#include "calls/messageFacts.h"

// Calls of which more may come.

namespace tool {

struct OpenCall;
struct OpenLeg;

/// A message of an open call.
struct OpenMessage {
  std::size_t sequence = 0;  ///< in which it came
  OpenLeg* leg = nullptr;
  CallMessage message;
  TransactionFacts facts;
};

/// How far an open call is, which decides for how long it may be silent.
enum class CallProgress : std::uint8_t { over, ringing, up };
inline constexpr std::size_t kProgresses = 3;

/// Who calls whom.
struct JoinNumbers {
  std::string text;  ///< "alice to bob"
  JoinHash hash = 0;
};

/// An INVITE that begins a leg, for joins by time and numbers.
struct LegAttempt {
  std::int64_t time = 0;
  std::uint64_t cseq = 0;
  std::vector<JoinNumbers> numbers;  ///< who calls whom, in the forms that others may have as well
};

struct OpenLeg {
  std::string callId;
  OpenCall* call = nullptr;
  std::size_t sequence = 0;  ///< of its first message

  OpenLeg* parent = nullptr;  ///< the leg that this one was joined to
  JoinedBy joinedBy = JoinedBy::first;
  std::string joinDetail;

  // What LegJoiner keeps of it.
  std::size_t looks = 0;  ///< messages that were asked for what joins
  std::vector<JoinHash> keys;
  std::vector<JoinHash> originKeys;
  std::vector<Flow> invites;  ///< ways that its INVITEs went
  std::vector<LegAttempt> attempts;
  CaptureTime answered;              ///< when the INVITE got its final response
  bool isAnswered = false;           ///< whether it did
  std::size_t answeredSequence = 0;  ///< the message that brought it
  bool isCompared = false;           ///< whether time and numbers were compared

  CallProgress progress = CallProgress::ringing;
  bool hasInvite = false;              ///< whether one or a response to one was captured
  std::vector<std::string> confirmed;  ///< dialogs that were answered, by their tags
  std::vector<std::string> ended;      ///< and those that got a BYE

  /// Follows how far it is.
  void follow(const CallMessage& message);
};

struct OpenCall {
  std::size_t number = 0;
  std::vector<std::unique_ptr<OpenLeg>> legs;
  std::vector<OpenMessage> messages;
  std::size_t bytes = 0;
  CallProgress progress = CallProgress::ringing;
  std::int64_t lastTime = 0;            ///< the capture's time when its last message came
  std::size_t lastSequence = 0;         ///< its last message
  std::list<OpenCall>::iterator place;  ///< its own, in the list of its progress
};

/// The open calls by their Call-IDs and by their silence.
class OpenCalls {
 public:
  std::size_t size() const { return numbers_.size(); }
  std::size_t bytes() const { return bytes_; }

  /// Null where there is none.
  OpenLeg* find(std::string_view callId) const;
  /// A leg that is a call by itself.
  OpenLeg& begin(const std::string& callId, std::size_t sequence);
  /// Adds a message to the call of its leg, which has then been silent for no time.
  void add(OpenMessage&& message, std::int64_t now);
  /// Makes the calls of two legs one.
  /// @return whether they are one now and were not before; calls with too many legs stay apart
  bool join(OpenLeg& leg, OpenLeg& other, JoinedBy by, const std::string& detail);

  /// A call of which nothing more is expected; null where there is none.
  /// @param nowOfEnded the time for those that have ended
  OpenCall* findOver(std::int64_t now, std::int64_t nowOfEnded);
  /// The call that is silent for longest; null without calls.
  OpenCall* findMostSilent();
  /// All of them by their numbers.
  std::vector<OpenCall*> byNumber();
  /// The lowest number of all; the largest value without calls.
  std::size_t lowestNumber() const;
  /// Takes a call out.
  OpenCall remove(OpenCall& call);

 private:
  std::list<OpenCall>& listOf(const OpenCall& call) {
    return lists_[static_cast<std::size_t>(call.progress)];
  }
  /// Puts a call behind those of its progress.
  void place(OpenCall& call);

  std::size_t begun_ = 0;
  std::set<std::size_t> numbers_;
  std::size_t bytes_ = 0;
  std::unordered_map<std::string_view, OpenLeg*, KeyedHasher> legs_;  ///< the Call-IDs are those of the legs
  std::array<std::list<OpenCall>, kProgresses>
      lists_;  ///< by progress; those that are silent for longest first
};

/// Makes a leg the one that all others of its call were joined to, one by one.
void makeRoot(OpenLeg& leg);

}  // namespace tool

#endif
