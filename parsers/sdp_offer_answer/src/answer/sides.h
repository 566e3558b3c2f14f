#ifndef SDP_OFFER_ANSWER_SIDES_H
#define SDP_OFFER_ANSWER_SIDES_H

// An offer and the local description, and which sections of them belong together.

#include <optional>
#include <vector>

#include "answer/formatChoice.h"
#include "answer/keys.h"
#include "bundles.h"
#include "sdpAnswer.h"

namespace sdp::exchange {

/// Both descriptions with what holds for all their sections. They must not be edited meanwhile.
struct Sides {
  Sides(const Document& theOffer, const Document& theLocal, const AnswerOptions& theOptions)
      : offer(theOffer), local(theLocal), options(theOptions), offered(theOffer), own(theLocal) {}

  const Document& offer;
  const Document& local;
  const AnswerOptions& options;
  Bundles offered;
  Bundles own;
};

/// A section that is accepted.
struct Accepted {
  Section offered;
  Section local;
  CodecList offeredFormats;
  const CodecList* localFormats = nullptr;
  AnsweredFormats formats;
  KeyChoice keys;
  std::optional<std::size_t> group;  ///< of Matches::groups
  const Accepted* leader = nullptr;  ///< whose address, port and ICE it has; itself outside of a group
};

/// A BUNDLE group of the answer.
struct AnsweredGroup {
  std::vector<std::size_t> members;  ///< numbers of accepted sections, in the order of the offered mids
};

/// What becomes of the sections of an offer.
class Matches {
 public:
  explicit Matches(const Sides& sides);
  Matches(const Matches&) = delete;
  Matches& operator=(const Matches&) = delete;

  const std::vector<AnsweredSection>& sections() const { return sections_; }
  const std::vector<Accepted>& accepted() const { return accepted_; }
  const std::vector<AnsweredGroup>& groups() const { return groups_; }
  /// The accepted section that answers one of the offer; null for a refused one.
  const Accepted* find(std::uint32_t section) const;

 private:
  struct LocalSection {
    Section section;
    CodecList formats;
    bool isUsed = false;
  };
  static constexpr std::uint32_t kNone = 0xFFFFFFFFU;

  void readLocals();
  void match(const Section& offered);
  /// @return accepted, or how far it got
  SectionOutcome tryLocal(Accepted& candidate, const LocalSection& local);
  bool hasLiveCompany(const Section& offered, const Section& local) const;
  bool canJoin(const Section& offered, const Section& local) const;
  void formGroups();
  void formGroup(std::uint32_t offeredGroup);
  void refuseUnreachable();

  const Sides& sides_;
  KeyChooser keys_;
  std::vector<LocalSection> locals_;
  std::vector<AnsweredSection> sections_;
  std::vector<Accepted> accepted_;
  std::vector<std::uint32_t> acceptedOf_;  ///< by section of the offer, from 0
  std::vector<AnsweredGroup> groups_;
};

/// Whether a section has port 0 because another of its group has the port.
inline bool isBundledOnly(const Section& section) { return section.port() == 0 && section.isBundleOnly(); }

}  // namespace sdp::exchange

#endif
