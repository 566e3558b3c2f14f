#ifndef MSG_IP_ADDRESS_H
#define MSG_IP_ADDRESS_H

#include <cstdint>

// IP addresses as SDP bodies carry them (RFC 4566 5.7): their text forms, their versions and their
// comparison. All operations are reentrant and leave no state behind.
//
// An address text is exactly one address in the form of inet_pton(3): four decimal numbers without
// leading zeros for IPv4, RFC 4291 2.2 for IPv6. A text with anything before or behind the address (a
// blank, the "/ttl" of a multicast address, the "%eth0" of a zone) is none. Operations that take a text
// read at most 46 characters of it and never behind its NUL; null, empty and longer texts are none.

/// Marks what the library exports.
#define MSG_IP_ADDRESS_API __attribute__((visibility("default")))

/// Address versions, with the values of the socket address families AF_UNSPEC, AF_INET and AF_INET6.
enum eIPAddressVersion : int { IP_VERSION_UNKNOWN = 0, IP_VERSION_4 = 2, IP_VERSION_6 = 10 };

/// An IP address or none, the zero address. A plain value of 20 bytes for use inside records: it has no
/// constructor, so it is undefined until `init` or `setIPAddress` was called or it was value-initialised,
/// which gives the zero address as well. A version other than 4 and 6, which a record copied from
/// elsewhere may hold, counts as unknown.
class MSG_IP_ADDRESS_API cMsgIPAddress {
 public:
  /// Resets to the zero address.
  void init();

  /// Takes an address from its text form.
  /// @param text an IPv4 or IPv6 address; any other text, or null, gives the zero address
  void setIPAddress(const char* text);

  /// Writes the text form, for IPv6 the short one with "::". An address of unknown version, the zero
  /// address among them, is written as "0.0.0.0": where a line must name an address, that stands for none.
  /// @param text receives the text, cut to `size` - 1 characters, and always a NUL; may be null
  /// @param size characters that `text` has room for; 46 hold every address. Nothing is written when it
  ///        is 0 or less or `text` is null
  void getIPAddressText(char* text, int size) const;

  /// @return the version of the held address, 0 for the zero address
  eIPAddressVersion getIPAddressVersion() const;

  /// @return the version of the address that the text is; 0 when it is none or null
  static eIPAddressVersion getIPAddressVersion(const char* text);

  /// @return whether the text is an IPv4 address
  static bool isIPv4(const char* text);

  /// @return whether the text is an IPv6 address, an IPv4-mapped one ("::ffff:192.0.2.1") included
  static bool isIPv6(const char* text);

  /// @return whether the text is an address of either version
  static bool isValid(const char* text);

  /// @return whether the held address is an IPv6 address
  bool isIPv6() const;

  /// Tells whether no address is held. The unspecified addresses "0.0.0.0" and "::" of a call on hold
  /// (RFC 3264 8.4) are addresses with a version: they are not the zero address and not equal to it.
  /// @return whether this is the zero address that `init` gives
  bool isZero() const;

  /// @return whether both are the same address of the same version; "192.0.2.1" and "::ffff:192.0.2.1"
  ///         are not
  bool operator==(const cMsgIPAddress& other) const;

 private:
  std::int32_t version;
  std::uint8_t bytes[16];  ///< in network order; an IPv4 address is the first four, the others are 0
};

/// An address that starts as the zero address.
class cIPAddress : public cMsgIPAddress {
 public:
  cIPAddress() { init(); }
  ~cIPAddress() = default;
};

#endif
