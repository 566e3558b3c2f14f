#ifndef SDP_OFFER_ANSWER_JUDGE_OFFERED_CODECS_H
#define SDP_OFFER_ANSWER_JUDGE_OFFERED_CODECS_H

// The codecs of an offered section, gathered so that each codec of an answer is compared with all of them at once:
// both may have thousands.

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "codecs.h"
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

/// Compares a codec of an answer with an offered one of the same encoding.
Misfit misfitOf(const Codec& offered, const Codec& answered);

class OfferedCodecs {
 public:
  /// @param codecs must outlive this
  explicit OfferedCodecs(const CodecList& codecs);

  /// Whether a codec of this encoding, clock rate and channels is there.
  bool has(const Codec& codec) const;
  /// Compares with all of the encoding: nothing is wrong when one fits, else what is with the first.
  Misfit misfitOf(const Codec& answered) const;

 private:
  /// What formats allow that agree in all parameters that must be the same.
  struct Alike {
    bool anyModes = false;  ///< one has no mode-set
    ModeSet modes;          ///< of all others
    int highestLevel = -1;
    bool isAsymmetric = false;  ///< one allows other levels in the other direction
  };
  struct Encoding {
    const Codec* first = nullptr;
    bool anyProfile = false;  ///< one has no profile-level-id
    std::unordered_map<std::string, Alike> alike;
  };
  const Encoding* find(const Codec& codec) const;
  static bool fits(const Encoding& encoding, const Codec& answered);

  std::unordered_map<std::string, Encoding> encodings_;
};

}  // namespace sdp::exchange

#endif
