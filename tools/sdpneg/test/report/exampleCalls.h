#ifndef SDPNEG_TEST_EXAMPLE_CALLS_H
#define SDPNEG_TEST_EXAMPLE_CALLS_H

#include <string>

#include "report/madeCalls.h"

// Calls of several kinds.

namespace made {

constexpr std::int64_t kMillisecond = 1000;
constexpr std::int64_t kSecond = 1000 * kMillisecond;
/// 2026-03-09T08:15:00Z
constexpr std::int64_t kMorning = 1773044100 * kSecond;

inline const std::string alice = "192.0.2.10:5060";
inline const std::string border = "198.51.100.5:5060";
inline const std::string bob = "203.0.113.20:5060";

/// Two legs; what stands between them takes keys away and puts in an address that nobody outside reaches, and answers
/// come through as they are.
inline CallMaker borderCall(std::size_t number, std::size_t firstMessage, std::int64_t start) {
  CallMaker maker(number, firstMessage, start);
  const std::string id = std::to_string(number);
  const std::size_t a = maker.addLeg("a84b4c76e66710-" + id + "@192.0.2.10");
  const std::size_t b = maker.addLeg("77c1f0d2-" + id + "@198.51.100.5", JoinedBy::callIdHeader,
                                     "X-Call-ID: a84b4c76e66710-" + id + "@192.0.2.10", a);
  const std::string keys = "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:[key 1]\r\n";
  const std::string offer = audioBody("192.0.2.10", 40000, keys + "a=ptime:20\r\na=sendrecv\r\n", "RTP/SAVP");
  const std::string changed = audioBody("10.20.0.5", 22000, "a=ptime:20\r\na=sendrecv\r\n");
  const std::string answer = audioBody("203.0.113.20", 31000, "a=ptime:20\r\na=recvonly\r\n");

  const std::size_t invite =
      maker.add(a, alice, border, "INVITE sip:bob@example.net", "INVITE", offer, BodyRole::offer);
  maker.wait(1250);
  maker.add(a, border, alice, "100 Trying", "INVITE");
  maker.wait(4 * kMillisecond);
  const std::size_t onward =
      maker.add(b, border, bob, "INVITE sip:bob@203.0.113.20", "INVITE", changed, BodyRole::offer);
  maker.addHop(invite, onward);
  maker.wait(500 * kMillisecond);
  maker.addAgain(onward);
  maker.wait(90 * kMillisecond);
  const std::size_t ringing = maker.add(b, bob, border, "180 Ringing", "INVITE");
  maker.wait(2 * kMillisecond);
  maker.addHop(ringing, maker.add(a, border, alice, "180 Ringing", "INVITE"));
  maker.wait(3400 * kMillisecond);
  const std::size_t accepted = maker.add(b, bob, border, "200 OK", "INVITE", answer, BodyRole::answer);
  maker.wait(3 * kMillisecond);
  const std::size_t passed = maker.add(a, border, alice, "200 OK", "INVITE", answer, BodyRole::answer);
  maker.addHop(accepted, passed);
  maker.wait(20 * kMillisecond);
  const std::size_t ack = maker.add(a, alice, border, "ACK sip:bob@198.51.100.5", "ACK");
  maker.wait(2 * kMillisecond);
  maker.addHop(ack, maker.add(b, border, bob, "ACK sip:bob@203.0.113.20", "ACK"));
  maker.wait(21 * kSecond);
  const std::size_t bye = maker.add(a, alice, border, "BYE sip:bob@198.51.100.5", "BYE");
  maker.wait(3 * kMillisecond);
  maker.addHop(bye, maker.add(b, border, bob, "BYE sip:bob@203.0.113.20", "BYE"));
  maker.wait(11 * kMillisecond);
  const std::size_t done = maker.add(b, bob, border, "200 OK", "BYE");
  maker.wait(1 * kMillisecond);
  maker.addHop(done, maker.add(a, border, alice, "200 OK", "BYE"));

  maker.addExchange(onward, accepted, 200);
  maker.addExchange(invite, passed, 200);
  maker.addTrouble("private-address", onward, 11, false,
                   "10.20.0.5 is offered to 203.0.113.20, which does not reach it");
  maker.addTrouble("hop-lost-keys", onward, 13, false,
                   "198.51.100.5 took the keys of the audio section away");
  maker.addTrouble("one-way", passed, 16, true, "audio goes to 203.0.113.20 only");
  maker.call.state = CallState::ended;
  maker.call.result = 200;
  maker.call.codecs = {"PCMA"};
  maker.call.security = "plain";
  return maker;
}

/// A request that is refused, or that its caller gives up, or that is still ringing.
inline CallMaker shortCall(std::size_t number, std::size_t firstMessage, std::int64_t start,
                           CallState state) {
  CallMaker maker(number, firstMessage, start);
  const std::size_t leg = maker.addLeg("0f31-" + std::to_string(number) + "@198.51.100.5");
  const std::string offer = audioBody("198.51.100.5", 20000, "a=sendrecv\r\n");
  const std::size_t invite =
      maker.add(leg, border, bob, "INVITE sip:bob@203.0.113.20", "INVITE", offer, BodyRole::offer);
  maker.wait(35 * kMillisecond);
  maker.add(leg, bob, border, "180 Ringing", "INVITE");
  maker.call.state = state;
  if (state == CallState::ringing) return maker;
  maker.wait(4 * kSecond);
  if (state == CallState::cancelled) {
    maker.add(leg, border, bob, "CANCEL sip:bob@203.0.113.20", "CANCEL");
    maker.wait(9 * kMillisecond);
    maker.add(leg, bob, border, "200 OK", "CANCEL");
    maker.wait(1 * kMillisecond);
  }
  maker.call.result = state == CallState::cancelled ? 487 : 488;
  const std::string status =
      state == CallState::cancelled ? "487 Request Terminated" : "488 Not Acceptable Here";
  maker.add(leg, bob, border, status, "INVITE");
  maker.wait(2 * kMillisecond);
  maker.add(leg, border, bob, "ACK sip:bob@203.0.113.20", "ACK");
  maker.call.exchanges.push_back({invite, std::nullopt, maker.call.result, true});
  return maker;
}

/// A call that is up, with nothing wrong.
inline CallMaker plainCall(std::size_t number, std::size_t firstMessage, std::int64_t start) {
  CallMaker maker(number, firstMessage, start);
  const std::size_t leg = maker.addLeg("5ab2e9-" + std::to_string(number) + "@192.0.2.10");
  const std::string offer = audioBody("192.0.2.10", 40000, "a=sendrecv\r\n");
  const std::string answer = audioBody("203.0.113.20", 31000, "a=sendrecv\r\n");
  const std::size_t invite =
      maker.add(leg, alice, bob, "INVITE sip:bob@example.net", "INVITE", offer, BodyRole::offer);
  maker.wait(40 * kMillisecond);
  maker.add(leg, bob, alice, "180 Ringing", "INVITE");
  maker.wait(2 * kSecond);
  const std::size_t accepted = maker.add(leg, bob, alice, "200 OK", "INVITE", answer, BodyRole::answer);
  maker.wait(15 * kMillisecond);
  maker.add(leg, alice, bob, "ACK sip:bob@203.0.113.20", "ACK");
  maker.addExchange(invite, accepted, 200);
  maker.call.state = CallState::up;
  maker.call.result = 200;
  maker.call.codecs = {"PCMA", "PCMU"};
  maker.call.security = "plain";
  return maker;
}

}  // namespace made

#endif
