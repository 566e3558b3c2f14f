// The dialog's interface: each call works on a copy of the data, which takes the old one's place when nothing fails.

#include "sdpDialog.h"

#include <new>
#include <stdexcept>
#include <utility>

#include "exchange.h"

namespace sdp {
namespace {

/// Lets memory that runs out become a failure of the result.
template <typename Result, typename Work>
Result guarded(Work work) noexcept {
  Result result;
  try {
    return work();
  } catch (const std::bad_alloc&) {
    result.failure = DialogFailure::noMemory;
  } catch (const std::length_error&) {
    result.failure = DialogFailure::textTooLong;
  }
  return result;
}

}  // namespace

const exchange::DialogData& Dialog::data() const noexcept {
  static const exchange::DialogData kNew;
  return data_ == nullptr ? kNew : *data_;
}

void Dialog::take(exchange::DialogData&& data) {
  data_ = std::make_shared<const exchange::DialogData>(std::move(data));
}

template <typename Result, typename Work>
Result Dialog::changed(Work work) noexcept {
  return guarded<Result>([&] {
    exchange::DialogData next = data();
    Result result = work(next);
    if (result) take(std::move(next));
    return result;
  });
}

DialogState Dialog::state() const noexcept { return data().state; }

std::optional<Party> Dialog::offerer() const noexcept {
  if (state() == DialogState::stable) return data().offerer;
  return state() == DialogState::localOffer ? Party::local : Party::remote;
}

std::string_view Dialog::local() const noexcept { return data().local; }
std::string_view Dialog::remote() const noexcept { return data().remote; }
std::string_view Dialog::pending() const noexcept { return data().pending; }

bool Dialog::isHeld() const noexcept {
  return state() == DialogState::localOffer ? data().pendingIntent.isHeld : data().intent.isHeld;
}

LocalBody Dialog::offer(std::string_view description) noexcept {
  return changed<LocalBody>([&](auto& data) { return exchange::offerDescription(data, description); });
}

LocalBody Dialog::offerAsIs(std::string_view body) noexcept {
  return changed<LocalBody>([&](auto& data) { return exchange::offerFinished(data, body); });
}

LocalBody Dialog::hold() noexcept {
  return changed<LocalBody>([](auto& data) { return exchange::offerAgain(data, true); });
}

LocalBody Dialog::resume() noexcept {
  return changed<LocalBody>([](auto& data) { return exchange::offerAgain(data, false); });
}

ReceivedOffer Dialog::receiveOffer(std::string_view body) noexcept {
  return changed<ReceivedOffer>([&](auto& data) { return exchange::takeOffer(data, body); });
}

LocalBody Dialog::answer(std::string_view description, const AnswerOptions& options) noexcept {
  return changed<LocalBody>(
      [&](auto& data) { return exchange::answerDescription(data, description, options); });
}

LocalBody Dialog::answerAsIs(std::string_view body) noexcept {
  return changed<LocalBody>([&](auto& data) { return exchange::answerFinished(data, body); });
}

DialogStatus Dialog::receiveAnswer(std::string_view body) noexcept {
  return changed<DialogStatus>([&](auto& data) { return exchange::takeAnswer(data, body); });
}

DialogStatus Dialog::rollback() noexcept {
  return changed<DialogStatus>([](auto& data) { return exchange::dropOffer(data); });
}

AgreedMedia Dialog::agreed() const noexcept {
  return guarded<AgreedMedia>([&] { return exchange::agreedMedia(data()); });
}

AgreedSection Dialog::agreed(std::uint32_t section) const noexcept {
  return guarded<AgreedSection>([&] { return exchange::agreedSection(data(), section); });
}

DialogBytes Dialog::serialise() const noexcept {
  return guarded<DialogBytes>([&] { return DialogBytes{DialogFailure::none, exchange::bytesOf(data())}; });
}

DialogStatus Dialog::restore(std::string_view bytes) noexcept {
  return guarded<DialogStatus>([&] {
    exchange::DialogData next;
    const DialogStatus status{exchange::readBytes(bytes, next)};
    if (status) take(std::move(next));
    return status;
  });
}

bool Dialog::operator==(const Dialog& other) const noexcept {
  return data_ == other.data_ || data() == other.data();
}

}  // namespace sdp
