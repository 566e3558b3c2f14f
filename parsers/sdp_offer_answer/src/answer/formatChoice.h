#ifndef SDP_OFFER_ANSWER_FORMAT_CHOICE_H
#define SDP_OFFER_ANSWER_FORMAT_CHOICE_H

// Which formats of an offered section are answered.

#include <vector>

#include "codecs.h"
#include "sdpAnswer.h"

namespace sdp::exchange {

/// A format of the offer, and the local one that equals it.
struct FormatPair {
  const Codec* offered;
  const Codec* local;
};

/// The formats of a section that are answered.
struct AnsweredFormats {
  std::vector<FormatPair> pairs;  ///< in their order; none when the section cannot be accepted
  std::vector<const Codec*>
      translations;  ///< by local format: the first one answered that equals it, or null
};

/// @param offered of an RTP section, as `local`
AnsweredFormats chooseCodecs(const CodecList& offered, const CodecList& local, const AnswerOptions& options);
/// Of a section without RTP, where formats are words.
AnsweredFormats chooseWords(const CodecList& offered, const CodecList& local, const AnswerOptions& options);

}  // namespace sdp::exchange

#endif
