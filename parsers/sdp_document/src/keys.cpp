// What a section has of its own and what it has from the session.

#include "keys.h"

#include <algorithm>

#include "fieldReader.h"

namespace sdp::core {

bool hasKey(const Model& model, const Part& section, Kind key) {
  return has(model, section, key) || (key != Kind::crypto && has(model, model.session(), key));
}

Security securityOf(const Model& model, const Part& section) {
  const std::string_view transport = section.m.transport;
  const bool tls = sdpneg::contains(transport, "TLS");
  if (!isRtp(section)) return tls ? Security::dtls : Security::plain;
  const bool fingerprint = hasKey(model, section, Kind::fingerprint);
  if (tls) return fingerprint ? Security::dtls : Security::keyless;
  const bool crypto = has(model, section, Kind::crypto);
  if (!sdpneg::contains(transport, "SAVP")) {
    return crypto || fingerprint || has(model, section, Kind::keyMgmt) ? Security::osrtp : Security::plain;
  }
  if (crypto) return Security::sdes;
  if (hasKey(model, section, Kind::keyMgmt)) return Security::mikey;
  return fingerprint ? Security::dtls : Security::keyless;
}

Kind kindOf(Direction direction) {
  switch (direction) {
    case Direction::sendonly:
      return Kind::sendonly;
    case Direction::recvonly:
      return Kind::recvonly;
    case Direction::inactive:
      return Kind::inactive;
    default:
      return Kind::sendrecv;
  }
}

std::optional<Direction> ownDirectionOf(const Model& model, const Part& part) {
  const Index line = firstOf(model, part, kDirections);
  if (line == kNone) return std::nullopt;
  switch (model.lines[line].kind) {
    case Kind::sendonly:
      return Direction::sendonly;
    case Kind::recvonly:
      return Direction::recvonly;
    case Kind::inactive:
      return Direction::inactive;
    default:
      return Direction::sendrecv;
  }
}

Direction directionOf(const Model& model, const Part& section) {
  if (const std::optional<Direction> own = ownDirectionOf(model, section)) return *own;
  return ownDirectionOf(model, model.session()).value_or(Direction::sendrecv);
}

Connection connectionIn(const Line& line) {
  FieldReader fields(line.content().substr(2));
  fields.next();
  Connection connection;
  connection.addressType = fields.next();
  connection.address = fields.next();
  return connection;
}

Index connectionLineOf(const Model& model, const Part& part) {
  const Index own = firstOf(model, part, one(Kind::connection));
  return own != kNone ? own : firstOf(model, model.session(), one(Kind::connection));
}

bool hasTrickle(const Model& model, const Part& part) {
  bool found = false;
  forEach(model, part, one(Kind::iceOptions), [&](Index i) {
    const Fields words(valueOf(model.lines[i]).value_or(std::string_view()));
    for (auto word = words.begin(); !found && word != Fields::end(); ++word) found = *word == "trickle";
  });
  return found;
}

}  // namespace sdp::core
