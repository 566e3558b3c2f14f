#ifndef SDP_OFFER_ANSWER_JUDGE_BODIES_H
#define SDP_OFFER_ANSWER_JUDGE_BODIES_H

// An offer and an answer side by side, with what is asked of them for each section.

#include <cstdint>
#include <string_view>
#include <vector>

#include "bundles.h"
#include "codecs.h"
#include "judge/cryptos.h"
#include "judge/extmaps.h"
#include "judge/findings.h"
#include "judge/words.h"

namespace sdp::exchange {

/// What an m-line says, field by field, also one that cannot be read. A field that is not there is empty.
struct MLineFields {
  explicit MLineFields(const Section& section);

  std::string_view media;
  std::string_view port;
  std::string_view transport;
};

/// The first field of the mid, also of a section that cannot be read; empty without one.
std::string_view midOf(const Section& section);

/// What the sections of an answer share by its groups.
class AnswerGroups {
 public:
  AnswerGroups(const Document& offer, const Document& answer, const Bundles& bundles);

  /// Whether any group names a mid.
  bool names(std::string_view mid) const { return named_.has(mid); }
  /// Whether a section of the BUNDLE group of a section has a port, and an address of its own.
  bool haveAddress(std::uint32_t section) const { return isOf(section, &Group::hasAddress); }
  /// Whether one has a port and was offered with one.
  bool havePort(std::uint32_t section) const { return isOf(section, &Group::hasPort); }

 private:
  struct Group {
    bool hasAddress = false;
    bool hasPort = false;
  };
  bool isOf(std::uint32_t section, bool Group::*what) const;

  const Bundles* bundles_;
  Words named_;
  std::vector<Group> groups_;  ///< the BUNDLE groups by their number
};

/// Both bodies. They must outlive it, and not be edited.
struct Bodies {
  Bodies(const Document& offered, const Document& answered);

  const Document& offer;
  const Document& answer;
  Bundles offerBundles;
  Bundles answerBundles;
  AnswerGroups groups;     ///< of the answer
  Extmaps offeredExtmaps;  ///< of the offer's session
  OfferedCryptos offeredCryptos;
};

/// A section of the offer and that of the answer with the same number.
struct Pair {
  Pair(const Bodies& both, std::uint32_t index);

  const Bodies& bodies;
  std::uint32_t number;
  Section offered;
  Section answered;

  /// Whether attributes of a name hold in the section of the offer, or in that of the answer.
  bool offers(Credential credential) const { return bodies.offerBundles.has(number, credential); }
  bool answers(Credential credential) const { return bodies.answerBundles.has(number, credential); }
};

// The rules by topic. Those of pairs are asked for sections that were accepted, where nothing else is told.

/// Sections: count, media, transport, port, address, direction.
void judgeSectionCount(const Bodies& bodies, Findings& findings);
/// @return whether the section was accepted, so that the rest of the rules applies
bool judgeSection(const Pair& pair, Findings& findings);

/// Groups and mids.
void judgeGroups(const Bodies& bodies, Findings& findings);
void judgeMembership(const Pair& pair, bool isAccepted, Findings& findings);

/// Formats.
void judgeFormats(const Pair& pair, Findings& findings);

/// RTCP, header extensions and ICE.
void judgeSessionConnectivity(const Bodies& bodies, Findings& findings);
void judgeConnectivity(const Pair& pair, Findings& findings);

/// Keys of SDES and DTLS.
void judgeKeys(const Pair& pair, Findings& findings);

}  // namespace sdp::exchange

#endif
