#ifndef SDP_DOCUMENT_PUT_AWAY_H
#define SDP_DOCUMENT_PUT_AWAY_H

// Putting sections away: port 0, out of their groups, their port handed on.

#include <string_view>
#include <vector>

#include "model.h"

namespace sdp::core {

/// Puts sections away one after the other, in the document's order. The lines of groups are written once, at the end.
class PuttingAway {
 public:
  explicit PuttingAway(Model& model);
  PuttingAway(const PuttingAway&) = delete;
  PuttingAway& operator=(const PuttingAway&) = delete;
  /// What it wrote into the table is of use here alone.
  ~PuttingAway() { table_.forget(); }
  void putAway(Part& section);
  void finish();

 private:
  void findHeirs(Index mid, Index behind);
  Index heirOf(Group& group, Index behind);
  Index candidateOf(Index mid, Index behind);
  void takePort(Part& section, std::string_view port);
  void addLive(Index mid);
  void leaveGroups(Index mid);
  void writeGroup(const Group& group, Index index);

  Model& model_;
  GroupTable& table_;
};

/// No readable section has another port than 0: nobody is left to talk to.
bool hasNoPort(const Model& model);

}  // namespace sdp::core

#endif
