#include "modelledDialog.h"

#include <array>

namespace modelledDialog {
namespace {

struct Sample {
  std::string_view media;
  std::string_view rest;
};

/// Sections, behind media and port. Among those of a media one number stands for several codecs.
constexpr std::array<Sample, 8> kSamples{{
    {"audio", "RTP/AVP 0 8\r\n"},
    {"audio", "RTP/AVP 96 0\r\na=rtpmap:96 opus/48000/2\r\n"},
    {"audio", "RTP/AVP 96 101\r\na=rtpmap:96 iLBC/8000\r\na=rtpmap:101 telephone-event/8000\r\n"},
    {"audio", "RTP/AVP 97\r\na=rtpmap:97 opus/48000/2\r\n"},
    {"video", "RTP/AVP 96 97\r\na=rtpmap:96 VP8/90000\r\na=rtpmap:97 rtx/90000\r\na=fmtp:97 apt=96\r\n"},
    {"video", "RTP/AVP 97 96\r\na=rtpmap:97 VP8/90000\r\na=rtpmap:96 H264/90000\r\n"},
    {"image", "udptl t38\r\n"},
    {"application", "UDP/DTLS/SCTP webrtc-datachannel\r\n"},
}};
constexpr std::array<std::string_view, 5> kDirections{"", "a=sendrecv\r\n", "a=sendonly\r\n",
                                                      "a=recvonly\r\n", "a=inactive\r\n"};

std::string head(std::string_view user, std::uint32_t version) {
  return std::string("v=0\r\no=")
      .append(user)
      .append(" 1 ")
      .append(std::to_string(version))
      .append(" IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n");
}

Document read(std::string_view text) {
  Document document;
  (void)document.read(text);
  return document;
}

bool isDescription(std::string_view text) {
  const Document document = read(text);
  if (document.sectionCount() != 0) return true;
  return text.substr(0, 2) == "v=" || text.find("\nv=") != std::string_view::npos;
}

bool isAlive(const sdp::Section& section) { return section.isReadable() && !section.isDisabled(); }

std::string withoutOrigin(std::string_view text) {
  const std::size_t begin = text.find("o=");
  const std::size_t end = text.find('\n', begin);
  if (begin == std::string_view::npos || end == std::string_view::npos) return std::string(text);
  return std::string(text.substr(0, begin)).append(text.substr(end));
}

std::uint64_t versionOf(std::string_view text) {
  const std::size_t begin = text.find("o=");
  return begin == std::string_view::npos ? 0 : std::stoull(std::string(sdp::Fields(text.substr(begin))[2]));
}

}  // namespace

std::string meaningOf(const sdp::Format& format) {
  if (!format.encoding) return "?";
  return std::string(format.encoding->name)
      .append("/")
      .append(std::to_string(format.encoding->clockRate))
      .append("/")
      .append(std::to_string(format.encoding->channels));
}

std::string ModelledDialog::description() {
  std::string text = head("a", source_.below(3));
  for (std::uint32_t count = source_.below(5); count != 0; --count) {
    const Sample& sample = kSamples[source_.below(kSamples.size())];
    const char* const port = source_.below(8) == 0 ? " 0 " : " 4000 ";
    text.append("m=").append(sample.media).append(port).append(sample.rest);
    text.append(kDirections[source_.below(kDirections.size())]);
    if (source_.below(3) == 0) text.append("a=mid:").append(std::to_string(source_.below(4))).append("\r\n");
  }
  return text;
}

/// What a peer sends that keeps to the rules: the sections of the other body with its own ports and directions.
std::string ModelledDialog::peersBody(std::uint32_t sections, bool isAnswer) {
  if (std::optional<std::string> own = source_.body()) {
    isPlain_ = false;
    return *own;
  }
  const Document model = read(isAnswer ? pending_ : local_);
  std::string text = head("b", source_.below(5));
  for (std::uint32_t i = 1; i <= sections; ++i) {
    const sdp::Section section = model.section(i);
    const bool isRefused = section.isDisabled() || !section.isReadable() || source_.below(6) == 0;
    text.append("m=")
        .append(section.media().empty() ? "audio" : section.media())
        .append(isRefused ? " 0 " : " 5000 ");
    text.append(section.transport().empty() ? "RTP/AVP" : section.transport());
    for (const sdp::Format& format : section.formats()) text.append(" ").append(format.format);
    if (section.formats().empty()) text.append(" 0");
    text.append("\r\n");
    for (const sdp::Attribute& map : section.attributes("rtpmap")) {
      text.append("a=rtpmap:").append(map.value.value_or("")).append("\r\n");
    }
    text.append(kDirections[source_.below(kDirections.size())]);
  }
  return text;
}

bool ModelledDialog::isAllowed(DialogFailure failure, DialogState allowed, DialogFailure stable,
                               DialogFailure local, DialogFailure remote) {
  if (state_ == allowed) return true;
  const DialogFailure expected = state_ == DialogState::stable       ? stable
                                 : state_ == DialogState::localOffer ? local
                                                                     : remote;
  require_(failure == expected, "a state refuses as its row says");
  return false;
}

void ModelledDialog::offer() {
  const std::string wanted = description();
  const bool isFinished = source_.below(6) == 0;
  const sdp::LocalBody body = isFinished ? dialog_.offerAsIs(wanted) : dialog_.offer(wanted);
  if (!isAllowed(body.failure, DialogState::stable, {}, DialogFailure::offerPending, DialogFailure::glare))
    return;
  if (isFinished && read(wanted).sectionCount() < read(local_).sectionCount()) {
    return require_(body.failure == DialogFailure::sectionCount, "no section is lost");
  }
  require_(body.failure == DialogFailure::none, "a description is offered");
  takeSent(body, isFinished);
  wasHeld_ = isHeld_;
  if (isFinished) {
    const Document finished = read(wanted);
    for (const sdp::Section& section : finished.sections()) {
      const bool receives =
          section.direction() == sdp::Direction::sendrecv || section.direction() == sdp::Direction::recvonly;
      if (receives && section.isRtp() && !section.isDisabled()) isHeld_ = false;
    }
  }
  state_ = DialogState::localOffer;
  pending_ = body.text;
}

void ModelledDialog::hold(bool isHeld) {
  const sdp::LocalBody body = isHeld ? dialog_.hold() : dialog_.resume();
  if (!isAllowed(body.failure, DialogState::stable, {}, DialogFailure::offerPending, DialogFailure::glare))
    return;
  if (local_.empty()) return require_(body.failure == DialogFailure::noBody, "there is nothing to hold");
  require_(body.failure == DialogFailure::none, "what was agreed is held and resumed");
  wasHeld_ = isHeld_;
  isHeld_ = isHeld;
  takeSent(body, false);
  state_ = DialogState::localOffer;
  pending_ = body.text;
}

void ModelledDialog::answer() {
  const bool isFinished = source_.below(2) == 0;
  const Document offered = read(pending_);
  std::string wanted = isFinished ? head("a", 1) : description();
  for (const sdp::Section& section : offered.sections()) {
    if (!isFinished) break;
    wanted.append("m=").append(section.isReadable() ? section.media() : "audio");
    wanted.append(source_.below(5) == 0 ? " 0 RTP/AVP 0\r\n" : " 4000 RTP/AVP 0\r\n");
    if (isHeld_) wanted.append("a=inactive\r\n");
  }
  const sdp::LocalBody body = isFinished ? dialog_.answerAsIs(wanted) : dialog_.answer(wanted);
  if (!isAllowed(body.failure, DialogState::remoteOffer, DialogFailure::noOffer, DialogFailure::wrongParty,
                 {}))
    return;
  if (!body) {
    const bool isUsual =
        body.failure == DialogFailure::nothingAccepted || body.failure == DialogFailure::noLocalSection;
    return require_(isUsual && !isFinished, "answers are refused for what they lack");
  }
  require_(read(body.text).sectionCount() == offered.sectionCount(),
           "an answer has the sections of its offer");
  if (!isFinished) checkVersion(body.text);
  rememberSent(body.text);
  rememberNumbers(read(body.text));
  offerer_ = Party::remote;
  ++exchanges_;
  local_ = body.text;
  remote_ = pending_;
  pending_.clear();
  state_ = DialogState::stable;
}

void ModelledDialog::receiveOffer() {
  const std::uint32_t sections = read(local_).sectionCount();
  const std::string text = peersBody(sections + source_.below(2), false);
  const sdp::ReceivedOffer offer = dialog_.receiveOffer(text);
  if (!isAllowed(offer.failure, DialogState::stable, {}, DialogFailure::glare, DialogFailure::offerPending))
    return;
  if (!isDescription(text))
    return require_(offer.failure == DialogFailure::brokenBody, "garbage is no offer");
  require_(offer.failure == DialogFailure::none, "offers are taken");
  require_(offer.sections.size() == read(text).sectionCount(), "all sections are told");
  require_((offer.origin == sdp::OriginChange::first) == remote_.empty(), "the first offer is told as such");
  if (text == remote_) require_(offer.origin == sdp::OriginChange::refresh, "the same text is a refresh");
  state_ = DialogState::remoteOffer;
  pending_ = text;
}

void ModelledDialog::receiveAnswer() {
  const Document offered = read(pending_);
  const std::string text = peersBody(offered.sectionCount(), true);
  const sdp::DialogStatus status = dialog_.receiveAnswer(text);
  if (state_ == DialogState::stable && offerer_ == Party::local && text == remote_) {
    return require_(status.failure == DialogFailure::repeatedAnswer, "the same answer is told as such");
  }
  if (!isAllowed(status.failure, DialogState::localOffer, DialogFailure::noOffer, {},
                 DialogFailure::wrongParty))
    return;
  const Document answer = read(text);
  if (!isDescription(text))
    return require_(status.failure == DialogFailure::brokenBody, "garbage is no answer");
  if (answer.sectionCount() != offered.sectionCount()) {
    return require_(status.failure == DialogFailure::sectionCount,
                    "answers have the sections of their offer");
  }
  if (!status) return require_(!isPlain_, "answers are taken");
  offerer_ = Party::local;
  ++exchanges_;
  local_ = pending_;
  remote_ = text;
  pending_.clear();
  state_ = DialogState::stable;
}

void ModelledDialog::rollback() {
  const sdp::DialogStatus status = dialog_.rollback();
  if (state_ == DialogState::stable)
    return require_(status.failure == DialogFailure::noOffer, "nothing to drop");
  require_(status.failure == DialogFailure::none, "offers are dropped");
  if (state_ == DialogState::localOffer) isHeld_ = wasHeld_;
  state_ = DialogState::stable;
  pending_.clear();
}

void ModelledDialog::takeSent(const sdp::LocalBody& body, bool isFinished) {
  const Document offer = read(body.text);
  require_(body.isRefresh == (body.text == local_), "the same body again is told");
  require_(offer.sectionCount() >= read(local_).sectionCount(), "no section is lost");
  if (!isFinished) {
    checkVersion(body.text);
    checkPlaces(offer);
    if (isPlain_) checkNumbers(offer);
  }
  for (const sdp::Section& section : offer.sections()) {
    const bool receives =
        section.direction() == sdp::Direction::sendrecv || section.direction() == sdp::Direction::recvonly;
    if (isHeld_ && !isFinished && section.isRtp() && isAlive(section))
      require_(!receives, "who holds does not receive");
  }
  rememberNumbers(offer);
  rememberSent(body.text);
}

void ModelledDialog::checkVersion(std::string_view text) {
  if (sent_.empty()) return;
  if (withoutOrigin(text) == withoutOrigin(local_)) {
    return require_(text == local_, "the current body comes again as it is");
  }
  const bool isSame = withoutOrigin(text) == withoutOrigin(sent_);
  require_(versionOf(text) == versionOf(sent_) + (isSame ? 0 : 1),
           "the version is raised when the text differs");
}

/// The current body again leaves the version of a later offer used.
void ModelledDialog::rememberSent(const std::string& text) {
  if (text != local_ || versionOf(sent_) <= versionOf(text)) sent_ = text;
}

void ModelledDialog::checkPlaces(const Document& offer) {
  const Document local = read(local_);
  const Document remote = read(remote_);
  for (const sdp::Section& before : local.sections()) {
    const sdp::Section now = offer.section(before.index());
    const bool wasAlive = isAlive(before) && isAlive(remote.section(before.index()));
    require_(!wasAlive || now.media() == before.media(), "media keep their places");
    if (wasAlive && isAlive(now) && !before.mid().empty() && !now.mid().empty()) {
      require_(now.mid() == before.mid(), "mids keep their places");
    }
  }
}

void ModelledDialog::checkNumbers(const Document& offer) {
  for (const sdp::Section& section : offer.sections()) {
    if (!section.isRtp() || !isAlive(section) || section.index() > places_.size()) continue;
    const Place& place = places_[section.index() - 1];
    if (place.media != section.media()) continue;
    for (const sdp::Format& format : section.formats()) {
      const auto before = place.meanings.find(format.format);
      require_(before == place.meanings.end() || before->second == meaningOf(format),
               "numbers keep their meaning");
    }
  }
}

void ModelledDialog::rememberNumbers(const Document& body) {
  places_.resize(body.sectionCount());
  for (const sdp::Section& section : body.sections()) {
    Place& place = places_[section.index() - 1];
    if (place.media != section.media()) place = {std::string(section.media()), {}};
    if (!section.isRtp() || !isAlive(section)) continue;
    for (const sdp::Format& format : section.formats()) {
      place.meanings.insert_or_assign(std::string(format.format), meaningOf(format));
    }
  }
}

void ModelledDialog::compare() {
  require_(dialog_.state() == state_, "the state is the model's");
  const std::optional<Party> offerer = state_ == DialogState::stable       ? offerer_
                                       : state_ == DialogState::localOffer ? Party::local
                                                                           : Party::remote;
  require_(dialog_.offerer() == offerer, "who offered is the model's");
  require_(dialog_.local() == local_, "the local body is the model's");
  require_(dialog_.remote() == remote_, "the peer's body is the model's");
  require_(dialog_.pending() == pending_, "the pending offer is the model's");
  require_(dialog_.isHeld() == isHeld_, "hold is the model's");
  const Document local = read(local_);
  const sdp::AgreedMedia agreed = dialog_.agreed();
  require_(agreed && agreed.sections.size() == local.sectionCount(), "all sections are agreed or not");
  for (const sdp::AgreedSection& section : agreed.sections) {
    for (const sdp::AgreedCodec& codec : section.local.codecs) {
      require_(local.section(section.index).format(codec.payload).has_value(),
               "numbers are those of their side");
    }
  }
}

void ModelledDialog::step() {
  switch (source_.below(9)) {
    case 0:
    case 1:
      offer();
      break;
    case 2:
      hold(true);
      break;
    case 3:
      hold(false);
      break;
    case 4:
      receiveOffer();
      break;
    case 5:
      answer();
      break;
    case 6:
    case 7:
      receiveAnswer();
      break;
    default:
      rollback();
  }
  compare();
  const sdp::DialogBytes bytes = dialog_.serialise();
  Dialog restored;
  require_(bytes && restored.restore(bytes.bytes), "a dialog comes back");
  require_(restored == dialog_ && restored.serialise().bytes == bytes.bytes, "it comes back as it was");
  dialog_ = std::move(restored);
}

}  // namespace modelledDialog
