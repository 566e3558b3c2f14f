// Requests by their names, as policies and command lines have them.

#include <algorithm>
#include <iterator>

#include "access.h"
#include "fieldReader.h"
#include "refusals.h"
#include "requests/codecList.h"
#include "requests/media.h"
#include "sdpDocumentRequests.h"
#include "spellings.h"

namespace sdp {
namespace {

using Words = std::span<const std::string_view>;

/// What stands in front of MEDIA.
enum class First : std::uint8_t { nothing, codecList, address, profile, names, direction };
/// Whether MEDIA is taken.
enum class Media : std::uint8_t { no, may, must };

struct Request {
  First first;
  Media media;
  Refusal (*perform)(Document&, Words arguments) noexcept;
};

std::string_view wordOr(Words words, std::size_t n) {
  return n < words.size() ? words[n] : std::string_view();
}

std::uint16_t portOf(std::string_view text) {
  const std::optional<std::uint64_t> port = core::numberOf(text);
  return port && *port <= core::kHighestPort ? static_cast<std::uint16_t>(*port) : std::uint16_t{0};
}

/// In the order of the descriptions.
constexpr Request kRequests[] = {
    {First::codecList, Media::may,
     [](Document& document, Words words) noexcept {
       return keepCodecs(document, words[0], wordOr(words, 1));
     }},
    {First::codecList, Media::may,
     [](Document& document, Words words) noexcept {
       return dropCodecs(document, words[0], wordOr(words, 1));
     }},
    {First::codecList, Media::may,
     [](Document& document, Words words) noexcept {
       return orderCodecs(document, words[0], wordOr(words, 1));
     }},
    {First::address, Media::no,
     [](Document& document, Words words) noexcept { return anchor(document, words[0], portOf(words[1])); }},
    {First::profile, Media::may,
     [](Document& document, Words words) noexcept {
       return setProfile(document, words[0], wordOr(words, 1));
     }},
    {First::nothing, Media::may,
     [](Document& document, Words words) noexcept { return makeOpportunistic(document, wordOr(words, 0)); }},
    {First::nothing, Media::may,
     [](Document& document, Words words) noexcept { return makeSecureOnly(document, wordOr(words, 0)); }},
    {First::nothing, Media::no, [](Document& document, Words) noexcept { return unbundle(document); }},
    {First::names, Media::may,
     [](Document& document, Words words) noexcept {
       return stripAttributes(document, words[0], wordOr(words, 1));
     }},
    {First::direction, Media::may,
     [](Document& document, Words words) noexcept {
       return setDirection(document, *directionOf(words[0]), wordOr(words, 1));
     }},
    {First::nothing, Media::must,
     [](Document& document, Words words) noexcept { return disable(document, words[0]); }},
    {First::nothing, Media::no, [](Document& document, Words) noexcept { return canonicalise(document); }},
};

constexpr RequestDescription kDescriptions[] = {
    {"keep-codecs", "LIST [MEDIA]"},
    {"drop-codecs", "LIST [MEDIA]"},
    {"order-codecs", "LIST [MEDIA]"},
    {"anchor", "ADDRESS PORT"},
    {"set-profile", "PROFILE [MEDIA]"},
    {"opportunistic", "[MEDIA]"},
    {"secure-only", "[MEDIA]"},
    {"unbundle", ""},
    {"strip-attributes", "NAMES [MEDIA]"},
    {"direction", "DIRECTION [MEDIA]"},
    {"disable", "MEDIA"},
    {"canonical", ""},
};
static_assert(std::size(kRequests) == std::size(kDescriptions));

const Request* requestOf(std::string_view name) {
  const auto* const found =
      std::find_if(std::begin(kDescriptions), std::end(kDescriptions),
                   [name](const RequestDescription& description) { return description.name == name; });
  return found == std::end(kDescriptions) ? nullptr : kRequests + (found - std::begin(kDescriptions));
}

std::size_t fewest(const Request& request) {
  if (request.first == First::address) return 2;
  return (request.first == First::nothing ? 0U : 1U) + (request.media == Media::must ? 1U : 0U);
}

std::size_t most(const Request& request) { return fewest(request) + (request.media == Media::may ? 1U : 0U); }

/// An argument that fits no document.
struct Fault {
  Reason reason = Reason::none;
  std::string_view argument;
};

Fault unless(bool right, Reason reason, std::string_view argument) {
  return right ? Fault{} : Fault{reason, argument};
}

/// What the functions behind the names cannot tell, since they are not called then.
Fault faultOfForm(Words words) {
  if (words.empty()) return {Reason::unknownRequest, {}};
  const Request* const request = requestOf(words[0]);
  if (request == nullptr) return {Reason::unknownRequest, words[0]};
  const Words arguments = words.subspan(1);
  if (arguments.size() < fewest(*request) || arguments.size() > most(*request)) {
    return {Reason::argumentCount, words[0]};
  }
  if (request->first == First::direction && !directionOf(arguments[0]))
    return {Reason::wrongDirection, arguments[0]};
  if (request->first == First::address && !core::isAnchorPort(portOf(arguments[1]))) {
    return unless(!core::addressLiteralOf(arguments[0]), Reason::wrongPort, arguments[1]);
  }
  // An empty word is no selection, though for the functions it stands for what they take by themselves.
  return unless(request->media == Media::no || arguments.empty() || !arguments.back().empty() ||
                    arguments.size() == fewest(*request),
                Reason::wrongMedia, {});
}

Fault faultOfFirst(const Request& request, Words words) {
  switch (request.first) {
    case First::codecList:
      return unless(core::isCodecList(words[0]), Reason::wrongCodecList, words[0]);
    case First::address:
      return unless(core::addressLiteralOf(words[0]).has_value(), Reason::wrongAddress, words[0]);
    case First::profile:
      return unless(core::isProfile(words[0]), Reason::wrongProfile, words[0]);
    case First::names:
      return unless(core::areAttributeNames(words[0]), Reason::wrongNames, words[0]);
    default:
      return {};
  }
}

Fault faultOf(Words words) {
  if (const Fault fault = faultOfForm(words); fault.reason != Reason::none) return fault;
  const Request& request = *requestOf(words[0]);
  const Words arguments = words.subspan(1);
  if (const Fault fault = faultOfFirst(request, arguments); fault.reason != Reason::none) return fault;
  const bool hasMedia = request.media == Media::must || arguments.size() > fewest(request);
  return unless(!hasMedia || core::selectionOf(arguments.back(), core::Default::nothing), Reason::wrongMedia,
                hasMedia ? arguments.back() : std::string_view());
}

/// The words of a line, and of those that are too many the first.
class WordsOfLine {
 public:
  explicit WordsOfLine(std::string_view line) {
    for (std::string_view& word : words_) {
      word = Fields::takeField(line);
      if (word.empty()) break;
      ++count_;
    }
  }
  Words words() const { return Words(words_).first(count_); }

 private:
  static constexpr std::size_t kMostWords = 3;

  std::string_view words_[kMostWords + 1];
  std::size_t count_ = 0;
};

}  // namespace

Refusal checkArguments(std::span<const std::string_view> words) noexcept {
  return {.reason = faultOf(words).reason};
}

Refusal perform(Document& document, std::span<const std::string_view> words) noexcept {
  const Fault fault = faultOfForm(words);
  if (fault.reason == Reason::none) return requestOf(words[0])->perform(document, words.subspan(1));
  return DocumentAccess::perform(document, [&fault](core::Model& model) {
    return core::refuseArgument(model, fault.reason, fault.argument);
  });
}

Refusal checkArguments(std::string_view line) noexcept { return checkArguments(WordsOfLine(line).words()); }

Refusal perform(Document& document, std::string_view line) noexcept {
  return perform(document, WordsOfLine(line).words());
}

std::span<const RequestDescription> requestDescriptions() noexcept { return kDescriptions; }

}  // namespace sdp
