#include "rtpengine.h"

#include <fcntl.h>
#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <utility>

#include "bencode.h"

namespace b2bua {

namespace {

using std::chrono::milliseconds;

constexpr su_duration_t kTick = 50;  ///< ms
constexpr milliseconds kRepeats[] = {milliseconds{100}, milliseconds{300}, milliseconds{600}};
constexpr milliseconds kLongestReply{1'000};
constexpr std::chrono::seconds kBetweenPings{1};
constexpr std::size_t kLongestDatagram = 65'536;
constexpr int kMostDatagrams = 100;  ///< read before others have their turn
constexpr std::size_t kLongestReason = 120;

const char* const kGone = "the media relay is gone";

using Encoded = std::map<std::string, std::string>;

bool has(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

/// What an offer is to be for a party of a kind; the answer goes back as it was offered.
void addKind(PartyKind kind, const std::string& body, Encoded& request) {
  const bool asIs = kind == PartyKind::asIs;
  const bool isBrowser = kind == PartyKind::webrtc;
  // The relay would add keys of the kind that an offer has not.
  const bool hasKeys = asIs && has(body, "\na=crypto:");
  const bool hasFingerprint = asIs && has(body, "\na=fingerprint:");
  if (isBrowser || (hasFingerprint && !hasKeys)) request["SDES"] = bencodeList({"off"});
  if (kind == PartyKind::srtp || (hasKeys && !hasFingerprint)) request["DTLS"] = bencodeText("off");
  if (asIs) return;
  const char* const forPhones = kind == PartyKind::rtp ? "RTP/AVP" : "RTP/SAVP";
  request["transport-protocol"] = bencodeText(isBrowser ? "UDP/TLS/RTP/SAVPF" : forPhones);
  request["ICE"] = bencodeText(isBrowser ? "force" : "remove");
  request["rtcp-mux"] = bencodeList({isBrowser ? "offer" : "demux"});
  request["flags"] = bencodeList({isBrowser ? "generate-mid" : "strip-extmap"});
}

}  // namespace

ConnectedSocket::ConnectedSocket(const std::string& endpoint) : descriptor_(-1) {
  const std::size_t colon = endpoint.rfind(':');
  std::string host = endpoint.substr(0, colon);
  if (host.starts_with('[')) host = host.substr(1, host.size() - 2);
  addrinfo hints{};
  hints.ai_socktype = SOCK_DGRAM;
  hints.ai_flags = AI_NUMERICHOST;
  addrinfo* found = nullptr;
  if (getaddrinfo(host.c_str(), endpoint.c_str() + colon + 1, &hints, &found) != 0)
    throw std::runtime_error("no address of a media relay: " + endpoint);
  const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(found, freeaddrinfo);
  descriptor_ = socket(found->ai_family, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (descriptor_ >= 0 && connect(descriptor_, found->ai_addr, found->ai_addrlen) == 0) return;
  if (descriptor_ >= 0) close(descriptor_);
  throw std::runtime_error("no way to the media relay at " + endpoint);
}

ConnectedSocket::~ConnectedSocket() { close(descriptor_); }

Rtpengine::Rtpengine(su_root_t* root, const MediaOptions& options, Log& log, Counters& counters)
    : options_(options),
      log_(log),
      counters_(counters),
      socket_(options.relay),
      root_(root),
      timer_(su_timer_create(su_root_task(root), kTick)),
      buffer_(kLongestDatagram, '\0'),
      cookies_(randomText() + "_") {
  su_wait_t wait[1] = {SU_WAIT_INIT};
  su_wait_create(wait, socket_.descriptor(), SU_WAIT_IN);
  const auto onReadable = [](su_root_magic_t*, su_wait_t*, su_wakeup_arg_t* self) {
    static_cast<Rtpengine*>(self)->readAll();
    return 0;
  };
  const auto onTick = [](su_root_magic_t*, su_timer_t*, su_timer_arg_t* self) {
    static_cast<Rtpengine*>(self)->onTick();
  };
  registration_ = su_root_register(root, wait, onReadable, this, 0);
  if (registration_ < 0 || !timer_ || su_timer_set_for_ever(timer_.get(), onTick, this) != 0)
    throw std::runtime_error("the media relay cannot be waited for");
  ping();
}

Rtpengine::~Rtpengine() { su_root_deregister(root_, registration_); }

void Rtpengine::relay(Call& call, Side from, bool isAnswer, const std::string& body, Done done) {
  const Side offerer = isAnswer ? otherOf(from) : from;
  Encoded request = {{"command", bencodeText(isAnswer ? "answer" : "offer")},
                     {"call-id", bencodeText(call.id)},
                     {"from-tag", bencodeText(tagOf(call.id, offerer))},
                     {"replace", bencodeList({"session-connection"})},
                     {"sdp", bencodeText(body)}};
  // With ICE, the unspecified address is not that of a party on hold.
  if (has(body, "\na=ice-ufrag:")) request["replace"] = bencodeList({"session-connection", "zero-address"});
  // It knows the other side by an answer only.
  if (isAnswer || call.established) request["to-tag"] = bencodeText(tagOf(call.id, otherOf(offerer)));
  if (!isAnswer) addKind(options_.parties[otherOf(from)], body, request);
  ++counters_.mediaRequests;
  ask(request, [this, id = call.id, done = std::move(done)](const Texts* reply) {
    if (reply != nullptr && reply->contains("sdp") && reply->at("result") == "ok")
      return done(reply->at("sdp"), {});
    ++counters_.mediaFailures;
    if (reply == nullptr) return done("", {kGone, 503});
    const auto told = reply->find("error-reason");
    const std::string reason = told != reply->end() ? told->second : "no body in its reply";
    log_.write("media relay refused a body", {{"reason", reason.substr(0, kLongestReason)}},
               LogLevel::warning, id);
    // With 503 a proxy would try all engines with a body that none can relay.
    done("", {"the media relay cannot take the body", has(reason, "SDP") ? 488 : 503});
  });
}

void Rtpengine::release(const Call& call) {
  ask({{"command", bencodeText("delete")}, {"call-id", bencodeText(call.id)}, {"delete-delay", "i0e"}},
      [](auto*) {});
}

/// A ping alone goes to a relay that is gone.
void Rtpengine::ping() {
  nextPing_ = Clock::now() + kBetweenPings;
  const bool wasGone = std::exchange(gone_, false);
  ask({{"command", bencodeText("ping")}}, [this](const Texts* reply) {
    if (reply != nullptr && std::exchange(gone_, false))
      log_.write("media relay is back", {{"at", options_.relay}});
  });
  gone_ = wasGone;
}

void Rtpengine::ask(const Texts& encodedMembers, OnReply onReply) {
  if (gone_) return onReply(nullptr);
  const std::string cookie = cookies_ + std::to_string(++lastCookie_);
  Asked asked{cookie + " " + bencodeDictionary(encodedMembers), std::move(onReply), Clock::now()};
  send(asked.datagram);
  asked_.emplace(cookie, std::move(asked));
}

/// What an earlier datagram met is told instead of sending the next one, which goes then.
void Rtpengine::send(const std::string& datagram) const {
  const auto sent = [&] { return ::send(socket_.descriptor(), datagram.data(), datagram.size(), 0); };
  if (sent() < 0 && errno == ECONNREFUSED) sent();
}

/// All that waits for the relay waits no longer, and what comes is refused at once.
void Rtpengine::lose(const std::string& why) {
  if (!std::exchange(gone_, true)) {
    ++counters_.mediaGone;
    log_.write("media relay is gone", {{"at", options_.relay}, {"reason", why}}, LogLevel::warning);
  }
  const auto lost = std::exchange(asked_, {});
  for (const auto& [cookie, asked] : lost) asked.onReply(nullptr);
}

void Rtpengine::onTick() {
  // What is there already is not late because the engine is.
  const bool isAllRead = readAll();
  const Clock::time_point now = Clock::now();
  bool isLate = false;
  for (auto& [cookie, asked] : asked_) {
    isLate = isLate || now - asked.since >= kLongestReply;
    if (asked.sent > std::size(kRepeats) || now - asked.since < kRepeats[asked.sent - 1]) continue;
    ++asked.sent;
    send(asked.datagram);
  }
  if (isLate && isAllRead) lose("no reply");
  if (now >= nextPing_) ping();
}

/// @return false when others have their turn before the rest
bool Rtpengine::readAll() {
  for (int i = 0; i < kMostDatagrams; ++i) {
    const ssize_t size = recv(socket_.descriptor(), buffer_.data(), buffer_.size(), 0);
    if (size < 0 && errno == ECONNREFUSED) lose("nobody listens there");
    if (size < 0) return true;
    onDatagram(std::string_view(buffer_).substr(0, static_cast<std::size_t>(size)));
  }
  return false;
}

/// What was not asked, or is answered already, is dropped.
void Rtpengine::onDatagram(std::string_view datagram) {
  const std::size_t blank = std::min(datagram.find(' '), datagram.size());
  const auto asked = asked_.find(std::string(datagram.substr(0, blank)));
  if (asked == asked_.end()) return;
  const std::optional<Texts> reply = textsOfBencode(datagram.substr(std::min(blank + 1, datagram.size())));
  // Rubbish is no reply; the right one may still come.
  if (!reply || !reply->contains("result")) return;
  const OnReply onReply = std::move(asked->second.onReply);
  asked_.erase(asked);
  onReply(&*reply);
}

}  // namespace b2bua
