#ifndef MODIFIERS_ANAT_SUPPORT_H
#define MODIFIERS_ANAT_SUPPORT_H

#include <string>
#include <vector>

#include "modifiersTestSupport.h"

// Bodies and records of sections with alternative network address types (RFC 4091).

namespace anat {

using M = sdpModifications;

inline const std::string head = "v=0\r\no=a 1 1 IN IP4 192.0.2.1\r\ns=-\r\n";
inline const std::string time0 = "t=0 0\r\n";
inline const std::string connection4 = "c=IN IP4 192.0.2.1\r\n";
inline const std::string connection6 = "c=IN IP6 2001:db8::1\r\n";
inline const std::string audio4 = audio + connection4;
inline const std::string audio6 = audio + connection6;
inline const std::string video4 = video + connection4;
inline const std::string video6 = video + connection6;
inline const std::string secureAudio4 = "m=audio 5004 RTP/SAVP 0\r\n" + connection4;
inline const std::string secureVideo4 = "m=video 5006 RTP/SAVPF 96\r\n" + connection4;

inline constexpr eIPAddressVersion v4 = static_cast<eIPAddressVersion>(2);
inline constexpr eIPAddressVersion v6 = static_cast<eIPAddressVersion>(10);

inline std::string mid(int number) { return "a=mid:" + std::to_string(number) + "\r\n"; }

inline TraceLine unusable(const std::string& operation) {
  return {4, 3, operation + "(): The SDP buffer is null or holds no end of text. Exiting."};
}
inline const TraceLine noRoomForAttributes{
    4, 3, "sdpApplyAnatAttributes(): The ANAT attributes do not fit the SDP buffer. Exiting."};

/// A record of exactly 25 characters, zero-filled but for its first codes.
inline std::vector<char> recordOf(const std::vector<int>& codes) {
  std::vector<char> record(25, '\0');
  for (std::size_t i = 0; i < codes.size(); ++i) record[i] = static_cast<char>(codes[i]);
  return record;
}

inline std::string group(const std::string& numbers) { return "a=group:ANAT" + numbers + "\r\n"; }

/// The text behind an o-line that was rebuilt; `oLineEnd` is its end.
inline void expectRebuiltOrigin(EditBuffer& buffer, const std::string& front, unsigned short oLineEnd,
                                const std::string& behind) {
  const std::string text = buffer.text();
  ASSERT_LE(oLineEnd, text.size());
  EXPECT_EQ(text.substr(0, front.size() + 6), front + "o=ZEV ");
  EXPECT_EQ(text.substr(oLineEnd), behind);
  const std::string address = " IN IP4 0.0.0.0\r\n";
  EXPECT_EQ(text.substr(oLineEnd - address.size(), address.size()), address);
}

}  // namespace anat

#endif
