#ifndef B2BUA_MEDIA_RELAY_H
#define B2BUA_MEDIA_RELAY_H

#include <memory>

#include "call.h"
#include "log.h"
#include "options.h"
#include "snapshot.h"

namespace b2bua {

/// Leads the media of calls by way of another host.
class MediaRelay {
 public:
  /// @param body  when nothing is refused: what the other side is to get
  using Done = std::function<void(const std::string& body, const BodyRefusal& refusal)>;

  virtual ~MediaRelay() = default;

  /// @return whether no call can begin now
  virtual bool isGone() const { return false; }
  /// Asks for the body that leads the other side to the relay. `done` may be called at once.
  virtual void relay(Call& call, Side from, bool isAnswer, const std::string& body, Done done) = 0;
  /// A call comes from the store, with what the relay has given it.
  virtual void resume(const Call&) {}
  /// The call is over.
  virtual void release(const Call& call) = 0;
};

/// @return null for `media = none`. Throws std::runtime_error.
std::unique_ptr<MediaRelay> makeMediaRelay(su_root_t* root, const MediaOptions& options, Log& log,
                                           Counters& counters);

}  // namespace b2bua

#endif
