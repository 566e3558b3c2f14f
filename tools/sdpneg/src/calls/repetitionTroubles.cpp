// Bodies that come again: versions of o-lines, and retransmissions.

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string_view>
#include <tuple>

#include "calls/troubleFinder.h"
#include "text/search.h"

namespace tool {
namespace {

/// Who sends bodies to whom in a dialog: segment, address, own tag, the other's tag.
using Sender =
    std::tuple<std::size_t, AddressFamily, std::array<std::uint8_t, 16>, std::string_view, std::string_view>;

Sender senderOf(const TroubleFinder& finder, std::size_t number) {
  const CallMessage& message = finder.call().messages[number];
  const bool isRequest = message.status == 0;
  const IpAddress& address = message.flow.source.address;
  return {finder.segments().of(number), address.family, address.bytes,
          isRequest ? message.fromTag : message.toTag, isRequest ? message.toTag : message.fromTag};
}

bool isNumber(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return sdpneg::isDigit(c); });
}

/// How two numbers of any length compare.
int compare(std::string_view a, std::string_view b) {
  a.remove_prefix(std::min(a.find_first_not_of('0'), a.size()));
  b.remove_prefix(std::min(b.find_first_not_of('0'), b.size()));
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return a.compare(b);
}

struct Split {
  std::string_view front;
  std::string_view behind;

  bool operator==(const Split&) const = default;
};

/// A body without its o-line.
Split withoutOrigin(std::string_view sdp, const Origin& origin) {
  const auto begin = static_cast<std::size_t>(origin.line.data() - sdp.data());
  return {sdp.substr(0, begin), sdp.substr(begin + origin.line.size())};
}

void compareVersions(TroubleFinder& finder, std::size_t before, std::size_t after) {
  const std::string_view earlier = finder.call().messages[before].sdp();
  const std::string_view later = finder.call().messages[after].sdp();
  if (earlier == later) return;
  const std::optional<Origin> old = originOf(earlier);
  const std::optional<Origin> now = originOf(later);
  if (!old || !now || old->session != now->session || old->user != now->user) return;
  if (!isNumber(old->version) || !isNumber(now->version)) return;
  const Split rest = withoutOrigin(later, *now);
  const auto line = static_cast<std::size_t>(std::ranges::count(rest.front, '\n')) + 1;
  const int change = compare(now->version, old->version);
  const std::string versions =
      " from " + shownPiece(old->version, 20) + " to " + shownPiece(now->version, 20);
  const std::string number = std::to_string(finder.call().messages[before].number);
  if (change > 0) {
    if (rest != withoutOrigin(earlier, *old) ||
        !finder.isNews("version-raised-without-change", before, after)) {
      return;
    }
    finder.tell("version-raised-without-change", {after, 0, line},
                "the version went" + versions + ", and the body is that of message " + number);
  } else if (finder.isNews("version-not-raised", before, after)) {
    finder.tell("version-not-raised", {after, 0, line},
                "the body is not that of message " + number + ", and the version " +
                    (change == 0 ? "is " + shownPiece(now->version, 20) + " as there" : "went" + versions));
  }
}

/// What a sender said of its media, by messages.
struct Said {
  std::size_t last = 0;
  std::size_t standing = 0;  ///< the last one that is no refused offer
};

bool isRefusedOffer(const TroubleFinder& finder, std::size_t message) {
  const Exchange* const exchange = finder.offeredBy(message);
  return exchange != nullptr && exchange->finalStatus >= 300;
}

/// A refused offer is as if it had not been made (RFC 3261 14.1): what was said before it may come again as it was.
bool isAsItStands(const TroubleFinder& finder, const Said& said, std::size_t message) {
  const std::vector<CallMessage>& messages = finder.call().messages;
  return said.standing != said.last && messages[said.standing].sdp() == messages[message].sdp();
}

void findVersionTroubles(TroubleFinder& finder) {
  const std::vector<CallMessage>& messages = finder.call().messages;
  std::map<Sender, Said> last;
  for (std::size_t i = 0; i < messages.size(); ++i) {
    if (messages[i].sdpSize == 0 || messages[i].retransmissionOf || messages[i].isCut) continue;
    Sender sender = senderOf(finder, i);
    const bool isOutside = messages[i].status == 0 && messages[i].toTag.empty();
    auto known = last.find(sender);
    if (known == last.end() && !isOutside) {
      // The first one of a dialog follows what was sent before it was known with whom it would be.
      Sender toAnyone = sender;
      std::get<4>(toAnyone) = {};
      known = last.find(toAnyone);
    }
    // A request outside of a dialog begins anew: another attempt of a call.
    Said now{i, i};
    if (known != last.end() && !isOutside) {
      if (!isAsItStands(finder, known->second, i)) compareVersions(finder, known->second.last, i);
      if (isRefusedOffer(finder, i)) now.standing = known->second.standing;
    }
    last.insert_or_assign(std::move(sender), now);
  }
}

void findChangedRetransmissions(TroubleFinder& finder) {
  const std::vector<CallMessage>& messages = finder.call().messages;
  for (std::size_t i = 0; i < messages.size(); ++i) {
    if (!messages[i].retransmissionOf || messages[i].isCut) continue;
    const std::size_t first = *messages[i].retransmissionOf;
    if (messages[first].isCut || messages[first].sdp() == messages[i].sdp()) continue;
    finder.tell(
        "retransmission-differs", {i},
        "its body is not that of message " + std::to_string(messages[first].number) + ", which it repeats");
  }
}

}  // namespace

void findRepetitionTroubles(TroubleFinder& finder) {
  findVersionTroubles(finder);
  findChangedRetransmissions(finder);
}

}  // namespace tool
