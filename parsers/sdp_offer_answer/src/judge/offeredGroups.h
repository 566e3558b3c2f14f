#ifndef SDP_OFFER_ANSWER_JUDGE_OFFERED_GROUPS_H
#define SDP_OFFER_ANSWER_JUDGE_OFFERED_GROUPS_H

// The groups of an offer (RFC 5888), and whether one has all members of another.

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "judge/words.h"
#include "sdpDocument.h"

namespace sdp::exchange {

/// The members of a group, each once, in the order of its line.
class MidSet {
 public:
  explicit MidSet(const Fields& mids);

  std::vector<std::string_view>::const_iterator begin() const { return mids_.begin(); }
  std::vector<std::string_view>::const_iterator end() const { return mids_.end(); }
  /// The same, sorted.
  const std::vector<std::string_view>& sorted() const { return sorted_.all(); }

 private:
  Words sorted_;
  std::vector<std::string_view> mids_;
};

class OfferedGroups {
 public:
  explicit OfferedGroups(const Session& session);

  /// Whether a group of these semantics has all these members. Peers may ask for so many sets of members of so many
  /// groups that all steps are taken; what is asked for behind that is not found.
  bool contain(std::string_view semantics, const MidSet& members);

 private:
  /// The groups that have a member.
  struct Bearers {
    bool have(std::uint32_t group) const;

    std::vector<std::uint32_t> numbers;  ///< ascending
    std::vector<std::uint64_t> bits;     ///< the same by number, where they are many; else empty
  };
  /// The groups of one semantics, by their members.
  struct Kind {
    std::uint32_t count = 0;
    std::map<std::string_view, Bearers> byMid;
    /// Whether one group has certain members, sorted, of those that were asked for.
    std::map<std::vector<std::string_view>, bool> known;
  };
  bool haveCommon(const std::vector<const Bearers*>& all);
  bool take(std::size_t steps);

  std::size_t stepsLeft_;
  std::map<std::string_view, Kind> kinds_;
};

}  // namespace sdp::exchange

#endif
