#ifndef B2BUA_STATE_STORE_H
#define B2BUA_STATE_STORE_H

#include <string>
#include <vector>

#include "call.h"
#include "redisLink.h"

namespace b2bua {

enum class Found { yes, no, unknown };  ///< unknown: the server could not be asked

/// Keeps calls in Redis, one hash for each, so that another process can go on with them. Without an address it is
/// asked for nothing.
///
/// A record names its owner, the process that has the call. Who takes the call over becomes the owner, and the former
/// one finds that out when it looks.
class StateStore {
 public:
  /// @param address  as that of a RedisLink
  explicit StateStore(const std::string& address) : link_(address) {}

  bool isUsed() const { return link_.isUsed(); }
  unsigned long connections() const { return link_.connections(); }
  /// @return false when they could not be kept; the calls go on without
  bool save(const std::vector<Call*>& calls);
  /// @param mark  whether a former owner may still have the call: then the record says for a while that it has ended
  bool remove(const std::string& id, bool mark);
  /// A party has an INVITE whose 200, when it comes, needs an ACK.
  void addAck(const Leg& leg);
  /// The 200s of calls have their ACK.
  void removeAcks(const std::vector<std::string>& ids);
  /// Loads what `save` kept under the call's ID, all of which may be wrong. The owner stays.
  Found load(Call& call);
  /// Makes this process the owner of a loaded call, and the numbers of what the former one may have sent used.
  bool claim(Call& call);
  /// @return the owners of records, "" where there is none; nothing when the server could not be asked
  std::vector<std::string> ownersOf(const std::vector<std::string>& ids);
  bool isOwn(const std::string& owner) const { return owner.starts_with(own_); }
  /// @return whether an owner has had the call after this process
  bool isElsewhere(const std::string& owner, const Call& call) const;
  bool ping() { return link_.run({{"PING"}}); }

 private:
  std::string ownerOf(const Call& call) const;

  RedisLink link_;
  const std::string own_ = randomText();
};

}  // namespace b2bua

#endif
