// The requests as callers have them: arguments are judged, then the request is done.

#include "sdpDocumentRequests.h"

#include <algorithm>

#include "access.h"
#include "refusals.h"
#include "requests/codecs.h"
#include "requests/media.h"
#include "requests/profile.h"
#include "spellings.h"

namespace sdp {
namespace {

using core::Default;
using core::Model;
using core::refuseArgument;
using core::Selection;

/// What the request itself did not explain is explained by its reason.
Refusal explained(Model& model, const Refusal& refusal) {
  if (refusal && model.explanation.empty()) core::explain(model, refusal);
  return refusal;
}

/// Does a request on the sections of a selection.
/// @param isRight called with the model; whether `argument` is right, which `wrong` says otherwise
template <typename IsRight, typename Request>
Refusal performOn(Document& document, std::string_view argument, Reason wrong, IsRight isRight,
                  std::string_view media, Default otherwise, Request request) noexcept {
  return DocumentAccess::perform(document, [&](Model& model) {
    if (!isRight(model)) return refuseArgument(model, wrong, argument);
    const std::optional<Selection> selection = core::selectionOf(media, otherwise);
    if (!selection) return refuseArgument(model, Reason::wrongMedia, media);
    return explained(model, request(model, *selection));
  });
}

/// Does a request that has no other argument than the selection.
template <typename Request>
Refusal performOn(Document& document, std::string_view media, Default otherwise, Request request) noexcept {
  return performOn(
      document, {}, Reason::none, [](Model&) { return true; }, media, otherwise, request);
}

/// Does a request about the codecs of a list.
template <typename Request>
Refusal performOnCodecs(Document& document, std::string_view list, std::string_view media,
                        Request request) noexcept {
  return performOn(
      document, list, Reason::wrongCodecList,
      [list](Model& model) { return core::readCodecList(list, model.list); }, media, Default::audioAndVideo,
      request);
}

}  // namespace

Refusal keepCodecs(Document& document, std::string_view list, std::string_view media) noexcept {
  return performOnCodecs(document, list, media, [&](Model& model, const Selection& selection) {
    return core::keepCodecs(model, list, selection);
  });
}

Refusal dropCodecs(Document& document, std::string_view list, std::string_view media) noexcept {
  return performOnCodecs(document, list, media, [&](Model& model, const Selection& selection) {
    return core::dropCodecs(model, list, selection);
  });
}

Refusal orderCodecs(Document& document, std::string_view list, std::string_view media) noexcept {
  return performOnCodecs(document, list, media, core::orderCodecs);
}

Refusal anchor(Document& document, std::string_view address, std::uint16_t port) noexcept {
  return DocumentAccess::perform(document, [&](Model& model) {
    const std::optional<core::AddressLiteral> literal = core::addressLiteralOf(address);
    if (!literal) return refuseArgument(model, Reason::wrongAddress, address);
    if (!core::isAnchorPort(port)) return refuseArgument(model, Reason::wrongPort, std::to_string(port));
    return explained(model, core::anchor(model, *literal, port));
  });
}

Refusal setProfile(Document& document, std::string_view profile, std::string_view media) noexcept {
  return performOn(
      document, profile, Reason::wrongProfile, [profile](Model&) { return core::isProfile(profile); }, media,
      Default::all,
      [profile](Model& model, const Selection& selection) {
        return core::setProfile(model, profile, selection);
      });
}

Refusal makeOpportunistic(Document& document, std::string_view media) noexcept {
  return performOn(document, media, Default::all, core::makeOpportunistic);
}

Refusal makeSecureOnly(Document& document, std::string_view media) noexcept {
  return performOn(document, media, Default::all, core::makeSecureOnly);
}

Refusal unbundle(Document& document) noexcept { return DocumentAccess::perform(document, core::unbundle); }

Refusal stripAttributes(Document& document, std::string_view names, std::string_view media) noexcept {
  return performOn(
      document, names, Reason::wrongNames, [names](Model&) { return core::areAttributeNames(names); }, media,
      Default::all,
      [names](Model& model, const Selection& selection) {
        return core::stripAttributes(model, names, selection);
      });
}

Refusal setDirection(Document& document, Direction direction, std::string_view media) noexcept {
  return performOn(document, media, Default::all, [&](Model& model, const Selection& selection) {
    return core::setDirection(model, direction, selection);
  });
}

Refusal disable(Document& document, std::string_view media) noexcept {
  return performOn(document, media, Default::nothing, core::disable);
}

Refusal disableSections(Document& document, std::span<const std::uint32_t> sections) noexcept {
  return DocumentAccess::perform(document,
                                 [&](Model& model) { return core::disableSections(model, sections); });
}

Refusal canonicalise(Document& document) noexcept {
  return DocumentAccess::perform(document,
                                 [](Model& model) { return explained(model, core::canonicalise(model)); });
}

}  // namespace sdp
