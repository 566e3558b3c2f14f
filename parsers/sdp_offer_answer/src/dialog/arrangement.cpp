// Finding places for sections.

#include "arrangement.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "bodies.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// What of a section decides where it may stand.
struct Kind {
  std::string_view media;
  std::string_view transport;
  std::string_view mid;
  bool isRtp = false;
  bool isAlive = false;

  /// Whether one may follow the other in its place: profiles of RTP may change, other transports may not.
  bool canFollow(const Kind& other) const {
    return media == other.media && isRtp == other.isRtp &&
           (isRtp || sdpneg::equalNoCase(transport, other.transport));
  }
};

class Arranger {
 public:
  Arranger(const Document& wanted, const Document& local, const Document& remote) {
    for (const Section& section : wanted.sections())
      wanted_.push_back(kindOf(section, !section.isDisabled()));
    for (const Section& section : local.sections()) {
      const bool isDisabled = section.isDisabled() || !isAlive(remote, section.index());
      places_.push_back(kindOf(section, !isDisabled));
    }
    result_.assign(places_.size(), 0);
    isPlaced_.assign(wanted_.size(), false);
  }

  Arrangement arrange() {
    if (hasSameShape()) {
      for (std::size_t i = 0; i < places_.size(); ++i) place(i, i);
    } else {
      placeByMid();
      placeAll([this](const Kind& section, std::size_t at) {
        return places_[at].isAlive && section.canFollow(places_[at]);
      });
    }
    placeAll([this](const Kind& section, std::size_t at) {
      return !places_[at].isAlive && section.canFollow(places_[at]);
    });
    placeAll([this](const Kind& /*section*/, std::size_t at) { return !places_[at].isAlive; });
    append();
    // What is disabled in the description only kept its place from others.
    for (std::uint32_t& section : result_) {
      if (section != 0 && !places_.empty() && !wanted_[section - 1].isAlive) section = 0;
    }
    return result_;
  }

 private:
  static Kind kindOf(const Section& section, bool isAlive) {
    return {section.media(), section.transport(), section.mid(), section.isRtp(), isAlive};
  }

  /// Descriptions that were made from the current body have its sections in their places, also disabled ones.
  bool hasSameShape() const {
    if (wanted_.size() < places_.size()) return false;
    for (std::size_t i = 0; i < places_.size(); ++i) {
      const Kind& section = wanted_[i];
      const bool haveOtherMids =
          !section.mid.empty() && !places_[i].mid.empty() && section.mid != places_[i].mid;
      if (haveOtherMids || !section.canFollow(places_[i])) return false;
    }
    return true;
  }

  void place(std::size_t section, std::size_t at) {
    result_[at] = static_cast<std::uint32_t>(section + 1);
    isPlaced_[section] = true;
  }

  void placeByMid() {
    std::map<std::string_view, std::size_t> places;
    for (std::size_t at = 0; at < places_.size(); ++at) {
      if (!places_[at].mid.empty()) places.emplace(places_[at].mid, at);
    }
    for (std::size_t i = 0; i < wanted_.size(); ++i) {
      const auto found = wanted_[i].mid.empty() ? places.end() : places.find(wanted_[i].mid);
      if (found == places.end() || result_[found->second] != 0) continue;
      if (wanted_[i].canFollow(places_[found->second])) place(i, found->second);
    }
  }

  /// Gives each section that is not disabled the first free place that will do.
  template <typename WillDo>
  void placeAll(WillDo willDo) {
    for (std::size_t i = 0; i < wanted_.size(); ++i) {
      if (isPlaced_[i] || !wanted_[i].isAlive) continue;
      for (std::size_t at = 0; at < places_.size(); ++at) {
        if (result_[at] != 0 || !willDo(wanted_[i], at)) continue;
        place(i, at);
        break;
      }
    }
  }

  void append() {
    for (std::size_t i = 0; i < wanted_.size(); ++i) {
      const bool isLeft = !isPlaced_[i] && (wanted_[i].isAlive || places_.empty());
      if (isLeft) result_.push_back(static_cast<std::uint32_t>(i + 1));
    }
  }

  std::vector<Kind> wanted_;
  std::vector<Kind> places_;
  Arrangement result_;
  std::vector<bool> isPlaced_;
};

}  // namespace

Arrangement arrange(const Document& wanted, const Document& local, const Document& remote) {
  return Arranger(wanted, local, remote).arrange();
}

}  // namespace sdp::exchange
