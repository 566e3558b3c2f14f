#ifndef SDP_DOCUMENT_GROUP_TABLE_H
#define SDP_DOCUMENT_GROUP_TABLE_H

// The groups of the session (RFC 5888), and which sections are their members.

#include <string_view>
#include <vector>

#include "lines.h"
#include "textSlots.h"

namespace sdp::core {

struct Model;
struct Part;

/// A mid that some group names.
struct MidEntry {
  std::string_view mid;
  Index firstMember = kNone;  ///< where groups name it, in each once
  Index lastMember = kNone;
  Index firstOfBundles = kNone;  ///< the same for BUNDLE groups alone
  Index lastOfBundles = kNone;
  Index firstSection = kNone;  ///< the readable sections that bear it
  Index lastSection = kNone;
  Index bundle = kNone;          ///< the first BUNDLE group that names it
  Index live = 0;                ///< how many of its sections have another port than 0
  Index transport = kNone;       ///< the first of its RTP sections
  Index otherTransport = kNone;  ///< the first of these with another transport
  Index leader = kNone;     ///< the first section with a port of the first of its BUNDLE groups that has one
  bool left = false;        ///< it was taken out of all groups
  bool isFollowed = false;  ///< a section that bears it was led into its groups
};

/// A mid where a group names it.
struct Member {
  Index mid;
  Index group;
  bool again;  ///< the group has named it before
  Index nextOfMid = kNone;
  Index nextOfBundles = kNone;
};

struct Group {
  std::string_view semantics;
  Index firstMember;
  Index endMember;
  // For putting sections away.
  Index live = 0;     ///< how many of its sections have another port than 0
  Index heapEnd = 0;  ///< of those that wait for a port, from firstMember on
  bool hasHeap = false;
  bool changed = false;

  bool isBundle() const { return semantics == "BUNDLE"; }
};

/// The first RTP section of a group, and the first with another transport.
struct GroupTransport {
  Index first = kNone;
  Index other = kNone;
};

/// A section that waits for its group's port, and its mid.
struct Candidate {
  Index section;
  Index mid;
};

class GroupTable {
 public:
  void reserve(std::size_t members, std::size_t sections);
  void forget() { isRead_ = areSectionsRead_ = false; }
  /// Mids of sections are others than before, or other ones are named.
  void forgetSections() { areSectionsRead_ = false; }
  /// Reads the groups of the session and which sections are their members, unless that was done.
  void read(const Model& model);
  /// Reads the groups alone.
  void readGroups(const Model& model);
  /// A line of the session is a group behind all others. Allocates nothing where there is room for all groups.
  void addGroup(const Model& model, Index line);

  /// The entry of a section's mid, where sections were read; kNone when no group names it.
  Index midOf(const Model& model, const Part& section) const;
  /// The entry of a mid; kNone when no group names it.
  Index find(std::string_view mid);

  std::vector<Group> groups;
  std::vector<Member> members;
  std::vector<MidEntry> mids;
  std::vector<Candidate> candidates;     ///< room for one a member
  std::vector<Index> sectionMids;        ///< by section
  std::vector<Index> nextSectionsOfMid;  ///< by section

 private:
  void readGroup(const Model& model, Index line);
  void readSections(const Model& model);

  bool isRead_ = false;
  bool areSectionsRead_ = false;
  TextSlots slots_;
};

}  // namespace sdp::core

#endif
