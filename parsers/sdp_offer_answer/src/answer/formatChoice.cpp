// Choosing the formats of an answer.

#include "answer/formatChoice.h"

#include <algorithm>

#include "text/search.h"

namespace sdp::exchange {
namespace {

constexpr std::uint32_t kUsualEventClock = 8000;  // some peers know no other

/// One choice: codecs that both have, then what serves these.
class Choice {
 public:
  Choice(const CodecList& offered, const CodecList& local, const AnswerOptions& options)
      : offered_(offered), local_(local), options_(options), sameness_(offered, local) {}

  AnsweredFormats choose();

 private:
  void findPairs();
  bool keepCodecs();
  void keepCompanions();
  void keepEvents();
  void keepRed();
  void keepRtx();
  void keep(const FormatPair& pair) { stays_[offered_.placeOf(*pair.offered)] = true; }
  bool stays(const FormatPair& pair) const { return stays_[offered_.placeOf(*pair.offered)]; }
  bool stays(std::string_view payload) const;
  std::vector<const Codec*> translations();
  bool hasClockOfCodec(const Codec& codec) const {
    return !wasCodecOffered_ || std::find(clocks_.begin(), clocks_.end(), codec.clockRate) != clocks_.end();
  }

  const CodecList& offered_;
  const CodecList& local_;
  const AnswerOptions& options_;
  Sameness sameness_;
  std::vector<FormatPair> pairs_;  ///< in the order of the answer
  std::vector<bool> stays_;        ///< by format of the offer
  std::vector<std::uint32_t> clocks_;
  bool wasCodecOffered_ = false;
};

void sortForAnswer(std::vector<FormatPair>& pairs, const AnswerOptions& options) {
  if (!options.prefersLocal) return;
  // Codecs of one list compare by their places in it.
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](const FormatPair& a, const FormatPair& b) { return a.local < b.local; });
}

void Choice::findPairs() {
  for (const Codec& codec : offered_) {
    wasCodecOffered_ = wasCodecOffered_ || !codec.isCompanion;
    const auto equal = std::find_if(local_.begin(), local_.end(),
                                    [&](const Codec& local) { return sameness_.areSame(codec, local); });
    if (equal != local_.end()) pairs_.push_back({&codec, &*equal});
  }
  sortForAnswer(pairs_, options_);
}

/// @return false when there is none though one was offered
bool Choice::keepCodecs() {
  for (const FormatPair& pair : pairs_) {
    if (pair.offered->isCompanion) continue;
    keep(pair);
    if (!hasClockOfCodec(*pair.offered)) clocks_.push_back(pair.offered->clockRate);
    if (options_.isSingle) break;
  }
  return !wasCodecOffered_ || !clocks_.empty();
}

void Choice::keepEvents() {
  bool fits = false;
  for (int all = 0; all < 2 && !fits; ++all) {
    for (const FormatPair& pair : pairs_) {
      if (pair.offered->family != Family::telephoneEvent) continue;
      if (all == 0 && pair.offered->clockRate != kUsualEventClock && !hasClockOfCodec(*pair.offered))
        continue;
      keep(pair);
      fits = true;
    }
  }
}

void Choice::keepCompanions() {
  keepEvents();
  for (const FormatPair& pair : pairs_) {
    const Codec& codec = *pair.offered;
    if (!codec.isCompanion) continue;
    const bool isOther = codec.family == Family::other;
    if (isOther || (codec.family == Family::comfortNoise && hasClockOfCodec(codec))) keep(pair);
  }
  // What red carries is decided, and what rtx repairs is decided with red.
  keepRed();
  keepRtx();
}

bool Choice::stays(std::string_view payload) const {
  const Codec* const codec = offered_.find(payload);
  return codec != nullptr && stays_[offered_.placeOf(*codec)];
}

/// What stands for each local format among those that stay.
std::vector<const Codec*> Choice::translations() {
  std::vector<const Codec*> result(local_.size(), nullptr);
  for (const FormatPair& pair : pairs_) {
    if (!stays(pair)) continue;
    for (const Codec& local : local_) {
      const Codec*& first = result[local_.placeOf(local)];
      if (first == nullptr && sameness_.areSame(*pair.offered, local)) first = pair.offered;
    }
  }
  return result;
}

void Choice::keepRed() {
  const std::vector<const Codec*> standIns = translations();
  const auto standsIn = [&](std::string_view payload) {
    const Codec* const local = local_.find(payload);
    return local != nullptr && standIns[local_.placeOf(*local)] != nullptr;
  };
  std::vector<FormatPair> kept;
  for (const FormatPair& pair : pairs_) {
    if (pair.offered->family != Family::red) continue;
    Payloads theirs(pair.offered->carried());
    Payloads ours(pair.local->carried());
    std::string_view payload = theirs.next();
    const bool isTold = !payload.empty();
    bool fits = true;
    for (; fits && !payload.empty(); payload = theirs.next()) fits = stays(payload);
    // Where the offer does not tell what red carries, what the local one does must be there.
    for (payload = ours.next(); fits && !isTold && !payload.empty(); payload = ours.next())
      fits = standsIn(payload);
    if (fits) kept.push_back(pair);
  }
  for (const FormatPair& pair : kept) keep(pair);
}

void Choice::keepRtx() {
  std::vector<FormatPair> kept;
  for (const FormatPair& pair : pairs_) {
    if (pair.offered->family == Family::rtx && stays(pair.offered->apt())) kept.push_back(pair);
  }
  for (const FormatPair& pair : kept) keep(pair);
}

AnsweredFormats Choice::choose() {
  findPairs();
  stays_.assign(offered_.size(), false);
  if (!keepCodecs()) return {};
  keepCompanions();
  std::erase_if(pairs_, [this](const FormatPair& pair) { return !stays(pair); });
  AnsweredFormats answered{{}, translations()};
  answered.pairs.swap(pairs_);
  return answered;
}

}  // namespace

AnsweredFormats chooseCodecs(const CodecList& offered, const CodecList& local, const AnswerOptions& options) {
  return Choice(offered, local, options).choose();
}

AnsweredFormats chooseWords(const CodecList& offered, const CodecList& local, const AnswerOptions& options) {
  AnsweredFormats answered{{}, std::vector<const Codec*>(local.size(), nullptr)};
  for (const Codec& word : offered) {
    const auto equal = std::find_if(local.begin(), local.end(), [&](const Codec& other) {
      return sdpneg::equalNoCase(word.payload, other.payload);
    });
    if (equal == local.end() || answered.translations[local.placeOf(*equal)] != nullptr) continue;
    answered.translations[local.placeOf(*equal)] = &word;
    answered.pairs.push_back({&word, &*equal});
  }
  sortForAnswer(answered.pairs, options);
  return answered;
}

}  // namespace sdp::exchange
