// Dialogs as bytes: "SDPD", the format's version and the length of all, the data, a check sum of all before it. Numbers
// have their lowest byte first.

#include <concepts>

#include "bodies.h"
#include "checksum.h"
#include "exchange.h"
#include "sdpDocument.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

constexpr std::string_view kMark = "SDPD";
constexpr std::uint16_t kFormat = 1;
constexpr std::size_t kHead = kMark.size() + sizeof(std::uint16_t) + sizeof(std::uint64_t);
constexpr std::size_t kSum = sizeof(std::uint64_t);
constexpr std::uint8_t kNobody = 2;  // as the offerer

class Writer {
 public:
  template <std::unsigned_integral Number>
  void number(Number value) {
    for (std::size_t i = 0; i < sizeof value; ++i) {
      bytes.push_back(static_cast<char>((std::uint64_t{value} >> (8 * i)) & 0xFFU));
    }
  }
  void text(std::string_view text) {
    number(std::uint64_t{text.size()});
    bytes.append(text);
  }
  void intent(const Intent& intent) {
    number(std::uint8_t{intent.isHeld});
    number(std::uint64_t{intent.directions.size()});
    for (const Direction direction : intent.directions) number(static_cast<std::uint8_t>(direction));
  }

  std::string bytes;
};

/// Reads what a Writer wrote. What is wrong makes all that follows wrong.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}

  bool isDone() const { return isGood_ && rest_.empty(); }

  template <std::unsigned_integral Number>
  Number number() {
    const std::string_view bytes = take(sizeof(Number));
    std::uint64_t value = 0;
    for (std::size_t i = bytes.size(); i != 0; --i) {
      value = value << 8U | static_cast<unsigned char>(bytes[i - 1]);
    }
    return static_cast<Number>(value);
  }
  /// A byte of an enumeration with so many values.
  template <typename Enum>
  Enum choice(std::uint8_t count) {
    const auto value = number<std::uint8_t>();
    isGood_ = isGood_ && value < count;
    return static_cast<Enum>(isGood_ ? value : std::uint8_t{0});
  }
  std::string_view text() {
    const auto length = number<std::uint64_t>();
    isGood_ = isGood_ && length <= Document::kMaximumLength;
    return isGood_ ? take(length) : std::string_view();
  }
  Intent intent() {
    Intent intent;
    intent.isHeld = choice<bool>(2);
    const auto count = number<std::uint64_t>();
    isGood_ = isGood_ && count <= rest_.size();
    for (std::uint64_t i = 0; isGood_ && i < count; ++i) intent.directions.push_back(choice<Direction>(4));
    return intent;
  }

 private:
  std::string_view take(std::uint64_t length) {
    isGood_ = isGood_ && length <= rest_.size();
    if (!isGood_) return {};
    const std::string_view bytes = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return bytes;
  }

  std::string_view rest_;
  bool isGood_ = true;
};

/// Whether bodies can be a dialog's.
bool areGood(const DialogData& data) {
  Document local;
  Document remote;
  Document pending;
  read(local, data.local);
  read(remote, data.remote);
  read(pending, data.pending);
  if (!data.local.empty()) {
    if (!isDescription(local) || !isDescription(remote) || firstUnreadable(local) != 0) return false;
    if (local.sectionCount() != remote.sectionCount()) return false;
  }
  if (data.state == DialogState::stable) return true;
  if (!isDescription(pending)) return false;
  if (data.state == DialogState::remoteOffer) return true;
  return firstUnreadable(pending) == 0 && pending.sectionCount() >= local.sectionCount();
}

/// Whether data can be a dialog's.
bool isConsistent(const DialogData& data) {
  if (data.pending.empty() != (data.state == DialogState::stable)) return false;
  if (data.local.empty() != data.remote.empty() || data.local.empty() == data.offerer.has_value())
    return false;
  if (!data.local.empty() && data.sent.empty()) return false;
  if (data.state == DialogState::localOffer) {
    return data.sent == data.pending || data.local == data.pending;
  }
  return data.pendingIntent == Intent();
}

}  // namespace

std::string bytesOf(const DialogData& data) {
  Writer writer;
  writer.bytes = kMark;
  writer.number(kFormat);
  writer.number(std::uint64_t{0});  // the length
  writer.number(static_cast<std::uint8_t>(data.state));
  writer.number(data.offerer ? static_cast<std::uint8_t>(*data.offerer) : kNobody);
  for (const std::string* text : {&data.local, &data.remote, &data.pending, &data.sent, &data.payloads}) {
    writer.text(*text);
  }
  writer.intent(data.intent);
  writer.intent(data.pendingIntent);
  Writer length;
  length.number(std::uint64_t{writer.bytes.size() + kSum});
  writer.bytes.replace(kHead - length.bytes.size(), length.bytes.size(), length.bytes);
  writer.number(checksumOf(writer.bytes));
  return std::move(writer.bytes);
}

DialogFailure readBytes(std::string_view bytes, DialogData& data) {
  if (bytes.size() < kHead + kSum || !sdpneg::startsWith(bytes, kMark)) return DialogFailure::damaged;
  const std::string_view summed = bytes.substr(0, bytes.size() - kSum);
  if (Reader(bytes.substr(summed.size())).number<std::uint64_t>() != checksumOf(summed)) {
    return DialogFailure::damaged;
  }
  Reader reader(summed.substr(kMark.size()));
  const auto format = reader.number<std::uint16_t>();
  if (reader.number<std::uint64_t>() != bytes.size()) return DialogFailure::damaged;
  if (format != kFormat) return DialogFailure::unknownFormat;
  DialogData next;
  next.state = reader.choice<DialogState>(3);
  const auto offerer = reader.choice<std::uint8_t>(kNobody + 1);
  if (offerer != kNobody) next.offerer = static_cast<Party>(offerer);
  for (std::string* text : {&next.local, &next.remote, &next.pending, &next.sent, &next.payloads}) {
    *text = reader.text();
  }
  next.intent = reader.intent();
  next.pendingIntent = reader.intent();
  if (!reader.isDone() || !isConsistent(next) || !areGood(next)) return DialogFailure::damaged;
  data = std::move(next);
  return DialogFailure::none;
}

}  // namespace sdp::exchange
