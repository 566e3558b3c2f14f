#ifndef HOST_MSG_IP_ADDRESS_H
#define HOST_MSG_IP_ADDRESS_H

#include <cstdint>

enum eIPAddressVersion : int { HOST_IP_NONE = 0, HOST_IP_4 = 2, HOST_IP_6 = 10 };

/// The address class as this host has it: 20 bytes, trivially copyable.
class cMsgIPAddress {
 public:
  void init();
  void setIPAddress(const char* text);
  void getIPAddressText(char* text, int size) const;
  eIPAddressVersion getIPAddressVersion() const;
  bool isIPv6() const;
  bool isZero() const;
  bool operator==(const cMsgIPAddress& other) const;

  static eIPAddressVersion getIPAddressVersion(const char* text);
  static bool isIPv4(const char* text);
  static bool isIPv6(const char* text);
  static bool isValid(const char* text);

 private:
  std::uint8_t bytes_[16];
  std::int32_t version_;
};

class cIPAddress : public cMsgIPAddress {
 public:
  cIPAddress() { init(); }
  ~cIPAddress() = default;
};

#endif
