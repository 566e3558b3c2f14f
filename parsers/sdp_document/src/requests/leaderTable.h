#ifndef SDP_DOCUMENT_LEADER_TABLE_H
#define SDP_DOCUMENT_LEADER_TABLE_H

// The first section of each BUNDLE group with each port field.

#include <string_view>
#include <vector>

#include "textSlots.h"

namespace sdp::core {

class LeaderTable {
 public:
  void reset(std::size_t entries) {
    entries_.clear();
    slots_.reset(entries);
  }
  /// The section that leads a port field of a group; kNone until one is stored.
  Index& slotOf(Index group, std::string_view port) {
    Index& slot = slots_.slotOf(
        port, [&](Index i) { return entries_[i].group == group && entries_[i].port == port; }, group);
    if (slot == kNone) {
      slot = static_cast<Index>(entries_.size());
      entries_.push_back({group, port, kNone});
    }
    return entries_[slot].section;
  }

 private:
  struct Entry {
    Index group;
    std::string_view port;
    Index section;
  };
  std::vector<Entry> entries_;
  TextSlots slots_;
};

}  // namespace sdp::core

#endif
