#ifndef SDP_OFFER_ANSWER_JUDGE_OFFERED_CODECS_H
#define SDP_OFFER_ANSWER_JUDGE_OFFERED_CODECS_H

// The codecs of an offered section, gathered so that each codec of an answer is compared with all of them at once:
// both may have thousands.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "codecs.h"
#include "h264.h"
#include "parameterSets.h"

namespace sdp::exchange {

/// What parameters of a codec in an answer do not fit those of the offer.
struct Misfit {
  bool parameters = false;  ///< of AMR, H265, VP9 or AV1
  bool profile = false;     ///< of H264, as the rest
  bool mode = false;
  bool level = false;

  explicit operator bool() const { return parameters || profile || mode || level; }
};

/// What of a codec's parameters is weighed, read once: they may be long.
struct CodecTraits {
  explicit CodecTraits(const Codec& codec);

  Family family;
  std::string agreement;  ///< the same for all that agree in what must be the same
  std::optional<ModeSet> modes;
  std::optional<ProfileLevelId> id;
  bool allowsAsymmetry = false;
};

/// Compares a codec of an answer with an offered one of the same encoding.
Misfit misfitOf(const CodecTraits& offered, const CodecTraits& answered);

class OfferedCodecs {
 public:
  explicit OfferedCodecs(const CodecList& codecs);

  /// Whether a codec of this encoding, clock rate and channels is there.
  bool has(const Codec& codec) const;
  /// Compares with all of the encoding: nothing is wrong when one fits, else what is with the first.
  Misfit misfitOf(const Codec& codec, const CodecTraits& answered) const;

 private:
  /// What formats allow that agree, and of H264 are of one profile.
  struct Alike {
    bool anyModes = false;  ///< one has no mode-set
    ModeSet modes;          ///< of all others
    int highestLevel = -1;
    bool allowsAsymmetry = false;  ///< one does
  };
  struct Encoding {
    explicit Encoding(CodecTraits traits) : first(std::move(traits)) {}

    CodecTraits first;
    bool anyProfile = false;  ///< one has no profile-level-id
    std::map<std::string, Alike> alike;
  };
  static void add(Encoding& encoding, const CodecTraits& traits);
  const Encoding* find(const Codec& codec) const;
  static bool fits(const Encoding& encoding, const CodecTraits& answered);

  std::map<std::string, Encoding> encodings_;
};

}  // namespace sdp::exchange

#endif
